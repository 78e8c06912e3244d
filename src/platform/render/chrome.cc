#include "platform/render/chrome.h"

#include <algorithm>
#include <cmath>

#include "platform/render/chrome_layout.h"
#include "platform/render/view_painter.h"
#include "platform/ui/text_metrics.h"

namespace zv::render {
namespace {

const ui::Color kTint{0, 0.48, 1, 1};
const ui::Color kBlack{0, 0, 0, 1};
const ui::Color kBar{0.97, 0.97, 0.97, 0.98};
const ui::Color kLine{0.7, 0.7, 0.72, 1};
const ui::Color kDestructive{1, 0.23, 0.19, 1};

void fill(cairo_t* cr, const ui::Rect& r, const ui::Color& c,
          double radius = 0) {
  roundedRect(cr, r, radius);
  setColour(cr, c);
  cairo_fill(cr);
}

void dim(cairo_t* cr, const Scene& scene) {
  fill(cr, {{0, 0}, scene.points}, {0, 0, 0, 0.4});
}

}  // namespace

void drawStatusBar(cairo_t* cr, TextPainter& text, const Scene& scene) {
  const double w = scene.points.width;
  // Light content over a dark screen, dark over a light one.
  const ui::Color& bg = scene.background;
  const bool dark =
      !scene.navigationBar && 0.3 * bg.r + 0.59 * bg.g + 0.11 * bg.b < 0.5;
  const ui::Color kBlack = dark ? ui::Color{1, 1, 1, 1} : ui::Color{0, 0, 0, 1};
  const ui::Font font{"Helvetica", 12};
  // Signal dots, then the carrier.
  for (int i = 0; i < 5; ++i) {
    cairo_arc(cr, 8 + i * 6.5, 10, 2.6, 0, 2 * M_PI);
    setColour(cr, kBlack);
    cairo_fill(cr);
  }
  text.draw(cr, {{42, 0}, {w / 2 - 70, 20}}, scene.carrier,
            TextStyle{font, kBlack});
  text.draw(
      cr, {{w / 2 - 40, 0}, {80, 20}}, scene.time,
      TextStyle{{"Helvetica-Bold", 12}, kBlack, ui::TextAlignment::Center});
  // Battery.
  cairo_set_line_width(cr, 1);
  setColour(cr, kBlack);
  cairo_rectangle(cr, w - 32.5, 5.5, 24, 10);
  cairo_stroke(cr);
  fill(cr, {{w - 31, 7}, {21, 7}}, kBlack);
  fill(cr, {{w - 8, 8.5}, {2, 4}}, kBlack);
}

void drawNavigationBar(cairo_t* cr, TextPainter& text, const Scene& scene,
                       const NavigationBar& bar) {
  const double w = scene.points.width;
  fill(cr, {{0, 0}, {w, 64}}, kBar);
  fill(cr, {{0, 64}, {w, 0.5}}, kLine);
  const ui::Font font{"Helvetica", 17};
  text.draw(
      cr, {{80, 20}, {w - 160, 44}}, bar.title,
      TextStyle{{"Helvetica-Bold", 17}, kBlack, ui::TextAlignment::Center});
  text.draw(cr, {{8, 20}, {72, 44}}, bar.left, TextStyle{font, kTint});
  text.draw(cr, {{w - 80, 20}, {72, 44}}, bar.right,
            TextStyle{font, kTint, ui::TextAlignment::Right});
}

void drawTabBar(cairo_t* cr, TextPainter& text, const Scene& scene,
                const TabBar& bar) {
  const double w = scene.points.width, h = scene.points.height;
  fill(cr, {{0, h - kTabBarHeight}, {w, kTabBarHeight}}, kBar);
  fill(cr, {{0, h - kTabBarHeight}, {w, 0.5}}, kLine);
  for (const Place& tab : tabPlaces(scene.points, bar.titles.size())) {
    const ui::Rect& r = tab.rect;
    const ui::Color c =
        tab.index == bar.selected ? kTint : ui::Color{0.57, 0.57, 0.57, 1};
    // The tab's glyph: a rounded square above its title.
    cairo_set_line_width(cr, 1.5);
    roundedRect(
        cr, {{r.origin.x + r.size.width / 2 - 11, r.origin.y + 5}, {22, 22}},
        5);
    setColour(cr, c);
    cairo_stroke(cr);
    text.draw(cr, {{r.origin.x, h - 20}, {r.size.width, 16}},
              bar.titles[tab.index],
              TextStyle{{"Helvetica", 10}, c, ui::TextAlignment::Center});
  }
}

void drawAlert(cairo_t* cr, TextPainter& text, const Scene& scene,
               const platform::Alert& alert) {
  dim(cr, scene);
  const AlertLayout l = alertLayout(scene.points, alert);
  const double x = l.box.origin.x, w = l.box.size.width;
  fill(cr, l.box, {0.97, 0.97, 0.97, 1}, 13);
  double cy = l.box.origin.y + 20;
  if (l.titleH > 0)
    text.draw(cr, {{x + 16, cy}, {w - 32, l.titleH}}, alert.title,
              TextStyle{{"Helvetica-Bold", 17},
                        kBlack,
                        ui::TextAlignment::Center,
                        ui::LineBreakMode::WordWrap,
                        0});
  cy += l.titleH;
  if (l.messageH > 0)
    text.draw(cr, {{x + 16, cy}, {w - 32, l.messageH}}, alert.message,
              TextStyle{{"Helvetica", 13},
                        kBlack,
                        ui::TextAlignment::Center,
                        ui::LineBreakMode::WordWrap,
                        0});
  cy += l.messageH;
  if (l.inputH > 0) {
    fill(cr, {{x + 16, cy + 6}, {w - 32, 26}}, {1, 1, 1, 1}, 4);
    text.draw(cr, {{x + 20, cy + 6}, {w - 40, 26}}, alert.inputText,
              TextStyle{{"Helvetica", 13}, kBlack});
  }
  const std::vector<std::string> buttons = alert.buttons();
  const bool sideBySide = buttons.size() == 2;
  for (const Place& b : l.buttons) {
    const bool cancel = b.index == alert.cancelButtonIndex();
    const ui::Rect& r = b.rect;
    fill(cr, {r.origin, {r.size.width, 0.5}}, kLine);
    if (sideBySide && b.index == 1) fill(cr, {r.origin, {0.5, 44}}, kLine);
    text.draw(cr, r, buttons[b.index],
              TextStyle{{cancel ? "Helvetica-Bold" : "Helvetica", 17},
                        kTint,
                        ui::TextAlignment::Center});
  }
}

void drawActionSheet(cairo_t* cr, TextPainter& text, const Scene& scene,
                     const ui::UIActionSheet& sheet) {
  dim(cr, scene);
  const SheetLayout l = sheetLayout(scene.points, sheet);
  const double x = l.group.origin.x, w = l.group.size.width;
  fill(cr, l.group, {0.97, 0.97, 0.97, 1}, 13);
  if (l.titleH > 0)
    text.draw(cr, {{x + 16, l.group.origin.y}, {w - 32, l.titleH}}, sheet.title,
              TextStyle{{"Helvetica", 13},
                        {0.56, 0.56, 0.58, 1},
                        ui::TextAlignment::Center});
  bool first = true;
  for (const Place& b : l.buttons) {
    const ui::Rect& r = b.rect;
    if (b.index == sheet.cancelButtonIndex()) {
      fill(cr, r, {1, 1, 1, 1}, 13);
      text.draw(
          cr, r, sheet.buttons()[b.index],
          TextStyle{{"Helvetica-Bold", 20}, kTint, ui::TextAlignment::Center});
      continue;
    }
    if (!first || l.titleH > 0) fill(cr, {r.origin, {w, 0.5}}, kLine);
    first = false;
    text.draw(cr, {{x + 8, r.origin.y}, {w - 16, 57}}, sheet.buttons()[b.index],
              TextStyle{{"Helvetica", 20},
                        b.index == sheet.destructiveButtonIndex() ? kDestructive
                                                                  : kTint,
                        ui::TextAlignment::Center});
  }
}

}  // namespace zv::render
