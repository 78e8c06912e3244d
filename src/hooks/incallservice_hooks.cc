// zvincallservice_init: the in-call service's call screen (8.x and later).
// A blocked call gets an empty view controller in place of the call screen,
// and its ringtone request is refused by a second decision that does not
// act on the call again.
#include "callscreens/incoming_call_controller.h"
#include "core/device.h"
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/incoming_call_port.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/incallservice.h"
#include "platform/ui/messages.h"

namespace zv {

void zvincallservice_init() {
  runStartup("zvincallservice_init", [] {
    auto settings = ZVIncomingCallSettings::sharedInstance();
    if (!settings) return;
    auto c = ZVIncomingCallController::sharedInstance();
    if (!c) return;
    if (UIDevice::OSVersion() < 8.0f) return;
    c->setHost(makeRuntimeIncomingCallHost());
    const auto k = GuardKind::Log;
    using namespace hook;
    using Id = const rt::Id&;
    using Root = sdk::PHInCallRootViewController;
    using Ringtone = sdk::PHRingtoneController;
    using Text = std::optional<std::string>;
    // clang-format off
    systemDecides(k, Root::initWithNibNameBundle, [c](Id, rt::Id& screen, Text, rt::Id) { if (!c->blockInCall(nullptr)) return false; screen = rt::make(ui::msg::UIViewController::init); return true; });
    systemDecides(k, Ringtone::playRingtoneWithIdentifierVibrationPattern, [c](Id, Text, rt::Id) { return c->blockRingtone(nullptr); });
    // clang-format on
  });
}

}  // namespace zv
