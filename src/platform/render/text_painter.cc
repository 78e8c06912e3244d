#include "platform/render/text_painter.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "platform/ui/text_metrics.h"

namespace zv::render {
namespace {

PangoFontDescription* describe(const ui::Font& font) {
  PangoFontDescription* d = pango_font_description_new();
  pango_font_description_set_family(d, kFamilies);
  // The faces the model measures with: bold or regular.
  pango_font_description_set_weight(
      d, ui::isBoldFont(font) ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(
      d, std::max(font.size, 1.0) * PANGO_SCALE);
  return d;
}

// A layout of `text` on one line (no width limit) or wrapped at `width`.
PangoLayout* layoutOf(PangoContext* context, const std::string& text,
                      const ui::Font& font) {
  PangoLayout* layout = pango_layout_new(context);
  PangoFontDescription* d = describe(font);
  pango_layout_set_font_description(layout, d);
  pango_font_description_free(d);
  pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
  // The model adds advances without kerning; so does the picture.
  PangoAttrList* attrs = pango_attr_list_new();
  pango_attr_list_insert(attrs, pango_attr_font_features_new("kern 0, liga 0"));
  pango_layout_set_attributes(layout, attrs);
  pango_attr_list_unref(attrs);
  return layout;
}

double widthOf(PangoLayout* layout) {
  PangoRectangle logical;
  pango_layout_get_extents(layout, nullptr, &logical);
  return logical.width / double(PANGO_SCALE);
}

PangoEllipsizeMode ellipsisFor(ui::LineBreakMode mode) {
  switch (mode) {
    case ui::LineBreakMode::TruncateHead:
      return PANGO_ELLIPSIZE_START;
    case ui::LineBreakMode::TruncateMiddle:
      return PANGO_ELLIPSIZE_MIDDLE;
    case ui::LineBreakMode::TruncateTail:
      return PANGO_ELLIPSIZE_END;
    default:
      return PANGO_ELLIPSIZE_NONE;
  }
}

PangoAlignment alignmentOf(ui::TextAlignment a) {
  return a == ui::TextAlignment::Center  ? PANGO_ALIGN_CENTER
         : a == ui::TextAlignment::Right ? PANGO_ALIGN_RIGHT
                                         : PANGO_ALIGN_LEFT;
}

}  // namespace

TextPainter::TextPainter() {
  map_ = pango_cairo_font_map_new();
  context_ = pango_font_map_create_context(map_);
  // Unhinted outlines and metrics: the same advances at every scale, so a
  // picture at 3x is the one at 2x drawn finer.
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context_, options);
  // Glyphs at their exact advances, as the model adds them, not rounded to
  // whole points one by one.
  pango_context_set_round_glyph_positions(context_, FALSE);
  cairo_font_options_destroy(options);
}

TextPainter::~TextPainter() {
  g_object_unref(context_);
  g_object_unref(map_);
}

double TextPainter::naturalWidth(const std::string& text,
                                 const ui::Font& font) {
  PangoLayout* layout = layoutOf(context_, text, font);
  double w = widthOf(layout);
  g_object_unref(layout);
  return w;
}

void TextPainter::draw(cairo_t* cr, const ui::Rect& rect,
                       const std::string& text, const TextStyle& style) {
  if (text.empty() || style.font.size <= 0 || rect.size.width <= 0 ||
      rect.size.height <= 0)
    return;
  pango_cairo_update_context(cr, context_);
  PangoLayout* layout = layoutOf(context_, text, style.font);
  const double natural = widthOf(layout);
  const double width = rect.size.width;
  // The model's width for the whole text; the glyphs are scaled to it.
  const double model = ui::textWidth(text, style.font);
  // Only ever squeezed: a face narrower than the model leaves the text at
  // its own width.
  double sx =
      natural > 0 && model > 0 ? std::clamp(model / natural, 0.7, 1.0) : 1.0;
  double x = 0, drawnWidth = std::min(model, width);
  if (style.lines == 1) {
    if (model > width + 1e-9) {
      // Cut by the model's measure: Pango truncates at the width the model
      // has, in its own units.
      PangoEllipsizeMode e = ellipsisFor(style.lineBreak);
      if (e != PANGO_ELLIPSIZE_NONE) {
        pango_layout_set_ellipsize(layout, e);
        pango_layout_set_width(layout,
                               static_cast<int>(width / sx * PANGO_SCALE));
      }
    } else if (style.alignment == ui::TextAlignment::Center) {
      x = (width - model) / 2;
    } else if (style.alignment == ui::TextAlignment::Right) {
      x = width - model;
    }
  } else {
    sx = 1;
    pango_layout_set_width(layout, static_cast<int>(width * PANGO_SCALE));
    pango_layout_set_wrap(layout, style.lineBreak == ui::LineBreakMode::CharWrap
                                      ? PANGO_WRAP_CHAR
                                      : PANGO_WRAP_WORD_CHAR);
    pango_layout_set_alignment(layout, alignmentOf(style.alignment));
    pango_layout_set_spacing(layout,
                             static_cast<int>(style.lineSpacing * PANGO_SCALE));
    // At most `lines` lines, the last one ending in the mode's ellipsis.
    const PangoEllipsizeMode e = ellipsisFor(style.lineBreak);
    if (style.lines > 1 && e != PANGO_ELLIPSIZE_NONE) {
      pango_layout_set_ellipsize(layout, e);
      pango_layout_set_height(layout, -style.lines);
    }
    drawnWidth = width;
  }
  (void)drawnWidth;
  PangoRectangle logical;
  pango_layout_get_extents(layout, nullptr, &logical);
  const double height = logical.height / double(PANGO_SCALE);
  const double y = (rect.size.height - height) / 2;

  cairo_save(cr);
  cairo_rectangle(cr, rect.origin.x, rect.origin.y, rect.size.width,
                  rect.size.height);
  cairo_clip(cr);
  cairo_translate(cr, rect.origin.x + x, rect.origin.y + y);
  cairo_scale(cr, sx, 1);
  cairo_set_source_rgba(cr, style.colour.r, style.colour.g, style.colour.b,
                        style.colour.a);
  pango_cairo_update_layout(cr, layout);
  pango_cairo_show_layout(cr, layout);
  cairo_restore(cr);
  g_object_unref(layout);
}

}  // namespace zv::render
