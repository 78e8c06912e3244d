// The one text-measurement function of the UI model, and the one the
// picture renderer (platform/render/) sets its glyphs to. Widths are the
// advances of the pinned faces the renderer draws with: Liberation Sans
// (metric-compatible with Helvetica and Arial, the families the model's font
// names come from) for Latin-1, Noto Sans CJK for ideographs, kana, hangul
// and full-width forms (one em). The advances are compiled in, so layouts
// computed by the views are the same on every machine and measuring loads
// no font library. A font whose name says "Bold" measures with the bold
// face; every other name with the regular one (the pinned family has no
// thin, light or medium face). Kerning is not applied, here or when drawing.
#pragma once

#include <string_view>

#include "platform/ui/style_types.h"

namespace zv::ui {

// Width in points of `text` (UTF-8) set in `font` on one line.
double textWidth(std::string_view text, const Font& font);

// Height in points of one line of text in `font`.
double lineHeight(const Font& font);

// Whether `font` is set in the bold face.
bool isBoldFont(const Font& font);

}  // namespace zv::ui
