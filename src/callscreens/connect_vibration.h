// The one vibration an outgoing call gives when it is answered, shared by
// the Phone app's in-call controller and the call-screen controller.
//
// A latch keeps it to one vibration per connection: any status other than
// active re-arms it, so a call that is held and resumed vibrates again,
// while repeated "active" notices of one connection do not. Incoming calls
// never vibrate. The vibration runs a short delay after the answer, under
// the owner's "vibrate" selector on the current platform, so a newer answer
// replaces a pending one and an owner that is gone by then does nothing.
#pragma once

#include <cmath>
#include <cstdint>
#include <memory>

#include "callscreens/call_status.h"
#include "core/device.h"
#include "platform/platform.h"

namespace zv {

class ConnectVibration {
 public:
  static constexpr double kDelay = 0.1;

  // Whether a call now in `status` should vibrate: true once per
  // connection (kCallActive) of an outgoing call.
  bool shouldVibrate(int32_t status, bool outgoing) {
    if (status != kCallActive) {
      latch_ = false;
      return false;
    }
    if (!outgoing || latch_) return false;
    latch_ = true;
    return true;
  }
  bool latched() const { return latch_; }

  // Runs owner->vibrate() kDelay seconds from now, replacing one pending.
  template <class Owner>
  static void schedule(Owner& owner) {
    auto& platform = platform::current();
    platform.cancelPrevious(&owner, "vibrate");
    platform.performAfterDelay(&owner, "vibrate", kDelay,
                               [weak = owner.weak_from_this()] {
                                 if (auto self = weak.lock()) self->vibrate();
                               });
  }

  // Vibrates with the connected-vibration intensity and pattern (seconds in
  // the settings, whole milliseconds on the device).
  template <class Settings>
  static void vibrate(const Settings& s) {
    auto whole = [](float seconds) {
      return static_cast<int64_t>(
          std::trunc(static_cast<double>(seconds) * 1000));
    };
    UIDevice::vibrateWithIntensity(s.ConnectedVibrateIntensity(),
                                   whole(s.ConnectedVibrateTotalDuration()),
                                   whole(s.ConnectedVibrateOnDuration()),
                                   whole(s.ConnectedVibrateOffDuration()));
  }

 private:
  bool latch_ = false;
};

}  // namespace zv
