// A person's stored forms, and the index that finds persons by number.
#include "search/person.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "search/number_index.h"

namespace zv {
namespace {

TEST(PersonTest, PhoneNumberKeepsOnlyDialableCharacters) {
  ZVPerson p;
  p.setPhoneNumber("+86 (10) 8888-9999");
  EXPECT_STREQ(p.phoneNumber(), "+861088889999");
  EXPECT_EQ(p.phoneNumberLength(), 13u);
  p.setPhoneNumber("p,1;2#");
  EXPECT_STREQ(p.phoneNumber(), ",1;2#");
  p.setPhoneNumber("\xe7\x94\xb5 - ()");
  ASSERT_NE(p.phoneNumber(), nullptr);  // empty, not null
  EXPECT_STREQ(p.phoneNumber(), "");
  // The unfiltered setter stores the text as given.
  p.setPhoneNumberF("12 34");
  EXPECT_STREQ(p.phoneNumber(), "12 34");
}

// The searched forms with each NUL between them shown as '|'.
std::string runOf(const ZVPerson& p) {
  std::string run(p.searchedForms());
  for (char& c : run) c = c ? c : '|';
  return run;
}

TEST(PersonTest, SearchedFormsRunBackToBackInSearchOrder) {
  ZVPerson p;
  EXPECT_EQ(runOf(p), "");
  p.setNameFull("Ann Dee Go");  // not a searched form
  EXPECT_EQ(runOf(p), "");
  p.setNamePinYin("266");
  EXPECT_EQ(runOf(p), "266");
  // Set out of order; laid out initials, words, reading, number.
  p.setPhoneNumber("139");
  p.setNameJianPin("23");
  EXPECT_EQ(runOf(p), "23|266|139");
  p.setNameEnglish("");
  EXPECT_EQ(runOf(p), "23||266|139");
  EXPECT_EQ(p.searchedForms().data(), p.nameJianPin());
  // Long texts move out of the person; the run moves with them.
  p.setNameFull(std::string(200, 'x'));
  EXPECT_EQ(runOf(p), "23||266|139");
}

TEST(PersonTest, GettersRejectInvalidUtf8AndNeverGiveNull) {
  ZVPerson p;
  EXPECT_EQ(p.recordId(), -1);  // no contact until one is set
  EXPECT_EQ(p.nameFull(), nullptr);
  EXPECT_EQ(p.getNameFull() + p.getPhoneNumber(), "");
  p.setNameFull("\xe5\xbc\xa0\xe5\xb0\x8f");  // 张小
  EXPECT_EQ(p.getNameFull(), "\xe5\xbc\xa0\xe5\xb0\x8f");
  p.setNameFull("\xe5\xbc");  // cut character
  EXPECT_STREQ(p.nameFull(), "\xe5\xbc");
  EXPECT_EQ(p.getNameFull(), "");
}

NumberIndex::PersonRef personWith(const char* number) {
  auto p = std::make_shared<ZVPerson>();
  if (number) p->setPhoneNumber(number);
  return p;
}

TEST(NumberIndexTest, FindsByFilteredNumberAndTheLastOfEqualOnesWins) {
  NumberIndex::PersonList list = {personWith("138-0000 1111"),
                                  personWith(nullptr), personWith("10086"),
                                  personWith("10086"), personWith("")};
  NumberIndex index;
  EXPECT_EQ(index.find(list, "10086"), nullptr);  // not built yet
  index.build(list);
  EXPECT_EQ(index.size(), 3u);
  ASSERT_NE(index.find(list, "13800001111"), nullptr);
  EXPECT_EQ(*index.find(list, "13800001111"), list[0]);
  EXPECT_EQ(*index.find(list, "10086"), list[3]);
  // No number and an empty one are the same key; the later person wins.
  EXPECT_EQ(*index.find(list, ""), list[4]);
  EXPECT_EQ(index.find(list, "138-0000 1111"), nullptr);  // keys are filtered
  EXPECT_EQ(index.find(list, "1008"), nullptr);
  // A shorter list than the one it was built over finds nothing outside it.
  NumberIndex::PersonList shorter(list.begin(), list.begin() + 2);
  EXPECT_EQ(index.find(shorter, "10086"), nullptr);
  index.build({});
  EXPECT_EQ(index.find(list, "10086"), nullptr);
}

TEST(NumberIndexTest, AgreesWithAnOrderedMapOnManyCollidingNumbers) {
  // Numbers drawn from a small space, so that hashes share slots and probe
  // runs wrap around the table.
  std::mt19937 rng(3);
  NumberIndex::PersonList list;
  std::map<std::string, size_t> model;
  for (size_t i = 0; i < 20000; ++i) {
    std::string number = "1" + std::to_string(rng() % 15000);
    list.push_back(personWith(number.c_str()));
    model[number] = i;
  }
  NumberIndex index;
  index.build(list);
  EXPECT_EQ(index.size(), model.size());
  for (const auto& [number, position] : model) {
    const auto* found = index.find(list, number);
    ASSERT_NE(found, nullptr) << number;
    EXPECT_EQ(found, &list[position]) << number;
  }
  for (int i = 0; i < 2000; ++i)
    EXPECT_EQ(index.find(list, "2" + std::to_string(i)), nullptr);
}

}  // namespace
}  // namespace zv
