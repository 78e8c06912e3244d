// Runs the built zvtool against device roots made from the platform's own
// call-history schemas: the backup triggers, restore, delete and clear, and
// one-line errors that change nothing. zvtool has no other suite.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "platform/db/platform_schema.h"
#include "support/device_db.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using platform_schema::Database;
using testing::CliResult;
constexpr const char* kLegacyPath = platform_schema::kCallHistoryDbPath;
constexpr const char* kStorePath = platform_schema::kCallHistoryStorePath;

class ZvtoolTest : public ::testing::Test {
 protected:
  CliResult zvtool(const std::string& arguments) {
    return testing::runZvtool(arguments, root_);
  }
  void expectFailures(const std::vector<testing::FailingRun>& rows) {
    testing::expectFailures([&](auto& args) { return zvtool(args); }, rows);
  }

  void createLegacy() { create(kLegacyPath, Database::kCallHistoryDb); }
  void createModern() { create(kStorePath, Database::kCallHistoryStore); }
  void create(const char* devicePath, Database which) {
    ASSERT_TRUE(platform_schema::createDatabase(root_ + devicePath, which));
  }
  void exec(const char* devicePath, const std::string& sql) {
    testing::execSql(root_ + devicePath, sql);
  }
  std::vector<int64_t> column(const char* devicePath, const std::string& sql) {
    return testing::columnValues<int64_t>(root_ + devicePath, sql);
  }
  std::vector<int64_t> legacy(const std::string& sql) {
    return column(kLegacyPath, sql);
  }

  // Calls dated 1000 * i (i = 1..n), then as many newer calls (dated from
  // kNewer on) as make the platform, which keeps its newest 100, trim those
  // below `keepFrom`; the triggers back them up.
  static constexpr int kNewer = 100000;
  void callsThenPlatformTrims(int n, int keepFrom) {
    std::string rows;
    for (int i = 1; i <= n; ++i)
      rows += std::string(rows.empty() ? "" : ", ") + "(" + std::to_string(i) +
              ", '1380000000" + std::to_string(i % 10) + "', " +
              std::to_string(1000 * i) + ", " + std::to_string(i) + ", 4)";
    const int kept = n - (keepFrom - 1) / 1000;
    for (int j = 0; j < 100 - kept; ++j)
      rows += ", (" + std::to_string(200 + j) + ", '10086', " +
              std::to_string(kNewer + j) + ", 0, 4)";
    exec(kLegacyPath,
         "INSERT INTO call (ROWID, address, date, duration, flags) VALUES " +
             rows);
    exec(kLegacyPath,
         "DELETE FROM call WHERE ROWID NOT IN (SELECT ROWID FROM call ORDER "
         "BY date DESC, ROWID DESC LIMIT 100)");
  }
  // The calls of `callsThenPlatformTrims` below the newer ones.
  std::vector<int64_t> older(const std::string& what) {
    return legacy("SELECT " + what + " FROM call WHERE date < " +
                  std::to_string(kNewer) + " ORDER BY date");
  }

  testing::TempRoot temp_;
  const std::string& root_ = temp_.path();
};

TEST_F(ZvtoolTest, BadArgumentsOrNoDatabaseAreOneLine) {
  const std::string none = "zvtool: no call history database";
  expectFailures({{"-c", 1, none},
                  {"-s 3", 1, none},
                  {"-d 1000", 1, none},
                  {"--install", 1, none}});
  // Nothing was created on the way.
  EXPECT_FALSE(fs::exists(root_ + kLegacyPath));
  testing::expectFailures([](auto& a) { return testing::runZvtool(a, ""); },
                          {{"-c", 1, "zvtool: ZORVEL_ROOT is not set\n"}});
  createLegacy();
  std::vector<testing::FailingRun> usage;
  for (const char* args : {"", "-s", "-s abc", "-s -1", "-d", "-d soon", "-x",
                           "-c -s 3", "-c extra"})
    usage.push_back({args, 2, "zvtool: "});
  expectFailures(usage);
  CliResult version = zvtool("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "zvtool 1.0.0 alpha7\n");
}

TEST_F(ZvtoolTest, InstalledTriggersBackUpWhatThePlatformTrims) {
  // Either database alone is enough to install on.
  createModern();
  ASSERT_EQ(zvtool("--install").status, 0);
  EXPECT_EQ(column(kStorePath,
                   "SELECT COUNT(*) FROM sqlite_master WHERE name IN "
                   "('ZVZCALLRECORD', 'zvtool_trimmed_ZCALLRECORD')"),
            (std::vector<int64_t>{2}));
  EXPECT_FALSE(fs::exists(root_ + kLegacyPath));
  createLegacy();
  // An earlier install's trigger, which copied every deleted row, goes.
  exec(kLegacyPath, platform_schema::callTableSql("deleted") +
                        "; CREATE TRIGGER zvtool_backup_call BEFORE DELETE ON "
                        "call BEGIN INSERT INTO deleted SELECT * FROM call "
                        "WHERE ROWID = OLD.ROWID; END");
  ASSERT_EQ(zvtool("--install").status, 0);
  ASSERT_EQ(zvtool("--install").status, 0);  // again: no change, no error

  callsThenPlatformTrims(5, 3500);
  EXPECT_EQ(legacy("SELECT date FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1000, 2000, 3000}));
  // Whole rows are kept.
  EXPECT_EQ(legacy("SELECT duration FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1, 2, 3}));

  // Calls the user deletes are never kept, on either database.
  exec(kStorePath,
       "INSERT INTO ZCALLRECORD (Z_PK, ZDATE, ZDURATION) VALUES "
       "(1, 100.5, 0), (2, 200.5, 7); DELETE FROM ZCALLRECORD WHERE Z_PK = 2");
  EXPECT_TRUE(
      column(kStorePath, "SELECT ZDURATION FROM ZVZCALLRECORD").empty());
  ASSERT_EQ(zvtool("-s 10").status, 0);
  exec(kLegacyPath, "DELETE FROM call");
  EXPECT_EQ(legacy("SELECT COUNT(*) FROM deleted"), (std::vector<int64_t>{0}));
}

TEST_F(ZvtoolTest, RestoreBringsBackTheNewestOlderCallsAndEmptiesTheBackup) {
  createLegacy();
  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformTrims(8, 5500);  // 1000..5000 backed up
  exec(kLegacyPath,
       "INSERT INTO deleted (ROWID, date) VALUES (20, 9000)");  // too new
  CliResult restored = zvtool("-s 3");
  ASSERT_EQ(restored.status, 0);
  EXPECT_EQ(restored.out, "restored 3 (the backup of 6 emptied)\n");
  EXPECT_EQ(older("date"),
            (std::vector<int64_t>{3000, 4000, 5000, 6000, 7000, 8000}));
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());

  // With nothing left to restore the backup still empties.
  exec(kLegacyPath, "INSERT INTO deleted (ROWID, date) VALUES (30, 500)");
  ASSERT_EQ(zvtool("-s 0").status, 0);
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());
  EXPECT_EQ(older("date").size(), 6u);
  // An empty backup: nothing was done, and the status says so.
  CliResult empty = zvtool("-s 5");
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.err, "zvtool: nothing to restore: the backup is empty\n");
}

TEST_F(ZvtoolTest, DeleteAndClearTouchOnlyTheBackup) {
  createLegacy();
  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformTrims(5, 3500);
  CliResult deleted = zvtool("-d 2000");
  ASSERT_EQ(deleted.status, 0);
  EXPECT_EQ(deleted.out, "deleted 1\n");
  EXPECT_EQ(legacy("SELECT date FROM deleted ORDER BY date"),
            (std::vector<int64_t>{1000, 3000}));
  CliResult none = zvtool("-d 123");  // no such call: nothing was done
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "zvtool: no backed-up call of date 123\n");
  CliResult cleared = zvtool("-c");
  ASSERT_EQ(cleared.status, 0);
  EXPECT_EQ(cleared.out, "emptied the backup of 2 calls\n");
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());
  EXPECT_EQ(zvtool("-c").status, 1);
  EXPECT_EQ(older("date").size(), 2u);
}

TEST_F(ZvtoolTest, AFailedRestoreChangesNoCallAndEmptiesTheBackup) {
  createLegacy();
  // No backup table yet: every command fails with one line, changes nothing.
  const std::string noTable = "zvtool: no backup table in " + root_ +
                              kLegacyPath + ": run zvtool --install\n";
  expectFailures(
      {{"-s 5", 1, noTable}, {"-d 1000", 1, noTable}, {"-c", 1, noTable}});

  ASSERT_EQ(zvtool("--install").status, 0);
  callsThenPlatformTrims(4, 2500);  // 1000 and 2000 backed up
  // A row id taken again (by hand): putting call 2 back would collide. The
  // calls stay where they are, and the backup is emptied all the same, so
  // the next sync does not try again.
  exec(kLegacyPath, "INSERT INTO call (ROWID, date) VALUES (2, 2400)");
  CliResult run = zvtool("-s 5");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.errLines(), 1u) << run.err;
  EXPECT_TRUE(legacy("SELECT date FROM deleted").empty());
  EXPECT_EQ(older("date"), (std::vector<int64_t>{2400, 3000, 4000}));
}

}  // namespace
}  // namespace zv
