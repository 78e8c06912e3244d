#include "platform/render/view_painter.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/ui/button.h"
#include "platform/ui/canvas.h"
#include "platform/ui/table_view.h"
#include "platform/ui/text_view.h"

namespace zv::render {
namespace {

bool emptyRect(const ui::Rect& r) {
  return r.size.width <= 0 || r.size.height <= 0;
}

// The views' Canvas over the context, in the drawn view's points.
class CairoCanvas : public ui::Canvas {
 public:
  CairoCanvas(cairo_t* cr, TextPainter& text) : cr_(cr), text_(text) {}
  void fill(const ui::Rect& rect, const ui::Color& colour,
            double cornerRadius) override {
    roundedRect(cr_, rect, cornerRadius);
    setColour(cr_, colour);
    cairo_fill(cr_);
  }
  void strokeRect(const ui::Rect& rect, const ui::Color& colour, double width,
                  double cornerRadius) override {
    roundedRect(cr_, rect, cornerRadius);
    setColour(cr_, colour);
    cairo_set_line_width(cr_, width);
    cairo_stroke(cr_);
  }
  void path(const std::vector<ui::Point>& points, const ui::Color& colour,
            double width, bool closed, bool filled) override {
    if (points.empty()) return;
    cairo_new_path(cr_);
    for (const auto& p : points) cairo_line_to(cr_, p.x, p.y);
    if (closed || filled) cairo_close_path(cr_);
    setColour(cr_, colour);
    if (filled) {
      cairo_fill(cr_);
      return;
    }
    cairo_set_line_width(cr_, width);
    cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
    cairo_stroke(cr_);
  }
  void text(const ui::Rect& rect, const std::string& text, const ui::Font& font,
            const ui::Color& colour, ui::TextAlignment alignment,
            ui::LineBreakMode mode, int lines) override {
    text_.draw(cr_, rect, text,
               TextStyle{font, colour, alignment, mode, lines});
  }
  void image(const ui::Rect& rect, const ui::Image& image) override {
    drawImage(cr_, rect, image);
  }
  void mask(const ui::Rect& rect, const ui::Image& image,
            const ui::Color& colour) override {
    cairo_push_group(cr_);
    drawImage(cr_, rect, image);
    cairo_pattern_t* glyph = cairo_pop_group(cr_);
    setColour(cr_, colour);
    cairo_mask(cr_, glyph);
    cairo_pattern_destroy(glyph);
  }
  double hairline() const override {
    double dx = 0, dy = 1;
    cairo_user_to_device_distance(cr_, &dx, &dy);
    return dy > 0 ? 1 / dy : 0.5;
  }

 private:
  cairo_t* cr_;
  TextPainter& text_;
};

}  // namespace

void roundedRect(cairo_t* cr, const ui::Rect& r, double radius) {
  const double x = r.origin.x, y = r.origin.y, w = r.size.width,
               h = r.size.height;
  radius = std::min({radius, w / 2, h / 2});
  if (radius <= 0) {
    cairo_rectangle(cr, x, y, w, h);
    return;
  }
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + w - radius, y + radius, radius, -M_PI / 2, 0);
  cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, M_PI / 2);
  cairo_arc(cr, x + radius, y + h - radius, radius, M_PI / 2, M_PI);
  cairo_arc(cr, x + radius, y + radius, radius, M_PI, 1.5 * M_PI);
  cairo_close_path(cr);
}

void setColour(cairo_t* cr, const ui::Color& c) {
  cairo_set_source_rgba(cr, c.r, c.g, c.b, c.a);
}

void drawImage(cairo_t* cr, const ui::Rect& r, const ui::Image& image) {
  if (image.empty() || emptyRect(r)) return;
  const int w = image.pixelWidth(), h = image.pixelHeight();
  // cairo wants premultiplied native-endian ARGB.
  cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
  cairo_surface_flush(s);
  unsigned char* data = cairo_image_surface_get_data(s);
  const int stride = cairo_image_surface_get_stride(s);
  const uint8_t* src = image.rgba().data();
  for (int y = 0; y < h; ++y) {
    auto* row =
        reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
    for (int x = 0; x < w; ++x, src += 4) {
      const uint32_t a = src[3];
      const uint32_t pr = (src[0] * a + 127) / 255,
                     pg = (src[1] * a + 127) / 255,
                     pb = (src[2] * a + 127) / 255;
      row[x] = (a << 24) | (pr << 16) | (pg << 8) | pb;
    }
  }
  cairo_surface_mark_dirty(s);
  cairo_save(cr);
  cairo_rectangle(cr, r.origin.x, r.origin.y, r.size.width, r.size.height);
  cairo_clip(cr);
  cairo_translate(cr, r.origin.x, r.origin.y);
  cairo_scale(cr, r.size.width / w, r.size.height / h);
  cairo_set_source_surface(cr, s, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
  cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
  cairo_paint(cr);
  cairo_restore(cr);
  cairo_surface_destroy(s);
}

void ViewPainter::draw(const ui::UIView& view) { drawIn(view, view.frame()); }

void ViewPainter::drawIn(const ui::UIView& view, const ui::Rect& f) {
  if (view.isHidden() || view.alpha() <= 0.01) return;
  const ui::Rect bounds{{0, 0}, f.size};
  cairo_save(cr_);
  cairo_translate(cr_, f.origin.x, f.origin.y);
  if (view.scale() != 1) {
    // The transform scales about the view's centre, as a layer's does.
    cairo_translate(cr_, f.size.width / 2, f.size.height / 2);
    cairo_scale(cr_, view.scale(), view.scale());
    cairo_translate(cr_, -f.size.width / 2, -f.size.height / 2);
  }
  const bool group = view.alpha() < 1;
  if (group) cairo_push_group(cr_);
  // A rounded view masks its content to its corners; scroll views always
  // clip to their bounds.
  // A scroll view without a height shows all of its content (the model's
  // tables lay out every row then); it clips only what it has a size for.
  const bool scrolls =
      dynamic_cast<const ui::UIScrollView*>(&view) != nullptr &&
      f.size.height > 0;
  if (view.clipsToBounds() || view.cornerRadius() > 0 || scrolls) {
    roundedRect(cr_, bounds, view.cornerRadius());
    cairo_clip(cr_);
  }
  if (const auto& bg = view.backgroundColor(); bg && bg->a > 0) {
    roundedRect(cr_, bounds, view.cornerRadius());
    setColour(cr_, *bg);
    cairo_fill(cr_);
  }
  content(view, bounds);
  children(view);
  if (group) {
    cairo_pop_group_to_source(cr_);
    cairo_paint_with_alpha(cr_, view.alpha());
  }
  cairo_restore(cr_);
}

void ViewPainter::content(const ui::UIView& view, const ui::Rect& bounds) {
  if (const auto* label = dynamic_cast<const ui::UILabel*>(&view)) {
    ui::Font font = label->font();
    font.size = label->drawnFontSize();
    if (const auto& shadow = label->shadowColor()) {
      TextStyle s{font, *shadow, label->textAlignment(), label->lineBreakMode(),
                  label->numberOfLines()};
      text_.draw(cr_, {{0, 1}, bounds.size}, label->text(), s);
    }
    text_.draw(cr_, bounds, label->text(),
               TextStyle{font, label->textColor(), label->textAlignment(),
                         label->lineBreakMode(), label->numberOfLines()});
  }
  if (const auto* tv = dynamic_cast<const ui::UITextView*>(&view)) {
    // Lines where the model laid them out, so what it measured is drawn.
    const TextStyle style{tv->font(), tv->textColor(), tv->textAlignment(),
                          ui::LineBreakMode::Clip};
    for (const auto& line : tv->placedLines())
      text_.draw(cr_, line.frame, line.text, style);
  }
  if (const auto* iv = dynamic_cast<const ui::UIImageView*>(&view)) {
    if (iv->image()) drawImage(cr_, bounds, *iv->image());
  }
  if (const auto* button = dynamic_cast<const ui::UIButton*>(&view)) {
    // The model's buttons keep no touch state: one that takes no touches
    // shows its disabled look, any other its normal one.
    const int state =
        view.userInteractionEnabled() ? ui::kStateNormal : ui::kStateDisabled;
    if (auto image = button->image(state)) {
      // Centred at its own size, shrunk to fit the button when larger.
      platform::Size s = image->size();
      const double k =
          std::min({1.0, s.width > 0 ? bounds.size.width / s.width : 1,
                    s.height > 0 ? bounds.size.height / s.height : 1});
      s = {s.width * k, s.height * k};
      drawImage(cr_,
                {{(bounds.size.width - s.width) / 2,
                  (bounds.size.height - s.height) / 2},
                 s},
                *image);
    }
    const std::string title = button->title(state);
    if (!title.empty())
      text_.draw(cr_, bounds, title,
                 TextStyle{button->titleFont(), button->titleColor(),
                           button->titleAlignment()});
  }
  CairoCanvas canvas(cr_, text_);
  view.draw(canvas);
}

void ViewPainter::children(const ui::UIView& view) {
  const auto* scroll = dynamic_cast<const ui::UIScrollView*>(&view);
  cairo_save(cr_);
  if (scroll)
    cairo_translate(cr_, -scroll->contentOffset().x,
                    -scroll->contentOffset().y);
  for (const auto& child : view.subviews())
    if (child) draw(*child);
  cairo_restore(cr_);
}

}  // namespace zv::render
