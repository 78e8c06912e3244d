// The simulated springboard ("com.apple.springboard") on the host kit: the
// application object with the lock screen (SBUserAgent), the status bar's
// carrier name (SBStatusBarStateAggregator _sbCarrierNameForOperator:, shown
// at launch), the banners of missed calls and arriving messages (BBBulletin,
// presented through the runtime so the banner shows the title the bulletin
// answers) and, on 7.x, the incoming-call screens
// (hosts/springboard/incoming_call.h). Other parts of the springboard live
// in files of their own beside these: the Control Centre
// (hosts/springboard/controlcenter.h) and the lock button
// (hosts/springboard/controlcenter_app.h).
//
// A missed call is an incoming call that ends without being answered; its
// bulletin (section "com.apple.mobilephone") is titled with the caller as
// the call screens name it, carries the number under "contactInfo" and the
// call's date. On 7.x the incoming screen goes before the bulletin is
// posted.
//
//   auto& springboard = hosts::launchSimulated(world, hosts::springboardHost(),
//                                              facts, ZorvelInitializer);
#pragma once

#include <map>
#include <memory>
#include <string>

#include "hosts/kit/call_screens.h"
#include "hosts/kit/host_kit.h"
#include "hosts/springboard/controlcenter.h"
#include "hosts/springboard/incoming_call.h"
#include "platform/ui/application.h"

namespace zv::hosts {

HostDefinition springboardHost();

class SpringBoardApplication : public ui::UIApplication, public CallScreenHost {
 public:
  static constexpr const char* kClassName = "SpringBoard";
  explicit SpringBoardApplication(rt::Class* isa) : ui::UIApplication(isa) {}

  // The running springboard of the current process, or null.
  static std::shared_ptr<SpringBoardApplication> shared();

  bool locked() const { return locked_; }
  // SBUserAgent's sharedUserAgent.
  const rt::Id& userAgent() const { return user_agent_; }
  // SBStatusBarStateAggregator's sharedInstance.
  const rt::Id& statusBar() const { return status_bar_; }
  // The Control Centre, made at launch.
  std::shared_ptr<ControlCenterViewController> controlCenter;
  // The 7.x incoming-call screens; null on 8.x, where the in-call service
  // shows calls.
  IncomingCallScreens* incomingCalls() { return incoming_.get(); }

  // A text message arrives from `number`: its banner.
  void messageReceived(const std::string& number, const std::string& text);

  // CallScreenHost
  const std::vector<ScreenedCall>& screenedCalls() const override;
  std::optional<CallScreenLabels> screenLabels() const override;
  std::optional<CallScreenText> screenText() const override;
  void setLocked(bool locked) override;

  void didFinishLaunching() override;

 protected:
  // The lock screen or the home screen's wallpaper, the incoming-call
  // screen over it while one rings, the Control Centre over both.
  void prepareWindow(ui::UIWindow& window) override;

 private:
  void callChanged(const rt::Id& call);

  bool locked_ = false;
  rt::Id user_agent_;
  rt::Id status_bar_;
  // Incoming calls not yet over, and whether each was answered.
  std::map<platform::CallId, bool> live_incoming_;
  std::unique_ptr<IncomingCallScreens> incoming_;
  std::shared_ptr<ui::UIViewController> home_;
  std::shared_ptr<ui::UIView> lock_view_, home_view_;
};

}  // namespace zv::hosts
