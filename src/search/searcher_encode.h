// Turning a contact into searchable text: the display name composed from
// the address book's name parts, and the name's keypad forms.
//
// Forms of a name (each bounded to about 255 bytes):
//   J  initials: the first byte of each character's keypad output, except
//      that the last character contributes its whole reading;
//   P  full reading: every character's whole keypad output;
//   E  word initials: the first output of each space-separated word (a word
//      that is only the last character contributes its whole reading);
//   F  reading lengths: one digit character ('0' + length) per non-space
//      character, so that F's digits add up to P's length.
// ASCII letters use the keypad letter map; digits and # * + , ; stand for
// themselves; other characters use the reading table, and one without a
// reading, or any other byte, becomes '*' (length 1). Spaces separate words
// and count for nothing. nameLength is the 1-based position (spaces not
// counted) of the last character that produced keypad output.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "search/t9_table.h"

namespace zv {

struct EncodedName {
  std::string jianPin;  // J
  std::string pinYin;   // P
  std::string english;  // E
  std::string first;    // F
  int32_t nameLength = 0;
};

// Encodes `name` into `out` (reusing its buffers). `table` may be null.
void encodeName(std::string_view name, const T9Table* table, EncodedName& out);

// The display name: the first part (last name when lastNameFirst, else the
// first name) cut to 255 bytes, the second cut so that both stay within 255
// bytes, joined by one space only when both are present and together have at
// least 4 characters (so two one-character parts join without one); then,
// when `organization` is given, the organization cut so that the name bytes
// stay within 255, after a space when anything came before it.
std::string composeDisplayName(std::string_view first, std::string_view last,
                               const std::string* organization,
                               bool lastNameFirst);

}  // namespace zv
