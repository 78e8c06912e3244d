// `zorvel device create` as a newcomer uses it: the device it writes is
// ready for the keypad search, and writing a device again over an old one
// leaves nothing of the old contacts to be found.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "platform/db/platform_schema.h"
#include "support/device_db.h"

namespace zv::testing {
namespace {

namespace fs = std::filesystem;

class DeviceCliTest : public ::testing::Test {
 protected:
  std::string dir() const { return temp_.path() + "/device"; }
  CliResult create(const std::string& args) {
    return runZorvel("device create '" + dir() + "' " + args);
  }
  // Count of the search for all contact numbers ("**").
  int allNumbers() {
    auto r = runZorvel("search --json --root '" + dir() + "' '**'");
    EXPECT_EQ(r.status, 0) << r.err;
    return nlohmann::json::parse(r.out)["count"].get<int>();
  }
  int sqlCount(const char* devicePath, const std::string& sql) {
    auto n = columnValues<int64_t>(dir() + devicePath, sql);
    return n.size() == 1 ? static_cast<int>(n[0]) : -1;
  }

  TempRoot temp_;
};

TEST_F(DeviceCliTest, NewDeviceIsReadyForTheKeypad) {
  auto r = create("--contacts 20 --calls 10");
  ASSERT_EQ(r.status, 0) << r.err;
  // zvtool's backup triggers are in place.
  EXPECT_EQ(sqlCount(platform_schema::kCallHistoryStorePath,
                     "SELECT COUNT(*) FROM sqlite_master WHERE name LIKE "
                     "'zvtool_trimmed_%'"),
            1);
  EXPECT_TRUE(fs::is_regular_file(dir() + "/Library/Zorvel/Area/China"));
  // The README's first command works on it: the keypad searches.
  r = runZorvel("phone --json --root '" + dir() + "' type:2");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("\"counter\""), std::string::npos) << r.out;
}

TEST_F(DeviceCliTest, RefusesAFolderInUseUnlessForcedAndForgetsTheOldContacts) {
  ASSERT_EQ(create("--contacts 40 --calls 0").status, 0);
  const int before = allNumbers();  // also writes the contacts cache
  ASSERT_GT(before, 0);
  ASSERT_TRUE(fs::exists(dir() + "/Library/Zorvel/persons"));

  auto r = create("--contacts 3 --calls 0");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.errLines(), 1u) << r.err;

  ASSERT_EQ(create("--contacts 3 --calls 0 --seed 7 --force").status, 0);
  const int after = sqlCount(platform_schema::kAddressBookPath,
                             "SELECT COUNT(*) FROM ABMultiValue WHERE "
                             "property=3");
  EXPECT_EQ(allNumbers(), after);
  EXPECT_LT(after, before);
}

TEST_F(DeviceCliTest, SearchSaysWhichFileItCannotRead) {
  ASSERT_EQ(create("--contacts 5 --calls 0").status, 0);
  const std::string search = "search --root '" + dir() + "' 2";
  // A missing reading table only costs the readings: said, then answered.
  fs::remove(dir() + "/Library/Zorvel/Table/PinYin.txt");
  auto r = runZorvel(search);
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "zorvel: no reading table at " + dir() +
                       "/Library/Zorvel/Table/PinYin.txt; names are matched "
                       "without their readings\n");
  // Settings and flags that do not parse are said too.
  std::ofstream(dir() + "/var/mobile/Library/Preferences/zorvel.keypad.plist")
      << "garbage";
  r = runZorvel(search);
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.err.find("keypad flags file"), std::string::npos) << r.err;
  // No address book, or one that is not a database: no answer at all.
  const std::string book = dir() + platform_schema::kAddressBookPath;
  std::ofstream(book, std::ios::trunc) << std::string(4096, 'x');
  r = runZorvel(search);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_NE(r.err.find("zorvel: cannot read the address book " + book),
            std::string::npos)
      << r.err;
  fs::remove(book);
  r = runZorvel(search);
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("zorvel: no address book at " + book + "\n"),
            std::string::npos);
}

}  // namespace
}  // namespace zv::testing
