// zvincallservice_init: the in-call service's call screen (8.x and later).
// A blocked call gets an empty view controller in place of the call screen,
// and its ringtone request is refused by a second decision that does not
// act on the call again. An unblocked call's screen measures the ring from
// its appearance to its disappearance, shows the caller's area in the
// participant's label or in the information text view / outgoing label,
// clears them when the call changes or the keypad comes up, and vibrates
// once when an outgoing call connects. The lock question is answered "not
// locked" (the decline button) only when that was on at start-up.
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
    using Actual = sdk::PHInCallRootViewControllerActual;
    using Participants = sdk::PHCallParticipantsViewController;
    using Audio = sdk::PHAudioCallViewController;
    using Ringtone = sdk::PHRingtoneController;
    using Text = std::optional<std::string>;
    // clang-format off
    systemDecides(k, Root::initWithNibNameBundle, [c](Id, rt::Id& screen, Text, rt::Id) { if (!c->blockInCall(nullptr)) return false; screen = rt::make(ui::msg::UIViewController::init); return true; });
    hostFirst(k, Actual::viewWillAppear, [c](Id, bool) { c->initCall(); c->startRingDuration(); });
    hostFirst(k, Actual::viewWillDisappear, [c](Id, bool) { c->stopRingDuration(); c->deallocCall(); });
    systemFirst(k, Actual::dealloc, [c](Id) { c->deallocCall(); });
    systemFirst(k, Actual::callStateChangedNotification, [c](Id, rt::Id note) { c->callStateChangedNotification(note); });
    systemFirst(k, Participants::callStatusChangedNotification, [c](Id self, rt::Id note) { c->callStatusChangedNotification(note, self); });
    after(k, Participants::labelForParticipantAtIndexInParticipantsView, [c](Id self, Value& label, int32_t index, rt::Id view) { label = c->areaParticipantsView(self, index, view, label); });
    after(k, Participants::imageForParticipantAtIndexInParticipantsView, [c](Id, ui::ImagePtr& image, int32_t, rt::Id) { c->imageForParticipant(image); });
    hostFirst(k, Participants::viewWillAppear, [c](Id self, bool) { c->infoInCall(self); });
    hostFirst(k, Audio::audioCallControlsViewControllerRequestedKeypadPresentation, [c](Id self, rt::Id) { c->hideInfoInCall(self); });
    systemDecides(k, Ringtone::playRingtoneWithIdentifierVibrationPattern, [c](Id, Text, rt::Id) { return c->blockRingtone(nullptr); });
    if (settings->IncomingCallDeclineButton()) systemDecides(k, sdk::PHInCallUtilities::isSpringBoardLocked, [c](Id, bool& locked) { locked = false; return c->areDeclineButton(); });
    // clang-format on
  });
}

}  // namespace zv
