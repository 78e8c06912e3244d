#include "search/searcher_cache.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace zv {
namespace {

// A line read back formats to the same bytes (empty forms keep their
// fields); a field never set is written "(null)", and a number read as
// "(null)" filters to "".
TEST(CacheFileTest, LinesRoundTrip) {
  const std::string full =
      "12\t-1\t3\t996464\t9426494266464\t9\t544\t555\t张小明\n";
  const std::string empty = "7\t0\t0\t\t\t\t\t\t\n";
  ZVSearcher::PersonList out;
  readPersonsCache(full + empty + "8\t0\t0\tj\tp\te\tf\t(null)\tn\n", out);
  ASSERT_EQ(out.size(), 3u);
  EXPECT_EQ(formatCacheLine(*out[0]), full);
  EXPECT_EQ(formatCacheLine(*out[1]), empty);
  EXPECT_EQ(out[2]->getPhoneNumber(), "");
  EXPECT_EQ(formatCacheLine(ZVPerson()),
            "-1\t-1\t0\t(null)\t(null)\t(null)\t(null)\t(null)\t(null)\n");
}

TEST(CacheFileTest, MalformedLines) {
  ZVSearcher::PersonList out;
  // Eight fields, blank lines, a lone tab run: skipped.
  readPersonsCache("1\t2\t3\t4\t5\t6\t7\t8\n\n\t\t\n", out);
  EXPECT_TRUE(out.empty());
  // Extra fields are ignored; numbers read as their leading integer,
  // clamped; the number is filtered again; the last line needs no newline.
  readPersonsCache("x\t99999999999\t-4z\tj\tp\te\tf\t1-2\tname\textra\tmore",
                   out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0]->recordId(), 0);
  EXPECT_EQ(out[0]->phoneType(), 2147483647);
  EXPECT_EQ(out[0]->nameLength(), -4);
  EXPECT_EQ(out[0]->getPhoneNumber(), "12");
  EXPECT_EQ(out[0]->getNameFull(), "name");
  // A NUL ends a line; a line longer than 2047 bytes is read in pieces.
  out.clear();
  readPersonsCache(std::string("1\t1\t1\tj\tp\te\tf\t1\tn\0ame\n", 23), out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0]->getNameFull(), "n");
  out.clear();
  readPersonsCache("1\t1\t1\tj\tp\te\tf\t1\t" + std::string(3000, 'n') + "\n",
                   out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0]->getNameFull().size(), 2047u - 16u);
  // What follows a NUL is skipped up to the newline, even a tab, and the
  // next line is read as usual.
  out.clear();
  constexpr char kNul[] =
      "1\t1\t1\tj\0\tp\te\tf\t1\tx\n"
      "2\t1\t1\tj\tp\te\tf\t1\ty\n";
  readPersonsCache(std::string(kNul, sizeof kNul - 1), out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0]->recordId(), 2);
}

// Lines with fields of every length from 0 to 19 bytes, so that tabs fall at
// every position of a machine word, read back field for field.
TEST(CacheFileTest, FieldsOfEveryLengthSplitExactly) {
  std::mt19937 rng(5);
  std::string text;
  std::vector<std::vector<std::string>> lines;
  for (int n = 0; n < 400; ++n) {
    std::vector<std::string> fields = {std::to_string(n), "1", "2"};
    for (int f = 3; f < 9; ++f)
      fields.push_back(std::string(rng() % 20, f == 7 ? '5' : 'a' + f));
    for (size_t f = 0; f < fields.size(); ++f)
      text += fields[f] + (f + 1 < fields.size() ? "\t" : "\n");
    lines.push_back(fields);
  }
  ZVSearcher::PersonList out;
  readPersonsCache(text.substr(0, text.size() - 1), out);  // no final newline
  ASSERT_EQ(out.size(), lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    const auto& p = *out[i];
    const auto& f = lines[i];
    ASSERT_EQ(p.recordId(), static_cast<int>(i));
    EXPECT_EQ(p.getNameJianPin(), f[3]);
    EXPECT_EQ(p.getNamePinYin(), f[4]);
    EXPECT_EQ(p.getNameEnglish(), f[5]);
    EXPECT_EQ(p.getNameFirst(), f[6]);
    EXPECT_EQ(p.getPhoneNumber(), f[7]);
    EXPECT_EQ(p.getNameFull(), f[8]);
  }
}

}  // namespace
}  // namespace zv
