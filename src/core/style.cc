#include "core/style.h"

namespace zv {

// The components are the byte values over 255, as single-precision floats
// would hold them.
ui::Color ZVColor::blueColor() { return {0, 0.47843137, 1, 1}; }
ui::Color ZVColor::greenColor() {
  return {0.19607843, 0.82352942, 0.3137255, 1};
}
ui::Color ZVColor::redColor() { return {1, 0.3137255, 0.3137255, 1}; }

ui::Font ZVFont::thinSystemFontOfSize(double size) {
  return {".HelveticaNeueInterface-Thin", size};
}

ui::Font ZVFont::mediumSystemFontOfSize(double size) {
  return {".HelveticaNeueInterface-M3", size};
}

}  // namespace zv
