#include "callscreens/ring_timer.h"

#include <cmath>

#include "core/device.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "search/call_history.h"

namespace zv {

RingTimer::RingTimer(std::shared_ptr<ZVIncomingCallSettings> settings,
                     std::shared_ptr<ZVCallHistory> callHistory)
    : _settings(std::move(settings)), _callhistory(std::move(callHistory)) {}

void RingTimer::initCall() {
  _isIncomingCall = true;
  _isIncomingCallForDeclineButton = true;
  _isIncomingCallForDelayRing = true;
  _ringtime = 0;
}

void RingTimer::deallocCall() {
  _isIncomingCall = false;
  _isIncomingCallForDeclineButton = false;
  _isIncomingCallForDelayRing = false;
  _ringtime = 0;
}

void RingTimer::startRingDuration() {
  if (_settings && _settings->CallHistoryRingDuration())
    _ringtime = platform::current().now();
}

void RingTimer::stopRingDuration() {
  if (!_settings || !_settings->CallHistoryRingDuration() || _ringtime <= 0)
    return;
  const auto seconds =
      static_cast<int64_t>(std::trunc(platform::current().now() - _ringtime));
  if (seconds >= 1 && seconds <= kMaxRingSeconds && _callhistory)
    _callhistory->saveLastRingDuration(seconds);
  _ringtime = 0;
}

bool RingTimer::areDelayRing(const rt::Id& screen) {
  if (!_isIncomingCallForDelayRing || !_settings) return false;
  const float delay = _settings->IncomingCallDelayRing();
  if (!(delay > 0) || !screen) return false;
  std::weak_ptr<RingTimer> weak = weak_from_this();
  platform::current().performAfterDelay(this, "ringOrVibrate:", delay,
                                        [weak, screen] {
                                          if (auto self = weak.lock())
                                            self->ringOrVibrate(screen);
                                        });
  return true;
}

void RingTimer::ringOrVibrate(const rt::Id& screen) {
  // The call ended or was handled inside the delay: it never rings.
  if (!_isIncomingCallForDelayRing) return;
  _isIncomingCallForDelayRing = false;
  if (UIDevice::OSVersion() >= 8.0f || !host_) return;
  // The replacement finds the flag clear and lets the host ring.
  host_->ringOrVibrate(screen);
}

bool RingTimer::areDeclineButton() {
  if (UIDevice::OSVersion() < 8.0f) {
    // Only the first question of a call is answered.
    if (!_isIncomingCallForDeclineButton) return false;
    _isIncomingCallForDeclineButton = false;
  }
  return _settings && _settings->IncomingCallDeclineButton();
}

}  // namespace zv
