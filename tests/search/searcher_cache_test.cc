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

// The persons read from `text`, written back as lines.
std::string readBack(std::string_view text) {
  ZVSearcher::PersonList out;
  readPersonsCache(text, out);
  std::string lines;
  for (const auto& p : out) lines += formatCacheLine(*p);
  return lines;
}

TEST(CacheFileTest, MalformedLines) {
  constexpr char kNul[] =
      "1\t1\t1\tj\0\tp\te\tf\t1\tx\n"
      "2\t1\t1\tj\tp\te\tf\t1\ty\n";
  const std::string head = "1\t1\t1\tj\tp\te\tf\t1\t";
  const std::pair<std::string, std::string> cases[] = {
      // Eight fields, blank lines, a lone tab run: skipped.
      {"1\t2\t3\t4\t5\t6\t7\t8\n\n\t\t\n", ""},
      // Extra fields are ignored; numbers read as their leading integer,
      // clamped; the number is filtered again; the last line needs no
      // newline.
      {"x\t99999999999\t-4z\tj\tp\te\tf\t1-2\tname\textra\tmore",
       "0\t2147483647\t-4\tj\tp\te\tf\t12\tname\n"},
      // A NUL ends a line; a line longer than 2047 bytes is read in pieces.
      {std::string("1\t1\t1\tj\tp\te\tf\t1\tn\0ame\n", 23), head + "n\n"},
      {head + std::string(3000, 'n') + "\n",
       head + std::string(2047 - 16, 'n') + "\n"},
      // What follows a NUL is skipped up to the newline, even a tab, and
      // the next line is read as usual.
      {std::string(kNul, sizeof kNul - 1), "2\t1\t1\tj\tp\te\tf\t1\ty\n"},
  };
  for (const auto& [text, lines] : cases)
    EXPECT_EQ(readBack(text), lines) << text.substr(0, 40);
}

// Lines with fields of every length from 0 to 19 bytes, so that tabs fall at
// every position of a machine word, read back field for field.
TEST(CacheFileTest, FieldsOfEveryLengthSplitExactly) {
  std::mt19937 rng(5);
  std::string text;
  for (int n = 0; n < 400; ++n) {
    text += std::to_string(n) + "\t1\t2";
    for (int f = 3; f < 9; ++f)
      text += "\t" + std::string(rng() % 20, f == 7 ? '5' : 'a' + f);
    text += "\n";
  }
  // No final newline.
  EXPECT_EQ(readBack(text.substr(0, text.size() - 1)), text);
}

}  // namespace
}  // namespace zv
