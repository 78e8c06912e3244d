// Phone-number helpers shared by every subsystem: the keypad form of a
// number, its display form, and matching a number against a list of
// numbers and patterns (area overrides, black and white lists, prefix
// exclusions).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// The platform's not-found index.
inline constexpr size_t kNotFound = static_cast<size_t>(-1);

// The dialable characters, the only ones a phone number keeps:
// 0-9 # * + , ;
constexpr bool isDialable(char c) {
  return (c >= '0' && c <= '9') || c == '#' || c == '*' || c == '+' ||
         c == ',' || c == ';';
}

// Keeps only the dialable characters of the first 255 bytes, in order (""
// when none).
std::string keypadString(std::string_view text);

// Display form through the runtime's "CNPhoneNumber" class when it exists
// (phoneNumberWithStringValue: then formattedStringValue); texts shorter
// than 4 characters, and every text when the class is absent, unchanged.
std::string formattedStringValue(std::string_view text);

// Index of the first pattern that matches `number` (counting only the
// patterns that were tested: longer ones are skipped without counting), or
// kNotFound. "#" matches any one character (prefix match); "*" at the start,
// the end or once inside matches any run.
size_t indexOfPhoneNumber(const std::vector<std::string>& patterns,
                          std::string_view number);

}  // namespace zv
