// UTF-8 text as the platform's strings see it: characters are code points,
// positions and lengths count UTF-16 units (a character above U+FFFF takes
// two). One rule for malformed text everywhere: a byte that does not start a
// well-formed sequence (a stray continuation byte, a bad or cut-off lead, an
// overlong form, a surrogate, anything above U+10FFFF) is one character on
// its own, U+FFFD, one UTF-16 unit wide.
//
// (The T9 tables walk names by their own lead-byte rule, utf8CharLength in
// search/t9_table.h; that rule is part of the reading-table format.)
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zv {

struct Utf8Char {
  char32_t codePoint = 0;   // U+FFFD for a malformed byte
  size_t bytes = 1;         // bytes the character takes in the text
  bool wellFormed = false;  // false for a malformed byte
  // UTF-16 units of the character.
  size_t units() const { return codePoint > 0xFFFF ? 2 : 1; }
};

// The character that starts at byte `i` (i < text.size()).
Utf8Char utf8CharAt(std::string_view text, size_t i);

// True when every byte of `text` belongs to a well-formed character.
bool isValidUtf8(std::string_view text);

// Number of characters (code points) of `text`.
size_t characterCount(std::string_view text);

// Length of `text` in UTF-16 units.
size_t utf16Length(std::string_view text);

// `text` as UTF-16 units.
std::u16string toUtf16(std::string_view text);

// Byte offset of UTF-16 position `units` in `text`; npos when the position
// falls inside a character's surrogate pair or past the end.
size_t utf8OffsetOfUtf16(std::string_view text, size_t units);

}  // namespace zv
