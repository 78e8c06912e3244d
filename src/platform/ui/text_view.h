// UITextView of the UI model: a read-only, multi-line text with its font,
// colour, alignment and content insets. Lines break at "\n" and wrap at the
// view's width less the left and right insets (word by word, a word wider
// than a line by characters). The layout manager's delegate, when set,
// answers the extra space after each laid-out line
// (layoutManager:lineSpacingAfterGlyphAtIndex:withProposedLineFragmentRect:);
// sizeToFit makes the height that of the laid-out text plus the top and
// bottom insets and keeps the width.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/label.h"

namespace zv::ui {

// NSLayoutManagerDelegate's line spacing.
class LayoutManagerDelegate {
 public:
  virtual ~LayoutManagerDelegate() = default;
  // Points after the line whose last glyph is `glyphIndex`.
  virtual double lineSpacingAfterGlyphAtIndex(size_t glyphIndex,
                                              const Rect& proposedRect) = 0;
};

class UITextView : public UIView {
 public:
  static constexpr const char* kClassName = "UITextView";
  explicit UITextView(rt::Class* isa) : UIView(isa) {}

  const std::string& text() const { return text_; }
  void setText(std::string text) { text_ = std::move(text); }
  const Font& font() const { return font_; }
  void setFont(Font font) { font_ = std::move(font); }
  const Color& textColor() const { return color_; }
  void setTextColor(Color c) { color_ = c; }
  TextAlignment textAlignment() const { return alignment_; }
  void setTextAlignment(TextAlignment a) { alignment_ = a; }
  const EdgeInsets& contentInset() const { return inset_; }
  void setContentInset(EdgeInsets inset) { inset_ = inset; }
  bool isEditable() const { return false; }
  void setLayoutManagerDelegate(std::weak_ptr<LayoutManagerDelegate> d) {
    delegate_ = std::move(d);
  }
  std::shared_ptr<LayoutManagerDelegate> layoutManagerDelegate() const {
    return delegate_.lock();
  }

  // The text as laid out, one entry per line.
  std::vector<std::string> lines() const;
  // Each laid-out line with its rectangle in the view (insets and the
  // delegate's spacing above it applied): what is drawn where.
  struct PlacedLine {
    std::string text;
    Rect frame;
  };
  std::vector<PlacedLine> placedLines() const;
  // Height of the laid-out text, line spacing included, without insets.
  double textHeight() const;
  void sizeToFit() override;

 private:
  // Lays the text out from the top of the view: the height of all lines
  // with their spacing; each line's place into `placed` when given.
  double layOut(std::vector<PlacedLine>* placed) const;

  std::string text_;
  Font font_{"Helvetica", 12};
  Color color_{0, 0, 0, 1};
  TextAlignment alignment_ = TextAlignment::Left;
  EdgeInsets inset_;
  std::weak_ptr<LayoutManagerDelegate> delegate_;
};

}  // namespace zv::ui
