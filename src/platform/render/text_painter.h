// Sets text with Pango on a cairo context, fitted to the UI model's own text
// measurement (platform/ui/text_metrics.h): the model decides how wide a
// text is and whether it is cut, Pango draws the glyphs, squeezed or
// stretched horizontally by the few percent between the pinned font's
// advances and the model's so that they cover exactly the model's width.
//
// Fonts: the model's font names map to one pinned family list (kFamilies),
// bold when the name says so (ui::isBoldFont), regular otherwise, kerning
// off, as the model measures; characters the Latin face lacks come from the
// CJK face, through Pango's own fallback.
#pragma once

#include <cairo.h>

#include <string>

#include "platform/ui/label.h"

typedef struct _PangoFontMap PangoFontMap;
typedef struct _PangoContext PangoContext;

namespace zv::render {

inline constexpr const char* kFamilies = "Liberation Sans,Noto Sans CJK SC";

struct TextStyle {
  ui::Font font;
  ui::Color colour;
  ui::TextAlignment alignment = ui::TextAlignment::Left;
  ui::LineBreakMode lineBreak = ui::LineBreakMode::TruncateTail;
  // 1: one line, cut or truncated by the mode; n > 1: wrapped over at
  // most n lines, the last one cut or truncated by the mode; 0: wrapped
  // over as many lines as the rectangle holds (alerts, sheets). Several
  // lines are centred vertically as a block.
  int lines = 1;
  double lineSpacing = 0;
};

class TextPainter {
 public:
  TextPainter();
  ~TextPainter();
  TextPainter(const TextPainter&) = delete;
  TextPainter& operator=(const TextPainter&) = delete;

  // Draws `text` in `rect` (user-space points of `cr`).
  void draw(cairo_t* cr, const ui::Rect& rect, const std::string& text,
            const TextStyle& style);
  // Pango's own width of `text` on one line, in points.
  double naturalWidth(const std::string& text, const ui::Font& font);

 private:
  PangoFontMap* map_;
  PangoContext* context_;
};

}  // namespace zv::render
