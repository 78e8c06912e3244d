// UIButton of the UI model: a title and an image per control state, and
// targets per control event. sendActionsForControlEvents() is how a touch
// reaches the targets; a button that takes no touches, or is hidden, ignores
// touch() (what a finger on the screen would do).
#pragma once

#include <map>

#include "platform/ui/label.h"

namespace zv::ui {

enum ControlState : int {
  kStateNormal = 0,
  kStateHighlighted = 1,
  kStateDisabled = 2,
  kStateSelected = 4
};
enum ControlEvent : int {
  kTouchDown = 1,
  kTouchUpInside = 64,
  kValueChanged = 4096
};

class UIButton : public UIView {
 public:
  static constexpr const char* kClassName = "UIButton";
  explicit UIButton(rt::Class* isa) : UIView(isa) {}

  void setImage(ImagePtr image, int state = kStateNormal);
  ImagePtr image(int state = kStateNormal) const;
  void setTitle(std::string title, int state = kStateNormal);
  std::string title(int state = kStateNormal) const;
  // How the title is set (the title label's font, colour and alignment).
  const Font& titleFont() const { return title_font_; }
  void setTitleFont(Font f) { title_font_ = std::move(f); }
  const Color& titleColor() const { return title_color_; }
  void setTitleColor(Color c) { title_color_ = c; }
  TextAlignment titleAlignment() const { return title_alignment_; }
  void setTitleAlignment(TextAlignment a) { title_alignment_ = a; }

  using Action = std::function<void(const rt::Id& sender)>;
  void addTarget(int events, Action action);
  void sendActionsForControlEvents(int events);
  // A finger tap: down then up inside, when the button is visible and takes
  // touches. Returns whether it reached the button.
  bool touch();
  // A tap gesture on the button touches it too.
  bool perform(Gesture g) override;

  // The size a button takes for its title.
  void sizeToFit() override;

 private:
  std::map<int, ImagePtr> images_;
  std::map<int, std::string> titles_;
  std::vector<std::pair<int, Action>> targets_;
  Font title_font_{"Helvetica", 17};
  Color title_color_{0, 0.48, 1, 1};
  TextAlignment title_alignment_ = TextAlignment::Center;
};

}  // namespace zv::ui
