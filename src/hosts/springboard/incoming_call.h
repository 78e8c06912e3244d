// The springboard's incoming-call screen on 7.x: for every incoming call
// that starts ringing it creates an MPIncomingPhoneCallController with
// initWithCall:, fills the screen's LCD with the caller's name, company and
// label (updateLCDWithName:companyName:label:breakPoint:), lays out its
// answer controls and rings (ringOrVibrate). An initialiser that answers
// nil means no screen and no ringtone. When the call stops ringing
// (answered, declined, hung up) the screen disappears (viewWillDisappear:)
// and is released (dealloc).
//
// The answer controls ask SBUserAgent lockScreenIsShowing: over the lock
// screen the call is answered by sliding, unlocked the screen has answer
// and decline buttons. They are laid out when the screen comes up and again
// whenever the lock changes while it rings.
//
// As on the device, the class comes with a bundle the springboard loads
// some seconds after it starts (kIncomingCallClassDelay), or at once when a
// call arrives before then.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/kit/call_screens.h"
#include "hosts/kit/call_views.h"
#include "platform/telephony/telephony.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

// Seconds after launch at which MPIncomingPhoneCallController appears.
inline constexpr double kIncomingCallClassDelay = 15.0;

class IncomingCallController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "MPIncomingPhoneCallController";
  explicit IncomingCallController(rt::Class* isa) : ui::UIViewController(isa) {}

  rt::Id call;
  // The LCD as last updated.
  std::optional<std::string> name, companyName, label;
  int32_t breakPoint = 0;
  bool ringing = false;
  // The unlocked layout with its decline button.
  bool declineButton = false;
  // Called when the ringtone starts (it may start late).
  std::function<void()> onRing;
  // The LCD's own name and label lines (the topLCDView's first subviews).
  std::shared_ptr<ui::UILabel> nameLabel, statusLabel;
  // At the bottom: the slider or the Decline and Answer buttons.
  std::shared_ptr<CallAnswerControls> answerControls;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

// Registers MPIncomingPhoneCallController in the current process (again:
// nothing changes).
void registerIncomingCallClass();

class IncomingCallScreens {
 public:
  IncomingCallScreens() = default;
  // A screen kept alive elsewhere (a delayed ring) no longer reports here.
  ~IncomingCallScreens() {
    if (screen_) screen_->onRing = nullptr;
  }
  IncomingCallScreens(const IncomingCallScreens&) = delete;
  IncomingCallScreens& operator=(const IncomingCallScreens&) = delete;

  // Schedules the class's arrival.
  void start();
  // A change of a call, as the platform delivers it.
  void callChanged(const rt::Id& call);

  const std::vector<ScreenedCall>& screenedCalls() const { return calls_; }
  std::optional<CallScreenLabels> screenLabels() const;
  std::optional<CallScreenText> screenText() const;
  // The lock changed: a ringing screen lays out its answer controls again.
  void lockChanged();
  // The screen of the ringing call, or null.
  std::shared_ptr<IncomingCallController> screen() const { return screen_; }

 private:
  void present(const rt::Id& call, const platform::CallInfo& info,
               ScreenedCall& record);
  void dismiss();
  void layOutAnswerControls();

  std::vector<ScreenedCall> calls_;
  std::shared_ptr<IncomingCallController> screen_;
  platform::CallId screen_call_ = 0;
};

}  // namespace zv::hosts
