// Draws a view tree onto a cairo context in screen points: each view in
// subview order at its frame, with its scale transform, alpha (the view and
// its subviews composited as one), hidden state, corner radius clipping,
// background colour, scroll offsets, and its own content: a label's text, a
// text view's laid-out lines, an image view's picture, a button's image for
// its state and its title, then whatever the view draws itself
// (UIView::draw, through a ui::Canvas over the context). The tree is only
// read: views lay themselves out before (UIView::layoutIfNeeded).
#pragma once

#include <cairo.h>

#include "platform/render/scene.h"
#include "platform/render/text_painter.h"

namespace zv::render {

class ViewPainter {
 public:
  ViewPainter(cairo_t* cr, TextPainter& text) : cr_(cr), text_(text) {}

  // Draws `view` and its subviews at the current origin of the context
  // (the view's frame origin is added).
  void draw(const ui::UIView& view);
  // Draws `view` as if its frame were `frame`.
  void drawIn(const ui::UIView& view, const ui::Rect& frame);

 private:
  void content(const ui::UIView& view, const ui::Rect& bounds);
  void children(const ui::UIView& view);

  cairo_t* cr_;
  TextPainter& text_;
};

// Shared drawing helpers: a rounded rectangle path, a colour source, an
// image stretched over a rectangle.
void roundedRect(cairo_t* cr, const ui::Rect& r, double radius);
void setColour(cairo_t* cr, const ui::Color& c);
void drawImage(cairo_t* cr, const ui::Rect& r, const ui::Image& image);

}  // namespace zv::render
