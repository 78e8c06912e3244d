// Highlight ranges on display texts. Ranges count UTF-16 units, as the
// platform's strings do (the searcher's name ranges; platform/utf8.h); for
// the ASCII numbers this is the byte count. splitRuns cuts a text into the
// part before, inside and after a range.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/highlight_range.h"

namespace zv {

// {before, inside, after} for a non-empty range that lies inside the text
// (location + length <= its UTF-16 length) and does not cut a character;
// nothing otherwise.
std::optional<std::array<std::string, 3>> splitRuns(std::string_view text,
                                                    ZVRange range);

}  // namespace zv
