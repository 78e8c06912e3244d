#include <gtest/gtest.h>

#include <filesystem>

#include "search/searcher.h"
#include "search/searcher_cache.h"
#include "search_fixture.h"
#include "support/device_files.h"

namespace zv::testing {
namespace {

class SearcherLoadTest : public SearchTest {
 protected:
  std::string readCache() {
    return testing::readFile(root_ + ZVSearcher::kCachePath);
  }
  bool storedFlag() {
    return phone().run([] {
      return ZVSearcher::getBoolSettingsForKey(ZVSearcher::kChangedKey);
    });
  }
};

TEST_F(SearcherLoadTest, EncodesContactsFromTheDatabase) {
  writeTable("94264=张\n9426=小\n6464=明\n");
  writeContacts({{1, "Al", "B", nullptr, {"+86 (10) 8888-9999"}},
                 {2, "Li", "Na", "Acme", {"1", "2", "3"}, 7},
                 {3, "小明", "张", nullptr, {"138 0000 1111"}},
                 {4, nullptr, nullptr, "Acme", {}}});
  phone().deviceFacts().nameOrderLastFirst = true;  // the system's order
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    ASSERT_EQ(s->persons().size(), 5u);
    // Newest record first; one person per number.
    const auto& p = s->persons();
    EXPECT_EQ(forms(p), (Names{"张小明", "Na Li", "Na Li", "Na Li", "BAl"}));
    EXPECT_EQ(forms(p, &ZVPerson::getNameJianPin),
              (Names{"996464", "6254", "6254", "6254", "225"}));
    EXPECT_EQ(forms(p, &ZVPerson::getPhoneNumber),
              (Names{"13800001111", "3", "2", "1", "+861088889999"}));
    for (int i = 1; i <= 3; ++i) {
      EXPECT_EQ(p[i]->recordId(), 2);
      EXPECT_EQ(p[i]->phoneType(), 7);
    }
    EXPECT_EQ(s->personForNumber("2"), p[2]);
    EXPECT_EQ(s->t9hash(), nullptr);  // only held while encoding
    EXPECT_FALSE(s->isAddressBookChanged());
  });
  // The cache holds the same persons, one line each (its lines are
  // searcher_forms_test.cc's).
  std::string cache = readCache();
  EXPECT_EQ(std::count(cache.begin(), cache.end(), '\n'), 5);
}

TEST_F(SearcherLoadTest, NameOrderAndCompanySettings) {
  writeSettings({{"DialerNameOrder", 2}, {"DialerCompany", true}});
  writeContacts({{1, "John", "Smith", "Acme", {"1"}},
                 {2, nullptr, nullptr, "Solo Ltd", {"2"}}});
  phone().run([&] {
    EXPECT_EQ(forms(ZVSearcher::sharedInstance()->persons()),
              (Names{"Solo Ltd", "Smith John Acme"}));
  });
}

TEST_F(SearcherLoadTest, CacheIsUsedUntilTheAddressBookChanges) {
  writeContacts({{1, "Ann", "Lee", nullptr, {"100"}}});
  phone().run([&] { ZVSearcher::sharedInstance(); });
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
  phone().run([&] { ZVSearcher::sharedInstance(); });
  restartPhone();
  ageFile(ZVSearcher::kCachePath, 5);
  execSql(platform_schema::kAddressBookPath,
          platform_schema::Database::kAddressBook,
          "DELETE FROM ABMultiValue WHERE record_id=2;"
          "DELETE FROM ABPerson WHERE ROWID=2");
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_FALSE(s->isAddressBookChanged());
    EXPECT_EQ(forms(s->persons()), (Names{"Ann Lee"}));
    EXPECT_EQ(s->search("29"), 0u);  // Bo Wu is gone
    // The cache just written is trusted again.
    EXPECT_FALSE(s->isCacheStale());
  });
  restartPhone();

  // The address book removed altogether: nothing of the cache is shown.
  std::filesystem::remove(root_ + platform_schema::kAddressBookPath);
  phone().run(
      [&] { EXPECT_TRUE(ZVSearcher::sharedInstance()->persons().empty()); });
}

TEST_F(SearcherLoadTest, TableChangeForcesReencoding) {
  writeTable("1=张\n");
  writeContacts({{1, "张", nullptr, nullptr, {"100"}}});
  ASSERT_TRUE(plist::writeFile(root_ + ZVSearcher::kDefaultPriorityPath,
                               Value(Dict{{"110", Value("Police")}})));
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_EQ(s->persons()[0]->getNameJianPin(), "1");
    ASSERT_TRUE(s->priorityDict().has_value());
  });
  // The user's overlay corrects the reading.
  ASSERT_TRUE(plist::writeFile(root_ + ZVSearcher::kUserTablePath,
                               Value(Dict{{"94264", Value("张")}})));
  phone().run(
      [&] { platform::current().post(ZVSearcher::kT9ChangedNotification); });
  world_.advance(0);
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_TRUE(s->isAddressBookChanged());
    EXPECT_FALSE(s->priorityDict().has_value());
    s->loadData();
    EXPECT_EQ(s->persons()[0]->getNameJianPin(), "94264");
    EXPECT_TRUE(s->priorityDict().has_value());
  });
}

TEST_F(SearcherLoadTest, PropertyListTableAndMissingTable) {
  writeSettings({{"DialerT9Database", "Mine.plist"}});
  ASSERT_TRUE(plist::writeFile(root_ + "/Library/Zorvel/T9/Mine.plist",
                               Value(Dict{{"6464", Value("明")}})));
  writeContacts(
      {{1, "明", "x", nullptr, {"1"}}, {2, "张", nullptr, nullptr, {"2"}}});
  phone().run([&] {  // 明 has a reading, 张 none
    EXPECT_EQ(forms(ZVSearcher::sharedInstance()->persons(),
                    &ZVPerson::getNameJianPin),
              (Names{"*", "69"}));
  });
}

TEST_F(SearcherLoadTest, BadCacheAndDatabaseGiveEmptyLists) {
  // An empty cache, or one without a line of nine fields, is trusted (it is
  // newer than the address book) but falls back to the database.
  writeContacts({{1, "Ann", nullptr, nullptr, {"5"}}});
  for (const char* cache : {"", "1\t2\t3\t4\t5\t6\t7\t8\n\n\t\t\n"}) {
    writeCache(cache);
    phone().run([&] {
      EXPECT_EQ(forms(ZVSearcher::sharedInstance()->persons()), (Names{"Ann"}));
    });
    restartPhone();
  }

  // A corrupt database and no cache: nothing, and nothing crashes.
  std::filesystem::remove(root_ + ZVSearcher::kCachePath);
  writeDeviceFile(platform_schema::kAddressBookPath, std::string(4096, 'x'));
  writeDeviceFile(platform_schema::kCallHistoryStorePath, "garbage");
  writeDeviceFile(ZVSearcher::kPriorityPath, "garbage");
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
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
  phone().run([&] {
    EXPECT_EQ(forms(ZVSearcher::sharedInstance()->callHistory(),
                    &ZVPerson::getPhoneNumber),
              (Names{"10086"}));
  });
}

}  // namespace
}  // namespace zv::testing
