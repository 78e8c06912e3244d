// UTF-8 walking with the platform's UTF-16 counting, and the one rule for
// malformed bytes (each is one character U+FFFD of one unit).
#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace zv {
namespace {

TEST(Utf8Test, DecodesEachLengthAndCountsUtf16Units) {
  const std::string text = "a\xc3\xa9\xe5\xbc\xa0\xf0\x9f\x98\x80";  // aé张😀
  Utf8Char c = utf8CharAt(text, 0);
  EXPECT_EQ(c.codePoint, U'a');
  EXPECT_EQ(c.bytes, 1u);
  c = utf8CharAt(text, 1);
  EXPECT_EQ(c.codePoint, U'\u00e9');
  EXPECT_EQ(c.bytes, 2u);
  c = utf8CharAt(text, 3);
  EXPECT_EQ(c.codePoint, U'\u5f20');
  EXPECT_EQ(c.bytes, 3u);
  c = utf8CharAt(text, 6);
  EXPECT_EQ(c.codePoint, U'\U0001F600');
  EXPECT_EQ(c.bytes, 4u);
  EXPECT_EQ(c.units(), 2u);
  EXPECT_TRUE(isValidUtf8(text));
  EXPECT_EQ(characterCount(text), 4u);
  EXPECT_EQ(utf16Length(text), 5u);
  EXPECT_EQ(toUtf16(text), u"a\u00e9\u5f20\U0001F600");
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
  const std::string cut =
      "\xe5\xbc"
      "a";
  EXPECT_EQ(characterCount(cut), 3u);
  EXPECT_EQ(utf8CharAt(cut, 2).codePoint, U'a');
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_EQ(utf16Length(""), 0u);
}

TEST(Utf8Test, Utf16PositionsMapToByteOffsets) {
  const std::string text = "\xe5\xbc\xa0\xf0\x9f\x98\x80z";  // 张😀z
  EXPECT_EQ(utf8OffsetOfUtf16(text, 0), 0u);
  EXPECT_EQ(utf8OffsetOfUtf16(text, 1), 3u);
  EXPECT_EQ(utf8OffsetOfUtf16(text, 2), std::string::npos);  // mid-pair
  EXPECT_EQ(utf8OffsetOfUtf16(text, 3), 7u);
  EXPECT_EQ(utf8OffsetOfUtf16(text, 4), 8u);
  EXPECT_EQ(utf8OffsetOfUtf16(text, 5), std::string::npos);  // past the end
}

}  // namespace
}  // namespace zv
