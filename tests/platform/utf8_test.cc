// UTF-8 walking with the platform's UTF-16 counting, and the one rule for
// malformed bytes (each is one character U+FFFD of one unit).
#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace zv {
namespace {

TEST(Utf8Test, DecodesEachLengthCountsUtf16UnitsAndMapsTheirPositions) {
  const std::string text = "a\xc3\xa9\xe5\xbc\xa0\xf0\x9f\x98\x80";  // aé张😀
  std::vector<std::tuple<size_t, char32_t, size_t, size_t>> chars;
  for (size_t at : {0, 1, 3, 6}) {
    const Utf8Char c = utf8CharAt(text, at);
    chars.emplace_back(at, c.codePoint, c.bytes, c.units());
  }
  EXPECT_EQ(chars, (decltype(chars){{0, U'a', 1, 1},
                                    {1, U'\u00e9', 2, 1},
                                    {3, U'\u5f20', 3, 1},
                                    {6, U'\U0001F600', 4, 2}}));
  EXPECT_TRUE(isValidUtf8(text));
  EXPECT_EQ(characterCount(text), 4u);
  EXPECT_EQ(utf16Length(text), 5u);
  EXPECT_EQ(toUtf16(text), u"a\u00e9\u5f20\U0001F600");
  // UTF-16 positions map to byte offsets; past the end and inside a
  // surrogate pair there is none.
  std::vector<size_t> offsets;
  for (size_t i = 0; i < 7; ++i) offsets.push_back(utf8OffsetOfUtf16(text, i));
  const size_t none = std::string::npos;
  EXPECT_EQ(offsets, (std::vector<size_t>{0, 1, 3, 6, none, 10, none}));
}

TEST(Utf8Test, EveryMalformedByteIsOneReplacementCharacter) {
  for (const std::string bad : {"\x80", "\xc0\xaf", "\xed\xa0\x80",
                                "\xf4\x90\x80\x80", "\xe5\xbc", "\xff"}) {
    SCOPED_TRACE(bad.size());
    EXPECT_FALSE(isValidUtf8(bad));
    EXPECT_EQ(characterCount(bad), bad.size());
    EXPECT_EQ(utf16Length(bad), bad.size());
    EXPECT_EQ(toUtf16(bad), std::u16string(bad.size(), u'\uFFFD'));
  }
  // A cut-off character does not swallow the good one after it.
  const std::string cut = std::string("\xe5\xbc") + "a";
  EXPECT_EQ(characterCount(cut), 3u);
  EXPECT_EQ(utf8CharAt(cut, 2).codePoint, U'a');
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_EQ(utf16Length(""), 0u);
}

}  // namespace
}  // namespace zv
