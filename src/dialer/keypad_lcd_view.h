// ZVKeypadLCDView: one page of the keypad result pager. It shows a number
// line and a name line, each as three labels (before, inside and after the
// highlighted run, the inside one in the highlight colour), and an optional
// round avatar. updateLCDView() lays the page out for the device's screen:
// the number's font shrinks from the screen's largest to its smallest size
// as the number grows, and only one line is ever highlighted. A touch that
// ends on the page and a long press go to its delegate, the pager.
#pragma once

#include <array>
#include <memory>

#include "core/highlight_range.h"
#include "dialer/zv_label.h"
#include "platform/ui/label.h"

namespace zv {

class ZVKeypadLCDViewDelegate {
 public:
  virtual ~ZVKeypadLCDViewDelegate() = default;
  virtual void keypadLCDViewPressed() = 0;
  virtual void keypadLCDViewLongPress() = 0;
};

// The colour of a highlight colour code: 0 blue, 1 green, 2 red, any other
// value none (the label's own colour).
std::optional<ui::Color> highlightColorForCode(int code);

class ZVKeypadLCDView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "ZVKeypadLCDView";
  explicit ZVKeypadLCDView(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<ZVKeypadLCDView> make(const ui::Rect& frame);

  void setDelegate(std::weak_ptr<ZVKeypadLCDViewDelegate> d) {
    delegate_ = std::move(d);
  }
  void setNumber(std::string n) { number_ = std::move(n); }
  void setName(std::string n) { name_ = std::move(n); }
  void setAvatar(ui::ImagePtr a) { avatar_ = std::move(a); }
  void setShowsAvatar(bool on) { showsAvatar_ = on; }
  void setShowsHighlight(bool on) { showsHighlight_ = on; }
  void setHighlightNumberRange(ZVRange r) { highlightNumberRange_ = r; }
  void setHighlightNameRange(ZVRange r) { highlightNameRange_ = r; }
  void setNumberHighlightColor(int code) { numberHighlightColor_ = code; }
  void setNameHighlightColor(int code) { nameHighlightColor_ = code; }

  const std::string& number() const { return number_; }
  const std::string& name() const { return name_; }
  const ui::ImagePtr& avatar() const { return avatar_; }

  void updateLCDView();
  void clearLCDView();

  // The labels of a line, left / centre / right.
  const std::array<std::shared_ptr<ui::UILabel>, 3>& numberLabels() const {
    return number_labels_;
  }
  const std::array<std::shared_ptr<ui::UILabel>, 3>& nameLabels() const {
    return name_labels_;
  }
  const std::shared_ptr<ui::UIImageView>& avatarImageView() const {
    return avatarImageView_;
  }

  // The screen's largest and smallest number font sizes, and the size for a
  // number of `length` characters between the bounds a and b.
  static double numberFontSize(size_t length, size_t a, size_t b);

 private:
  void build();
  // Lays one line out: three runs when `split`, else the whole text in the
  // left label.
  void layoutLine(std::array<std::shared_ptr<ui::UILabel>, 3>& labels,
                  const std::string& text, ZVRange range, bool split,
                  const ui::Font& font, double boxX, double boxWidth,
                  double top, double height, bool fitWhole);
  void applyColor(const std::shared_ptr<ui::UILabel>& label, int code,
                  int& applied);

  std::weak_ptr<ZVKeypadLCDViewDelegate> delegate_;
  std::string number_, name_;
  ui::ImagePtr avatar_;
  std::array<std::shared_ptr<ui::UILabel>, 3> number_labels_, name_labels_;
  std::shared_ptr<ui::UIImageView> avatarImageView_;
  bool showsAvatar_ = false;
  bool showsHighlight_ = false;
  ZVRange highlightNumberRange_, highlightNameRange_;
  int numberHighlightColor_ = 0, nameHighlightColor_ = 0;
  // The codes last applied to the centre labels (-1: none yet).
  int applied_number_color_ = -1, applied_name_color_ = -1;
};

}  // namespace zv
