// zvincomingcall_init: the springboard's call screens. It takes the
// incoming-call settings and controller (whose creation, on 7.x, starts the
// retries that install the incoming-call screen rows once the springboard
// has registered MPIncomingPhoneCallController: zvincomingcall_init2).
#include "callscreens/incoming_call_controller.h"
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/incoming_call_port.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/springboard.h"

namespace zv {

bool zvincomingcall_init2() {
  using Screen = sdk::MPIncomingPhoneCallController;
  if (!rt::getClass(Screen::kName)) return false;
  runStartup("zvincomingcall_init2", [] {
    auto c = platform::Process::current().slot<ZVIncomingCallController>();
    if (!c) return;
    const auto k = GuardKind::Log;
    using namespace hook;
    using Id = const rt::Id&;
    // clang-format off
    systemDecides(k, Screen::initWithCall, [c](Id, rt::Id&, rt::Id call) { return c->blockCall(call); });
    // clang-format on
  });
  return true;
}

void zvincomingcall_init() {
  runStartup("zvincomingcall_init", [] {
    auto settings = ZVIncomingCallSettings::sharedInstance();
    if (!settings) return;
    auto c = ZVIncomingCallController::sharedInstance();
    if (!c) return;
    c->setHost(makeRuntimeIncomingCallHost());
  });
}

}  // namespace zv
