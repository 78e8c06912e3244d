// ZVRange: the part of a displayed text to highlight, as the searcher gives
// it and the result views draw it: a location and a length, (0, 0) for
// nothing. Name ranges count the platform string's UTF-16 units, number
// ranges bytes of the number (the same thing for its ASCII characters).
#pragma once

#include <cstdint>

namespace zv {

struct ZVRange {
  int64_t location = 0;
  int64_t length = 0;
  bool operator==(const ZVRange&) const = default;
};

}  // namespace zv
