#include <gtest/gtest.h>

#include "search/searcher.h"
#include "search/searcher_encode.h"

namespace zv {
namespace {

using R = ZVRange;

TEST(HighlightTest, NameRangesByTheFormThatMatched) {
  T9Table t;
  loadT9text(t, "94264=张\n9426=小\n6464=明\n");
  struct Case {
    const char* name;
    int priority;
    const char* key;
    R range;
  } cases[] = {
      {"张小明", ZVPerson::kByInitials, "99", {0, 2}},
      {"张小明", ZVPerson::kByInitials, "996", {0, 3}},
      // A key that is not in the form highlights nothing.
      {"张小明", ZVPerson::kByInitials, "11", {}},
      // "94264" is 张; "4264942" runs from 张 into 小; "66464" holds 明's
      // reading, first found inside 张小 ("...64 9426 6464": offset 3).
      {"张小明", ZVPerson::kByReading, "94264", {0, 1}},
      {"张小明", ZVPerson::kByReading, "4264942", {0, 2}},
      {"张小明", ZVPerson::kByReading, "66464", {1, 2}},
      {"Li Na", ZVPerson::kByInitials, "62", {3, 2}},
      // A space right after the range is taken into it.
      {"Li Na", ZVPerson::kByInitials, "54", {0, 3}},
      {"Ann Dee Go", ZVPerson::kByWords, "34", {3, 7}},
      {"Ann Dee Go", ZVPerson::kByWords, "2", {0, 3}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + c.key);
    ZVPerson p;  // laid out as the loader does
    EncodedName e;
    encodeName(c.name, &t, e);
    p.setNameJianPin(e.jianPin);
    p.setNamePinYin(e.pinYin);
    p.setNameEnglish(e.english);
    p.setNameFirst(e.first);
    p.setNameLength(e.nameLength);
    p.setPriority(c.priority);
    EXPECT_EQ(ZVSearcher::getHighlightNameRange(c.name, c.key, &p), c.range);
  }
  // No person, nothing.
  EXPECT_EQ(ZVSearcher::getHighlightNameRange("张小明", "99", nullptr), (R{}));

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
  const struct {
    const char *number, *key;
    R range;
  } cases[] = {
      {"138-0013-8000", "138", {0, 3}},
      // Separators between matched digits are taken in.
      {"138-0013-8000", "800", {2, 4}},
      {"138-0013-8000", "3800", {1, 5}},
      // A key as long as the number, or covering all of it, shows nothing.
      {"10086", "10086", {}},
      {"100-86", "10086", {}},
      {"100-86", "", {}},
      {"123", "9", {}},
      // Running out of digits ends the search at once.
      {"1-2-3", "34", {}},
      {"+86 10", "86", {1, 2}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ZVSearcher::getHighlightNumberRange(c.number, c.key), c.range)
        << c.number << " " << c.key;
}

}  // namespace
}  // namespace zv
