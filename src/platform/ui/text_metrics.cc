#include "platform/ui/text_metrics.h"

#include <cmath>
#include <cstdint>

#include "platform/utf8.h"

namespace zv::ui {
namespace {

// Liberation Sans advances in thousandths of an em, U+0020-U+007E then
// U+00A0-U+00FF, read from the faces with hinting and kerning off.
constexpr uint16_t kRegular[] = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278,
    278, 556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584,
    584, 556, 1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556,
    833, 722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278,
    278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278, 556, 556, 222, 222,
    500, 222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,
    500, 334, 260, 334, 584,
    // U+00A0
    278, 333, 556, 556, 556, 556, 260, 556, 333, 737, 370, 556, 584, 0, 737,
    552, 400, 549, 333, 333, 333, 576, 537, 278, 333, 333, 365, 556, 834, 834,
    834, 611, 667, 667, 667, 667, 667, 667, 1000, 722, 667, 667, 667, 667, 278,
    278, 278, 278, 722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722,
    722, 667, 667, 611, 556, 556, 556, 556, 556, 556, 889, 500, 556, 556, 556,
    556, 278, 278, 278, 278, 556, 556, 556, 556, 556, 556, 556, 549, 611, 556,
    556, 556, 556, 500, 556, 500};
constexpr uint16_t kBold[] = {
    278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278,
    278, 556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584,
    584, 611, 975, 722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611,
    833, 722, 778, 667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 333,
    278, 333, 584, 556, 333, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278,
    556, 278, 889, 611, 611, 611, 611, 389, 556, 333, 611, 556, 778, 556, 556,
    500, 389, 280, 389, 584,
    // U+00A0
    278, 333, 556, 556, 556, 556, 280, 556, 333, 737, 370, 556, 584, 0, 737,
    552, 400, 549, 333, 333, 333, 576, 556, 278, 333, 333, 365, 556, 834, 834,
    834, 611, 722, 722, 722, 722, 722, 722, 1000, 722, 667, 667, 667, 667, 278,
    278, 278, 278, 722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722,
    722, 667, 667, 611, 556, 556, 556, 556, 556, 556, 889, 556, 556, 556, 556,
    556, 278, 278, 278, 278, 611, 611, 611, 611, 611, 611, 611, 549, 611, 611,
    611, 611, 611, 556, 611, 556};
static_assert(sizeof kRegular / sizeof *kRegular == 95 + 96);
static_assert(sizeof kBold / sizeof *kBold == 95 + 96);

bool isWide(char32_t cp) {
  return (cp >= 0x1100 && cp <= 0x115F) || (cp >= 0x2E80 && cp <= 0xA4CF) ||
         (cp >= 0xAC00 && cp <= 0xD7A3) || (cp >= 0xF900 && cp <= 0xFAFF) ||
         (cp >= 0xFE30 && cp <= 0xFE4F) || (cp >= 0xFF00 && cp <= 0xFF60) ||
         (cp >= 0xFFE0 && cp <= 0xFFE6) || (cp >= 0x20000 && cp <= 0x3FFFD);
}

// Advance of one character in thousandths of an em.
int advance(char32_t cp, bool bold) {
  const uint16_t* table = bold ? kBold : kRegular;
  if (cp >= 0x20 && cp <= 0x7E) return table[cp - 0x20];
  if (cp >= 0xA0 && cp <= 0xFF) return table[95 + (cp - 0xA0)];
  if (isWide(cp)) return 1000;
  switch (cp) {
    case 0x2026:  // …
    case 0x2014:  // —
      return 1000;
    case 0x2013:  // –
      return 556;
    case 0x2018:
    case 0x2019:
      return 222;
    case 0x201C:
    case 0x201D:
      return 333;
    case 0x2022:  // •
      return 350;
    default:
      return 600;
  }
}

}  // namespace

bool isBoldFont(const Font& font) {
  return font.name.find("Bold") != std::string::npos;
}

double textWidth(std::string_view text, const Font& font) {
  const bool bold = isBoldFont(font);
  long units = 0;
  for (size_t i = 0; i < text.size();) {
    Utf8Char c = utf8CharAt(text, i);
    i += c.bytes;
    units += advance(c.codePoint, bold);
  }
  // Round up to a quarter point, as text layout snaps to device pixels.
  return std::ceil(units / 1000.0 * font.size * 4.0 - 1e-9) / 4.0;
}

double lineHeight(const Font& font) { return std::ceil(font.size * 1.2); }

}  // namespace zv::ui
