// Highlight ranges on display texts. Ranges count UTF-16 units, as the
// platform's strings do (the searcher's name ranges); for the ASCII numbers
// this is the byte count. splitRuns cuts a text into the part before, inside
// and after a range.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "search/searcher.h"

namespace zv {

// Length of UTF-8 text in UTF-16 units.
size_t utf16Length(std::string_view text);

// {before, inside, after} for a non-empty range that lies inside the text
// (location + length <= its UTF-16 length); nothing otherwise.
std::optional<std::array<std::string, 3>> splitRuns(std::string_view text,
                                                    ZVRange range);

}  // namespace zv
