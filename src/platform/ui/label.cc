#include "platform/ui/label.h"

#include <algorithm>

#include "platform/ui/text_metrics.h"

namespace zv::ui {

Size UILabel::textSize() const {
  if (text_.empty()) return {0, 0};
  return {textWidth(text_, font_), lineHeight(font_)};
}

void UILabel::sizeToFit() {
  Size s = textSize();
  setSize(s.width, s.height);
}

double UILabel::drawnFontSize() const {
  double natural = textWidth(text_, font_);
  double width = frame().size.width;
  if (!fit_width_ || natural <= width || natural <= 0) return font_.size;
  return std::max(font_.size * min_scale_, font_.size * width / natural);
}

bool UILabel::isTruncated() const {
  Font drawn = font_;
  drawn.size = drawnFontSize();
  return !text_.empty() && textWidth(text_, drawn) > frame().size.width + 1e-9;
}

}  // namespace zv::ui
