// Messages end to end through the installed hooks: areas and pictures in
// the conversation list and a conversation, the composer's Group button,
// and the recipient-group screens reached from it. (Where the labels and
// pictures sit, which screens and settings get them, and saving, deleting
// and damaged files of the saved lists are the controllers' and the group
// screens' own tests, in tests/messages.)
#include "area/area_loader.h"
#include "messages_e2e_fixture.h"

namespace zv::testing {
namespace {

TEST_F(MessagesE2ETest, ListAndConversationShowAreasAndPictures) {
  start();
  run([&] {
    ASSERT_EQ(app_->list->conversations.size(), 6u);
    EXPECT_EQ(row(0)->fromLabel->text(), "Wei Zhang");
    EXPECT_EQ(areaLabel(0)->text(), area("13800138000"));
    EXPECT_EQ(areaLabel(4)->text(), area("13811112222"));
    // 10086 waits unread: its name sits beside the picture and the dot.
    EXPECT_EQ(row(3)->fromLabel->frame().origin.x, 90);
  });
  // Wei's picture arrived from the background fetch.
  run([&] {
    auto image = row(0)->imageView()->image();
    EXPECT_TRUE(image &&
                image != ZVAddressBook::sharedInstance()->getNullAvatarWithsize(
                             {50, 50}));
    // A conversation shows pictures beside the messages.
    auto t = app_->openConversation(0);
    ASSERT_NE(t, nullptr);
    auto& cells = t->collection->cells;
    ASSERT_EQ(cells.size(), 2u);
    for (const auto& cell : cells) EXPECT_NE(cell->contactImage, nullptr);
    // A stranger's messages get no picture.
    app_->back();
    auto stranger = app_->openConversation(3);
    EXPECT_EQ(stranger->collection->cells[0]->contactImage, nullptr);
    // Nor does the Group button appear on a conversation.
    EXPECT_EQ(stranger->navigationItem()->leftBarButtonItem, nullptr);
  });
}

// The host sets its buttons again as recipients change: the Group button
// never replaces a left button it finds.
TEST_F(MessagesE2ETest, GroupButtonOnlyOnNewMessagesAndNeverOverALeftButton) {
  start();
  run([&] {
    auto composer = app_->newMessage();
    auto item = composer->navigationItem()->leftBarButtonItem;
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->title, "Group");
    auto other = ui::UIBarButtonItem::make(
        "Edit", ui::BarButtonItemStyle::Plain, nullptr);
    composer->navigationItem()->leftBarButtonItem = other;
    composer->toField->add("10086");  // the host updates its buttons
    EXPECT_EQ(composer->navigationItem()->leftBarButtonItem, other);
  });
}

TEST_F(MessagesE2ETest, ChosenNumbersReplaceTheComposersRecipients) {
  for (const char* version : {"8.1", "7.1"}) {
    SCOPED_TRACE(version);
    start(version);
    run([&] {
      auto composer = app_->newMessage();
      composer->toField->add("10086");
      composer->toField->add("13800138000");
      ASSERT_TRUE(composer->navigationItem()->leftBarButtonItem->press());
      auto g = top<ZVSMSGroupViewController>();
      ASSERT_NE(g, nullptr);
      EXPECT_EQ(g->title, "Group");
      g->tableView()->reloadData();
      ASSERT_TRUE(g->tapRow({0, 1}));  // Family
      auto list = top<ZVSMSSelectContactsViewController>();
      ASSERT_NE(list, nullptr);
      ASSERT_EQ(list->list().size(), 2u);
      list->tapRow({0, 1});
      list->navigationItem()->rightBarButtonItem->press();
      auto& chosen = composer->toField->recipients;
      ASSERT_EQ(chosen.size(), 1u);
      EXPECT_EQ(chosen[0]->address, "13912345678");
      EXPECT_EQ(chosen[0]->compositeName, "Anna Smith");
      EXPECT_EQ(app_->topController(), composer);  // dismissed
    });
  }
}

}  // namespace
}  // namespace zv::testing
