// The drawing a view may do for its own content (UIView::draw), in the
// view's own points: filled and stroked shapes, one line or a wrapped block
// of text set in the UI model's fonts, and images. The renderer
// (platform/render) implements it over cairo; views that draw themselves
// (the keypad's keys, bar glyphs, the system bars) know nothing of it.
#pragma once

#include <string>
#include <vector>

#include "platform/ui/image.h"
#include "platform/ui/label.h"

namespace zv::ui {

class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual void fill(const Rect& rect, const Color& colour,
                    double cornerRadius = 0) = 0;
  // The outline of `rect` (a circle when the radius is half its side).
  virtual void strokeRect(const Rect& rect, const Color& colour, double width,
                          double cornerRadius = 0) = 0;
  // A line through `points`, closed back to the first when `closed`, filled
  // instead of stroked when `filled`.
  virtual void path(const std::vector<Point>& points, const Color& colour,
                    double width, bool closed = false, bool filled = false) = 0;
  // Text in `rect`: with `lines` 1, one line centred vertically and cut by
  // `mode`; with 0, wrapped over as many lines as the rectangle holds.
  virtual void text(const Rect& rect, const std::string& text, const Font& font,
                    const Color& colour,
                    TextAlignment alignment = TextAlignment::Left,
                    LineBreakMode mode = LineBreakMode::TruncateTail,
                    int lines = 1) = 0;
  // The image stretched over `rect`.
  virtual void image(const Rect& rect, const Image& image) = 0;
  // `colour` through the image's alpha, stretched over `rect` (a glyph
  // drawn in the ink of what it sits on).
  virtual void mask(const Rect& rect, const Image& image,
                    const Color& colour) = 0;
  // One device pixel, in points (for hairlines).
  virtual double hairline() const = 0;
};

}  // namespace zv::ui
