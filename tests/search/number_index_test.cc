#include "search/number_index.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace zv {
namespace {

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
