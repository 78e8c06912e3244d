#include <gtest/gtest.h>

#include "search/searcher.h"
#include "search_fixture.h"

namespace zv::testing {
namespace {

// A cache line: id, type, nameLength, J, P, E, F, number, name.
std::string line(int id, int nameLength, const std::string& j,
                 const std::string& p, const std::string& e,
                 const std::string& number, const std::string& name) {
  return std::to_string(id) + "\t1\t" + std::to_string(nameLength) + "\t" + j +
         "\t" + p + "\t" + e + "\t" + std::string(p.size(), '1') + "\t" +
         number + "\t" + name + "\n";
}

class SearcherSearchTest : public SearchTest {};

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
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    ASSERT_EQ(s->persons().size(), 8u);
    EXPECT_EQ(s->search("23"), 9u);
    auto n = names(*s);
    EXPECT_EQ(n, (std::vector<std::string>{"a-initials-whole", "b-words-equal",
                                           "c-reading-equal", "d-number-equal",
                                           "e-initials", "f-words",
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
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_EQ(s->search("23"), 3u);  // "both", "mid-initials", typed row
    EXPECT_EQ(names(*s),
              (std::vector<std::string>{"both", "mid-initials", ""}));
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
    phone().run([&] {
      auto s = ZVSearcher::sharedInstance();
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
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
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
    EXPECT_EQ(names(*s), (std::vector<std::string>{"one"}));
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
  ASSERT_TRUE(plist::writeFile(root_ + ZVSearcher::kPriorityPath,
                               Value(Dict{{"10086", Value("Carrier")}})));
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
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
    EXPECT_EQ(names(*s), (std::vector<std::string>{"Home", "Mobile", ""}));
  });
}

TEST_F(SearcherSearchTest, RecentNumbersWithoutContact) {
  writeSettings(
      {{"DialerCallHistory", true}, {"DialerSortOptimization", false}});
  writeCache(line(1, 1, "9", "9", "9", "13800001111", "Mobile"));
  writeCalls({"10086", "13800001111"});
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_EQ(s->search("100"), 2u);
    EXPECT_EQ(s->results()[0]->recordId(), -2);
    // The matched row is searchable again: only bit 2 was cleared.
    EXPECT_EQ(s->results()[0]->priority(), ZVPerson::kByNumber);
  });
  // With the option off, numbers without contact never match.
  writeSettings({});
  restartPhone();
  phone().run([&] {
    auto s = ZVSearcher::sharedInstance();
    EXPECT_EQ(s->search("100"), 0u);
  });
}

}  // namespace
}  // namespace zv::testing
