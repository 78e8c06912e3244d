// Draws a view tree onto a cairo context in screen points: each view in
// subview order at its frame, with its scale transform, alpha (the view and
// its subviews composited as one), hidden state, corner radius clipping,
// background colour, and its own content by kind: a label's text, an image
// view's picture, a button's image for its state and its title, a table's
// visible cells with separators at their insets, scroll offsets. Standard
// cell parts the host left unplaced get the platform cell's own layout.
// Views of other kinds draw through the scene's painters, by class name.
// The tree is only read.
#pragma once

#include <cairo.h>

#include "platform/render/scene.h"
#include "platform/render/text_painter.h"
#include "platform/ui/table_view.h"

namespace zv::render {

class ViewPainter {
 public:
  ViewPainter(cairo_t* cr, TextPainter& text, const Painters* painters)
      : cr_(cr), text_(text), painters_(painters) {}

  // Draws `view` and its subviews at the current origin of the context
  // (the view's frame origin is added).
  void draw(const ui::UIView& view);
  // Draws `view` as if its frame were `frame`.
  void drawIn(const ui::UIView& view, const ui::Rect& frame);

 private:
  void content(const ui::UIView& view, const ui::Rect& bounds);
  // The subviews of `view`, drawn at `size`.
  void children(const ui::UIView& view, platform::Size size);
  void cellParts(const ui::UITableViewCell& cell, platform::Size size);
  void separators(const ui::UITableView& table, double width);

  cairo_t* cr_;
  TextPainter& text_;
  const Painters* painters_;
};

// Shared drawing helpers: a rounded rectangle path, a colour source, an
// image stretched over a rectangle.
void roundedRect(cairo_t* cr, const ui::Rect& r, double radius);
void setColour(cairo_t* cr, const ui::Color& c);
void drawImage(cairo_t* cr, const ui::Rect& r, const ui::Image& image);

}  // namespace zv::render
