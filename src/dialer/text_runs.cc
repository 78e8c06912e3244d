#include "dialer/text_runs.h"

namespace zv {
namespace {

// Bytes of the UTF-8 character led by `lead`, and the UTF-16 units it takes.
size_t charBytes(unsigned char lead) {
  return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}
size_t charUnits(unsigned char lead) { return lead >= 0xF0 ? 2 : 1; }

// Byte offset of UTF-16 position `units`; npos when it falls inside a
// surrogate pair or past the end.
size_t byteOffset(std::string_view text, size_t units) {
  size_t i = 0, u = 0;
  while (u < units && i < text.size()) {
    unsigned char lead = static_cast<unsigned char>(text[i]);
    i += charBytes(lead);
    u += charUnits(lead);
  }
  if (u != units) return std::string_view::npos;
  return std::min(i, text.size());
}

}  // namespace

size_t utf16Length(std::string_view text) {
  size_t units = 0;
  for (size_t i = 0; i < text.size();) {
    unsigned char lead = static_cast<unsigned char>(text[i]);
    i += charBytes(lead);
    units += charUnits(lead);
  }
  return units;
}

std::optional<std::array<std::string, 3>> splitRuns(std::string_view text,
                                                    ZVRange range) {
  if (text.empty() || range.length <= 0 || range.location < 0) return {};
  const size_t loc = static_cast<size_t>(range.location);
  const size_t end = loc + static_cast<size_t>(range.length);
  if (end > utf16Length(text)) return {};
  size_t a = byteOffset(text, loc), b = byteOffset(text, end);
  if (a == std::string_view::npos || b == std::string_view::npos) return {};
  return std::array<std::string, 3>{std::string(text.substr(0, a)),
                                    std::string(text.substr(a, b - a)),
                                    std::string(text.substr(b))};
}

}  // namespace zv
