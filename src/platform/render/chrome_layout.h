// Where the system's bars and modal layers put what can be pressed, in
// screen points: the tab bar's tabs, an alert's buttons, an action sheet's
// buttons. Drawing (chrome.cc) and whatever turns a touch into a press (the
// window of `zorvel window`) both place them from here, so a finger lands on
// the button the picture shows. Header only: no drawing code is needed to
// ask.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/sheets.h"
#include "platform/ui/text_metrics.h"

namespace zv::render {

struct Place {
  int index = 0;
  ui::Rect rect;
};

inline bool contains(const ui::Rect& r, ui::Point p) {
  return p.x >= r.origin.x && p.y >= r.origin.y &&
         p.x < r.origin.x + r.size.width && p.y < r.origin.y + r.size.height;
}

// The index of the place under `point`, if any.
inline std::optional<int> placeAt(const std::vector<Place>& places,
                                  ui::Point point) {
  for (const Place& p : places)
    if (contains(p.rect, point)) return p.index;
  return std::nullopt;
}

inline constexpr double kTabBarHeight = 49;

// `count` tabs side by side across the bottom 49 points.
inline std::vector<Place> tabPlaces(platform::Size screen, size_t count) {
  std::vector<Place> out;
  const double tab = count ? screen.width / count : 0;
  for (size_t i = 0; i < count; ++i)
    out.push_back(
        {static_cast<int>(i),
         {{i * tab, screen.height - kTabBarHeight}, {tab, kTabBarHeight}}});
  return out;
}

// An alert's box (centred) and its buttons: two side by side, otherwise
// one per row.
struct AlertLayout {
  ui::Rect box;
  double titleH = 0, messageH = 0, inputH = 0;
  std::vector<Place> buttons;
};
inline AlertLayout alertLayout(platform::Size screen,
                               const platform::Alert& alert) {
  AlertLayout l;
  const double w = 270;
  const size_t count = alert.buttons().size();
  const bool sideBySide = count == 2;
  const double rows = count == 0 ? 0 : sideBySide ? 1 : count;
  l.titleH = alert.title.empty() ? 0 : 24;
  l.messageH = alert.message.empty()
                   ? 0
                   : 18 * std::min(6.0, 1 + ui::textWidth(alert.message,
                                                          {"Helvetica", 13}) /
                                                (w - 32));
  l.inputH = alert.textInput ? 36 : 0;
  const double bodyH = 20 + l.titleH + l.messageH + l.inputH + 18;
  const double h = bodyH + rows * 44;
  const double x = (screen.width - w) / 2, y = (screen.height - h) / 2;
  l.box = {{x, y}, {w, h}};
  for (size_t i = 0; i < count; ++i)
    l.buttons.push_back({static_cast<int>(i),
                         sideBySide
                             ? ui::Rect{{x + i * w / 2, y + bodyH}, {w / 2, 44}}
                             : ui::Rect{{x, y + bodyH + i * 44}, {w, 44}}});
  return l;
}

// An action sheet above the bottom edge: its title and other buttons in one
// group, the cancel button apart below it.
struct SheetLayout {
  ui::Rect group;
  double titleH = 0;
  std::vector<Place> buttons;  // the group's, then the cancel button
};
inline SheetLayout sheetLayout(platform::Size screen,
                               const ui::UIActionSheet& sheet) {
  SheetLayout l;
  const double w = screen.width - 16, x = 8, H = screen.height;
  std::vector<int> main;
  for (int i = 0; i < static_cast<int>(sheet.buttons().size()); ++i)
    if (i != sheet.cancelButtonIndex()) main.push_back(i);
  l.titleH = sheet.title.empty() ? 0 : 44;
  const double cancelH = sheet.cancelButtonIndex() >= 0 ? 57 + 8 : 0;
  const double groupH = l.titleH + 57.0 * main.size();
  l.group = {{x, H - 8 - cancelH - groupH}, {w, groupH}};
  double y = l.group.origin.y + l.titleH;
  for (int i : main) {
    l.buttons.push_back({i, {{x, y}, {w, 57}}});
    y += 57;
  }
  if (cancelH > 0)
    l.buttons.push_back(
        {sheet.cancelButtonIndex(), {{x, H - 8 - 57}, {w, 57}}});
  return l;
}

}  // namespace zv::render
