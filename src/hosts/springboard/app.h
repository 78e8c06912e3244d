// The simulated springboard ("com.apple.springboard") on the host kit: the
// application object with the lock screen (SBUserAgent) and, on 7.x, the
// incoming-call screens (hosts/springboard/incoming_call.h). Other parts of
// the springboard live in files of their own beside these.
//
//   auto& springboard = hosts::launchSimulated(world, hosts::springboardHost(),
//                                              facts, ZorvelInitializer);
#pragma once

#include <memory>

#include "hosts/kit/call_screens.h"
#include "hosts/kit/host_kit.h"
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
  // The 7.x incoming-call screens; null on 8.x, where the in-call service
  // shows calls.
  IncomingCallScreens* incomingCalls() { return incoming_.get(); }

  // CallScreenHost
  const std::vector<ScreenedCall>& screenedCalls() const override;
  std::optional<CallScreenLabels> screenLabels() const override;
  void setLocked(bool locked) override { locked_ = locked; }

  void didFinishLaunching() override;

 private:
  bool locked_ = false;
  rt::Id user_agent_;
  std::unique_ptr<IncomingCallScreens> incoming_;
};

}  // namespace zv::hosts
