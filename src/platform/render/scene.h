// What one picture of the simulated phone's screen holds: the screen's size
// in points and its scale, the colour under everything, and the view trees
// on it bottom to top (each at its frame in screen points, or drawn as if
// its frame were `frame`; a layer without a size covers the screen). A
// process's screen is one layer, its window (platform/ui/window.h), which
// holds the bars and alerts too. A scene only refers to views: drawing it
// never changes them.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/view.h"

namespace zv::render {

struct Layer {
  std::shared_ptr<ui::UIView> view;
  std::optional<ui::Rect> frame;
};

struct Scene {
  platform::Size points{375, 667};
  double scale = 2;
  ui::Color background{1, 1, 1, 1};
  std::vector<Layer> layers;

  // The window alone, at its own size.
  static Scene ofWindow(std::shared_ptr<ui::UIView> window, double scale) {
    Scene s;
    s.points = window->frame().size;
    s.scale = scale;
    s.layers.push_back({std::move(window), std::nullopt});
    return s;
  }
};

}  // namespace zv::render
