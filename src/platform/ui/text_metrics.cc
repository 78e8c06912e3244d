#include "platform/ui/text_metrics.h"

#include <cmath>

#include "platform/utf8.h"

namespace zv::ui {
namespace {

bool isWide(char32_t cp) {
  return (cp >= 0x1100 && cp <= 0x115F) || (cp >= 0x2E80 && cp <= 0xA4CF) ||
         (cp >= 0xAC00 && cp <= 0xD7A3) || (cp >= 0xF900 && cp <= 0xFAFF) ||
         (cp >= 0xFE30 && cp <= 0xFE4F) || (cp >= 0xFF00 && cp <= 0xFF60) ||
         (cp >= 0xFFE0 && cp <= 0xFFE6) || (cp >= 0x20000 && cp <= 0x3FFFD);
}

// Advance of one character in ems.
double advance(char32_t cp) {
  if (isWide(cp)) return 1.0;
  if (cp == ' ') return 0.28;
  if (cp >= '0' && cp <= '9') return 0.56;
  if (cp == '(' || cp == ')' || cp == '-' || cp == '/' || cp == ',' ||
      cp == '.' || cp == ';' || cp == ':')
    return 0.33;
  if (cp >= 'A' && cp <= 'Z') return 0.66;
  if (cp < 0x80) return 0.52;
  return 0.6;
}

double weightFactor(const Font& font) {
  if (font.name.find("Bold") != std::string::npos ||
      font.name.find("M3") != std::string::npos)
    return 1.06;
  if (font.name.find("Thin") != std::string::npos ||
      font.name.find("Light") != std::string::npos)
    return 0.94;
  return 1.0;
}

}  // namespace

double textWidth(std::string_view text, const Font& font) {
  double ems = 0;
  const double weight = weightFactor(font);
  for (size_t i = 0; i < text.size();) {
    Utf8Char c = utf8CharAt(text, i);
    i += c.bytes;
    const char32_t cp = c.codePoint;
    ems += isWide(cp) ? 1.0 : advance(cp) * weight;
  }
  // Round up to a quarter point, as text layout snaps to device pixels.
  return std::ceil(ems * font.size * 4.0) / 4.0;
}

double lineHeight(const Font& font) { return std::ceil(font.size * 1.2); }

}  // namespace zv::ui
