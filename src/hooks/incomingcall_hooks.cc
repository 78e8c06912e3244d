// zvincomingcall_init: the springboard's call screens. It takes the
// incoming-call settings and controller (whose creation, on 7.x, starts the
// retries that install the incoming-call screen rows once the springboard
// has registered MPIncomingPhoneCallController: zvincomingcall_init2), and
// puts the caller's area on the missed-call and message banners and the
// "more" label of a call, and the user's carrier name in the status bar.
//
// The incoming screen's rows: blocking decides on the screen, an unblocked
// call starts its ring measurement, the LCD gets the area and the
// information text view, the ring may be put off, and the ring measurement
// ends with the screen. The lock-screen question is answered "not locked"
// (the decline button) only when that was on at start-up.
#include "callscreens/incoming_call_controller.h"
#include "core/device.h"
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/incoming_call_port.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/springboard.h"
#include "hostsdk/telephony.h"
#include "search/call_history.h"

namespace zv {

bool zvincomingcall_init2() {
  using Screen = sdk::MPIncomingPhoneCallController;
  if (!rt::getClass(Screen::kName)) return false;
  runStartup("zvincomingcall_init2", [] {
    auto c = platform::Process::current().slot<ZVIncomingCallController>();
    auto settings = ZVIncomingCallSettings::sharedInstance();
    if (!c || !settings) return;
    const auto k = GuardKind::Log;
    using namespace hook;
    using Id = const rt::Id&;
    using Text = std::optional<std::string>;
    // clang-format off
    systemDecides(k, Screen::initWithCall, [c](Id, rt::Id&, rt::Id call) { if (c->blockCall(call)) return true; c->initCall(); c->startRingDuration(); return false; });
    systemFirst(k, Screen::dealloc, [c](Id) { c->deallocCall(); });
    hostFirst(k, Screen::viewWillDisappear, [c](Id, bool) { c->stopRingDuration(); c->deallocCall(); });
    rewriteArgs(k, Screen::updateLCDWithNameCompanyNameLabelBreakPoint, [c](Id self, Text&, Text& company, Text& label, int32_t&) { c->infoIncomingCall(self, company, label); label = c->areaIncomingCall(self, label); });
    systemDecides(k, Screen::ringOrVibrate, [c](Id self) { return c->areDelayRing(self); });
    if (settings->IncomingCallDeclineButton()) systemDecides(k, sdk::SBUserAgent::lockScreenIsShowing, [c](Id, bool& locked) { locked = false; return c->areDeclineButton(); });
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
    const auto k = GuardKind::Log;
    using namespace hook;
    using Id = const rt::Id&;
    using Text = std::optional<std::string>;
    const bool area = settings->EnableArea();
    // On 8.x ring durations are saved by the in-call service; the banner's
    // copy must follow its "ZVCallHistoryChanged".
    if (area && settings->AreaNameNotification())
      ZVCallHistory::regisiterChangedCallback();
    // clang-format off
    if (area && settings->AreaNameNotification()) after(k, sdk::BBBulletin::title, [c](Id self, std::string& title) { title = c->areaBulletin(self, title).value_or(""); });
    if (area && settings->AreaNameMore() && UIDevice::OSVersion() >= 8.0f) after(k, sdk::TUCall::localizedLabel, [c](Id self, Text& label) { label = c->areaTUCall(self, label); });
    if (!settings->CarrierName().empty()) after(k, sdk::SBStatusBarStateAggregator::sbCarrierNameForOperator, [c](Id, Text& name, Text) { name = c->updateCarrierName(name); });
    // clang-format on
  });
}

}  // namespace zv
