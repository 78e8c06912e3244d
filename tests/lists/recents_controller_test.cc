// ZVRecentsController against a fake Recents screen: areas and ring times on
// the row label, avatars and the moved call-type icon, and the call-history
// backup kept in step (restored when the list appears, pruned by deletes).
// (The separator inset is tests/hooks/recents_e2e_test.cc's; the dates of
// 7.x's zvtool command lines are tests/search/call_history_test.cc's.)
#include "lists/recents_controller.h"

#include <gtest/gtest.h>

#include "lists_fixture.h"
#include "platform/ui/text_metrics.h"
#include "search/avatar_loader.h"
#include "support/call_rows.h"

namespace zv {
namespace {

using testing::FakeCall;
using testing::FakePerson;
using testing::kBeijingMobile;
using testing::kShanghaiMobile;
using testing::kUnknownNumber;

// A call from `number` (a contact when `id` is set) on the given dates, under
// the 8.x occurrence key or (`modern` false) the older one.
FakeCall at(std::vector<double> dates, std::string number, Value id = {},
            bool modern = true) {
  Array list;
  for (double d : dates)
    list.push_back(
        Dict{{modern ? "kCHCallOccurrenceDateKey" : "RecentCallDate", Date{d}},
             {"kCHCallOccurrenceDurationKey", 0.0}});
  return {.occurrences = list, .number = number, .recordId = id};
}
FakeCall from(std::string number, Value id = {}) {
  return {.number = number, .recordId = id};
}

class RecentsTest : public testing::RecentsControllerTest {
 protected:
  // Runs every decoration the row hook runs, in its order, `times` times
  // (more than once: a reused cell that kept its texts).
  void decorate(const rt::Id& cell, int times = 1) {
    run([&] {
      for (int i = 0; i < times; ++i) {
        controller_->areaCell(cell);
        controller_->ringCell(cell);
        controller_->avatarCell(cell);
      }
    });
  }
  // A new row showing `call` with the host's texts.
  std::shared_ptr<ui::UITableViewCell> shown(FakeCall call, std::string name,
                                             std::string label,
                                             double nameSize = 17,
                                             double labelSize = 14) {
    auto row = run([&] { return host_->makeCell(nameSize, labelSize); });
    host_->show(row, std::move(call), std::move(name), std::move(label));
    return row;
  }
  std::string labelText(const rt::Id& c) { return host_->row(c).label->text(); }
};

// --- Areas and ring times on the label

TEST_F(RecentsTest, LabelsGetAreaAndRingTimeOnceBySettingsAndVersion) {
  // 8.x keys are dates since 2001 with six decimals; 7.x keys are whole
  // seconds since 1970 (437000000 since 2001 is 1415307200 since 1970).
  writePlist("/var/mobile/Library/Preferences/zorvel.missed.plist",
             {{"437000000.250000", 12},
              {"437000100.000000", 5},
              {"437000200.500000", 7},
              {"437000300.000000", 0},
              {"1415307200", 9}});
  const Dict none, strangers{{"AreaOnlyStrangers", true}},
      strangersType{{"AreaOnlyStrangers", true}, {"AreaTypeCallHistory", true}},
      replace{{"AreaReplaceTextCallHistory", true}},
      noName{{"AreaNameCallHistory", false}},
      ring{{"CallHistoryRingDuration", true}};
  const std::string bj = "北京市";
  const FakeCall contact = from(kBeijingMobile, 12);
  struct Case {
    const char* version;
    Dict settings;
    FakeCall call;
    std::string label, expected;
  } cases[] = {
      // A contact's label gets the area after it; a stranger's is replaced.
      {"8.1", none, contact, "mobile", "mobile " + bj},
      {"8.1", none, from(kShanghaiMobile), "unknown", "上海市"},
      // A label the area already says (fully or more), or an empty one,
      // becomes the area alone; an unknown number keeps the host's text.
      {"8.1", none, contact, "北京", bj},
      {"8.1", none, contact, "", bj},
      {"8.1", none, from(kUnknownNumber), "unknown", "unknown"},
      {"8.1", strangersType, contact, "mobile", "mobile"},
      // A null record id is no contact.
      {"8.1", strangersType, from(kBeijingMobile), "", bj + " 中国联通"},
      {"8.1", replace, from(kBeijingMobile, 3), "mobile", bj},
      {"8.1", noName, from(kBeijingMobile), "unknown", "unknown"},
      // On 7.x the record id field is not asked: uid says who is a contact.
      {"7.1.2", strangers, {.number = kBeijingMobile, .uid = 8}, "x", "x"},
      {"7.1.2", strangers, {.number = kBeijingMobile, .recordId = 8}, "", bj},
      // Ring times, summed over the row's calls.
      {"8.1", ring, at({437000000.25}, kBeijingMobile, 4), "mobile",
       "mobile 北京市 (12sec)"},
      {"8.1", none, at({437000000.25}, kBeijingMobile, 4), "mobile",
       "mobile 北京市"},
      {"8.1", ring, at({437000000.25, 437000100, 437000200.5}, kShanghaiMobile),
       "", "上海市 (24sec)"},
      // No record, and a record of 0 seconds: nothing shown.
      {"8.1", ring, at({437000300, 437000400}, kUnknownNumber), "x", "x"},
      // Without occurrences the call's own date.
      {"8.1",
       ring,
       {.date = Date{437000000.25}, .number = kUnknownNumber},
       "",
       "(12sec)"},
      {"7.1", ring, at({437000000}, kUnknownNumber, {}, false), "x",
       "x (9sec)"},
      // The 8.x occurrence key is not looked at on 7.x.
      {"7.1", ring, at({437000000}, kUnknownNumber), "x", "x"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.version + (" " + c.expected));
    begin(c.settings, c.version);
    auto row = shown(c.call, "x", c.label);
    decorate(row, 2);
    EXPECT_EQ(labelText(row), c.expected);
  }
  // The unit is localised.
  begin(ring);
  proc_->setLocalizedStrings({{"sec", "秒"}});
  auto row =
      shown({.date = Date{437000000.25}, .number = kUnknownNumber}, "", "");
  decorate(row);
  EXPECT_EQ(labelText(row), "(12秒)");
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
    auto row = shown(from(kUnknownNumber), "Li Lei", "mobile", c.nameSize,
                     c.labelSize);
    decorate(row, 2);
    EXPECT_EQ(host_->row(row).name->text(),
              std::string(c.nameBlanks, ' ') + "Li Lei")
        << c.nameSize;
    EXPECT_EQ(labelText(row), std::string(c.labelBlanks, ' ') + "mobile")
        << c.labelSize;
  }
}

TEST_F(RecentsTest, CallTypeIconMovesAfterTheNameOrCountOrToTheLabelLine) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  auto row = shown(from(kUnknownNumber), "Li Lei", "mobile");
  decorate(row, 2);
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

  // Before 8.0 the count comes from its own view (the grouped count is not
  // asked) and the icon sits 4 points higher.
  begin({{"EnableAvatar", true}, {"EnableArea", false}}, "7.1");
  auto old = shown(from(kUnknownNumber), "Li Lei", "mobile");
  auto& o = host_->row(old);
  o.grouped = 5;
  o.count->setText("(2)");
  o.count->setFont({"Helvetica", 12});
  decorate(old);
  auto oldIcon = old->contentView()->viewWithTag(10086);
  ASSERT_TRUE(oldIcon);
  EXPECT_DOUBLE_EQ(oldIcon->frame().origin.x,
                   nameEnd + 8 + ui::textWidth("(2)", o.count->font()) + 8);
  EXPECT_DOUBLE_EQ(oldIcon->frame().origin.y, nameLineY - 4);
}

TEST_F(RecentsTest, AvatarIsTheCachedPictureOrLoadsBehindThePlaceholder) {
  begin({{"EnableAvatar", true}, {"EnableArea", false}});
  const ui::Pixel red{255, 0, 0, 255};
  auto person = std::make_shared<FakePerson>(21, true, red);
  auto row = shown({.number = kBeijingMobile, .person = person}, "Li", "");
  auto stranger = shown(from(kShanghaiMobile), kShanghaiMobile, "");
  decorate(row);
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
  EXPECT_TRUE(testing::allPixels(stranger->imageView()->image(), kPlaceholder));
  EXPECT_EQ(stranger->imageView()->tag(), avatarViewTag(-1));

  // Now cached: a second row of the same contact shows it at once.
  auto again = shown({.number = kBeijingMobile, .person = person}, "Li", "");
  decorate(again);
  EXPECT_TRUE(testing::allPixels(again->imageView()->image(), red));
}

TEST_F(RecentsTest, AvatarsOffLeaveTheRowAlone) {
  begin({{"EnableAvatar", true}, {"AvatarCallHistory", false}});
  auto row = shown(from(kUnknownNumber), "Li Lei", "x");
  decorate(row);
  run([&] { controller_->avatarLayoutCell(row); });
  EXPECT_EQ(host_->row(row).name->text(), "Li Lei");
  EXPECT_FALSE(host_->row(row).icon->isHidden());
  EXPECT_EQ(row->imageView()->image(), nullptr);
  EXPECT_EQ(row->separatorInset().left, 15);
}

// --- The call-history backup

class RecentsSyncTest : public RecentsTest {
 protected:
  // The controller with the history limit `limit`; zvtool's command lines
  // are recorded, not run.
  void begin(int limit, const char* version = "8.1") {
    RecentsTest::begin({{"CallHistoryLimit", limit}}, version);
    proc_->setSystemHandler([this](const std::string& command) {
      commands_.push_back(command);
      return 0;
    });
    vc_ = run([] { return rt::create(rt::registerClass("FakeVC")); });
  }
  std::vector<double> dates(const char* table) {
    return testing::columnValues<double>(
        root_ + platform_schema::kCallHistoryStorePath,
        std::string("SELECT ZDATE FROM ") + table + " ORDER BY ZDATE");
  }
  // `count` calls in `table` with dates first, first + 1, ...
  void addCalls(const char* table, int firstPk, double first, int count) {
    for (int i = 0; i < count; ++i)
      testing::insertModernCall(root_, firstPk + i, first + i, "10086", 0,
                                false, table);
  }
  // Row `row` on screen shows a call on `dates` (a pair's second: the
  // occurrence key).
  void putRow(int64_t row, std::vector<std::pair<double, const char*>> dates) {
    Array occurrences;
    for (auto [date, key] : dates)
      occurrences.push_back(Dict{{key, Date{date}}});
    host_->table[row] = shown({.occurrences = occurrences}, "x", "");
  }
  size_t changedPosts() {
    size_t n = 0;
    for (auto& e : world_.events("post"))
      n += e.detail == "kCallHistoryDatabaseChangedNotification";
    return n;
  }

  rt::Id vc_;
  std::vector<std::string> commands_;
};

TEST_F(RecentsSyncTest, AppearingRestoresOlderBackedUpCallsUpToTheLimit) {
  addCalls("ZCALLRECORD", 1, 1000, 100);
  addCalls("ZVZCALLRECORD", 500, 100, 60);  // older than every listed call
  addCalls("ZVZCALLRECORD", 900, 5000, 1);  // newer: not put back
  // A limit of 100 restores and deletes nothing.
  begin(100);
  putRow(0, {{100, "kCHCallOccurrenceDateKey"}});
  run([&] {
    controller_->syncDeletedCalls(vc_);
    controller_->deleteRecents(vc_, nullptr, 1, 0);
    controller_->deleteAllCalls();
  });
  world_.advance(1);
  EXPECT_EQ(dates("ZCALLRECORD").size(), 100u);
  EXPECT_EQ(dates("ZVZCALLRECORD").size(), 61u);
  EXPECT_EQ(changedPosts(), 0u);

  begin(150);
  size_t observed = 0;
  run([&] {
    platform::current().observe(
        "kCallHistoryDatabaseChangedNotification", [&] { ++observed; },
        platform::Scope::Process);
    controller_->syncDeletedCalls(vc_);
  });
  world_.advance(0);
  auto listed = dates("ZCALLRECORD");
  ASSERT_EQ(listed.size(), 150u);
  EXPECT_EQ(listed.front(), 110);  // the 50 newest of the older ones
  EXPECT_EQ(listed.back(), 1099);
  EXPECT_TRUE(dates("ZVZCALLRECORD").empty());
  EXPECT_EQ(observed, 1u);
  EXPECT_EQ(host_->significantChanges, 0);

  // Nothing left to restore: no reload asked.
  run([&] { controller_->syncDeletedCalls(vc_); });
  world_.advance(0);
  EXPECT_EQ(observed, 1u);
}

TEST_F(RecentsSyncTest, DeletingARowRemovesItsCallsFromTheBackupByTheirDates) {
  addCalls("ZVZCALLRECORD", 500, 100.5, 5);  // 100.5 ... 104.5
  begin(150);
  putRow(2, {{101.5, "kCHCallOccurrenceDateKey"},
             {103.5, "kCHCallOccurrenceDateKey"},
             {104.5, "RecentCallDate"}});  // not the 8.x key
  run([&] {
    // Inserting (style 2) and other rows change nothing.
    controller_->deleteRecents(vc_, nullptr, 2, 2);
    controller_->deleteRecents(vc_, nullptr, 1, 7);
  });
  EXPECT_EQ(dates("ZVZCALLRECORD").size(), 5u);
  run([&] { controller_->deleteRecents(vc_, nullptr, 1, 2); });
  EXPECT_EQ(dates("ZVZCALLRECORD"), (std::vector<double>{100.5, 102.5, 104.5}));
}

// Before 8.0 zvtool restores, and the host is told to reload instead.
TEST_F(RecentsSyncTest, BeforeEightRestoringAsksTheHostToReload) {
  testing::execSql(root_ + platform_schema::kCallHistoryDbPath,
                   platform_schema::callTableSql("deleted") +
                       "; INSERT INTO deleted (address, date) VALUES ('1', 5)");
  begin(180, "7.1");
  run([&] { controller_->syncDeletedCalls(vc_); });
  EXPECT_EQ(commands_,
            (std::vector<std::string>{"/Library/Zorvel/zvtool -s 80"}));
  EXPECT_EQ(host_->significantChanges, 1);
  EXPECT_EQ(changedPosts(), 0u);
}

}  // namespace
}  // namespace zv
