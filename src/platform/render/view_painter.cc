#include "platform/render/view_painter.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/ui/button.h"
#include "platform/ui/table_view.h"
#include "platform/ui/text_view.h"

namespace zv::render {
namespace {

bool emptyRect(const ui::Rect& r) {
  return r.size.width <= 0 || r.size.height <= 0;
}

// Painter-side Canvas over the context, in the painted view's points.
class CairoCanvas : public Canvas {
 public:
  CairoCanvas(cairo_t* cr, TextPainter& text) : cr_(cr), text_(text) {}
  void fill(const ui::Rect& rect, const ui::Color& colour,
            double cornerRadius) override {
    roundedRect(cr_, rect, cornerRadius);
    setColour(cr_, colour);
    cairo_fill(cr_);
  }
  void text(const ui::Rect& rect, const std::string& text, const ui::Font& font,
            const ui::Color& colour, ui::TextAlignment alignment) override {
    text_.draw(cr_, rect, text, TextStyle{font, colour, alignment});
  }
  void image(const ui::Rect& rect, const ui::Image& image) override {
    drawImage(cr_, rect, image);
  }

 private:
  cairo_t* cr_;
  TextPainter& text_;
};

const ui::Color kSeparator{0.78, 0.78, 0.8, 1};
const ui::Color kDetailGrey{0.56, 0.56, 0.58, 1};

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
  children(view, f.size);
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
      TextStyle s{font, *shadow, label->textAlignment(),
                  label->lineBreakMode()};
      text_.draw(cr_, {{0, 1}, bounds.size}, label->text(), s);
    }
    text_.draw(cr_, bounds, label->text(),
               TextStyle{font, label->textColor(), label->textAlignment(),
                         label->lineBreakMode()});
    return;
  }
  if (const auto* tv = dynamic_cast<const ui::UITextView*>(&view)) {
    // Lines where the model laid them out, so what it measured is drawn.
    const TextStyle style{tv->font(), tv->textColor(), tv->textAlignment(),
                          ui::LineBreakMode::Clip};
    for (const auto& line : tv->placedLines())
      text_.draw(cr_, line.frame, line.text, style);
    return;
  }
  if (const auto* iv = dynamic_cast<const ui::UIImageView*>(&view)) {
    if (iv->image()) drawImage(cr_, bounds, *iv->image());
    return;
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
      text_.draw(
          cr_, bounds, title,
          TextStyle{
              {"Helvetica", 17}, {0, 0.48, 1, 1}, ui::TextAlignment::Center});
  }
  if (painters_) {
    auto it = painters_->find(view.className());
    if (it != painters_->end()) {
      CairoCanvas canvas(cr_, text_);
      it->second(view, canvas);
    }
  }
  if (const auto* table = dynamic_cast<const ui::UITableView*>(&view))
    separators(*table, bounds.size.width);
}

void ViewPainter::separators(const ui::UITableView& table, double width) {
  const double y0 = -table.contentOffset().y;
  // One device pixel thick.
  double dx = 0, dy = 1;
  cairo_user_to_device_distance(cr_, &dx, &dy);
  const double hair = dy > 0 ? 1 / dy : 0.5;
  for (const auto& [row, cell] : table.visibleCells()) {
    if (!cell || cell->isHidden()) continue;
    const ui::Rect& f = cell->frame();
    const ui::EdgeInsets& in = cell->separatorInset();
    const double x = in.left, w = (f.size.width > 0 ? f.size.width : width) -
                                  in.left - in.right;
    if (w <= 0) continue;
    setColour(cr_, kSeparator);
    cairo_rectangle(cr_, f.origin.x + x, y0 + f.origin.y + f.size.height - hair,
                    w, hair);
    cairo_fill(cr_);
  }
}

void ViewPainter::children(const ui::UIView& view, platform::Size size) {
  const auto* scroll = dynamic_cast<const ui::UIScrollView*>(&view);
  const bool table = dynamic_cast<const ui::UITableView*>(&view) != nullptr;
  cairo_save(cr_);
  if (scroll)
    cairo_translate(cr_, -scroll->contentOffset().x,
                    -scroll->contentOffset().y);
  if (const auto* cell = dynamic_cast<const ui::UITableViewCell*>(&view)) {
    cellParts(*cell, size);
  } else {
    for (const auto& child : view.subviews()) {
      if (!child) continue;
      // Rows of a table laid out before it had a width span the width it
      // is drawn at.
      const ui::Rect& f = child->frame();
      if (table && f.size.width <= 0 &&
          dynamic_cast<const ui::UITableViewCell*>(child.get()))
        drawIn(*child, {f.origin, {size.width, f.size.height}});
      else
        draw(*child);
    }
  }
  cairo_restore(cr_);
}

// The platform cell lays out its content view, image and labels itself; the
// model leaves that to the host, so parts still without a frame get the
// standard places here (computed for the picture, never stored).
void ViewPainter::cellParts(const ui::UITableViewCell& cell,
                            platform::Size size) {
  const ui::Rect cellBounds{{0, 0}, size};
  const double accessoryWidth =
      cell.accessoryType != ui::CellAccessoryType::None ? 33 : 0;
  for (const auto& child : cell.subviews()) {
    if (!child) continue;
    if (child != cell.contentView()) {
      draw(*child);
      continue;
    }
    const auto& content = *cell.contentView();
    if (!emptyRect(content.frame())) {
      draw(content);
      continue;
    }
    if (content.isHidden()) continue;
    const ui::Rect box{
        {0, 0},
        {cellBounds.size.width - accessoryWidth, cellBounds.size.height}};
    double x = 15;
    auto place = [&](const ui::UIView& part, const ui::Rect& r) {
      drawIn(part, emptyRect(part.frame()) ? r : part.frame());
    };
    for (const auto& part : content.subviews()) {
      if (!part) continue;
      if (part == cell.imageView()) {
        const auto& image = cell.imageView()->image();
        if (!image || image->empty()) continue;
        platform::Size s = image->size();
        const double limit = box.size.height - 8;
        if (s.height > limit && s.height > 0)
          s = {s.width * limit / s.height, limit};
        place(*part, {{15, (box.size.height - s.height) / 2}, s});
        x = 15 + s.width + 15;
      }
    }
    const double w = std::max(0.0, box.size.width - x - 15);
    const double h = box.size.height;
    for (const auto& part : content.subviews()) {
      if (!part || part == cell.imageView()) continue;
      if (part == cell.textLabel()) {
        ui::Rect r{{x, 0}, {w, h}};
        if (cell.style() == ui::CellStyle::Subtitle &&
            !cell.detailTextLabel()->text().empty())
          r = {{x, h * 0.12}, {w, h * 0.5}};
        place(*part, r);
      } else if (part == cell.detailTextLabel()) {
        ui::Rect r{{x, 0}, {w, h}};
        if (cell.style() == ui::CellStyle::Subtitle)
          r = {{x, h * 0.55}, {w, h * 0.35}};
        place(*part, r);
      } else {
        draw(*part);
      }
    }
    if (accessoryWidth > 0 && !cell.accessoryView()) {
      const double cx = cellBounds.size.width - 20, cy = h / 2;
      if (cell.accessoryType == ui::CellAccessoryType::Checkmark) {
        setColour(cr_, {0, 0.48, 1, 1});
        cairo_move_to(cr_, cx - 7, cy);
        cairo_line_to(cr_, cx - 2, cy + 5);
        cairo_line_to(cr_, cx + 6, cy - 6);
      } else {
        setColour(cr_, kDetailGrey);
        cairo_move_to(cr_, cx - 3, cy - 6);
        cairo_line_to(cr_, cx + 3, cy);
        cairo_line_to(cr_, cx - 3, cy + 6);
      }
      cairo_set_line_width(cr_, 2);
      cairo_stroke(cr_);
    }
  }
}

}  // namespace zv::render
