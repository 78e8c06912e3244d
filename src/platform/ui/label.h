// UILabel and UIImageView of the UI model. A label holds one text with its
// font, colour, alignment, line-break mode and number of lines; sizeToFit sets
// its size to the measured text (platform/ui/text_metrics.h), and with fitting
// to width on, drawnFontSize() tells the size the text is shrunk to so that it
// fits the label's width. An image view shows one image (corner radius and
// scale are the view's).
#pragma once

#include "platform/ui/view.h"

namespace zv::ui {

enum class TextAlignment { Left, Center, Right };
enum class LineBreakMode {
  WordWrap,
  CharWrap,
  Clip,
  TruncateHead,
  TruncateTail,
  TruncateMiddle
};

class UILabel : public UIView {
 public:
  static constexpr const char* kClassName = "UILabel";
  // Labels take no touches (they pass them to the view under them).
  explicit UILabel(rt::Class* isa) : UIView(isa) {
    setUserInteractionEnabled(false);
  }

  const std::string& text() const { return text_; }
  void setText(std::string text) { text_ = std::move(text); }
  const Font& font() const { return font_; }
  void setFont(Font font) { font_ = std::move(font); }
  const Color& textColor() const { return color_; }
  void setTextColor(Color c) { color_ = c; }
  TextAlignment textAlignment() const { return alignment_; }
  void setTextAlignment(TextAlignment a) { alignment_ = a; }
  LineBreakMode lineBreakMode() const { return line_break_; }
  void setLineBreakMode(LineBreakMode m) { line_break_ = m; }
  // Lines the text may take (0: as many as the label's height holds); the
  // last one shown is cut by the line-break mode ("…" when truncating).
  int numberOfLines() const { return lines_; }
  void setNumberOfLines(int n) { lines_ = n < 0 ? 0 : n; }
  bool adjustsFontSizeToFitWidth() const { return fit_width_; }
  void setAdjustsFontSizeToFitWidth(bool on) { fit_width_ = on; }
  double minimumScaleFactor() const { return min_scale_; }
  void setMinimumScaleFactor(double f) { min_scale_ = f; }
  // The text's own shadow colour; none unless set.
  const std::optional<Color>& shadowColor() const { return shadow_color_; }
  void setShadowColor(std::optional<Color> c) { shadow_color_ = c; }

  // Measured size of the text on one line.
  Size textSize() const;
  // Width and height become those of the text.
  void sizeToFit() override;
  // The point size the text is drawn at: the font's, or smaller (down to
  // the minimum scale) when fitting to width is on and the text is wider
  // than the label.
  double drawnFontSize() const;
  // Whether the drawn text is cut (wider than the label even after fitting).
  bool isTruncated() const;

 private:
  std::string text_;
  Font font_{"Helvetica", 17};
  Color color_{0, 0, 0, 1};
  TextAlignment alignment_ = TextAlignment::Left;
  LineBreakMode line_break_ = LineBreakMode::TruncateTail;
  int lines_ = 1;
  bool fit_width_ = false;
  double min_scale_ = 0.5;
  std::optional<Color> shadow_color_;
};

class UIImageView : public UIView {
 public:
  static constexpr const char* kClassName = "UIImageView";
  // Image views take no touches either.
  explicit UIImageView(rt::Class* isa) : UIView(isa) {
    setUserInteractionEnabled(false);
  }
  const ImagePtr& image() const { return image_; }
  void setImage(ImagePtr image) { image_ = std::move(image); }

 private:
  ImagePtr image_;
};

}  // namespace zv::ui
