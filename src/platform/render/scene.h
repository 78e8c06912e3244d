// What one picture of the simulated phone's screen holds: the screen's size
// in points and its scale, the views on screen bottom to top (each placed at
// its frame in screen points; a layer without a size covers the screen),
// the bars the system draws around them (status bar with the carrier name,
// navigation bar, tab bar), and an alert or action sheet above everything.
//
// Host views that keep what they show in fields of their own rather than in
// subviews (a display holding a number, a keypad) are drawn by painters
// keyed by the view's runtime class name; a painter draws in the view's own
// coordinates through Canvas. A scene only refers to views: drawing it never
// changes them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/label.h"
#include "platform/ui/sheets.h"

namespace zv::render {

// The drawing a painter may do, in the painted view's points.
class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual void fill(const ui::Rect& rect, const ui::Color& colour,
                    double cornerRadius = 0) = 0;
  // One line of text in `rect`, centred vertically, cut with an ellipsis at
  // the end when it is wider than the rectangle.
  virtual void text(const ui::Rect& rect, const std::string& text,
                    const ui::Font& font, const ui::Color& colour,
                    ui::TextAlignment alignment = ui::TextAlignment::Left) = 0;
  // The image stretched over `rect`.
  virtual void image(const ui::Rect& rect, const ui::Image& image) = 0;
};

using Painter = std::function<void(const ui::UIView& view, Canvas& canvas)>;
using Painters = std::map<std::string, Painter, std::less<>>;

struct TabBar {
  std::vector<std::string> titles;
  int selected = 0;
};

struct NavigationBar {
  std::string title, left, right;
};

// A view on screen: at its own frame, or drawn as if its frame were `frame`
// (parts the host keeps without a place, such as Control Centre buttons).
struct Layer {
  std::shared_ptr<ui::UIView> view;
  std::optional<ui::Rect> frame;
};

struct Scene {
  platform::Size points{375, 667};
  double scale = 2;
  ui::Color background{1, 1, 1, 1};
  std::vector<Layer> layers;
  // Status bar: always drawn, over the top 20 points.
  std::string carrier = "Carrier";
  std::string time = "9:41";
  std::optional<NavigationBar> navigationBar;
  std::optional<TabBar> tabBar;
  // Above everything: the open alert, else the presented action sheet.
  std::shared_ptr<const platform::Alert> alert;
  std::shared_ptr<const ui::UIActionSheet> sheet;
  const Painters* painters = nullptr;
};

}  // namespace zv::render
