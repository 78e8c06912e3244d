// The system's own colours and fonts, shared by every view it adds to a
// host: a blue, a green and a red, and the thin and medium weights of the
// platform's interface font.
#pragma once

#include "platform/ui/style_types.h"

namespace zv {

struct ZVColor {
  static ui::Color blueColor();   // 0, 122, 255
  static ui::Color greenColor();  // 50, 210, 80
  static ui::Color redColor();    // 255, 80, 80
};

struct ZVFont {
  // ".HelveticaNeueInterface-Thin" at `size` points.
  static ui::Font thinSystemFontOfSize(double size);
  // ".HelveticaNeueInterface-M3" at `size` points.
  static ui::Font mediumSystemFontOfSize(double size);
};

}  // namespace zv
