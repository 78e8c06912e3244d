// zvincall_init: the other party's area on the Phone app's own call screen
// (systems before 8.0) and the vibration when an outgoing call connects. A
// call-status change first lets ZVInCallController note the call and look
// up its area, then the host handles it; every status line the LCD is given
// is rewritten on the way in. The controller reaches the call and the LCD
// through RuntimeInCallHost.
#include "callscreens/in_call_controller.h"
#include "core/device.h"
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/phone.h"
#include "hostsdk/telephony.h"

namespace zv {
namespace {

using Lcd = sdk::InCallLCDView;
using Call = sdk::TUCall;

class RuntimeInCallHost : public InCallHost {
 public:
  int status(const rt::Id& call) override {
    return rt::trySend(call, Call::status);
  }
  std::optional<std::string> destinationID(const rt::Id& call) override {
    return rt::trySend(call, Call::destinationID);
  }
  int abUID(const rt::Id& call) override {
    return rt::respondsTo(call, Call::abUID) ? rt::send(call, Call::abUID) : -1;
  }
  bool isOutgoing(const rt::Id& call) override {
    return rt::trySend(call, Call::isOutgoing);
  }
  rt::Id notificationObject(const rt::Id& notification) override {
    return rt::trySend(notification, sdk::NSNotification::object);
  }
  rt::Id lcdView(const rt::Id& controller) override {
    if (!controller) return nullptr;
    return rt::ivar(controller, sdk::InCallController::lcd).value_or(nullptr);
  }
  std::string label(const rt::Id& lcd) override {
    return rt::trySend(lcd, Lcd::label);
  }
  void setLabel(const rt::Id& lcd, const std::string& label,
                bool animate) override {
    rt::trySend(lcd, Lcd::setLabelAnimate, label, animate);
  }
  bool shouldCenterText(const rt::Id& lcd) override {
    return rt::trySend(lcd, Lcd::shouldCenterText);
  }
  std::shared_ptr<ui::UIView> view(const rt::Id& lcd) override {
    return std::dynamic_pointer_cast<ui::UIView>(lcd);
  }
};

}  // namespace

void zvincall_init() {
  runStartup("zvincall_init", [] {
    auto settings = ZVPhoneSettings::sharedInstance();
    if (!settings) return;
    if (!settings->EnableArea() && !settings->EnableConnectedVibrate()) return;
    auto c = ZVInCallController::sharedInstance();
    if (!c) return;
    // Later systems show calls in the in-call service, not in this app.
    if (UIDevice::OSVersion() >= 8.0f) return;
    c->setHost(std::make_shared<RuntimeInCallHost>());
    const auto k = GuardKind::Alert;
    using namespace hook;
    using Id = const rt::Id&;
    // clang-format off
    systemFirst(k, sdk::InCallController::callStatusChanged, [c](Id self, rt::Id call) { c->areaInCall(self, call); c->connectedVibrate(call); });
    rewriteArgs(k, Lcd::setLabelAnimate, [c](Id self, std::string& label, bool&) { label = c->areaInCall(self, label); });
    // clang-format on
  });
}

}  // namespace zv
