// The ring of each call on the springboard / in-call service screens: how
// long an incoming call rang (saved for the missed-call banner and
// Recents), the delayed ring (7.x), the answer to the lock-screen question
// that brings up the decline button, and one vibration when an outgoing
// call is answered.
#include <cmath>

#include "callscreens/incoming_call_controller.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "search/call_history.h"

namespace zv {
namespace {}  // namespace

void ZVIncomingCallController::initCall() {
  _isIncomingCall = true;
  _isIncomingCallForDeclineButton = true;
  _isIncomingCallForDelayRing = true;
  _ringtime = 0;
  _isInCallFieldMode = false;
}

void ZVIncomingCallController::deallocCall() {
  _isIncomingCall = false;
  _isIncomingCallForDeclineButton = false;
  _isIncomingCallForDelayRing = false;
  _ringtime = 0;
  _isInCallFieldMode = false;
  _curInCallStatus = 0;
}

void ZVIncomingCallController::startRingDuration() {
  if (_settings && _settings->CallHistoryRingDuration())
    _ringtime = platform::current().now();
}

void ZVIncomingCallController::stopRingDuration() {
  if (!_settings || !_settings->CallHistoryRingDuration() || _ringtime <= 0)
    return;
  const auto seconds =
      static_cast<int64_t>(std::trunc(platform::current().now() - _ringtime));
  if (seconds >= 1 && seconds <= kMaxRingSeconds && _callhistory)
    _callhistory->saveLastRingDuration(seconds);
  _ringtime = 0;
}

bool ZVIncomingCallController::areDelayRing(const rt::Id& screen) {
  if (!_isIncomingCallForDelayRing || !_settings) return false;
  const float delay = _settings->IncomingCallDelayRing();
  if (!(delay > 0) || !screen) return false;
  std::weak_ptr<ZVIncomingCallController> weak = weak_from_this();
  platform::current().performAfterDelay(this, "ringOrVibrate:", delay,
                                        [weak, screen] {
                                          if (auto self = weak.lock())
                                            self->ringOrVibrate(screen);
                                        });
  return true;
}

void ZVIncomingCallController::ringOrVibrate(const rt::Id& screen) {
  // The call ended or was handled inside the delay: it never rings.
  if (!_isIncomingCallForDelayRing) return;
  _isIncomingCallForDelayRing = false;
  if (UIDevice::OSVersion() >= 8.0f || !host_) return;
  // The replacement finds the flag clear and lets the host ring.
  host_->ringOrVibrate(screen);
}

bool ZVIncomingCallController::areDeclineButton() {
  if (UIDevice::OSVersion() < 8.0f) {
    // Only the first question of a call is answered.
    if (!_isIncomingCallForDeclineButton) return false;
    _isIncomingCallForDeclineButton = false;
  }
  return _settings && _settings->IncomingCallDeclineButton();
}

void ZVIncomingCallController::connectedVibrate(const rt::Id& call) {
  if (!_settings || !_settings->EnableConnectedVibrate() || !call || !host_)
    return;
  if (connect_vibration_.shouldVibrate(host_->status(call),
                                       host_->isOutgoing(call)))
    ConnectVibration::schedule(*this);
}

void ZVIncomingCallController::vibrate() {
  if (_settings) ConnectVibration::vibrate(*_settings);
}

}  // namespace zv
