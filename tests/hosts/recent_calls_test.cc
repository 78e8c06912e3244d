// The Phone host's list of recent calls read from the call-history
// databases of both generations: order, grouping, contacts and deletion.
#include "hosts/phone/recent_calls.h"

#include <gtest/gtest.h>

#include "platform/db/platform_schema.h"
#include "support/call_rows.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv::hosts {
namespace {

namespace schema = platform_schema;

class RecentCallsTest : public testing::SimTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(schema::createDatabase(root_ + schema::kCallHistoryStorePath,
                                       schema::Database::kCallHistoryStore));
    ASSERT_TRUE(schema::createDatabase(root_ + schema::kCallHistoryDbPath,
                                       schema::Database::kCallHistoryDb));
  }
};

TEST_F(RecentCallsTest, ModernCallsGroupWhileNumberAndKindRepeat) {
  testing::insertModernCall(root_, 1, 100.5, "10086", 0, false);
  testing::insertModernCall(root_, 2, 200.5, "10086", 0, false);
  testing::insertModernCall(root_, 3, 300.5, "10086", 30, false);
  testing::insertModernCall(root_, 4, 400.5, "10010", 12, true);
  testing::insertModernCall(root_, 5, 500.5, "10086", 0, false);
  testing::insertModernCall(root_, 6, 600.5, "10086", 0, false);
  auto& proc = world_.launch("com.apple.mobilephone");
  auto calls = proc.run([] { return loadRecentCalls(true); });
  ASSERT_EQ(calls.size(), 4u);
  EXPECT_EQ(calls[0].rows, (std::vector<int64_t>{6, 5}));
  EXPECT_EQ(calls[0].dates, (std::vector<double>{600.5, 500.5}));
  EXPECT_EQ(calls[0].kind, CallKind::Missed);
  EXPECT_EQ(calls[1].kind, CallKind::Dialled);
  EXPECT_EQ(calls[1].contactId, -1);  // the Recents list finds it
  EXPECT_EQ(calls[2].kind, CallKind::Received);
  EXPECT_EQ(calls[3].rows, (std::vector<int64_t>{2, 1}));

  EXPECT_TRUE(proc.run([&] { return deleteRecentCall(calls[0], true); }));
  auto left = proc.run([] { return loadRecentCalls(true); });
  ASSERT_EQ(left.size(), 3u);
  EXPECT_EQ(left[0].number, "10010");
  EXPECT_TRUE(proc.run([] { return deleteAllRecentCalls(true); }));
  EXPECT_TRUE(proc.run([] { return loadRecentCalls(true); }).empty());
}

TEST_F(RecentCallsTest, LegacyDatesCountFrom1970AndContactsComeWithTheCall) {
  testing::insertLegacyCall(root_, 1, 1415307200, "10086", 0, 4, "12");
  testing::insertLegacyCall(root_, 2, 1415307300, "10086", 0, 5, "NULL");
  auto& proc = world_.launch("com.apple.mobilephone");
  auto calls = proc.run([] { return loadRecentCalls(false); });
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].kind, CallKind::Dialled);
  EXPECT_EQ(calls[0].contactId, -1);
  EXPECT_EQ(calls[1].kind, CallKind::Missed);
  EXPECT_EQ(calls[1].contactId, 12);
  EXPECT_EQ(calls[1].dates, (std::vector<double>{437000000}));
  EXPECT_TRUE(proc.run([&] { return deleteRecentCall(calls[1], false); }));
  EXPECT_EQ(testing::columnValues<int64_t>(root_ + schema::kCallHistoryDbPath,
                                           "SELECT ROWID FROM call"),
            (std::vector<int64_t>{2}));
}

}  // namespace
}  // namespace zv::hosts
