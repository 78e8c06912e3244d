// The Recents controller keeps the call-history backup in step: restoring
// when the list appears, deleting one call or all of them. (The dates of
// 7.x's zvtool command lines are tests/search/call_history_test.cc's and,
// end to end, tests/hooks/recents_e2e_test.cc's.)
#include <gtest/gtest.h>

#include "lists/recents_controller.h"
#include "lists_fixture.h"
#include "support/call_rows.h"

namespace zv {
namespace {

class RecentsSyncTest : public testing::RecentsControllerTest {
 protected:
  // The controller with the history limit `limit`; zvtool's command lines
  // are recorded, not run.
  void begin(int limit, const char* version = "8.1") {
    ListControllerTest::begin({{"CallHistoryLimit", limit}}, version);
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
    auto cell = run([&] { return host_->makeCell(); });
    host_->show(cell, {.occurrences = occurrences}, "x", "");
    host_->table[row] = cell;
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

  run([&] { controller_->deleteAllCalls(); });
  EXPECT_TRUE(dates("ZVZCALLRECORD").empty());
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
