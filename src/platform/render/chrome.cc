#include "platform/render/chrome.h"

#include <algorithm>
#include <cmath>

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
  fill(cr, {{0, h - 49}, {w, 49}}, kBar);
  fill(cr, {{0, h - 49}, {w, 0.5}}, kLine);
  if (bar.titles.empty()) return;
  const double tab = w / bar.titles.size();
  for (size_t i = 0; i < bar.titles.size(); ++i) {
    const ui::Color c = static_cast<int>(i) == bar.selected
                            ? kTint
                            : ui::Color{0.57, 0.57, 0.57, 1};
    // The tab's glyph: a rounded square above its title.
    cairo_set_line_width(cr, 1.5);
    roundedRect(cr, {{i * tab + tab / 2 - 11, h - 44}, {22, 22}}, 5);
    setColour(cr, c);
    cairo_stroke(cr);
    text.draw(cr, {{i * tab, h - 20}, {tab, 16}}, bar.titles[i],
              TextStyle{{"Helvetica", 10}, c, ui::TextAlignment::Center});
  }
}

void drawAlert(cairo_t* cr, TextPainter& text, const Scene& scene,
               const platform::Alert& alert) {
  dim(cr, scene);
  const double w = 270;
  const std::vector<std::string> buttons = alert.buttons();
  const bool sideBySide = buttons.size() == 2;
  const double rows = buttons.empty() ? 0 : sideBySide ? 1 : buttons.size();
  const double titleH = alert.title.empty() ? 0 : 24;
  const double messageH =
      alert.message.empty()
          ? 0
          : 18 * std::min(6.0,
                          1 + ui::textWidth(alert.message, {"Helvetica", 13}) /
                                  (w - 32));
  const double inputH = alert.textInput ? 36 : 0;
  const double bodyH = 20 + titleH + messageH + inputH + 18;
  const double h = bodyH + rows * 44;
  const double x = (scene.points.width - w) / 2,
               y = (scene.points.height - h) / 2;
  fill(cr, {{x, y}, {w, h}}, {0.97, 0.97, 0.97, 1}, 13);
  double cy = y + 20;
  if (titleH > 0)
    text.draw(cr, {{x + 16, cy}, {w - 32, titleH}}, alert.title,
              TextStyle{{"Helvetica-Bold", 17},
                        kBlack,
                        ui::TextAlignment::Center,
                        ui::LineBreakMode::WordWrap,
                        0});
  cy += titleH;
  if (messageH > 0)
    text.draw(cr, {{x + 16, cy}, {w - 32, messageH}}, alert.message,
              TextStyle{{"Helvetica", 13},
                        kBlack,
                        ui::TextAlignment::Center,
                        ui::LineBreakMode::WordWrap,
                        0});
  cy += messageH;
  if (inputH > 0) {
    fill(cr, {{x + 16, cy + 6}, {w - 32, 26}}, {1, 1, 1, 1}, 4);
    text.draw(cr, {{x + 20, cy + 6}, {w - 40, 26}}, alert.inputText,
              TextStyle{{"Helvetica", 13}, kBlack});
  }
  cy = y + bodyH;
  for (size_t i = 0; i < buttons.size(); ++i) {
    const bool cancel = static_cast<int>(i) == alert.cancelButtonIndex();
    ui::Rect r = sideBySide ? ui::Rect{{x + i * w / 2, cy}, {w / 2, 44}}
                            : ui::Rect{{x, cy + i * 44}, {w, 44}};
    fill(cr, {r.origin, {r.size.width, 0.5}}, kLine);
    if (sideBySide && i == 1) fill(cr, {r.origin, {0.5, 44}}, kLine);
    text.draw(cr, r, buttons[i],
              TextStyle{{cancel ? "Helvetica-Bold" : "Helvetica", 17},
                        kTint,
                        ui::TextAlignment::Center});
  }
}

void drawActionSheet(cairo_t* cr, TextPainter& text, const Scene& scene,
                     const ui::UIActionSheet& sheet) {
  dim(cr, scene);
  const double W = scene.points.width, H = scene.points.height;
  const double w = W - 16, x = 8;
  std::vector<int> main;
  for (int i = 0; i < static_cast<int>(sheet.buttons().size()); ++i)
    if (i != sheet.cancelButtonIndex()) main.push_back(i);
  const double titleH = sheet.title.empty() ? 0 : 44;
  const double cancelH = sheet.cancelButtonIndex() >= 0 ? 57 + 8 : 0;
  const double groupH = titleH + 57.0 * main.size();
  double y = H - 8 - cancelH - groupH;
  fill(cr, {{x, y}, {w, groupH}}, {0.97, 0.97, 0.97, 1}, 13);
  if (titleH > 0)
    text.draw(cr, {{x + 16, y}, {w - 32, titleH}}, sheet.title,
              TextStyle{{"Helvetica", 13},
                        {0.56, 0.56, 0.58, 1},
                        ui::TextAlignment::Center});
  y += titleH;
  for (size_t k = 0; k < main.size(); ++k, y += 57) {
    if (k > 0 || titleH > 0) fill(cr, {{x, y}, {w, 0.5}}, kLine);
    const int i = main[k];
    text.draw(
        cr, {{x + 8, y}, {w - 16, 57}}, sheet.buttons()[i],
        TextStyle{{"Helvetica", 20},
                  i == sheet.destructiveButtonIndex() ? kDestructive : kTint,
                  ui::TextAlignment::Center});
  }
  if (cancelH > 0) {
    const ui::Rect r{{x, H - 8 - 57}, {w, 57}};
    fill(cr, r, {1, 1, 1, 1}, 13);
    text.draw(
        cr, r, sheet.buttons()[sheet.cancelButtonIndex()],
        TextStyle{{"Helvetica-Bold", 20}, kTint, ui::TextAlignment::Center});
  }
}

}  // namespace zv::render
