// What the system draws around and above an application's views: the
// status bar (carrier name, time, battery), the navigation bar (title and
// bar buttons), the tab bar (titles, the selected one tinted), and the
// modal layers, an alert or an action sheet over a dimmed screen. All in
// screen points on a context already scaled to the device.
#pragma once

#include <cairo.h>

#include "platform/render/scene.h"
#include "platform/render/text_painter.h"

namespace zv::render {

void drawStatusBar(cairo_t* cr, TextPainter& text, const Scene& scene);
void drawNavigationBar(cairo_t* cr, TextPainter& text, const Scene& scene,
                       const NavigationBar& bar);
void drawTabBar(cairo_t* cr, TextPainter& text, const Scene& scene,
                const TabBar& bar);
void drawAlert(cairo_t* cr, TextPainter& text, const Scene& scene,
               const platform::Alert& alert);
void drawActionSheet(cairo_t* cr, TextPainter& text, const Scene& scene,
                     const ui::UIActionSheet& sheet);

}  // namespace zv::render
