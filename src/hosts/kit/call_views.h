// Views the call-screen hosts share: the answer controls of a ringing call
// and the lock screen. The answer controls show the slider ("slide to
// answer") over the lock screen, or the round Decline and Answer buttons
// unlocked, and nothing at all once the call no longer rings; Decline ends
// the call and Answer answers it, through the platform's telephony. The lock
// screen is the wallpaper with the time over it.
#pragma once

#include <memory>

#include "platform/telephony/telephony.h"
#include "platform/ui/button.h"

namespace zv::hosts {

class CallAnswerControls : public ui::UIView {
 public:
  static constexpr const char* kClassName = "TPAnswerControls";
  explicit CallAnswerControls(rt::Class* isa) : ui::UIView(isa) {}
  // A new, empty set of controls for the bottom of a screen `width` wide.
  static std::shared_ptr<CallAnswerControls> make(double screenWidth,
                                                  double screenHeight);

  enum class Mode { None, Slide, Buttons };
  // What the controls offer for `call`.
  void show(Mode mode, platform::CallId call);
  Mode mode() const { return mode_; }
  const std::shared_ptr<ui::UIButton>& declineButton() const {
    return decline_;
  }
  const std::shared_ptr<ui::UIButton>& answerButton() const { return answer_; }
  // The slider's track, with its knob and "slide to answer".
  const std::shared_ptr<ui::UIView>& slider() const { return slider_; }
  void layoutSubviews() override;

 private:
  Mode mode_ = Mode::None;
  platform::CallId call_ = 0;
  std::shared_ptr<ui::UIButton> decline_, answer_;
  std::shared_ptr<ui::UIView> slider_;
};

// A round Decline or Answer button: the coloured disc with a handset, its
// title under it.
class CallAnswerButton : public ui::UIButton {
 public:
  static constexpr const char* kClassName = "TPAnswerButton";
  explicit CallAnswerButton(rt::Class* isa) : ui::UIButton(isa) {}
  ui::Color disc;
  bool hangUp = false;  // the handset turned down
  void draw(ui::Canvas& canvas) const override;
};

// The track of the answer slider.
class CallAnswerSlider : public ui::UIView {
 public:
  static constexpr const char* kClassName = "_UIGlintyStringView";
  explicit CallAnswerSlider(rt::Class* isa) : ui::UIView(isa) {}
  void draw(ui::Canvas& canvas) const override;
};

class LockScreenView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "SBLockScreenView";
  explicit LockScreenView(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<LockScreenView> make(platform::Size screen);
  void draw(ui::Canvas& canvas) const override;
};

// The springboard's wallpaper colour, under the lock and home screens.
inline constexpr ui::Color kWallpaper{0.1, 0.2, 0.35, 1};
// The call screens' dark background.
inline constexpr ui::Color kCallScreenBackground{0.12, 0.14, 0.2, 1};

}  // namespace zv::hosts
