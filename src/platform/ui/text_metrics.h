// The one text-measurement function of the UI model. Widths are a
// deterministic function of the characters and the font size, so layouts
// computed by the views are the same on every machine: Latin letters, digits
// and punctuation are narrow, CJK ideographs, kana, hangul and full-width
// forms are one em wide. The font's name only matters for the bold and thin
// weights, which widen or narrow Latin text slightly.
#pragma once

#include <string_view>

#include "platform/ui/style_types.h"

namespace zv::ui {

// Width in points of `text` (UTF-8) set in `font` on one line.
double textWidth(std::string_view text, const Font& font);

// Height in points of one line of text in `font`.
double lineHeight(const Font& font);

}  // namespace zv::ui
