// Joining an area text to a host's label. The keypad, Recents and Messages
// put one blank between them ("%@ %@"); contact cards and the call screens'
// labels put two ("%@  %@"). Host views are reused, so a label that already
// ends with the area keeps it once rather than getting it twice.
#pragma once

#include <string>
#include <string_view>

namespace zv {

enum class AreaGap { kOne, kTwo };

// True when `label` already ends with `area`.
bool labelEndsWithArea(std::string_view label, std::string_view area);

// "%@ %@" or "%@  %@" of `label` and `area`, as they are.
std::string joinArea(std::string_view label, std::string_view area,
                     AreaGap gap);

// The label with the area added: `area` alone for an empty label, `label`
// unchanged when it already ends with `area`, else joinArea().
std::string appendArea(std::string_view label, std::string_view area,
                       AreaGap gap);

}  // namespace zv
