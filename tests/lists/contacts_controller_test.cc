// ZVContactsController against a fake contacts host: areas beside the
// card's phone labels, the cache drop on opening a card, and the list
// avatars by screen and system version.
#include "lists/contacts_controller.h"

#include <gtest/gtest.h>

#include "lists_fixture.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

using testing::FakeListCell;
using testing::FakePerson;

const ui::Pixel kRed{255, 0, 0, 255};

class ContactsTest
    : public testing::ListControllerTest<ZVContactsController,
                                         testing::FakeContactsHost> {
 protected:
  // Contacts on a 4-inch screen unless said otherwise: avatars show there.
  void begin(const Dict& settings, const char* version = "8.1",
             const char* screen = "4") {
    ListControllerTest::begin(settings, version, screen);
  }
  // A new list cell of `data` after `passes` avatar passes.
  std::shared_ptr<ui::UITableViewCell> decorated(FakeListCell data,
                                                 double nameSize = 17,
                                                 int passes = 1) {
    return run([&] {
      auto cell = host_->makeListCell(std::move(data), nameSize);
      for (int i = 0; i < passes; ++i) controller_->avatarCell(cell);
      return cell;
    });
  }
};

TEST_F(ContactsTest, CardLabelsGetTheAreaAfterTwoBlanksOnce) {
  const Dict replace{{"AreaReplaceTextContacts", true},
                     {"AreaTypeContacts", true}},
      off{{"EnableArea", false}}, noName{{"AreaNameContacts", false}};
  const std::string sh = testing::kShanghaiMobile;
  struct Case {
    Dict settings;
    std::string label, number, expected;
  } cases[] = {
      {{}, "mobile", "130 0100 0000", "mobile  北京市"},
      {{}, "home", testing::kUnknownNumber, "home"},
      {{}, "", testing::kBeijingMobile, ""},
      {replace, "mobile", sh, "上海市 中国联通"},
      {replace, "", sh, "上海市 中国联通"},
      {off, "mobile", sh, "mobile"},
      {noName, "mobile", sh, "mobile"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label + " " + c.number);
    begin(c.settings);
    auto cell = run([&] { return host_->makePhoneCell(c.label, c.number); });
    run([&] {
      // Constraint passes come several times per cell.
      for (int pass = 0; pass < 3; ++pass) controller_->areaCell(cell);
    });
    EXPECT_EQ(host_->labelLabel(cell)->text(), c.expected);
  }
}

TEST_F(ContactsTest, OpeningACardDropsThePictureCacheOnSmallScreensOnly) {
  const platform::Size size{44, 44};
  auto picture =
      std::make_shared<const ui::Image>(ui::Image::filled(10, 10, 1, kRed));
  for (std::string screen : {"3.5", "4", "4.7", "5.5"}) {
    begin({{"EnableAvatar", true}}, "8.1", screen.c_str());
    run([&] {
      auto vc = rt::create(rt::registerClass("FakeCard"));
      auto none = rt::create(rt::registerClass("FakeCard"));
      host_->cards[vc.get()] = 31;
      host_->cards[none.get()] = -1;
      auto book = ZVAddressBook::sharedInstance();
      book->setCacheAvatar(31, picture, size);
      const auto kept = book->setCacheAvatar(-1, picture, size);
      controller_->viewWillAppear(vc);
      controller_->viewWillAppear(none);
      const bool small = screen == "3.5" || screen == "4";
      EXPECT_EQ(book->getCahcedAvatar(31, size) == nullptr, small) << screen;
      // No contact, no drop: the entry kept for "no contact" stays (a
      // dropped one would answer the placeholder instead).
      EXPECT_EQ(book->getCahcedAvatar(-1, size), kept) << screen;
    });
  }
}

TEST_F(ContactsTest, ListRowsGetRoundScaledAvatars) {
  begin({{"EnableAvatar", true}});
  auto red = std::make_shared<FakePerson>(5, true, kRed);
  auto withPicture = decorated({.name = "Li Lei", .person = red});
  auto without = decorated(
      {.name = "Han", .person = std::make_shared<FakePerson>(6, false)});
  auto noRecord = decorated({.name = "Company"});
  auto notAPerson = decorated({.hasPerson = false, .name = "Group"});
  auto image = withPicture->imageView();
  EXPECT_EQ(image->frame().size, (platform::Size{44, 44}));
  EXPECT_EQ(image->scale(), 0.8);
  EXPECT_EQ(image->cornerRadius(), 22);
  EXPECT_TRUE(image->clipsToBounds());
  EXPECT_EQ(image->tag(), avatarViewTag(5));
  EXPECT_EQ(withPicture->separatorInset().left, 62);
  EXPECT_TRUE(testing::allPixels(image->image(), kPlaceholder));
  world_.advance(0);
  EXPECT_TRUE(testing::allPixels(image->image(), kRed));

  EXPECT_TRUE(testing::allPixels(without->imageView()->image(), kPlaceholder));
  EXPECT_TRUE(testing::allPixels(noRecord->imageView()->image(), kPlaceholder));
  EXPECT_EQ(noRecord->imageView()->tag(), avatarViewTag(-1));
  EXPECT_EQ(notAPerson->imageView()->image(), nullptr);
  EXPECT_EQ(notAPerson->separatorInset().left, 15);
  // From 8.0 the texts are the host's.
  EXPECT_EQ(host_->listCell(withPicture).nameLabel->text(), "Li Lei");
  EXPECT_FALSE(host_->listCell(withPicture).nameView->isHidden());
}

TEST_F(ContactsTest, NamesMoveByBlanksBeforeSevenOneAndToTheTextLabelAfter) {
  begin({{"EnableAvatar", true}}, "7.0.4", "3.5");
  const std::pair<double, size_t> cases[] = {
      {15.5, 11}, {14, 12}, {13, 13}, {18.5, 9}, {20, 9}, {21.5, 8}, {17, 10}};
  for (auto [size, blanks] : cases) {
    auto cell = decorated({.name = "Li Lei"}, size, 2);
    EXPECT_EQ(host_->listCell(cell).nameLabel->text(),
              std::string(blanks, ' ') + "Li Lei")
        << size;
  }
  // A name view without text stays empty.
  EXPECT_EQ(host_->listCell(decorated({})).nameLabel->text(), "");
  // The separator style is only set from 7.1.
  auto table = run([] { return ui::make<ui::UITableView>(); });
  run([&] { controller_->avatarTableView(table); });
  EXPECT_TRUE(host_->separatorStyles.empty());

  // From 7.1 to 8.0 the text label takes the name, a blank when it has none
  // (the rest is tests/hooks/contacts_e2e_test.cc's).
  begin({{"EnableAvatar", true}}, "7.1.2");
  EXPECT_EQ(decorated({})->textLabel()->text(), " ");
}

TEST_F(ContactsTest, LargeScreensAndSwitchesLeaveTheListAlone) {
  const Dict on{{"EnableAvatar", true}};
  for (auto [settings, screen] :
       {std::pair{on, "4.7"}, std::pair{on, "5.5"},
        std::pair{Dict{{"EnableAvatar", true}, {"AvatarContacts", false}}, "4"},
        std::pair{Dict{}, "4"}}) {
    begin(settings, "7.1", screen);
    auto cell = decorated(
        {.name = "Li Lei", .person = std::make_shared<FakePerson>(5, true)});
    EXPECT_EQ(cell->imageView()->image(), nullptr);
    EXPECT_EQ(cell->textLabel()->text(), "");
    EXPECT_EQ(cell->separatorInset().left, 15);
    world_.advance(0);
  }
}

}  // namespace
}  // namespace zv
