// Small value types of the UI model: a colour (red, green, blue, alpha, each
// 0-1), a font (name and point size), a point and a rectangle in points.
// They carry no behaviour; views and the style helpers pass them around.
#pragma once

#include <string>

#include "platform/platform.h"

namespace zv::ui {

using platform::Size;

struct Color {
  double r = 0, g = 0, b = 0, a = 1;
  bool operator==(const Color&) const = default;
};

struct Font {
  std::string name;
  double size = 0;
  bool operator==(const Font&) const = default;
};

struct Point {
  double x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

struct Rect {
  Point origin;
  platform::Size size;
  bool operator==(const Rect&) const = default;
};

// The system's tint: bar buttons, selected tabs, checkmarks.
inline constexpr Color kTintColor{0, 0.48, 1, 1};

// Insets of a content area (UIEdgeInsets).
struct EdgeInsets {
  double top = 0, left = 0, bottom = 0, right = 0;
  bool operator==(const EdgeInsets&) const = default;
};

}  // namespace zv::ui
