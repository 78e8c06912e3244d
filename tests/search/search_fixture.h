// Device fixtures for the search tests: the platform's address-book and
// call-history databases filled with hand-made rows, settings, reading
// tables and cache files under a fresh simulated device root.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/db/platform_schema.h"
#include "platform/plist.h"
#include "search/searcher.h"
#include "support/device_db.h"
#include "support/phone_process.h"

namespace zv::testing {

struct Contact {
  int id;
  const char* first;
  const char* last;
  const char* organization;
  std::vector<std::string> numbers;
  int label = 1;
};

class SearchTest : public PhoneProcessTest {
 protected:
  // Runs SQL on a database file under the root, creating its tables.
  void execSql(const char* devicePath, platform_schema::Database which,
               const std::string& sql) {
    ASSERT_TRUE(platform_schema::createDatabase(root_ + devicePath, which));
    testing::execSql(root_ + devicePath, sql);
  }

  static std::string quote(const char* text) {
    if (!text) return "NULL";
    std::string out = "'";
    for (const char* p = text; *p; ++p)
      out += *p == '\'' ? "''" : std::string(1, *p);
    return out + "'";
  }

  void writeContacts(const std::vector<Contact>& contacts) {
    std::string sql = "BEGIN;";
    for (const auto& c : contacts) {
      sql += "INSERT INTO ABPerson(ROWID,First,Last,Organization) VALUES(" +
             std::to_string(c.id) + "," + quote(c.first) + "," + quote(c.last) +
             "," + quote(c.organization) + ");";
      for (const auto& n : c.numbers)
        sql +=
            "INSERT INTO ABMultiValue(record_id,property,label,value) "
            "VALUES(" +
            std::to_string(c.id) + ",3," + std::to_string(c.label) + "," +
            quote(n.c_str()) + ");";
    }
    sql += "COMMIT;";
    execSql(platform_schema::kAddressBookPath,
            platform_schema::Database::kAddressBook, sql);
  }

  // Recent calls, newest last in `numbers` (dates increase).
  void writeCalls(const std::vector<std::string>& numbers, bool store = true) {
    std::string sql = "BEGIN;";
    int date = 1000;
    for (const auto& n : numbers) {
      sql += store ? "INSERT INTO ZCALLRECORD(ZADDRESS,ZDATE) VALUES("
                   : "INSERT INTO call(address,date) VALUES(";
      sql += quote(n.c_str()) + "," + std::to_string(date++) + ");";
    }
    sql += "COMMIT;";
    execSql(store ? platform_schema::kCallHistoryStorePath
                  : platform_schema::kCallHistoryDbPath,
            store ? platform_schema::Database::kCallHistoryStore
                  : platform_schema::Database::kCallHistoryDb,
            sql);
  }

  void writeSettings(const Dict& settings) {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist", settings);
  }

  void writeTable(const std::string& text,
                  const std::string& name = "PinYin.txt") {
    writeDeviceFile("/Library/Zorvel/Table/" + name, text);
  }

  // A cache written for the address book as it is now (an empty one when
  // there is none yet), so the searcher trusts it.
  void writeCache(const std::string& text) {
    const std::string db = root_ + platform_schema::kAddressBookPath;
    ASSERT_TRUE(platform_schema::createDatabase(
        db, platform_schema::Database::kAddressBook));
    writeDeviceFile(ZVSearcher::kCachePath, text);
    ageFile(platform_schema::kAddressBookPath, 10);
  }

  // Moves a device file's modification time `seconds` into the past.
  void ageFile(const char* devicePath, int seconds) {
    namespace fs = std::filesystem;
    const fs::path file = root_ + devicePath;
    fs::last_write_time(
        file, fs::last_write_time(file) - std::chrono::seconds(seconds));
  }

  // One form of each person of `list` (the full name unless said), in
  // order; names() of the results.
  using Names = std::vector<std::string>;
  static Names forms(const ZVSearcher::PersonList& list,
                     std::string (ZVPerson::*form)()
                         const = &ZVPerson::getNameFull) {
    Names out;
    for (const auto& p : list) out.push_back(((*p).*form)());
    return out;
  }
  static Names names(const ZVSearcher& s) { return forms(s.results()); }

  platform::SimProcess& phone() {
    if (!phone_) phone_ = &world_.launch("com.apple.mobilephone");
    return *phone_;
  }

  // Runs f(searcher) in the Phone process.
  template <typename F>
  auto withSearcher(F f) {
    return phone().run([&] { return f(ZVSearcher::sharedInstance()); });
  }

  // Ends the Phone process; the next phone() starts a fresh one.
  void restartPhone() {
    if (phone_) world_.terminate(*phone_);
    phone_ = nullptr;
  }

  platform::SimProcess* phone_ = nullptr;
};

}  // namespace zv::testing
