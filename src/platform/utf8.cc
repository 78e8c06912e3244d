#include "platform/utf8.h"

namespace zv {

Utf8Char utf8CharAt(std::string_view text, size_t i) {
  const auto* p = reinterpret_cast<const unsigned char*>(text.data()) + i;
  const size_t left = text.size() - i;
  const unsigned char c = p[0];
  if (c < 0x80) return {c, 1, true};
  constexpr Utf8Char kMalformed{0xFFFD, 1, false};
  size_t extra;
  char32_t cp;
  if (c >= 0xC2 && c <= 0xDF) {
    extra = 1;
    cp = c & 0x1F;
  } else if (c >= 0xE0 && c <= 0xEF) {
    extra = 2;
    cp = c & 0x0F;
  } else if (c >= 0xF0 && c <= 0xF4) {
    extra = 3;
    cp = c & 0x07;
  } else {
    return kMalformed;
  }
  if (left <= extra) return kMalformed;
  for (size_t k = 1; k <= extra; ++k) {
    if ((p[k] & 0xC0) != 0x80) return kMalformed;
    cp = (cp << 6) | (p[k] & 0x3F);
  }
  if ((extra == 2 && cp < 0x800) || (extra == 3 && cp < 0x10000) ||
      cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
    return kMalformed;
  return {cp, extra + 1, true};
}

bool isValidUtf8(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    Utf8Char c = utf8CharAt(text, i);
    if (!c.wellFormed) return false;
    i += c.bytes;
  }
  return true;
}

size_t characterCount(std::string_view text) {
  size_t n = 0;
  for (size_t i = 0; i < text.size(); ++n) i += utf8CharAt(text, i).bytes;
  return n;
}

size_t utf16Length(std::string_view text) {
  size_t units = 0;
  for (size_t i = 0; i < text.size();) {
    Utf8Char c = utf8CharAt(text, i);
    units += c.units();
    i += c.bytes;
  }
  return units;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    Utf8Char c = utf8CharAt(text, i);
    i += c.bytes;
    if (c.codePoint > 0xFFFF) {
      char32_t v = c.codePoint - 0x10000;
      out += static_cast<char16_t>(0xD800 + (v >> 10));
      out += static_cast<char16_t>(0xDC00 + (v & 0x3FF));
    } else {
      out += static_cast<char16_t>(c.codePoint);
    }
  }
  return out;
}

size_t utf8OffsetOfUtf16(std::string_view text, size_t units) {
  size_t i = 0, u = 0;
  while (u < units && i < text.size()) {
    Utf8Char c = utf8CharAt(text, i);
    i += c.bytes;
    u += c.units();
  }
  return u == units ? i : std::string_view::npos;
}

}  // namespace zv
