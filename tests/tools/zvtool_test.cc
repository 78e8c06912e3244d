// Runs the built zvtool against device roots made from the platform's own
// call-history schemas.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "device_db.h"
#include "platform/db/platform_schema.h"
#include "sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using platform_schema::Database;

struct ToolRun {
  int status = -1;
  std::string err;
};

class ZvtoolTest : public ::testing::Test {
 protected:
  ZvtoolTest() : root_(testing::freshRoot()) {}
  ~ZvtoolTest() override { fs::remove_all(root_); }

  void SetUp() override {
    ASSERT_TRUE(fs::exists(ZV_BINARY_DIR "/zvtool"))
        << "build the zvtool target first";
  }

  ToolRun zvtool(const std::string& arguments, bool withRoot = true) {
    const std::string errFile = root_ + "/stderr.txt";
    std::string command = std::string(withRoot ? "ZORVEL_ROOT='" + root_ + "' "
                                               : "env -u ZORVEL_ROOT ") +
                          ZV_BINARY_DIR "/zvtool " + arguments + " 2>'" +
                          errFile + "'";
    ToolRun run;
    const int status = std::system(command.c_str());
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    FILE* f = std::fopen(errFile.c_str(), "rb");
    if (f) {
      char buffer[4096];
      size_t n;
      while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        run.err.append(buffer, n);
      std::fclose(f);
    }
    return run;
  }

  void createLegacy() {
    ASSERT_TRUE(platform_schema::createDatabase(
        root_ + platform_schema::kCallHistoryDbPath, Database::kCallHistoryDb));
  }
  void createModern() {
    ASSERT_TRUE(platform_schema::createDatabase(
        root_ + platform_schema::kCallHistoryStorePath,
        Database::kCallHistoryStore));
  }

  void exec(const char* devicePath, const std::string& sql) {
    testing::execSql(root_ + devicePath, sql);
  }
  std::vector<int64_t> column(const char* devicePath, const std::string& sql) {
    return testing::columnValues<int64_t>(root_ + devicePath, sql);
  }
  std::vector<int64_t> legacy(const std::string& sql) {
    return column(platform_schema::kCallHistoryDbPath, sql);
  }

  // Calls dated 1000 * i (i = 1..n), then the platform deletes those below
  // `keepFrom`; the triggers back them up.
  void callsThenPlatformDeletes(int n, int keepFrom) {
    for (int i = 1; i <= n; ++i)
      exec(platform_schema::kCallHistoryDbPath,
           "INSERT INTO call (ROWID, address, date, duration, flags) VALUES (" +
               std::to_string(i) + ", '1380000000" + std::to_string(i % 10) +
               "', " + std::to_string(1000 * i) + ", " + std::to_string(i) +
               ", 4)");
    exec(platform_schema::kCallHistoryDbPath,
         "DELETE FROM call WHERE date < " + std::to_string(keepFrom));
  }

  std::string root_;
};

TEST_F(ZvtoolTest, BadArgumentsPrintUsageAndExitTwo) {
  createLegacy();
  for (const char* arguments : {"", "-s", "-s abc", "-s -1", "-d", "-d soon",
                                "-x", "-c -s 3", "-c extra"}) {
    ToolRun run = zvtool(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_NE(run.err.find("Usage: zvtool"), std::string::npos) << arguments;
  }
}

TEST_F(ZvtoolTest, MissingDatabaseOrRootFailsWithOneLine) {
  for (const char* arguments : {"-c", "-s 3", "-d 1000", "--install"}) {
    ToolRun run = zvtool(arguments);
    EXPECT_EQ(run.status, 1) << arguments;
    EXPECT_EQ(run.err.find("zvtool: no call history database"), 0u) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
  }
  // Nothing was created on the way.
  EXPECT_FALSE(fs::exists(root_ + platform_schema::kCallHistoryDbPath));
  ToolRun noRoot = zvtool("-c", false);
  EXPECT_EQ(noRoot.status, 1);
  EXPECT_EQ(noRoot.err, "zvtool: ZORVEL_ROOT is not set\n");
}

TEST_F(ZvtoolTest, InstalledTriggersBackUpWhatThePlatformDeletes) {
  createLegacy();
  createModern();
  ASSERT_EQ(zvtool("--install").status, 0);
  ASSERT_EQ(zvtool("--install").status, 0);  // again: no change, no error

  callsThenPlatformDeletes(5, 3500);
  EXPECT_EQ(legacy("SELECT date FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1000, 2000, 3000}));
  // Whole rows are kept.
  EXPECT_EQ(legacy("SELECT duration FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1, 2, 3}));

  exec(platform_schema::kCallHistoryStorePath,
       "INSERT INTO ZCALLRECORD (Z_PK, ZDATE, ZDURATION) VALUES "
       "(1, 100.5, 0), (2, 200.5, 7); DELETE FROM ZCALLRECORD WHERE Z_PK = 2");
  EXPECT_EQ(column(platform_schema::kCallHistoryStorePath,
                   "SELECT ZDURATION FROM ZVZCALLRECORD"),
            (std::vector<int64_t>{7}));

  // A call deleted, restored and deleted again is kept once.
  ASSERT_EQ(zvtool("-s 10").status, 0);
  exec(platform_schema::kCallHistoryDbPath, "DELETE FROM call");
  EXPECT_EQ(legacy("SELECT COUNT(*) FROM deleted"), (std::vector<int64_t>{5}));
}

TEST_F(ZvtoolTest, InstallNeedsOnlyOneOfTheDatabases) {
  createModern();
  ASSERT_EQ(zvtool("--install").status, 0);
  EXPECT_EQ(column(platform_schema::kCallHistoryStorePath,
                   "SELECT COUNT(*) FROM sqlite_master WHERE name IN "
                   "('ZVZCALLRECORD', 'zvtool_backup_ZCALLRECORD')"),
            (std::vector<int64_t>{2}));
  EXPECT_FALSE(fs::exists(root_ + platform_schema::kCallHistoryDbPath));
}

TEST_F(ZvtoolTest, RestoreBringsBackTheNewestOlderCallsAndEmptiesTheBackup) {
  createLegacy();
  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformDeletes(8, 5500);  // 1000..5000 backed up
  exec(platform_schema::kCallHistoryDbPath,
       "INSERT INTO deleted (ROWID, date) VALUES (20, 9000)");  // too new
  ASSERT_EQ(zvtool("-s 3").status, 0);
  EXPECT_EQ(legacy("SELECT date FROM call ORDER BY ROWID"),
            (std::vector<int64_t>{3000, 4000, 5000, 6000, 7000, 8000}));
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());

  // With nothing left to restore the backup still empties.
  exec(platform_schema::kCallHistoryDbPath,
       "INSERT INTO deleted (ROWID, date) VALUES (30, 500)");
  ASSERT_EQ(zvtool("-s 0").status, 0);
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());
  EXPECT_EQ(legacy("SELECT COUNT(*) FROM call"), (std::vector<int64_t>{6}));
}

TEST_F(ZvtoolTest, DeleteAndClearTouchOnlyTheBackup) {
  createLegacy();
  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformDeletes(5, 3500);
  ASSERT_EQ(zvtool("-d 2000").status, 0);
  EXPECT_EQ(legacy("SELECT date FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1000, 3000}));
  ASSERT_EQ(zvtool("-d 123").status, 0);  // no such call: nothing to do
  ASSERT_EQ(zvtool("-c").status, 0);
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());
  EXPECT_EQ(legacy("SELECT COUNT(*) FROM call"), (std::vector<int64_t>{2}));
}

TEST_F(ZvtoolTest, AFailedRestoreLosesNothing) {
  createLegacy();
  // No backup table yet: every command fails with one line, changes nothing.
  for (const char* arguments : {"-s 5", "-d 1000", "-c"}) {
    ToolRun run = zvtool(arguments);
    EXPECT_EQ(run.status, 1) << arguments;
    EXPECT_NE(run.err.find("no such table: deleted"), std::string::npos)
        << run.err;
  }

  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformDeletes(4, 2500);  // 1000 and 2000 backed up
  // The platform reused a row id: putting call 2 back would collide.
  exec(platform_schema::kCallHistoryDbPath,
       "INSERT INTO call (ROWID, date) VALUES (2, 2400)");
  ToolRun run = zvtool("-s 5");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  EXPECT_EQ(legacy("SELECT date FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1000, 2000}));
  EXPECT_EQ(legacy("SELECT date FROM call ORDER BY date"),
            (std::vector<int64_t>{2400, 3000, 4000}));
}

}  // namespace
}  // namespace zv
