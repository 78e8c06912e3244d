// ZVSMSController against a fake Messages host: areas and pictures in the
// conversation list, pictures in the transcript, and the composer's Group
// button.
#include "area/area_loader.h"
#include "messages/group_view_controller.h"
#include "messages_fixture.h"
#include "search/avatar_loader.h"
#include "support/picture_rows.h"

namespace zv::testing {
namespace {

constexpr char kMobile[] = "13800138000";
const Dict kAreaOn{{"EnableArea", Value(true)}};
const Dict kAvatarOn{{"EnableAvatar", Value(true)}};

class SMSControllerTest : public MessagesTest {
 protected:
  void addPicture(int record, ui::Pixel colour) {
    addColourPicture(root_, record, colour, 0, 60, 60);
  }
  static ui::Pixel centre(const ui::ImagePtr& image) {
    return image->pixel(image->pixelWidth() / 2, image->pixelHeight() / 2);
  }
  std::shared_ptr<ui::UILabel> areaLabel(const FakeListCell& c) {
    return std::dynamic_pointer_cast<ui::UILabel>(
        c.cell->contentView()->viewWithTag(ZVSMSController::kAreaLabelTag));
  }
};

TEST_F(SMSControllerTest, AreaLabelIsMadeOnceAndFollowsTheSettings) {
  launchMessages(
      {{"EnableArea", Value(true)}, {"AreaOnlyStrangers", Value(true)}})
      .run([&] {
        auto c = ZVSMSController::sharedInstance();
        const std::string area = ZVAreaLoader::sharedInstance()
                                     ->getArea(kMobile, true, false)
                                     .value_or("");
        ASSERT_FALSE(area.empty());
        auto& cell = host_->addListCell();
        auto stranger = conversation(kMobile);
        c->areaCell(cell.cell, stranger);
        c->areaCell(cell.cell, stranger);
        auto label = areaLabel(cell);
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->text(), area);
        EXPECT_EQ(label->font().size, 14);
        EXPECT_FALSE(label->userInteractionEnabled());
        size_t tagged = 0;
        for (const auto& v : cell.cell->contentView()->subviews())
          tagged += v->tag() == ZVSMSController::kAreaLabelTag;
        EXPECT_EQ(tagged, 1u);

        // The same cell reused for a contact's conversation loses the area.
        c->areaCell(cell.cell, conversation(kMobile, 4));
        EXPECT_EQ(label->text(), "");
        // An unknown number clears it as well.
        c->areaCell(cell.cell, stranger);
        EXPECT_EQ(label->text(), area);
        c->areaCell(cell.cell, conversation("abc"));
        EXPECT_EQ(label->text(), "");
      });
  // Without the rule contacts keep their area; with the switch off there is
  // no label at all.
  for (bool on : {true, false})
    launchMessages({{"EnableArea", Value(true)}, {"AreaNameSMS", Value(on)}})
        .run([&] {
          auto& cell = host_->addListCell();
          ZVSMSController::sharedInstance()->areaCell(
              cell.cell, conversation(kMobile, on ? 4 : -1));
          auto label = areaLabel(cell);
          ASSERT_EQ(label != nullptr, on);
          if (on) {
            EXPECT_FALSE(label->text().empty());
          }
        });
}

TEST_F(SMSControllerTest, AreaStandsBesideTheSenderAndIsClippedByTheDate) {
  launchMessages(kAreaOn).run([&] {
    auto c = ZVSMSController::sharedInstance();
    auto& cell = host_->addListCell();
    cell.from->setText("Li");
    c->areaCell(cell.cell, conversation(kMobile));
    c->areaLayoutCell(cell.cell);
    auto label = areaLabel(cell);
    const ui::Rect from = cell.from->frame();
    EXPECT_EQ(from.size.width, cell.from->textSize().width);  // fitted
    EXPECT_EQ(label->frame().origin.x, from.origin.x + from.size.width + 6);
    EXPECT_EQ(label->frame().origin.y, from.origin.y);
    EXPECT_EQ(label->frame().size.height, from.size.height);
    EXPECT_EQ(label->frame().size.width, label->textSize().width);

    // A name that almost reaches the date: the area gets what is left.
    cell.date->setFrame({{label->frame().origin.x + 10, 10}, {60, 20}});
    c->areaLayoutCell(cell.cell);
    EXPECT_EQ(label->frame().size.width, 10);

    // A name running past the date leaves no room at all.
    cell.from->setText(std::string(60, 'W'));
    c->areaLayoutCell(cell.cell);
    EXPECT_GT(label->frame().origin.x, cell.date->frame().origin.x);
    EXPECT_EQ(label->frame().size.width, 0);
  });
}

TEST_F(SMSControllerTest, ListPictureIsPlaceholderFirstThenTheFetchedOne) {
  addPicture(7, {255, 0, 0, 255});
  auto& p = launchMessages(kAvatarOn);
  std::shared_ptr<ui::UIImageView> image, reused;
  p.run([&] {
    auto c = ZVSMSController::sharedInstance();
    // A cell reused for a number without contact before the picture came
    // back keeps the placeholder.
    auto& other = host_->addListCell();
    c->avatarCell(other.cell, conversation(kMobile, 7, true));
    c->avatarCell(other.cell, conversation("10086"));
    reused = other.cell->imageView();
    EXPECT_EQ(reused->tag(), -1);

    auto& cell = host_->addListCell();
    auto v = conversation(kMobile, 7, true);
    v->unread = true;
    c->avatarCell(cell.cell, v);
    image = cell.cell->imageView();
    EXPECT_EQ(image->image(),
              ZVAddressBook::sharedInstance()->getNullAvatarWithsize({50, 50}));
    EXPECT_EQ(image->tag(), avatarViewTag(7));
    EXPECT_EQ(image->cornerRadius(), 25);
    EXPECT_TRUE(image->clipsToBounds());
    EXPECT_EQ(image->scale(), 0.8);
    EXPECT_EQ(cell.unread->tag(), 1);
  });
  world_.advance(0.1);
  p.run([&] {
    ASSERT_NE(image->image(), nullptr);
    EXPECT_EQ(image->image()->pixelWidth(), 100);
    EXPECT_EQ(centre(image->image()), (ui::Pixel{255, 0, 0, 255}));
    EXPECT_EQ(reused->image(),
              ZVAddressBook::sharedInstance()->getNullAvatarWithsize({50, 50}));
    // Now cached: the next cell gets the picture at once.
    auto& again = host_->addListCell();
    ZVSMSController::sharedInstance()->avatarCell(
        again.cell, conversation(kMobile, 7, true));
    EXPECT_EQ(again.cell->imageView()->image(), image->image());
  });
}

TEST_F(SMSControllerTest, PicturesOnlyOnTheSmallScreensAndWhenSwitchedOn) {
  const Dict off{{"EnableAvatar", Value(true)}, {"AvatarSMS", Value(false)}};
  for (auto [settings, facts] :
       {std::pair{kAvatarOn, fourPointSevenInch()}, std::pair{off, fourInch()}})
    launchMessages(settings, facts).run([&] {
      auto& cell = host_->addListCell();
      auto c = ZVSMSController::sharedInstance();
      c->avatarCell(cell.cell, conversation(kMobile));
      c->avatarLayoutCell(cell.cell);
      EXPECT_EQ(cell.cell->imageView()->image(), nullptr);
      EXPECT_EQ(cell.summary->frame().origin.x, 15);
    });
}

TEST_F(SMSControllerTest, LayoutMovesTheLabelsBesideThePicture) {
  launchMessages(kAvatarOn, fourInch("7.1")).run([&] {
    auto c = ZVSMSController::sharedInstance();
    auto& cell = host_->addListCell();
    auto v = conversation(kMobile);
    v->unreadi = true;  // counts below 8.0
    c->avatarCell(cell.cell, v);
    c->avatarLayoutCell(cell.cell);
    EXPECT_EQ(cell.summary->frame(), (ui::Rect{{70, 30}, {240, 40}}));
    EXPECT_EQ(cell.from->frame(), (ui::Rect{{90, 10}, {130, 20}}));
    EXPECT_EQ(cell.unread->frame(), (ui::Rect{{70, 14}, {12, 12}}));
    EXPECT_EQ(cell.cell->separatorInset().left, 70);
    // Laid out again: nothing moves twice.
    c->avatarLayoutCell(cell.cell);
    EXPECT_EQ(cell.summary->frame().size.width, 240);
    EXPECT_EQ(cell.from->frame().size.width, 130);

    auto& editing = host_->addListCell();
    editing.editing = true;
    editing.summary->setFrame({{15, 25}, {290, 40}});
    c->avatarCell(editing.cell, v);
    c->avatarLayoutCell(editing.cell);
    EXPECT_EQ(editing.summary->frame(), (ui::Rect{{70, 25}, {240, 40}}));
    EXPECT_EQ(editing.from->frame(), (ui::Rect{{70, 10}, {150, 20}}));
    EXPECT_EQ(editing.cell->separatorInset().left, 108);
  });
  launchMessages(kAvatarOn).run([&] {
    auto c = ZVSMSController::sharedInstance();
    auto& cell = host_->addListCell();
    auto v = conversation(kMobile);
    v->unreadi = true;  // ignored from 8.0 on
    c->avatarCell(cell.cell, v);
    c->avatarLayoutCell(cell.cell);
    EXPECT_EQ(cell.unread->tag(), 0);
    EXPECT_EQ(cell.from->frame(), (ui::Rect{{70, 10}, {150, 20}}));
    EXPECT_EQ(cell.unread->frame(), (ui::Rect{{70, 15}, {10, 10}}));
  });
}

TEST_F(SMSControllerTest, ChatPicturesForReceivedAndSentMessages) {
  addPicture(7, {0, 255, 0, 255});
  addPicture(3, {0, 0, 255, 255});
  auto settings = kAvatarOn;
  settings["MyInfo"] = Value(3);
  launchMessages(settings).run([&] {
    auto c = ZVSMSController::sharedInstance();
    auto transcript = composer();
    transcript->record = 7;
    auto cls = rt::registerClass("CKTranscriptMessageCell");
    auto received = rt::create<FakeMessageCell>(cls);
    c->avatarChat(transcript, received);
    ASSERT_NE(received->contactImage, nullptr);
    EXPECT_TRUE(received->wantsLayout);
    EXPECT_EQ(received->contactImage->pixelWidth(), 56);
    EXPECT_EQ(centre(received->contactImage), (ui::Pixel{0, 255, 0, 255}));
    EXPECT_EQ(received->contactImageView->cornerRadius(), 14);
    EXPECT_TRUE(received->contactImageView->clipsToBounds());

    auto sent = rt::create<FakeMessageCell>(cls);
    sent->orientation = 1;
    c->avatarChat(transcript, sent);
    ASSERT_NE(sent->contactImage, nullptr);
    EXPECT_EQ(centre(sent->contactImage), (ui::Pixel{0, 0, 255, 255}));

    // A cell with a picture keeps it.
    auto kept = rt::create<FakeMessageCell>(cls);
    auto own = std::make_shared<const ui::Image>(
        ui::Image::filled(2, 2, 1, {1, 1, 1, 255}));
    kept->contactImage = own;
    c->avatarChat(transcript, kept);
    EXPECT_EQ(kept->contactImage, own);
    EXPECT_FALSE(kept->wantsLayout);
    // Anything but a message cell is left alone.
    c->avatarChat(transcript, ui::make<ui::UIView>());
  });
}

// Where the button shows (a new message, no left button of the host's) is
// the Messages end-to-end test's.
TEST_F(SMSControllerTest, GroupButtonIsPlainMadeOnceAndFollowsItsSwitch) {
  launchMessages({{"SMSSelectGroup", Value(true)}}).run([&] {
    auto c = ZVSMSController::sharedInstance();
    auto fresh = composer();
    c->groupButton(fresh);
    auto item = fresh->navigationItem()->leftBarButtonItem;
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->style, ui::BarButtonItemStyle::Plain);
    c->groupButton(fresh);
    EXPECT_EQ(fresh->navigationItem()->leftBarButtonItem, item);
  });
  launchMessages({}).run([&] {
    auto fresh = composer();
    ZVSMSController::sharedInstance()->groupButton(fresh);
    EXPECT_EQ(fresh->navigationItem()->leftBarButtonItem, nullptr);
  });
}

}  // namespace
}  // namespace zv::testing
