// The running system's version, and the point sizes of list texts at the user's
// text size: each list has a default place on a ladder of sizes, and every step
// of the text-size setting moves one rung (clamped at the ends).
#pragma once

#include <algorithm>
#include <string>

#include "platform/platform.h"

namespace zv::hosts {

// Names: 13, 14, 15.5, 17, 18.5, 20, 21.5 points.
inline double nameFontSize(int defaultRung) {
  static constexpr double kRungs[] = {13, 14, 15.5, 17, 18.5, 20, 21.5};
  const int rung =
      std::clamp(defaultRung + platform::current().device().textSizeStep, 0, 6);
  return kRungs[rung];
}

// Secondary lines: 11 to 17 points.
inline double detailFontSize(int defaultRung) {
  static constexpr double kRungs[] = {11, 12, 13, 14, 15, 16, 17};
  const int rung =
      std::clamp(defaultRung + platform::current().device().textSizeStep, 0, 6);
  return kRungs[rung];
}

// The running system's version as a number (8.1.2 reads as 8.1).
inline float systemVersion() {
  try {
    return std::stof(platform::current().device().systemVersion);
  } catch (...) {
    return 0;
  }
}

}  // namespace zv::hosts
