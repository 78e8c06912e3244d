// The status a telephony call object reports (its `status` property), as
// the call screens of both system generations see it. An object without
// one answers kCallStatusNone.
#pragma once

#include <cstdint>

namespace zv {

enum CallStatus : int32_t {
  kCallStatusNone = 0,
  kCallActive = 1,
  kCallHeld = 2,
  // An outgoing call not yet answered.
  kCallDialling = 3,
  // An incoming call not yet answered.
  kCallRinging = 4,
  kCallEnding = 5,
  kCallEnded = 6,
};

// The call is no longer (or not yet) being set up: it is talking, held or
// over. The 8.x call screen takes its caller-information views off then.
constexpr bool isPastSetUp(int32_t status) {
  return status == kCallActive || status == kCallHeld ||
         status == kCallEnding || status == kCallEnded;
}

// The call is off the line for the user: held, ending or ended.
constexpr bool isOffLine(int32_t status) {
  return status == kCallHeld || status == kCallEnding || status == kCallEnded;
}

}  // namespace zv
