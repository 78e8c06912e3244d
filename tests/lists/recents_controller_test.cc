// ZVRecentsController against a fake Recents screen: areas and ring times on
// the row label, avatars and the moved call-type icon. (The separator inset
// is tests/hooks/recents_e2e_test.cc's; the backup, recents_sync_test.cc's.)
#include "lists/recents_controller.h"

#include <gtest/gtest.h>

#include "lists_fixture.h"
#include "platform/ui/text_metrics.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

using testing::FakeCall;
using testing::FakePerson;
using testing::kBeijingMobile;
using testing::kShanghaiMobile;

const std::string kBeijing = "北京市";

// Occurrences of a call on 8.x (dates since 2001) or before (the same dates
// under the older key).
Value occurrences(std::vector<double> dates, bool modern = true) {
  Array list;
  for (double d : dates)
    list.push_back(
        Dict{{modern ? "kCHCallOccurrenceDateKey" : "RecentCallDate", Date{d}},
             {"kCHCallOccurrenceDurationKey", 0.0}});
  return list;
}

class RecentsTest : public testing::RecentsControllerTest {
 protected:
  // Runs every decoration the row hook runs, in its order.
  void decorate(const rt::Id& cell) {
    proc_->run([&] {
      controller_->areaCell(cell);
      controller_->ringCell(cell);
      controller_->avatarCell(cell);
    });
  }
  std::shared_ptr<ui::UITableViewCell> cell(double nameSize = 17,
                                            double labelSize = 14) {
    return run([&] { return host_->makeCell(nameSize, labelSize); });
  }
  rt::Id call(FakeCall data) {
    return run([&] { return host_->makeCall(std::move(data)); });
  }
  // A new row showing a new call with the host's texts.
  std::shared_ptr<ui::UITableViewCell> shown(FakeCall data, std::string name,
                                             std::string label,
                                             double nameSize = 17,
                                             double labelSize = 14) {
    auto row = cell(nameSize, labelSize);
    host_->show(row, call(std::move(data)), std::move(name), std::move(label));
    return row;
  }
  std::string labelText(const rt::Id& c) { return host_->row(c).label->text(); }
};

// --- Areas

TEST_F(RecentsTest, AreaJoinsAContactsLabelAndReplacesAStrangers) {
  begin({});
  auto contactRow = cell();
  auto contact = call({.number = kBeijingMobile, .recordId = 12});
  host_->show(contactRow, contact, "Li Lei", "mobile");
  auto strangerRow = cell();
  auto stranger = call({.number = kShanghaiMobile});
  host_->show(strangerRow, stranger, kShanghaiMobile, "unknown");

  run([&] {
    controller_->areaCell(contactRow);
    controller_->areaCell(strangerRow);
  });
  EXPECT_EQ(labelText(contactRow), "mobile " + kBeijing);
  EXPECT_EQ(labelText(strangerRow), "上海市");

  // A reused cell that still holds the area does not get it twice.
  run([&] { controller_->areaCell(contactRow); });
  EXPECT_EQ(labelText(contactRow), "mobile " + kBeijing);

  // A label the area already says (fully or more) becomes the area alone,
  // and an empty one takes it as it is.
  host_->row(contactRow).label->setText("北京");
  run([&] { controller_->areaCell(contactRow); });
  EXPECT_EQ(labelText(contactRow), kBeijing);
  host_->row(contactRow).label->setText("");
  run([&] { controller_->areaCell(contactRow); });
  EXPECT_EQ(labelText(contactRow), kBeijing);

  // An unknown number leaves the row as the host set it.
  auto unknown = call({.number = testing::kUnknownNumber});
  host_->show(strangerRow, unknown, "99999", "unknown");
  run([&] { controller_->areaCell(strangerRow); });
  EXPECT_EQ(labelText(strangerRow), "unknown");
}

TEST_F(RecentsTest, SettingsAndSystemVersionDecideWhoGetsWhichArea) {
  const Dict onlyStrangers{{"AreaOnlyStrangers", true}};
  const Dict strangersWithType{{"AreaOnlyStrangers", true},
                               {"AreaTypeCallHistory", true}};
  struct Case {
    Dict settings;
    const char* version;
    FakeCall call;
    std::string label, expected;
  } cases[] = {
      {strangersWithType,
       "8.1",
       {.number = kBeijingMobile, .recordId = 12},
       "mobile",
       "mobile"},
      // A null record id is no contact.
      {strangersWithType,
       "8.1",
       {.number = kBeijingMobile, .recordId = {}},
       "unknown",
       kBeijing + " 中国联通"},
      {{{"AreaReplaceTextCallHistory", true}},
       "8.1",
       {.number = kBeijingMobile, .recordId = 3},
       "mobile",
       kBeijing},
      {{{"AreaNameCallHistory", false}},
       "8.1",
       {.number = kBeijingMobile},
       "unknown",
       "unknown"},
      // On 7.x the record id field is not asked: uid says who is a contact.
      {onlyStrangers,
       "7.1.2",
       {.number = kBeijingMobile, .uid = 8},
       "mobile",
       "mobile"},
      {onlyStrangers,
       "7.1.2",
       {.number = kBeijingMobile, .recordId = 8, .uid = -1},
       "",
       kBeijing},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.version + (" " + c.label));
    begin(c.settings, c.version);
    auto row = shown(c.call, "x", c.label);
    run([&] { controller_->areaCell(row); });
    EXPECT_EQ(labelText(row), c.expected);
  }
}

// --- Ring times

TEST_F(RecentsTest, RingTimesAreSummedOverTheRowsCallsAndShownOnce) {
  // 8.x keys are dates since 2001 with six decimals; 7.x keys are whole
  // seconds since 1970 (437000000 since 2001 is 1415307200 since 1970).
  writeRingDurations({{"437000000.250000", 12},
                      {"437000100.000000", 5},
                      {"437000200.500000", 7},
                      {"437000300.000000", 0},
                      {"1415307200", 9}});
  struct Case {
    const char* version;
    bool chinese;
    FakeCall call;
    std::string label, expected;
    bool off = false;  // CallHistoryRingDuration
  } cases[] = {
      {"8.1",
       false,
       {.occurrences = occurrences({437000000.25}),
        .number = kBeijingMobile,
        .recordId = 4},
       "mobile",
       "mobile 北京市 (12sec)"},
      {"8.1",
       false,
       {.occurrences = occurrences({437000000.25}),
        .number = kBeijingMobile,
        .recordId = 4},
       "mobile",
       "mobile 北京市",
       true},
      {"8.1",
       false,
       {.occurrences = occurrences({437000000.25, 437000100.0, 437000200.5}),
        .number = kShanghaiMobile},
       "",
       "上海市 (24sec)"},
      // No record, and a record of 0 seconds: nothing shown.
      {"8.1",
       false,
       {.occurrences = occurrences({437000300.0, 437000400.0}),
        .number = testing::kUnknownNumber},
       "unknown",
       "unknown"},
      // Without occurrences the call's own date; the unit is localised.
      {"8.1",
       true,
       {.date = Date{437000000.25}, .number = testing::kUnknownNumber},
       "",
       "(12秒)"},
      {"7.1",
       false,
       {.occurrences = occurrences({437000000}, false),
        .number = testing::kUnknownNumber},
       "unknown",
       "unknown (9sec)"},
      // The 8.x occurrence key is not looked at on 7.x.
      {"7.1",
       false,
       {.occurrences = occurrences({437000000}, true),
        .number = testing::kUnknownNumber},
       "unknown",
       "unknown"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    begin({{"CallHistoryRingDuration", !c.off}}, c.version);
    if (c.chinese) proc_->setLocalizedStrings({{"sec", "秒"}});
    auto row = shown(c.call, "x", c.label);
    decorate(row);
    // The same row decorated again (a reused cell that kept its texts).
    decorate(row);
    EXPECT_EQ(labelText(row), c.expected);
  }
}

// --- Avatars and the call-type icon

TEST_F(RecentsTest, BlanksFollowTheFontSizesAndAreNotRepeated) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  struct Case {
    double nameSize, labelSize;
    size_t nameBlanks, labelBlanks;
  } cases[] = {{17, 14, 7, 8},   {15.5, 12, 7, 10}, {14, 13, 8, 8},
               {13, 11, 9, 10},  {21.5, 15, 6, 8},  {20, 16, 6, 10},
               {18.5, 15, 6, 8}, {19, 12, 7, 10}};
  for (const Case& c : cases) {
    auto row = shown({.number = testing::kUnknownNumber}, "Li Lei", "mobile",
                     c.nameSize, c.labelSize);
    decorate(row);
    decorate(row);
    EXPECT_EQ(host_->row(row).name->text(),
              std::string(c.nameBlanks, ' ') + "Li Lei")
        << c.nameSize;
    EXPECT_EQ(labelText(row), std::string(c.labelBlanks, ' ') + "mobile")
        << c.labelSize;
  }
}

TEST_F(RecentsTest, CallTypeIconMovesAfterTheNameOrToTheLabelLine) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  auto row = shown({.number = testing::kUnknownNumber}, "Li Lei", "mobile");
  decorate(row);
  decorate(row);
  auto& r = host_->row(row);
  EXPECT_TRUE(r.icon->isHidden());
  EXPECT_EQ(r.icon->alpha(), 0);
  // One moved icon, however often the row is decorated.
  auto content = row->contentView();
  int icons = 0;
  for (auto& v : content->subviews()) icons += v->tag() == 10086;
  ASSERT_EQ(icons, 1);
  auto icon =
      std::dynamic_pointer_cast<ui::UIImageView>(content->viewWithTag(10086));
  ASSERT_TRUE(icon);
  EXPECT_EQ(icon->image(), r.icon->image());
  const double nameEnd = 15 + ui::textWidth(r.name->text(), r.name->font());
  EXPECT_DOUBLE_EQ(icon->frame().origin.x, nameEnd + 8);
  EXPECT_EQ(icon->frame().size, (platform::Size{16, 16}));
  const double nameLineY = icon->frame().origin.y;

  // A grouped row: after the count "(3)".
  r.grouped = 3;
  run([&] { controller_->avatarCell(row); });
  EXPECT_DOUBLE_EQ(icon->frame().origin.x,
                   nameEnd + 8 + ui::textWidth("(3)", r.name->font()) + 8);

  // A name too long for the line: after the label, on its line.
  r.grouped = 1;
  r.name->setText(std::string(40, 'W'));
  run([&] { controller_->avatarCell(row); });
  EXPECT_DOUBLE_EQ(icon->frame().origin.x,
                   40 + ui::textWidth(r.label->text(), r.label->font()) + 8);
  EXPECT_GT(icon->frame().origin.y, nameLineY);
  // And a label too long as well: at 205.
  r.label->setText(std::string(40, 'W'));
  run([&] { controller_->avatarCell(row); });
  EXPECT_DOUBLE_EQ(icon->frame().origin.x, 205);
}

TEST_F(RecentsTest, BeforeEightTheCountComesFromItsViewAndTheIconSitsHigher) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}}, "7.1");
  auto row = shown({.number = testing::kUnknownNumber}, "Li Lei", "");
  auto& r = host_->row(row);
  r.grouped = 5;  // not asked before 8.0
  r.count->setText("(2)");
  r.count->setFont({"Helvetica", 12});
  decorate(row);
  auto icon = row->contentView()->viewWithTag(10086);
  ASSERT_TRUE(icon);
  const double nameEnd = 15 + ui::textWidth(r.name->text(), r.name->font());
  EXPECT_DOUBLE_EQ(icon->frame().origin.x,
                   nameEnd + 8 + ui::textWidth("(2)", r.count->font()) + 8);
  const double y7 = icon->frame().origin.y;

  // The same row on 8.x sits 4 points lower.
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  auto row8 = shown({.number = testing::kUnknownNumber}, "Li Lei", "");
  run([&] { controller_->avatarCell(row8); });
  auto icon8 = row8->contentView()->viewWithTag(10086);
  ASSERT_TRUE(icon8);
  EXPECT_DOUBLE_EQ(icon8->frame().origin.y, y7 + 4);
}

TEST_F(RecentsTest, AvatarIsTheCachedPictureOrLoadsBehindThePlaceholder) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  const ui::Pixel red{255, 0, 0, 255};
  auto withPicture = std::make_shared<FakePerson>(21, true, red);
  auto noPicture = std::make_shared<FakePerson>(22, false);
  auto row = shown({.number = kBeijingMobile, .person = withPicture}, "Li Lei",
                   "mobile");
  auto plain = shown({.number = kBeijingMobile, .person = noPicture},
                     "Han Meimei", "home");
  auto stranger = shown({.number = kShanghaiMobile}, kShanghaiMobile, "");
  decorate(row);
  decorate(plain);
  decorate(stranger);

  auto image = row->imageView();
  EXPECT_EQ(image->tag(), avatarViewTag(21));
  EXPECT_LT(image->tag(), 0);  // bit 31
  EXPECT_EQ(image->cornerRadius(), 20);
  EXPECT_TRUE(image->clipsToBounds());
  EXPECT_EQ(image->frame().size, (platform::Size{40, 40}));
  EXPECT_TRUE(testing::allPixels(image->image(), kPlaceholder));
  world_.advance(0);
  EXPECT_TRUE(testing::allPixels(image->image(), red));

  auto plainImage = plain->imageView();
  EXPECT_TRUE(testing::allPixels(plainImage->image(), kPlaceholder));
  EXPECT_EQ(plainImage->tag(), avatarViewTag(22));
  auto strangerImage = stranger->imageView();
  EXPECT_TRUE(testing::allPixels(strangerImage->image(), kPlaceholder));
  EXPECT_EQ(strangerImage->tag(), avatarViewTag(-1));

  // Now cached: a second row of the same contact shows it at once.
  auto again = shown({.number = kBeijingMobile, .person = withPicture},
                     "Li Lei", "mobile");
  decorate(again);
  EXPECT_TRUE(testing::allPixels(again->imageView()->image(), red));
}

TEST_F(RecentsTest, AvatarsOffLeaveTheRowAlone) {
  begin({{"EnableAvatar", true}, {"AvatarCallHistory", false}});
  auto row = shown({.number = testing::kUnknownNumber}, "Li Lei", "x");
  decorate(row);
  run([&] { controller_->avatarLayoutCell(row); });
  EXPECT_EQ(host_->row(row).name->text(), "Li Lei");
  EXPECT_FALSE(host_->row(row).icon->isHidden());
  EXPECT_EQ(row->imageView()->image(), nullptr);
  EXPECT_EQ(row->separatorInset().left, 15);
}

}  // namespace
}  // namespace zv
