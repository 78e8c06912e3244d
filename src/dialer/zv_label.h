// ZVLabel: a label that draws its text in three runs (before, inside and
// after a highlight range), the inside run in the highlight colour. Set the
// properties, then updateLabel() lays the runs out side by side and sizes
// the label to them. Without a usable range, or when the text is wider than
// textSize (0: no limit), the whole text goes into the left run, cut to
// textSize.
#pragma once

#include <optional>

#include "core/highlight_range.h"
#include "platform/ui/label.h"

namespace zv {

class ZVLabel : public ui::UIView {
 public:
  static constexpr const char* kClassName = "ZVLabel";
  explicit ZVLabel(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<ZVLabel> make();

  std::string text;
  ui::Font font{"Helvetica", 17};
  ui::Color textColor{0, 0, 0, 1};
  // No colour: the runs keep the label's default.
  std::optional<ui::Color> highlightColor;
  ZVRange highlightRange;
  double textSize = 0;

  void updateLabel();

  const std::shared_ptr<ui::UILabel>& labelLeft() const { return left_; }
  const std::shared_ptr<ui::UILabel>& labelCenter() const { return center_; }
  const std::shared_ptr<ui::UILabel>& labelRight() const { return right_; }

 private:
  void build();
  std::shared_ptr<ui::UILabel> left_, center_, right_;
};

// The runtime class of one of the dialler's own views (a UIView subclass),
// registered in the current process on first use.
rt::Class* dialerViewClass(const char* name, const char* superclass = "UIView");

}  // namespace zv
