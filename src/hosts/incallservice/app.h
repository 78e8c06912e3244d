// The simulated in-call service ("com.apple.InCallService", 8.x) on the
// host kit. When a call begins (one ringing in, or one the user dials) and
// no call screen is up, it builds the call screen
// (PHInCallRootViewControllerActual through the initialiser it inherits
// from PHInCallRootViewController, initWithNibName:bundle:) and shows what
// the initialiser answered; for every call that rings in, it then asks its
// PHRingtoneController to play the ringtone
// (playRingtoneWithIdentifier:vibrationPattern:), which stops when the call
// stops ringing. The screen goes when the last call has ended.
// TUCallCenter (incomingCall / incomingVideoCall) is the platform's.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "hosts/kit/call_screens.h"
#include "hosts/kit/host_kit.h"
#include "platform/ui/application.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

HostDefinition inCallServiceHost();

// The call screen: the caller's name and the call's label.
class InCallRootViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "PHInCallRootViewControllerActual";
  explicit InCallRootViewController(rt::Class* isa) : ui::UIViewController(isa) {}
  std::shared_ptr<ui::UILabel> nameLabel, statusLabel;
  rt::Id call;  // the call it was made for
  bool appeared = false;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

class RingtoneController : public rt::Object {
 public:
  static constexpr const char* kClassName = "PHRingtoneController";
  using rt::Object::Object;
  bool playing = false;
  // The call the ringtone plays for.
  platform::CallId call = 0;
};

class InCallServiceApplication : public ui::UIApplication, public CallScreenHost {
 public:
  static constexpr const char* kClassName = "InCallServiceApplication";
  explicit InCallServiceApplication(rt::Class* isa) : ui::UIApplication(isa) {}

  static std::shared_ptr<InCallServiceApplication> shared();

  // What the service shows: its call screen, or what stands in its place;
  // null when no call screen is up.
  const rt::Id& screen() const { return screen_; }
  const std::shared_ptr<RingtoneController>& ringtone() const { return ringtone_; }
  bool locked() const { return locked_; }
  // PHInCallUtilities' sharedInstance.
  const rt::Id& utilities() const { return utilities_; }

  // CallScreenHost
  const std::vector<ScreenedCall>& screenedCalls() const override { return calls_; }
  std::optional<CallScreenLabels> screenLabels() const override;
  void setLocked(bool locked) override { locked_ = locked; }

  void didFinishLaunching() override;

 private:
  void callChanged(const rt::Id& call);
  void showScreen(const rt::Id& call, ScreenedCall& record);
  void ring(ScreenedCall& record);
  void updateScreen();

  std::vector<ScreenedCall> calls_;
  rt::Id screen_;
  std::shared_ptr<RingtoneController> ringtone_;
  rt::Id utilities_;
  bool locked_ = false;
};

}  // namespace zv::hosts
