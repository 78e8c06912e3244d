#include <gtest/gtest.h>

#include "search/searcher.h"
#include "search/searcher_encode.h"

namespace zv {
namespace {

using R = ZVRange;

TEST(HighlightTest, ChineseNameByInitialsAndReading) {
  T9Table t;
  loadT9text(t, "94264=张\n9426=小\n6464=明\n");
  // ZVPerson is not copyable; build in place.
  auto make = [&](int priority) {
    auto p = std::make_unique<ZVPerson>();
    EncodedName e;
    encodeName("张小明", &t, e);
    p->setNameJianPin(e.jianPin);
    p->setNamePinYin(e.pinYin);
    p->setNameFirst(e.first);
    p->setNameLength(e.nameLength);
    p->setPriority(priority);
    return p;
  };
  auto byInitials = make(ZVPerson::kByInitials);
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("张小明", "99", byInitials.get()),
            (R{0, 2}));
  EXPECT_EQ(
      ZVSearcher::getHighlightNameRange("张小明", "996", byInitials.get()),
      (R{0, 3}));
  // A key that is not in the form, and no person, highlight nothing.
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("张小明", "11", byInitials.get()),
            (R{}));
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("张小明", "99", nullptr), (R{}));

  auto byReading = make(ZVPerson::kByReading);
  // "94264" is 张; "4264942" runs from 张 into 小; "6464" is 明's reading,
  // first found inside 张小 ("...64 9426 6464": offset 3).
  EXPECT_EQ(
      ZVSearcher::getHighlightNameRange("张小明", "94264", byReading.get()),
      (R{0, 1}));
  EXPECT_EQ(
      ZVSearcher::getHighlightNameRange("张小明", "4264942", byReading.get()),
      (R{0, 2}));
  EXPECT_EQ(
      ZVSearcher::getHighlightNameRange("张小明", "66464", byReading.get()),
      (R{1, 2}));
}

TEST(HighlightTest, LatinNamesAndSpaces) {
  auto p = std::make_unique<ZVPerson>();
  EncodedName e;
  encodeName("Li Na", nullptr, e);  // J 5462
  p->setNameJianPin(e.jianPin);
  p->setNameLength(e.nameLength);
  p->setPriority(ZVPerson::kByInitials);
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("Li Na", "62", p.get()),
            (R{3, 2}));
  // A space right after the range is taken into it.
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("Li Na", "54", p.get()),
            (R{0, 3}));

  encodeName("Ann Dee Go", nullptr, e);  // E 234
  p->setNameEnglish(e.english);
  p->setPriority(ZVPerson::kByWords);
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("Ann Dee Go", "34", p.get()),
            (R{3, 7}));
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("Ann Dee Go", "2", p.get()),
            (R{0, 3}));
  EXPECT_EQ(ZVSearcher::getShiftSpaceEnglishNameRange({1, 2}, "Ann Dee Go"),
            (R{3, 7}));
  EXPECT_EQ(ZVSearcher::getShiftSpaceEnglishNameRange({0, 1}, "Ann Dee Go"),
            (R{0, 3}));

  // Ranges count UTF-16 units: an emoji before the space takes two.
  EXPECT_EQ(ZVSearcher::getShiftSpaceNameRange({1, 1}, "\xf0\x9f\x98\x80 b"),
            (R{1, 2}));
  EXPECT_EQ(ZVSearcher::getShiftSpaceNameRange({2, 1}, "\xf0\x9f\x98\x80 b"),
            (R{3, 1}));
}

TEST(HighlightTest, NumberRanges) {
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("138-0013-8000", "138"),
            (R{0, 3}));
  // Separators between matched digits are taken in.
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("138-0013-8000", "800"),
            (R{2, 4}));
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("138-0013-8000", "3800"),
            (R{1, 5}));
  // A key as long as the number, or covering all of it, shows nothing.
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("10086", "10086"), (R{}));
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("100-86", "10086"), (R{}));
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("100-86", ""), (R{}));
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("123", "9"), (R{}));
  // Running out of digits ends the search at once.
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("1-2-3", "34"), (R{}));
  EXPECT_EQ(ZVSearcher::getHighlightNumberRange("+86 10", "86"), (R{1, 2}));
}

}  // namespace
}  // namespace zv
