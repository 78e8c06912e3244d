// Every finished call leaves one row in the call-history database of the
// device's system generation, written before any process hears the call
// ended.
#include <cmath>

#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "search/call_history.h"
#include "support/call_rows.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

using platform::CallId;
using platform::kCallEnded;
using platform::kCallRinging;

class CallHistoryRowsTest : public TelephonyTest,
                            public ::testing::WithParamInterface<const char*> {
 protected:
  bool modern() const { return std::string(GetParam()) >= "8"; }
  std::vector<HistoryRow> rows() { return modern() ? storeRows() : dbRows(); }
  // The date as the generation stores it.
  double stored(double unixDate) const {
    return modern() ? unixDate : std::floor(unixDate);
  }
};

TEST_P(CallHistoryRowsTest, UnansweredCallRingsTwelveSecondsAndLeavesOneRow) {
  auto& springboard = launch("com.apple.springboard", GetParam());
  const double start = world_.now();
  const CallId id = network().incoming("13800138000");
  world_.advance(12);
  springboard.run([&] {
    rt::Id call =
        rt::send(platform::callCenter(), sdk::TUCallCenter::incomingCall);
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(rt::send(call, sdk::TUCall::status), kCallRinging);
  });
  EXPECT_TRUE(rows().empty()) << "a row before the call ended";
  network().remoteHangup(id);
  world_.advance(0);

  auto history = rows();
  ASSERT_EQ(history.size(), 1u);
  EXPECT_EQ(history[0].address, "13800138000");
  EXPECT_DOUBLE_EQ(history[0].date, stored(start));
  EXPECT_EQ(history[0].duration, 0);
  EXPECT_FALSE(history[0].outgoing);
  EXPECT_EQ(history[0].read, 0) << "a missed call is unread";
  EXPECT_FALSE(std::filesystem::exists(
      root_ + (modern() ? ps::kCallHistoryDbPath : ps::kCallHistoryStorePath)))
      << "only the generation's own database is written";
  springboard.run([&] {
    EXPECT_EQ(rt::send(platform::callCenter(), sdk::TUCallCenter::incomingCall),
              nullptr);
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

  // The user declines a third call: no time connected, but seen.
  const CallId declined = network().incoming("13900139000");
  world_.advance(2);
  network().decline(declined);

  auto history = rows();
  ASSERT_EQ(history.size(), 3u);
  EXPECT_DOUBLE_EQ(history[0].date, stored(inAt));
  EXPECT_EQ(history[0].duration, 45) << "held time counts as connected";
  EXPECT_FALSE(history[0].outgoing);
  EXPECT_EQ(history[0].read, 1);
  EXPECT_EQ(history[1].address, "10086");
  EXPECT_DOUBLE_EQ(history[1].date, stored(outAt));
  EXPECT_EQ(history[1].duration, 20);
  EXPECT_TRUE(history[1].outgoing);
  EXPECT_EQ(history[2].duration, 0);
  EXPECT_EQ(history[2].read, 1) << "a declined call was seen";
  if (modern()) {
    EXPECT_TRUE(history[0].answered);
    EXPECT_TRUE(history[1].answered);
    EXPECT_FALSE(history[2].answered);
  } else {
    EXPECT_EQ(history[0].kind, ps::kCallFlagsIncoming);
    EXPECT_EQ(history[1].kind, ps::kCallFlagsOutgoing);
  }
}

TEST_P(CallHistoryRowsTest, HiddenAndVideoCallsAndContactsInTheRow) {
  writeAddressBook({{7, "138-0013-8000", "_$!<Mobile>!$_"}});
  launch("com.apple.springboard", GetParam());
  network().remoteHangup(network().incoming("", {.hidden = true}));
  network().remoteHangup(network().incoming("13800138000", {.video = true}));

  auto history = rows();
  ASSERT_EQ(history.size(), 2u);
  EXPECT_EQ(history[0].address, "") << "a withheld number is empty, not NULL";
  if (modern()) {
    EXPECT_EQ(history[0].kind, ps::kCallTypeVoice);
    EXPECT_EQ(history[1].kind, ps::kCallTypeVideo);
    sql::Database db(root_ + ps::kCallHistoryStorePath);
    sql::Statement s(db,
                     "SELECT ZNUMBER_AVAILABILITY FROM ZCALLRECORD ORDER BY "
                     "Z_PK");
    ASSERT_TRUE(s.step());
    EXPECT_EQ(s.int64(0), 1) << "the hidden caller's number is unavailable";
    sql::Statement keys(db, "SELECT Z_MAX FROM Z_PRIMARYKEY WHERE Z_ENT = 1");
    ASSERT_TRUE(keys.step());
    EXPECT_EQ(keys.int64(0), 2) << "Core Data's highest key follows the rows";
  } else {
    EXPECT_EQ(history[0].recordId, -1);
    EXPECT_EQ(history[1].recordId, 7);
    EXPECT_EQ(history[1].kind, ps::kCallFlagsIncoming | ps::kCallFlagVideo);
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
  for (int key : {150, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}) {
    if (modern())
      insertModernCall(root_, key, 400000000 + key, "10010", 61);
    else
      insertLegacyCall(root_, key, 1400000000 + key, "10010", 61);
  }
  std::string more;
  for (int key = 11; key <= 100; ++key)
    more += std::string(more.empty() ? "" : ", ") + "(" + std::to_string(key) +
            ", " + std::to_string((modern() ? 400000000 : 1400000000) + key) +
            ")";
  execSql(file, modern()
                    ? "INSERT INTO ZCALLRECORD (Z_PK, ZDATE) VALUES " + more +
                          "; DELETE FROM ZCALLRECORD WHERE Z_PK = 150; "
                          "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_MAX) "
                          "VALUES (1, 150)"
                    : "INSERT INTO call (ROWID, date) VALUES " + more +
                          "; DELETE FROM call WHERE ROWID = 150");
  launch("com.apple.springboard", GetParam());
  network().remoteHangup(network().incoming("13800138000"));

  sql::Database db(file);
  sql::Statement keys(db, modern() ? "SELECT MIN(Z_PK), MAX(Z_PK), COUNT(*) "
                                     "FROM ZCALLRECORD"
                                   : "SELECT MIN(ROWID), MAX(ROWID), "
                                     "COUNT(*) FROM call");
  ASSERT_TRUE(keys.step());
  EXPECT_EQ(keys.int64(0), 2) << "the oldest call is trimmed";
  EXPECT_EQ(keys.int64(1), 151);
  EXPECT_EQ(keys.int64(2), 100);
  sql::Statement newest(
      db, modern() ? "SELECT ZADDRESS, ZDURATION FROM ZCALLRECORD ORDER BY "
                     "Z_PK DESC LIMIT 1"
                   : "SELECT address, duration FROM call ORDER BY ROWID "
                     "DESC LIMIT 1");
  ASSERT_TRUE(newest.step());
  EXPECT_EQ(newest.text(0), "13800138000");
  EXPECT_EQ(newest.real(1), 0);
}

TEST_P(CallHistoryRowsTest, TheRowIsThereWhenTheProcessHearsTheCallEnded) {
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
      auto history = rows();
      ASSERT_EQ(history.size(), 1u) << "at status " << status;
      if (status == kCallEnded)
        ZVCallHistory::sharedInstance()->saveLastRingDuration(12);
    });
  });
  const CallId id = network().incoming("13800138000");
  world_.advance(12);
  network().remoteHangup(id);
  world_.advance(0);
  EXPECT_EQ(heard, (std::vector<int>{4, 5, 6}));
  incall.run([&] {
    const double key =
        modern() ? start - ps::kReferenceDateOffset : std::floor(start);
    EXPECT_EQ(ZVCallHistory::sharedInstance()->getRingDuration(key), 12);
  });
}

INSTANTIATE_TEST_SUITE_P(Generations, CallHistoryRowsTest,
                         ::testing::Values("7.1", "8.1"));

TEST_F(TelephonyTest, TheWorldsSystemVersionChoosesTheDatabase) {
  launch("com.apple.springboard", "8.1");
  network().setSystemVersion("7.0.4");
  network().remoteHangup(network().incoming("10086"));
  EXPECT_EQ(dbRows().size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(root_ + ps::kCallHistoryStorePath));
}

TEST_F(TelephonyTest, AFailedHistoryWriteIsLoggedAndTheCallStillEnds) {
  launch("com.apple.springboard", "8.1");
  // A folder where the database file should be.
  std::filesystem::create_directories(root_ + ps::kCallHistoryStorePath);
  const CallId id = network().incoming("10086");
  network().remoteHangup(id);
  EXPECT_EQ(network().call(id)->status, kCallEnded);
  auto logs = world_.events("log");
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_NE(logs[0].detail.find("call history not written"), std::string::npos);
}

}  // namespace
}  // namespace zv::testing
