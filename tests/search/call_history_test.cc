#include "search/call_history.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <future>

#include "platform/db/call_records.h"
#include "platform/db/platform_schema.h"
#include "platform/plist.h"
#include "search/ring_duration_file.h"
#include "support/call_rows.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;

class CallHistoryTest : public testing::SimTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(
        ps::createDatabase(root_ + kStore, ps::Database::kCallHistoryStore));
    ASSERT_TRUE(ps::createDatabase(root_ + ps::kCallHistoryDbPath,
                                   ps::Database::kCallHistoryDb));
  }
  static constexpr const char* kStore = ps::kCallHistoryStorePath;
  void exec(const char* devicePath, const std::string& sql) {
    testing::execSql(root_ + devicePath, sql);
  }
  std::vector<double> column(const std::string& sql) {
    return testing::columnValues<double>(root_ + kStore, sql);
  }
  void addCall(int pk, double date, double duration) {
    testing::insertModernCall(root_, pk, date, "10086", duration);
  }
  platform::SimProcess& launch(const char* version = "8.1",
                               const char* bundle = "com.apple.springboard") {
    platform::DeviceFacts facts;
    facts.systemVersion = version;
    return world_.launch(bundle, facts);
  }

  std::optional<Dict> ringFile() {
    return plist::readDictionary(root_ + ZVCallHistory::kRingDurationPath);
  }
  size_t posts() { return world_.events("post").size(); }

  // Puts the built zvtool where the device keeps it and adds its triggers.
  void installTool() {
    const fs::path tool = fs::path(root_) / "Library/Zorvel/zvtool";
    fs::create_directories(tool.parent_path());
    fs::copy_file(ZV_BINARY_DIR "/zvtool", tool,
                  fs::copy_options::overwrite_existing);
    ASSERT_EQ(
        platform::runDeviceCommand(root_, "/Library/Zorvel/zvtool --install"),
        0);
  }
};

TEST_F(CallHistoryTest, MissedCallGetsItsRingTimeUnderASixDecimalKey) {
  addCall(1, 437875200.25, 0);
  auto& springboard = launch();
  springboard.run([&] {
    auto history = ZVCallHistory::sharedInstance();
    history->saveLastRingDuration(12);
    EXPECT_EQ((*ringFile())["437875200.250000"].longLongValue(), 12);
    EXPECT_EQ(history->getRingDuration(437875200.25), 12);
    EXPECT_EQ(history->getRingDuration(437875200.250001), 0);
    EXPECT_EQ(history->getRingDuration(0), 0);
  });
  // Other processes hear of it 2.0 s after the last of quick saves, once.
  world_.advance(1.5);
  addCall(2, 437875201, 0);
  springboard.run(
      [] { ZVCallHistory::sharedInstance()->saveLastRingDuration(7); });
  world_.advance(1.9);
  EXPECT_EQ(posts(), 0u);
  world_.advance(0.2);
  ASSERT_EQ(posts(), 1u);
  EXPECT_EQ(world_.events("post")[0].detail, "ZVCallHistoryChanged");
  EXPECT_EQ(ringFile()->size(), 2u);

  // A second save for the same call keeps the first value, posts nothing.
  springboard.run([&] {
    ZVCallHistory::sharedInstance()->saveLastRingDuration(30);
    EXPECT_EQ(ZVCallHistory::sharedInstance()->getRingDuration(437875201), 7);
  });
  world_.advance(5);
  EXPECT_EQ(posts(), 1u);
}

// A file that cannot be written records nothing either, and says so.
TEST_F(CallHistoryTest, ConnectedCallsAndMissingDatabasesRecordNothing) {
  addCall(1, 437875200, 0);
  addCall(2, 437875300, 45);  // newest, answered
  launch().run([&] {
    ZVCallHistory::sharedInstance()->saveLastRingDuration(8);
    fs::create_directories(root_ + ZVCallHistory::kRingDurationPath);
    addCall(3, 437875400, 0);
    ZVCallHistory::sharedInstance()->saveLastRingDuration(8);
    fs::remove(root_ + ps::kCallHistoryStorePath);
    ZVCallHistory::sharedInstance()->saveLastRingDuration(8);
  });
  world_.advance(5);
  EXPECT_EQ(ringFile(), std::nullopt);
  EXPECT_EQ(posts(), 0u);
  ASSERT_EQ(world_.events("log").size(), 1u);
  EXPECT_TRUE(world_.events("log")[0].detail.starts_with(
      "ring duration not written: "));
}

TEST_F(CallHistoryTest, RingSecondsStayWithTheirCallAndNeverWaitForTheFile) {
  // The ringing call's own row is not written yet: the newest row is a call
  // from an hour before, which does not get its seconds.
  addCall(1, 437875200 - 3600, 0);
  auto& springboard = launch();
  auto save = [&] {
    springboard.run(
        [] { ZVCallHistory::sharedInstance()->saveLastRingDuration(6); });
  };
  save();
  EXPECT_EQ(ringFile(), std::nullopt);
  // Another process holds the ring-duration file: the save returns at once
  // and the seconds are written when it lets go.
  addCall(2, 437875200, 0);
  const std::string lock = root_ + ZVCallHistory::kRingDurationPath + ".lock";
  fs::create_directories(fs::path(lock).parent_path());
  const int fd = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);
  auto saving = std::async(std::launch::async, save);
  const bool prompt =
      saving.wait_for(std::chrono::seconds(2)) == std::future_status::ready;
  close(fd);
  saving.get();
  EXPECT_TRUE(prompt) << "the main thread waited for the file lock";
  world_.advance(0.1);
  ASSERT_TRUE(ringFile());
  EXPECT_EQ((*ringFile())["437875200.000000"].longLongValue(), 6);
}

TEST_F(CallHistoryTest, EntriesOlderThanTheOldestCallExpireOnLoad) {
  addCall(1, 437000000, 0);
  const std::string path = root_ + ZVCallHistory::kRingDurationPath;
  ASSERT_TRUE(plist::writeFile(path, Value(Dict{{"436999999.000000", Value(3)},
                                                {"437000000.000000", Value(4)},
                                                {"not a date", Value(5)}})));
  launch().run([&] {
    auto history = ZVCallHistory::sharedInstance();
    EXPECT_EQ(history->getRingDuration(436999999), 0);
    EXPECT_EQ(history->getRingDuration(437000000), 4);
  });
  EXPECT_EQ(*ringFile(),
            (Dict{{"437000000.000000", Value(4)}, {"not a date", Value(5)}}));

  // Nothing expired: the file is left as it is, byte for byte.
  std::string before, after;
  ASSERT_TRUE(plist::readBytes(path, before));
  launch().run([] { ZVCallHistory::sharedInstance()->loadRingDurations(); });
  ASSERT_TRUE(plist::readBytes(path, after));
  EXPECT_EQ(before, after);
}

// A row that cannot go back (its key is taken) fails the restore as a whole,
// and still the backup empties, so the next appearance of Recents does not
// try, and reload, again. (Which calls come back is
// TrimmedCallsComeBackAndDeletedOnesNever's, and through the controller
// tests/lists/recents_controller_test.cc's.)
TEST_F(CallHistoryTest, SyncEmptiesTheBackupAlsoOfRowsThatCannotGoBack) {
  exec(kStore, ps::callRecordTableSql("ZVZCALLRECORD"));
  addCall(100, 5500, 10);
  exec(kStore,
       "INSERT INTO ZVZCALLRECORD (Z_PK, ZDATE) VALUES (100, 1), (7, 2)");
  launch("8.1", "com.apple.mobilephone").run([] {
    EXPECT_EQ(ZVCallHistory::sharedInstance()->syncHistory(150), 2);
  });
  EXPECT_EQ(column("SELECT COUNT(*) FROM ZVZCALLRECORD")[0], 0);
  EXPECT_EQ(column("SELECT ZDATE FROM ZCALLRECORD ORDER BY ZDATE"),
            (std::vector<double>{5500}));
}

TEST_F(CallHistoryTest, LegacyBackupWorkGoesThroughTheTool) {
  exec(ps::kCallHistoryDbPath,
       ps::callTableSql("deleted") +
           "; INSERT INTO deleted (ROWID, date) VALUES (1, 1416182400)");
  auto& phone = launch("7.1", "com.apple.mobilephone");
  std::vector<std::string> commands;
  phone.setSystemHandler([&](const std::string& command) {
    commands.push_back(command);
    return 0;
  });
  phone.run([] {
    auto history = ZVCallHistory::sharedInstance();
    EXPECT_EQ(history->syncHistory(100), 0);
    EXPECT_EQ(history->syncHistory(180), 1);
    history->deleteSyncHistory(1416182400.4);
    history->deleteSyncHistory(0);
    history->deleteAllSyncHistory();
  });
  EXPECT_EQ(commands,
            (std::vector<std::string>{"/Library/Zorvel/zvtool -s 80",
                                      "/Library/Zorvel/zvtool -d 1416182400",
                                      "/Library/Zorvel/zvtool -c"}));
}

// The whole round trip on 8.x: the platform trims its oldest calls as it
// records new ones, the installed triggers keep exactly those, calls the
// user deletes are never kept, and syncing brings the trimmed ones back in
// order. (7.x does the same through zvtool: tests/tools/zvtool_test.cc, with
// the command lines of LegacyBackupWorkGoesThroughTheTool.)
TEST_F(CallHistoryTest, TrimmedCallsComeBackAndDeletedOnesNever) {
  installTool();
  auto date = [](int i) { return 1416000000.0 + 1000 * i; };
  auto record = [&](int i) {
    ASSERT_TRUE(ps::appendCallRecord(root_ + kStore,
                                     ps::Database::kCallHistoryStore,
                                     {.address = "10086", .date = date(i)}));
  };
  auto dates = [&](const char* table) {
    return column(std::string("SELECT ZDATE + 978307200 FROM ") + table +
                  " ORDER BY ZDATE");
  };
  for (int i = 1; i <= 103; ++i) record(i);
  EXPECT_EQ(dates("ZVZCALLRECORD"),
            (std::vector<double>{date(1), date(2), date(3)}));
  // The user deletes the last call of the list and one in the middle.
  for (int i : {4, 50})
    exec(kStore, "DELETE FROM ZCALLRECORD WHERE ZDATE + 978307200 = " +
                     std::to_string(date(i)));
  EXPECT_EQ(dates("ZVZCALLRECORD").size(), 3u);
  launch("8.1", "com.apple.mobilephone").run([] {
    EXPECT_EQ(ZVCallHistory::sharedInstance()->syncHistory(102), 3);
  });
  // Two of three fit (102 - 100): the newest two come back, and neither
  // deleted call does.
  std::vector<double> listed = dates("ZCALLRECORD");
  ASSERT_EQ(listed.size(), 100u);
  EXPECT_EQ(std::vector<double>(listed.begin(), listed.begin() + 3),
            (std::vector<double>{date(2), date(3), date(5)}));
  EXPECT_EQ(std::count(listed.begin(), listed.end(), date(50)), 0);
  EXPECT_TRUE(dates("ZVZCALLRECORD").empty());
  // The next call trims the oldest again, and the backup holds just it.
  record(104);
  EXPECT_EQ(dates("ZVZCALLRECORD"), (std::vector<double>{date(2)}));
}

// Several processes save at the same moment; none may lose another's entry.
TEST(RingDurationFileTest, ConcurrentWritersKeepEveryEntry) {
  const std::string path =
      testing::freshRoot() + "/Preferences/zorvel.missed.plist";
  constexpr int kWriters = 4, kEntries = 40;
  std::vector<pid_t> children;
  for (int w = 0; w < kWriters; ++w) {
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      bool ok = true;
      for (int i = 0; i < kEntries; ++i)
        ok &= ring_duration_file::storeFirst(path, std::to_string(w * 1000 + i),
                                             w * 1000 + i + 1) ==
              ring_duration_file::Stored::kWritten;
      _exit(ok ? 0 : 1);
    }
    children.push_back(pid);
  }
  for (pid_t pid : children) {
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  std::optional<Dict> file = plist::readDictionary(path);
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->size(), size_t{kWriters * kEntries});
  for (int w = 0; w < kWriters; ++w)
    for (int i = 0; i < kEntries; ++i)
      EXPECT_EQ((*file)[std::to_string(w * 1000 + i)].longLongValue(),
                w * 1000 + i + 1);

  // The first value stays; a folder in the file's place takes nothing.
  EXPECT_EQ(ring_duration_file::storeFirst(path, "0", 99),
            ring_duration_file::Stored::kKept);
  EXPECT_EQ((*plist::readDictionary(path))["0"].longLongValue(), 1);
  std::filesystem::create_directories(path + ".d");
  EXPECT_EQ(ring_duration_file::storeFirst(path + ".d", "0", 99),
            ring_duration_file::Stored::kNotWritten);
}

}  // namespace
}  // namespace zv
