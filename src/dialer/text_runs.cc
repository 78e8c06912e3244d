#include "dialer/text_runs.h"

#include "platform/utf8.h"

namespace zv {

std::optional<std::array<std::string, 3>> splitRuns(std::string_view text,
                                                    ZVRange range) {
  if (text.empty() || range.length <= 0 || range.location < 0) return {};
  const size_t loc = static_cast<size_t>(range.location);
  const size_t end = loc + static_cast<size_t>(range.length);
  size_t a = utf8OffsetOfUtf16(text, loc), b = utf8OffsetOfUtf16(text, end);
  if (a == std::string_view::npos || b == std::string_view::npos) return {};
  return std::array<std::string, 3>{std::string(text.substr(0, a)),
                                    std::string(text.substr(a, b - a)),
                                    std::string(text.substr(b))};
}

}  // namespace zv
