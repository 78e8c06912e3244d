// The commands a Linux phone is set up with: zorvel init, settings
// get/set/unset, blacklist/whitelist, addressbook import, and the settings
// reference page. Changes must be announced on the device's notification
// bus (a running callerd applies them) and bad input must change nothing.
#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "cli_runner.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/linux/notify_bus.h"
#include "platform/plist.h"
#include "support/private_bus.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;
using testing::CliResult;

// The notification names posted to the device while it lives.
class Heard {
 public:
  explicit Heard(const std::string& root)
      : bus_(root + "/var/run/zorvel/notify", [this](const std::string& n) {
          std::lock_guard<std::mutex> lock(mutex_);
          names_.push_back(n);
        }) {
    fs::create_directories(root + "/var/run/zorvel/notify");
    bus_.listen();
  }
  // Waits a little for posts still on their way.
  std::vector<std::string> names() {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(names_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> names_;
  platform::NotifyBus bus_;
};

// The rows of a query, each row's columns joined by '|' (NULL as "").
std::vector<std::string> texts(const std::string& file, const std::string& q) {
  sql::Database db(file);
  sql::Statement s(db, q);
  std::vector<std::string> out;
  while (s.step()) {
    std::string row;
    for (int i = 0; i < s.columnCount(); ++i)
      row += (i ? "|" : "") + s.text(i).value_or("");
    out.push_back(row);
  }
  return out;
}

class PhoneSetupTest : public ::testing::Test {
 protected:
  CliResult zorvel(const std::string& args) {
    return testing::runZorvel(args + " --root '" + root() + "'");
  }
  void expectFailures(const std::vector<testing::FailingRun>& rows) {
    testing::expectFailures([&](auto& args) { return zorvel(args); }, rows);
  }
  const std::string& root() const { return root_.path(); }
  std::string file(const char* devicePath) const { return root() + devicePath; }
  std::string prefs(const std::string& name) const {
    return root() + "/var/mobile/Library/Preferences/" + name;
  }
  testing::TempRoot root_;
};

TEST_F(PhoneSetupTest, InitMakesAnEmptyDeviceOnceAndKeepsTheUsersData) {
  auto r = zorvel("init");
  ASSERT_EQ(r.status, 0) << r.err;
  for (const char* data :
       {"/Library/Zorvel/Area/China", "/Library/Zorvel/Area/USA",
        "/Library/Zorvel/Table/PinYin.txt", "/Library/Zorvel/block.caf",
        "/Library/Zorvel/avatar.png"})
    EXPECT_TRUE(fs::is_regular_file(file(data))) << data;
  EXPECT_TRUE(fs::perms::owner_exec ==
              (fs::status(file("/Library/Zorvel/zvtool")).permissions() &
               fs::perms::owner_exec));
  // No people, no calls, no settings keys.
  EXPECT_EQ(texts(file(ps::kAddressBookPath), "SELECT COUNT(*) FROM ABPerson"),
            std::vector<std::string>{"0"});
  EXPECT_EQ(texts(file(ps::kCallHistoryStorePath),
                  "SELECT COUNT(*) FROM ZCALLRECORD"),
            std::vector<std::string>{"0"});
  EXPECT_TRUE(fs::exists(file(ps::kCallHistoryDbPath)));
  EXPECT_EQ(plist::readDictionary(prefs("zorvel.plist")), Dict{});

  // Once a device, init changes nothing, and --force keeps what the user made.
  ASSERT_EQ(zorvel("settings set EnableBlacklist true").status, 0);
  ASSERT_EQ(zorvel("blacklist add 13800138000").status, 0);
  const auto before = testing::fileSnapshot(root());
  r = zorvel("init");
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("nothing changed"), std::string::npos) << r.out;
  EXPECT_EQ(testing::fileSnapshot(root()), before);
  fs::remove(file("/Library/Zorvel/Area/USA"));
  ASSERT_EQ(zorvel("init --force").status, 0);
  EXPECT_TRUE(fs::exists(file("/Library/Zorvel/Area/USA")));
  for (const auto& kept : {prefs("zorvel.plist"), prefs("zorvel.black.plist"),
                           file(ps::kAddressBookPath)})
    EXPECT_EQ(testing::readFile(kept), before.at(kept)) << kept;
}

// (A folder that is not a device is refused: area_cli_test.cc's table.)
TEST_F(PhoneSetupTest, InitWithoutARootMakesTheDefaultDevice) {
  // Without --root or $ZORVEL_ROOT: $XDG_DATA_HOME/zorvel/device.
  auto r = testing::runShell("env -u ZORVEL_ROOT XDG_DATA_HOME='" + root() +
                             "' '" + testing::zorvelBinary() + "' init");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::exists(root() + "/zorvel/device" + ps::kAddressBookPath));
}

TEST_F(PhoneSetupTest, SettingsAreTypedAsTheCatalogueSaysAndAnnounced) {
  ASSERT_EQ(zorvel("init").status, 0);
  Heard heard(root());
  struct Case {
    const char *key, *typed, *shown;
    Value stored;
  };
  for (const Case& c :
       {Case{"EnableBlacklist", "yes", "true", Value(true)},
        Case{"BlacklistBlockMode", "2", "2", Value(2)},
        Case{"ConnectedVibrateIntensity", "0.8", "0.8", Value(0.8)},
        Case{"BlacklistBlockArea", "'宿迁 苏州'", "宿迁 苏州",
             Value("宿迁 苏州")},
        Case{"MyInfo", "-1", "-1", Value(-1)}}) {
    ASSERT_EQ(
        zorvel(std::string("settings set ") + c.key + " " + c.typed).status, 0)
        << c.key;
    EXPECT_EQ(zorvel(std::string("settings get ") + c.key).out,
              std::string(c.shown) + "\n");
    EXPECT_EQ(plist::readDictionary(prefs("zorvel.plist"))->at(c.key), c.stored)
        << c.key;
    EXPECT_EQ(heard.names(), std::vector<std::string>{"ZVSettingsChanged"});
  }
  ASSERT_EQ(zorvel("settings set AreaDatabase USA").status, 0);
  EXPECT_EQ(heard.names(),
            (std::vector<std::string>{"ZVSettingsChanged", "ZVAreaChanged"}));
  ASSERT_EQ(zorvel("settings unset EnableBlacklist").status, 0);
  EXPECT_EQ(zorvel("settings get EnableBlacklist").out, "false\n");
  EXPECT_FALSE(plist::readDictionary(prefs("zorvel.plist"))
                   ->contains("EnableBlacklist"));
  heard.names();

  // Wrong keys and values: one line naming the key, nothing written or said.
  const std::string kept = testing::readFile(prefs("zorvel.plist"));
  expectFailures(
      {{"settings set Nope 1", 2, "Nope"},
       {"settings get Nope", 2, "Nope"},
       {"settings unset Nope", 2, "Nope"},
       {"settings set EnableBlacklist maybe", 2, "EnableBlacklist"},
       {"settings set BlacklistBlockMode 7", 2, "BlacklistBlockMode"},
       {"settings set CallHistoryLimit 1.5", 2, "CallHistoryLimit"},
       {"settings set MyInfo 99999999999", 2, "MyInfo"},
       {"settings set ConnectedVibrateIntensity nan", 2,
        "ConnectedVibrateIntensity"},
       {"settings set ConnectedVibrateIntensity 2", 2,
        "ConnectedVibrateIntensity"}});
  EXPECT_EQ(testing::readFile(prefs("zorvel.plist")), kept);
  EXPECT_TRUE(heard.names().empty());
  // A settings file that does not parse is not replaced.
  testing::writeFile(prefs("zorvel.plist"), "not a list");
  auto r = zorvel("settings set EnableArea false");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(testing::readFile(prefs("zorvel.plist")), "not a list");
}

TEST_F(PhoneSetupTest, ListsTakeNumbersAndPatternsThatCanMatch) {
  ASSERT_EQ(zorvel("init").status, 0);
  Heard heard(root());
  auto r = zorvel("blacklist add '+1 (555) 010-0199' '138*' '#0086*'");
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(heard.names(), std::vector<std::string>{"ZVBlacklistChanged"});
  EXPECT_EQ(zorvel("blacklist list").out, "#0086*\n+15550100199\n138*\n");
  // Entries that no caller's number can match; one bad entry stops them all.
  const std::string never = "can never match";
  expectFailures({{"blacklist add '*'", 2, never},
                  {"blacklist add '**'", 2, never},
                  {"blacklist add abc", 2, never},
                  {"blacklist add ' - '", 2, never},
                  {"blacklist add 139 13a8", 2, never},
                  {"whitelist add x", 2, never}});
  EXPECT_EQ(zorvel("blacklist list").out, "#0086*\n+15550100199\n138*\n");
  EXPECT_FALSE(fs::exists(prefs("zorvel.white.plist")));
  EXPECT_TRUE(heard.names().empty());

  r = zorvel("blacklist remove 999 '138*'");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(zorvel("blacklist list").out, "#0086*\n+15550100199\n138*\n");
  ASSERT_EQ(zorvel("blacklist remove '138*' '+1 555 010 0199'").status, 0);
  EXPECT_EQ(zorvel("blacklist list").out, "#0086*\n");
  ASSERT_EQ(zorvel("whitelist add 10086").status, 0);
  EXPECT_EQ(zorvel("whitelist list").out, "10086\n");
  EXPECT_EQ(heard.names(), (std::vector<std::string>{"ZVBlacklistChanged",
                                                     "ZVBlacklistChanged"}));
}

// A 1x1 PNG.
constexpr char kPng[] =
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8DwHwAFBQIAX8"
    "jx0gAAAABJRU5ErkJggg==";

TEST_F(PhoneSetupTest, ImportTakesEveryVCardVersionAndUpdatesInPlace) {
  ASSERT_EQ(zorvel("init").status, 0);
  const std::string vcf = root() + "/people.vcf";
  const std::string cards =
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Li;Lei;;;\r\nTEL;CELL;PREF:135 0755 "
      "1234\r\n"
      "TEL;WORK;FAX:010-12345678\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann-1\r\nN:Smith;Ann;Q;Dr.;\r\nFN:Ann "
      "Smith\r\n"
      "ORG:Acme;Sales\r\nTITLE:Buyer\r\nNICKNAME:Annie\r\nBDAY:1990-05-17\r\n"
      "NOTE:Call after 5\r\nTEL;TYPE=HOME:+1 555 010 0100\r\n"
      "EMAIL;TYPE=WORK:ann@example.org\r\nPHOTO;ENCODING=b;TYPE=PNG:" +
      std::string(kPng) +
      "\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nVERSION:4.0\r\nUID:urn:uuid:bob\r\nFN:Bob Stone\r\n"
      "N:Stone;Bob;;;\r\nTEL;VALUE=uri;TYPE=cell:tel:+1-555-010-0199\r\nEND:"
      "VCARD\r\n";
  testing::writeFile(vcf, cards);
  auto r = zorvel("addressbook import '" + vcf + "'");
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "3 added, 0 updated, 0 removed, 0 unchanged\n");
  const std::string book = file(ps::kAddressBookPath);
  // Ann's birthday: 1990-05-17 noon UTC, in seconds since 2001.
  EXPECT_EQ(texts(book,
                  "SELECT First, Last, Middle, Organization, Department, "
                  "Prefix, JobTitle, Nickname, Note, CAST(Birthday AS INTEGER) "
                  "FROM ABPerson ORDER BY ROWID"),
            (std::vector<std::string>{
                "Lei|Li||||||||",
                "Ann|Smith|Q|Acme|Sales|Dr.|Buyer|Annie|Call after 5|" +
                    std::to_string(642902400 + 43200 - 978307200),
                "Bob|Stone||||||||"}));
  EXPECT_EQ(texts(book,
                  "SELECT v.value || ' ' || IFNULL(l.value, '-') FROM "
                  "ABMultiValue v LEFT JOIN ABMultiValueLabel l ON "
                  "v.label = l.ROWID ORDER BY v.record_id, v.identifier"),
            (std::vector<std::string>{
                "135 0755 1234 _$!<Mobile>!$_", "010-12345678 _$!<WorkFAX>!$_",
                "+1 555 010 0100 _$!<Home>!$_", "ann@example.org _$!<Work>!$_",
                "+1-555-010-0199 _$!<Mobile>!$_"}));
  EXPECT_EQ(
      texts(file(ps::kAddressBookImagesPath),
            "SELECT COUNT(*) FROM ABThumbnailImage WHERE length(data) > 60"),
      std::vector<std::string>{"1"});
  EXPECT_EQ(plist::readDictionary(prefs("zorvel.keypad.plist"))
                ->at("AddressBookChanged"),
            Value(true));

  // The same cards again, Bob with a new number: one update, same record.
  std::string changed = cards;
  changed.replace(changed.find("0199"), 4, "0200");
  testing::writeFile(vcf, changed);
  r = zorvel("addressbook import '" + vcf + "'");
  EXPECT_EQ(r.out, "0 added, 1 updated, 0 removed, 2 unchanged\n") << r.err;
  EXPECT_EQ(texts(book, "SELECT ROWID FROM ABPerson WHERE First = 'Bob'"),
            std::vector<std::string>{"3"});
  EXPECT_EQ(texts(book, "SELECT value FROM ABMultiValue WHERE record_id = 3"),
            std::vector<std::string>{"+1-555-010-0200"});

  // Files that are not vCards change nothing.
  const auto before = testing::fileSnapshot(root());
  testing::writeFile(root() + "/bad.vcf",
                     "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Cut");
  testing::writeFile(root() + "/none.vcf", "hello");
  const std::string import = "addressbook import '" + vcf + "' '" + root();
  expectFailures({{import + "/bad.vcf'", 1, ""},
                  {import + "/none.vcf'", 1, ""},
                  {import + "/missing.vcf'", 1, ""}});
  fs::remove(root() + "/bad.vcf");
  fs::remove(root() + "/none.vcf");
  EXPECT_EQ(testing::fileSnapshot(root()), before);
}

TEST(SettingsKeysPage, IsGeneratedFromTheCatalogueAndExplainsEveryKey) {
  auto r = testing::runZorvel("settings keys --markdown");
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, testing::readFile(ZV_SOURCE_DIR "/docs/settings-keys.md"))
      << "regenerate docs/settings-keys.md with zorvel settings keys "
         "--markdown";
  EXPECT_EQ(r.out.find("|  |"), std::string::npos) << "a key without a meaning";
}

}  // namespace
}  // namespace zv
