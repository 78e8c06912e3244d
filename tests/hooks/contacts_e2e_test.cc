// Contacts end to end in the Contacts app and the Phone app's Contacts tab:
// areas beside the card's phone labels, round avatars in the list. Which
// screens and settings get what is the controller's unit tests'
// (tests/lists); here the hosts' cells, fonts and pictures reach it.
#include <gtest/gtest.h>

#include "hosts/contacts/card.h"
#include "lists_world.h"
#include "search/address_book.h"

namespace zv {
namespace {

using hosts::ContactsApplication;
using hosts::ContactViewController;
using hosts::MemberCell;

class ContactsE2ETest : public testing::ListsWorld {
 protected:
  platform::SimProcess& startContacts(Dict settings, const char* version,
                                      const char* screen, int textStep = 0) {
    settings.emplace("Enable", true);
    writeSettings(settings);
    auto facts = platform::simulatedDevice(version, screen);
    facts->textSizeStep = textStep;
    app_ = &hosts::launchSimulated(world_, hosts::contactsHost(), *facts,
                                   ZorvelInitializer);
    world_.advance(0);
    return *app_;
  }
  // The list rows by name.
  std::map<std::string, std::shared_ptr<MemberCell>> rows() {
    return app_->run([] {
      std::map<std::string, std::shared_ptr<MemberCell>> out;
      auto list = ContactsApplication::shared()->list();
      for (const auto& [row, cell] : list->table()->visibleCells()) {
        auto member = std::dynamic_pointer_cast<MemberCell>(cell);
        out[member->person->name] = member;
      }
      return out;
    });
  }
  // Opens the card of `name` in `list`; answers its phone labels.
  template <typename List, typename Navigation>
  static std::vector<std::string> openCard(const List& list,
                                           const Navigation& navigation,
                                           const std::string& name) {
    const auto& contacts = list->dataSource->contacts;
    for (size_t i = 0; i < contacts.size(); ++i)
      if (contacts[i].name == name) list->openRow(i);
    std::vector<std::string> out;
    auto card = std::dynamic_pointer_cast<ContactViewController>(
        navigation->topViewController());
    if (card)
      for (auto& c : card->phoneCells) out.push_back(c->labelLabel->text());
    return out;
  }
  std::vector<std::string> openCard(const std::string& name) {
    return in(*app_, [&] {
      auto app = ContactsApplication::shared();
      return openCard(app->list(), app->navigation, name);
    });
  }

  platform::SimProcess* app_ = nullptr;
};

TEST_F(ContactsE2ETest, SmallScreensGetRoundAvatarsAndACardDropsItsPictures) {
  startContacts({{"EnableAvatar", true}}, "8.1", "4");
  auto list = rows();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_TRUE(
      testing::allPixels(list["李雷"]->imageView()->image(), testing::kRed));
  auto cached = [&] {
    return app_->run([] {
      return ZVAddressBook::sharedInstance()->getCahcedAvatar(1, {44, 44}) !=
             nullptr;
    });
  };
  EXPECT_TRUE(cached());
  EXPECT_EQ(openCard("李雷"), (std::vector<std::string>{"mobile  北京市"}));
  EXPECT_FALSE(cached());
}

TEST_F(ContactsE2ETest, NamesMoveByBlanksOnSevenAndToTheTextLabelOnSevenOne) {
  // The host's name font follows the text size (15.5 points one step
  // smaller): 11 blanks before the name.
  startContacts({{"EnableAvatar", true}}, "7.0", "3.5", -1);
  EXPECT_EQ(rows()["Wu Wang"]->nameView->nameLabel->text(),
            std::string(11, ' ') + "Wu Wang");
  // From 7.1 the text label takes the name over a lined list.
  startContacts({{"EnableAvatar", true}}, "7.1", "4");
  auto wang = rows()["Wu Wang"];
  EXPECT_EQ(wang->textLabel()->text(), "Wu Wang");
  EXPECT_TRUE(wang->nameView->isHidden());
  EXPECT_EQ(app_->run([] {
    return ContactsApplication::shared()->list()->table()->separatorStyle;
  }),
            1);
}

TEST_F(ContactsE2ETest, ThePhoneAppsContactsTabIsTheSameList) {
  writeSettings({{"EnableAvatar", true}});
  auto& phone = start(hosts::phoneHost(), "8.1", "4");
  auto labels = in(phone, [] {
    auto app = hosts::PhoneApplication::shared();
    app->selectTab(hosts::PhoneApplication::kContacts);
    auto list = std::dynamic_pointer_cast<hosts::MembersViewController>(
        app->contacts->viewControllers().front());
    list->view();
    return openCard(list, app->contacts, "李雷");
  });
  EXPECT_EQ(labels, (std::vector<std::string>{"mobile  北京市"}));
}

}  // namespace
}  // namespace zv
