#include "hosts/springboard/app.h"

#include "hostsdk/springboard.h"
#include "platform/platform.h"
#include "platform/telephony/call_objects.h"

namespace zv::hosts {
namespace {

using ui::self;

void registerSpringBoardClasses() {
  // The platform's telephony classes, which the call screens talk to.
  platform::registerTelephonyClasses(rt::runtime());
  rt::registerClass<SpringBoardApplication>(sdk::SpringBoard::kName,
                                            "UIApplication");
  // The user agent answers for the running springboard.
  rt::registerClass(sdk::SBUserAgent::kName);
  rt::define(sdk::SBUserAgent::sharedUserAgent, [](const rt::Id&) {
    auto app = SpringBoardApplication::shared();
    return app ? app->userAgent() : nullptr;
  });
  rt::define(sdk::SBUserAgent::lockScreenIsShowing, [](const rt::Id&) {
    auto app = SpringBoardApplication::shared();
    return app && app->locked();
  });
}

}  // namespace

HostDefinition springboardHost() {
  return HostDefinition{
      "com.apple.springboard", [] { registerSpringBoardClasses(); },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<SpringBoardApplication>(
                rt::alloc(rt::getClass(sdk::SpringBoard::kName))));
      }};
}

std::shared_ptr<SpringBoardApplication> SpringBoardApplication::shared() {
  return ui::sharedApplication<SpringBoardApplication>();
}

const std::vector<ScreenedCall>& SpringBoardApplication::screenedCalls() const {
  static const std::vector<ScreenedCall> none;
  return incoming_ ? incoming_->screenedCalls() : none;
}

std::optional<CallScreenLabels> SpringBoardApplication::screenLabels() const {
  return incoming_ ? incoming_->screenLabels() : std::nullopt;
}

void SpringBoardApplication::didFinishLaunching() {
  user_agent_ = rt::create(rt::getClass(sdk::SBUserAgent::kName));
  // Below 8.0 the springboard itself shows incoming calls.
  const std::string& version = platform::current().device().systemVersion;
  if (std::stod(version) < 8.0) {
    incoming_ = std::make_unique<IncomingCallScreens>();
    incoming_->start();
    // The observer goes with the process; it must not keep the app alive.
    std::weak_ptr<rt::Object> weak = weak_from_this();
    platform::observeCallStatus([weak](const rt::Id& call) {
      auto app = std::static_pointer_cast<SpringBoardApplication>(weak.lock());
      if (app && app->incoming_) app->incoming_->callChanged(call);
    });
  }
}

}  // namespace zv::hosts
