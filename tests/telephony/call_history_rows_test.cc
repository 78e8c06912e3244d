// Every finished call leaves one row in the call-history database of the
// device's system generation, written before any process hears the call
// ended.
#include <gmock/gmock.h>

#include <cmath>

#include "search/call_history.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

using platform::CallId;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class CallHistoryRowsTest : public TelephonyTest,
                            public ::testing::WithParamInterface<const char*> {
 protected:
  bool modern() const { return std::string(GetParam()) >= "8"; }
  std::vector<HistoryRow> rows() { return historyRows(modern()); }
  // A row as this generation writes it: whole seconds and flags on 7.x, the
  // answered column and the call type on 8.x.
  HistoryRow row(std::string address, double date, double duration,
                 bool outgoing, bool answered, int read, bool video = false,
                 int64_t record = -1) const {
    const int flags =
        (outgoing ? ps::kCallFlagsOutgoing : ps::kCallFlagsIncoming) |
        (video ? ps::kCallFlagVideo : 0);
    const int type = video ? ps::kCallTypeVideo : ps::kCallTypeVoice;
    return modern() ? HistoryRow{address,  date, duration, outgoing,
                                 answered, read, -1,       type}
                    : HistoryRow{
                          address, std::floor(date), duration, outgoing, false,
                          read,    record,           flags};
  }
};

// An unanswered call rings twelve seconds and leaves one row, there when
// a process hears the call end.
TEST_P(CallHistoryRowsTest, UnansweredCallLeavesOneRowBeforeItsEndIsHeard) {
  auto& incall = launch("com.apple.InCallService", GetParam());
  const double start = world_.now();
  std::vector<int> heard;
  incall.run([&] {
    platform::observeCallStatus([&](const rt::Id& call) {
      const int status = rt::send(call, sdk::TUCall::status);
      heard.push_back(status);
      if (status < platform::kCallEnding) return;
      // As a call screen going away does: the ring-duration store reads
      // the newest row and attaches the ring time to it.
      ASSERT_EQ(rows().size(), 1u) << "at status " << status;
      if (status == platform::kCallEnded)
        ZVCallHistory::sharedInstance()->saveLastRingDuration(12);
    });
  });
  auto ringing = [&] {
    return incall.run([] { return describe(incoming()); });
  };
  const CallId id = network().incoming("13800138000");
  world_.advance(12);
  EXPECT_EQ(ringing(), "4 13800138000 -1 nil");
  EXPECT_TRUE(rows().empty()) << "a row before the call ended";
  network().remoteHangup(id);
  world_.advance(0);
  EXPECT_EQ(heard, (std::vector<int>{4, 5, 6}));
  EXPECT_EQ(ringing(), "none");
  // A missed call is unread; only the generation's own database is written.
  EXPECT_EQ(rows(), std::vector{row("13800138000", start, 0, false, false, 0)});
  EXPECT_FALSE(std::filesystem::exists(
      root_ + (modern() ? ps::kCallHistoryDbPath : ps::kCallHistoryStorePath)));
  incall.run([&] {
    const double key =
        modern() ? start - ps::kReferenceDateOffset : std::floor(start);
    EXPECT_EQ(ZVCallHistory::sharedInstance()->getRingDuration(key), 12);
  });
}

TEST_P(CallHistoryRowsTest, AnsweredCallsKeepTheirStartAndConnectedTime) {
  launch("com.apple.mobilephone", GetParam());
  const double inAt = world_.now();
  const CallId in = network().incoming("+86 10 8888 6666");
  world_.advance(5);
  network().answer(in);
  world_.advance(30);
  network().hold(in);
  world_.advance(10);
  network().resume(in);
  world_.advance(5);
  network().end(in);

  world_.advance(60);
  const double outAt = world_.now();
  const CallId out = network().dial("10086");
  world_.advance(3);
  network().connect(out);
  world_.advance(20);
  network().remoteHangup(out);

  // The user declines a third call: no time connected, but seen. Held time
  // counts as connected.
  const CallId declined = network().incoming("13900139000");
  world_.advance(2);
  network().decline(declined);
  EXPECT_EQ(rows(),
            (std::vector{row("+86 10 8888 6666", inAt, 45, false, true, 1),
                         row("10086", outAt, 20, true, true, 1),
                         row("13900139000", outAt + 23, 0, false, false, 1)}));
}

TEST_P(CallHistoryRowsTest, HiddenAndVideoCallsAndContactsInTheRow) {
  writeAddressBook({{7, "138-0013-8000", "_$!<Mobile>!$_"}});
  launch("com.apple.springboard", GetParam());
  const double at = world_.now();
  network().remoteHangup(network().incoming("", {.hidden = true}));
  network().remoteHangup(network().incoming("13800138000", {.video = true}));
  // A withheld number is empty, not NULL.
  EXPECT_EQ(rows(),
            (std::vector{row("", at, 0, false, false, 0),
                         row("13800138000", at, 0, false, false, 0, true, 7)}));
  // On 8.x the hidden caller's number is unavailable, and Core Data's
  // highest key follows the rows.
  if (modern()) {
    EXPECT_EQ(columnValues<int64_t>(root_ + ps::kCallHistoryStorePath,
                                    "SELECT ZNUMBER_AVAILABILITY FROM "
                                    "ZCALLRECORD WHERE Z_PK = 1 UNION ALL "
                                    "SELECT Z_MAX FROM Z_PRIMARYKEY"),
              (std::vector<int64_t>{1, 2}));
  }
}

TEST_P(CallHistoryRowsTest, NewRowsFollowEveryKeyEverUsedAndTheNewestStay) {
  // A device with a full history whose newest rows (keys up to 150) were
  // deleted: the new call takes a key above every key ever given (a row
  // put back from a backup keeps its old key), and the platform keeps its
  // newest 100 calls, the oldest going.
  const auto which = ps::callHistoryDatabase(GetParam());
  const std::string file = root_ + ps::callHistoryPath(which);
  ASSERT_TRUE(ps::createDatabase(file, which));
  const std::string table =
      modern() ? "ZCALLRECORD (Z_PK, ZDATE)" : "call (ROWID, date)";
  std::string values = "(150, 150)";
  std::vector<int64_t> kept;
  for (int k = 1; k <= 100; ++k) {
    values += ", (" + std::to_string(k) + ", " + std::to_string(k) + ")";
    if (k > 1) kept.push_back(k);
  }
  kept.push_back(151);
  execSql(
      file,
      "INSERT INTO " + table + " VALUES " + values +
          (modern() ? "; DELETE FROM ZCALLRECORD WHERE Z_PK = 150; "
                      "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_MAX) VALUES (1, 150)"
                    : "; DELETE FROM call WHERE ROWID = 150"));
  launch("com.apple.springboard", GetParam());
  const double at = world_.now();
  network().remoteHangup(network().incoming("13800138000"));
  EXPECT_EQ(
      columnValues<int64_t>(file, modern() ? "SELECT Z_PK FROM ZCALLRECORD"
                                           : "SELECT ROWID FROM call"),
      kept);
  EXPECT_EQ(rows().back(), row("13800138000", at, 0, false, false, 0));
}

INSTANTIATE_TEST_SUITE_P(Generations, CallHistoryRowsTest,
                         ::testing::Values("7.1", "8.1"));

// The world's system version chooses the database; a failed write is
// logged and the call still ends.
TEST_F(TelephonyTest, TheWorldsSystemVersionChoosesTheDatabaseAndAFailedWrite) {
  launch("com.apple.springboard", "8.1");
  network().setSystemVersion("7.0.4");
  network().remoteHangup(network().incoming("10086"));
  EXPECT_EQ(dbRows().size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(root_ + ps::kCallHistoryStorePath));
  // A folder where the database file should be.
  network().setSystemVersion("8.1");
  std::filesystem::create_directories(root_ + ps::kCallHistoryStorePath);
  const CallId id = network().incoming("10086");
  network().remoteHangup(id);
  EXPECT_EQ(network().call(id)->status, platform::kCallEnded);
  EXPECT_THAT(effects("log"),
              ElementsAre(HasSubstr("call history not written")));
}

}  // namespace
}  // namespace zv::testing
