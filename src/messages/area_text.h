// Joining an area to a label's text: "%@ %@" (one blank), the area alone
// when the text is empty, and the text unchanged when it already ends with
// the area (a reused cell must not get it twice).
#pragma once

#include <string>

namespace zv {

inline std::string joinArea(const std::string& text, const std::string& area) {
  if (area.empty()) return text;
  if (text.empty()) return area;
  if (text.size() >= area.size() &&
      text.compare(text.size() - area.size(), area.size(), area) == 0)
    return text;
  return text + " " + area;
}

}  // namespace zv
