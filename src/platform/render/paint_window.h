// The one entry for a real display's draw handler (a GTK drawing area's
// draw function): paints a process's key window onto a cairo context. The
// pictures (renderer.h) go through the same view painter.
//
//   process.run([&] {
//     auto window = hosts::keyWindow(process);  // laid out
//     render::paintWindow(cr, *window, scale);
//   });
#pragma once

#include <cairo.h>

#include "platform/ui/view.h"

namespace zv::render {

// Paints `window` (laid out: UIView::layoutIfNeeded) onto `cr` at `scale`
// device pixels per point, its top left at the context's origin. Run in
// the window's process.
void paintWindow(cairo_t* cr, const ui::UIView& window, double scale);

}  // namespace zv::render
