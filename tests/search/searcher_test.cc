// ZVSearcher on a device: loading persons from the address book (hand-made
// rows) or its cache, and searching them by key.
#include "search/searcher.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/db/platform_schema.h"
#include "search/searcher_cache.h"
#include "support/call_rows.h"
#include "support/device_db.h"
#include "support/device_files.h"
#include "support/phone_process.h"

namespace zv::testing {
namespace {

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
    namespace ps = platform_schema;
    ASSERT_TRUE(ps::createDatabase(
        root_ + (store ? ps::kCallHistoryStorePath : ps::kCallHistoryDbPath),
        store ? ps::Database::kCallHistoryStore
              : ps::Database::kCallHistoryDb));
    for (int i = 0; i < int(numbers.size()); ++i)
      store ? insertModernCall(root_, i + 1, 1000 + i, numbers[i])
            : insertLegacyCall(root_, i + 1, 1000 + i, numbers[i]);
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

  std::string readCache() {
    return testing::readFile(root_ + ZVSearcher::kCachePath);
  }
  bool storedFlag() {
    return phone().run([] {
      return ZVSearcher::getBoolSettingsForKey(ZVSearcher::kChangedKey);
    });
  }

  platform::SimProcess* phone_ = nullptr;
};
using SearcherLoadTest = SearchTest;

TEST_F(SearcherLoadTest, EncodesContactsFromTheDatabase) {
  writeTable("94264=张\n9426=小\n6464=明\n");
  writeContacts({{1, "Al", "B", nullptr, {"+86 (10) 8888-9999"}},
                 {2, "Li", "Na", "Acme", {"1", "2", "3"}, 7},
                 {3, "小明", "张", nullptr, {"138 0000 1111"}},
                 {4, nullptr, nullptr, "Acme", {}}});
  phone().deviceFacts().nameOrderLastFirst = true;  // the system's order
  // Newest record first; one person per number (record 4 has none). The
  // cache holds the same lines.
  const std::string lines =
      "3\t1\t3\t996464\t9426494266464\t9\t544\t13800001111\t张小明\n"
      "2\t7\t4\t6254\t6254\t65\t1111\t3\tNa Li\n"
      "2\t7\t4\t6254\t6254\t65\t1111\t2\tNa Li\n"
      "2\t7\t4\t6254\t6254\t65\t1111\t1\tNa Li\n"
      "1\t1\t3\t225\t225\t2\t111\t+861088889999\tBAl\n";
  withSearcher([&](auto s) {
    std::string read;
    for (const auto& p : s->persons()) read += formatCacheLine(*p);
    EXPECT_EQ(read, lines);
    EXPECT_EQ(s->personForNumber("2"), s->persons()[2]);
    EXPECT_EQ(s->t9hash(), nullptr);  // only held while encoding
    EXPECT_FALSE(s->isAddressBookChanged());
  });
  EXPECT_EQ(readCache(), lines);
}

TEST_F(SearcherLoadTest, NameOrderCompanyAndPropertyListTableSettings) {
  writeSettings({{"DialerNameOrder", 2},
                 {"DialerCompany", true},
                 {"DialerT9Database", "Mine.plist"}});
  writePlist("/Library/Zorvel/T9/Mine.plist", {{"6464", "明"}});
  writeContacts({{1, "John", "Smith", "Acme", {"1"}},
                 {2, nullptr, nullptr, "Solo Ltd", {"2"}},
                 {3, "明", "x", nullptr, {"3"}},
                 {4, "张", nullptr, nullptr, {"4"}}});
  withSearcher([&](auto s) {  // 明 has a reading (its whole one, last), 张 none
    EXPECT_EQ(forms(s->persons()),
              (Names{"张", "x明", "Solo Ltd", "Smith John Acme"}));
    EXPECT_EQ(forms(s->persons(), &ZVPerson::getNameJianPin)[0], "*");
    EXPECT_EQ(forms(s->persons(), &ZVPerson::getNameJianPin)[1], "96464");
  });
}

TEST_F(SearcherLoadTest, CacheIsUsedUntilTheAddressBookChanges) {
  writeContacts({{1, "Ann", "Lee", nullptr, {"100"}}});
  withSearcher([](auto) {});
  // A second process finds the contact in the cache (the marked name shows
  // it was not read from the database).
  std::string cache = readCache();
  cache.replace(cache.find("Ann Lee"), 7, "Ann Lee*");
  writeCache(cache);
  auto& contacts = world_.launch("com.apple.MobileAddressBook");
  auto& other = world_.launch("com.apple.mobilephone");
  other.run([&] {
    const auto& persons = ZVSearcher::sharedInstance()->persons();
    EXPECT_EQ(forms(persons), (Names{"Ann Lee*"}));
    EXPECT_EQ(forms(persons, &ZVPerson::getNameJianPin), (Names{"266533"}));
  });

  // A change in another process: the flag is set in memory at once and
  // stored 1.0 s after the last of a burst.
  writeContacts({{2, "Bo", "Wu", nullptr, {"200"}}});
  auto changed = [&] {
    contacts.run([] {
      platform::current().post(
          platform::kAddressBookExternalChangeNotification);
    });
  };
  changed();
  world_.advance(0);
  other.run(
      [&] { EXPECT_TRUE(ZVSearcher::sharedInstance()->addressBookChanged()); });
  world_.advance(0.6);
  changed();
  world_.advance(0.6);
  EXPECT_FALSE(storedFlag());
  world_.advance(0.5);
  EXPECT_TRUE(storedFlag());

  // Reloading reads the database again and clears both halves of the flag.
  other.run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_TRUE(s->isAddressBookChanged());
    s->loadData();
    EXPECT_EQ(forms(s->persons()), (Names{"Bo Wu", "Ann Lee"}));
    EXPECT_FALSE(s->isAddressBookChanged());
  });
}

TEST_F(SearcherLoadTest, ChangesMadeWhileNobodyWatchedAreNoticedAtStart) {
  // A contact deleted with another tool (no change signal, no stored flag):
  // the cache is older than the database and is not used.
  writeContacts(
      {{1, "Ann", "Lee", nullptr, {"100"}}, {2, "Bo", "Wu", nullptr, {"200"}}});
  withSearcher([](auto) {});
  restartPhone();
  ageFile(ZVSearcher::kCachePath, 5);
  execSql(platform_schema::kAddressBookPath,
          platform_schema::Database::kAddressBook,
          "DELETE FROM ABMultiValue WHERE record_id=2;"
          "DELETE FROM ABPerson WHERE ROWID=2");
  withSearcher([&](auto s) {
    EXPECT_FALSE(s->isAddressBookChanged());
    EXPECT_EQ(forms(s->persons()), (Names{"Ann Lee"}));
    EXPECT_EQ(s->search("29"), 0u);  // Bo Wu is gone
    // The cache just written is trusted again.
    EXPECT_FALSE(s->isCacheStale());
  });
  restartPhone();

  // The address book removed altogether: nothing of the cache is shown.
  std::filesystem::remove(root_ + platform_schema::kAddressBookPath);
  withSearcher([](auto s) { EXPECT_TRUE(s->persons().empty()); });
}

TEST_F(SearcherLoadTest, TableChangeForcesReencoding) {
  writeTable("1=张\n");
  writeContacts({{1, "张", nullptr, nullptr, {"100"}}});
  writePlist(ZVSearcher::kDefaultPriorityPath, {{"110", "Police"}});
  withSearcher([&](auto s) {
    EXPECT_EQ(s->persons()[0]->getNameJianPin(), "1");
    ASSERT_TRUE(s->priorityDict().has_value());
  });
  // The user's overlay corrects the reading.
  writePlist(ZVSearcher::kUserTablePath, {{"94264", "张"}});
  phone().run(
      [&] { platform::current().post(ZVSearcher::kT9ChangedNotification); });
  world_.advance(0);
  withSearcher([&](auto s) {
    EXPECT_TRUE(s->isAddressBookChanged());
    EXPECT_FALSE(s->priorityDict().has_value());
    s->loadData();
    EXPECT_EQ(s->persons()[0]->getNameJianPin(), "94264");
    EXPECT_TRUE(s->priorityDict().has_value());
  });
}

TEST_F(SearcherLoadTest, BadCacheAndDatabaseGiveEmptyLists) {
  // An empty cache, or one without a line of nine fields, is trusted (it is
  // newer than the address book) but falls back to the database.
  writeContacts({{1, "Ann", nullptr, nullptr, {"5"}}});
  for (const char* cache : {"", "1\t2\t3\t4\t5\t6\t7\t8\n\n\t\t\n"}) {
    writeCache(cache);
    withSearcher(
        [&](auto s) { EXPECT_EQ(forms(s->persons()), (Names{"Ann"})); });
    restartPhone();
  }

  // A corrupt database and no cache: nothing, and nothing crashes.
  std::filesystem::remove(root_ + ZVSearcher::kCachePath);
  writeDeviceFile(platform_schema::kAddressBookPath, std::string(4096, 'x'));
  writeDeviceFile(platform_schema::kCallHistoryStorePath, "garbage");
  writeDeviceFile(ZVSearcher::kPriorityPath, "garbage");
  withSearcher([&](auto s) {
    EXPECT_TRUE(s->persons().empty());
    EXPECT_TRUE(s->callHistory().empty());
    EXPECT_FALSE(s->priorityDict().has_value());
    EXPECT_EQ(s->search("1"), 0u);
    EXPECT_EQ(s->search("**"), 0u);
  });
  EXPECT_EQ(readCache(), "");
}

TEST_F(SearcherLoadTest, CallHistoryOfBothPlatformGenerations) {
  writeCache("5\t1\t1\t2\t2\t2\t1\t13800001111\tAnn\n");
  writeCalls({"+86 999", "138-0000-1111", "", "abc"}, /*store=*/false);
  writeCalls({"10086"}, /*store=*/true);
  platform::DeviceFacts old;
  old.systemVersion = "7.1";
  world_.launch("com.apple.mobilephone", old).run([&] {
    auto s = ZVSearcher::sharedInstance();
    const auto& calls = s->callHistory();
    ASSERT_EQ(calls.size(), 2u);  // "" and letters are skipped
    EXPECT_EQ(calls[0], s->persons()[0]);
    // A number without contact: no record, no name, priority 1.
    EXPECT_EQ(formatCacheLine(*calls[1]),
              "-2\t-1\t0\t(null)\t(null)\t(null)\t(null)\t+86999\t(null)\n");
    EXPECT_EQ(calls[1]->priority(), 1);
  });
  withSearcher([&](auto s) {
    EXPECT_EQ(forms(s->callHistory(), &ZVPerson::getPhoneNumber),
              (Names{"10086"}));
  });
}

// A cache line: id, type, nameLength, J, P, E, F, number, name.
std::string line(int id, int nameLength, const std::string& j,
                 const std::string& p, const std::string& e,
                 const std::string& number, const std::string& name) {
  return std::to_string(id) + "\t1\t" + std::to_string(nameLength) + "\t" + j +
         "\t" + p + "\t" + e + "\t" + std::string(p.size(), '1') + "\t" +
         number + "\t" + name + "\n";
}

using SearcherSearchTest = SearchTest;

TEST_F(SearcherSearchTest, RanksIntoClassesInOrder) {
  // One person per class for the key 23, listed in reverse class order.
  writeCache(line(8, 2, "99", "99", "99", "1234", "h-number") +
             line(7, 3, "9923", "99", "99", "5", "g-last-reading") +
             line(6, 2, "99", "99", "123", "5", "f-words") +
             line(5, 4, "2345", "99", "99", "5", "e-initials") +
             line(4, 2, "99", "99", "99", "23", "d-number-equal") +
             line(3, 2, "99", "23", "99", "5", "c-reading-equal") +
             line(2, 2, "99", "99", "23", "5", "b-words-equal") +
             line(1, 2, "23", "99", "99", "5", "a-initials-whole"));
  withSearcher([&](auto s) {
    ASSERT_EQ(s->persons().size(), 8u);
    EXPECT_EQ(s->search("23"), 9u);
    EXPECT_EQ(names(*s),
              (Names{"a-initials-whole", "b-words-equal", "c-reading-equal",
                     "d-number-equal", "e-initials", "f-words",
                     "g-last-reading", "h-number", ""}));
    std::vector<int> priorities;
    for (const auto& p : s->results()) priorities.push_back(p->priority());
    EXPECT_EQ(priorities, (std::vector<int>{4, 16, 8, 32, 4, 16, 8, 32, 65}));
    EXPECT_EQ(s->results().back()->getPhoneNumber(), "23");

    // The typed-number row is not added when the first row is that number.
    EXPECT_EQ(s->search("1234"), 1u);
  });
}

TEST_F(SearcherSearchTest, AnchoredMatchingAndFormPrecedence) {
  writeSettings({{"DialerAnyNamePos", false}, {"DialerAnyNumberPos", false}});
  writeCache(line(1, 4, "9923", "2399", "99", "7", "mid-initials") +
             line(2, 4, "9923", "9999", "99", "123", "mid-number") +
             line(3, 2, "23", "99", "99", "2300", "both"));
  withSearcher([&](auto s) {
    EXPECT_EQ(s->search("23"), 3u);  // "both", "mid-initials", typed row
    EXPECT_EQ(names(*s), (Names{"both", "mid-initials", ""}));
    // Matched by initials only, though the number contains the key too.
    EXPECT_EQ(s->results()[0]->priority(), ZVPerson::kByInitials);
    EXPECT_EQ(s->results()[1]->priority(), ZVPerson::kByReading);
  });
}

TEST_F(SearcherSearchTest, ClassCapacitiesAndOverflow) {
  // 2000 fit the number class, up to 5000 more spill into class 8 in order;
  // the rest are left out of the results but stay searchable.
  for (int count : {2500, 7100}) {
    SCOPED_TRACE(count);
    std::string cache;
    for (int i = 0; i < count; ++i)
      cache += line(i + 1, 1, "9", "9", "9", "13" + std::to_string(100000 + i),
                    "n" + std::to_string(i));
    writeCache(cache);
    restartPhone();
    withSearcher([&](auto s) {
      const int kept = std::min(count, 7000);
      EXPECT_EQ(s->search("13"), kept + 1u);
      for (int i : {0, 1999, 2000, kept - 1})
        EXPECT_EQ(s->results()[i]->getNameFull(), "n" + std::to_string(i));
      s->clearSearch();
      EXPECT_EQ(s->search("13" + std::to_string(100000 + count - 1)), 1u);
      EXPECT_EQ(s->results()[0]->getNameFull(),
                "n" + std::to_string(count - 1));
    });
  }
}

TEST_F(SearcherSearchTest, NarrowsOnlyAfterTwoCharacterKeys) {
  writeCache(line(1, 1, "9", "9", "9", "2345", "one") +
             line(2, 1, "9", "9", "9", "5555", "two"));
  withSearcher([&](auto s) {
    ZVPerson& two = *s->persons()[1];
    EXPECT_EQ(s->search("2"), 2u);  // "one" and the typed row
    // After a one-character key the next key searches everything.
    two.setPhoneNumber("2399");
    EXPECT_EQ(s->search("23"), 3u);
    // From 23 on, only what matched before is tested again.
    s->persons()[0]->setPhoneNumber("2345");
    two.setPhoneNumber("5555");
    EXPECT_EQ(s->search("234"), 2u);  // "one" + typed row; two is not there
    two.setPhoneNumber("2345");
    s->search("2345");
    EXPECT_EQ(names(*s), (Names{"one"}));
    // A key that does not extend the last one searches everything again.
    EXPECT_EQ(s->search("234"), 3u);
    s->clearSearch();
    EXPECT_EQ(s->lastKey(), "");
    EXPECT_TRUE(s->results().empty());
  });
}

TEST_F(SearcherSearchTest, SpecialKeysAndExtraRows) {
  writeCache(line(1, 1, "9", "9", "9", "13800001111", "Mobile") +
             line(2, 1, "9", "9", "9", "13900002222", "Home"));
  writeCalls({"138-0000-1111", "10086", "13900002222"});
  writePlist(ZVSearcher::kPriorityPath, {{"10086", "Carrier"}});
  withSearcher([&](auto s) {
    // Recent numbers, newest first; a known number is its contact.
    ASSERT_EQ(s->search("##"), 3u);
    EXPECT_EQ(s->results()[0], s->persons()[1]);
    EXPECT_EQ(s->results()[1]->recordId(), -2);
    EXPECT_EQ(s->results()[1]->getPhoneNumber(), "10086");
    EXPECT_EQ(s->results()[2], s->persons()[0]);
    // Narrowing from "##" stays inside the recent numbers.
    EXPECT_EQ(s->search("##1"), 0u);
    EXPECT_EQ(s->search("**"), 2u);

    // The priority row comes first; nothing else matches, so no typed row.
    EXPECT_EQ(s->search("10086"), 1u);
    EXPECT_EQ(s->results()[0]->priority(), 257);
    EXPECT_EQ(s->results()[0]->getNameFull(), "Carrier");
    s->clearSearch();
    // Recently called contacts rank first within their class.
    EXPECT_EQ(s->search("0000"), 3u);
    EXPECT_EQ(names(*s), (Names{"Home", "Mobile", ""}));
  });
}

TEST_F(SearcherSearchTest, RecentNumbersWithoutContact) {
  writeSettings(
      {{"DialerCallHistory", true}, {"DialerSortOptimization", false}});
  writeCache(line(1, 1, "9", "9", "9", "13800001111", "Mobile"));
  writeCalls({"10086", "13800001111"});
  withSearcher([&](auto s) {
    EXPECT_EQ(s->search("100"), 2u);
    EXPECT_EQ(s->results()[0]->recordId(), -2);
    // The matched row is searchable again: only bit 2 was cleared.
    EXPECT_EQ(s->results()[0]->priority(), ZVPerson::kByNumber);
  });
  // With the option off, numbers without contact never match.
  writeSettings({});
  restartPhone();
  withSearcher([&](auto s) { EXPECT_EQ(s->search("100"), 0u); });
}

}  // namespace
}  // namespace zv::testing
