// RingTimer: the ring of one incoming call on the springboard (7.x) or
// in-call service (8.x) screens. It measures how long the call rang (whole
// seconds, saved to the call history for the missed-call banner and
// Recents), puts the host's ring off by IncomingCallDelayRing seconds (the
// ring is dropped when the call is handled inside the delay), and answers
// the lock-screen question that brings up the decline button, once per
// call on 7.x.
//
// A call's life is initCall .. deallocCall; outside it nothing is measured
// or delayed. The host is reached only through IncomingCallHost. Main
// thread only; made as a shared object (the delayed ring is scheduled on the
// run loop and skipped once the timer is gone).
#pragma once

#include <cstdint>
#include <memory>

#include "callscreens/incoming_call_host.h"
#include "platform/runtime/object.h"

namespace zv {

class ZVIncomingCallSettings;
class ZVCallHistory;

class RingTimer : public std::enable_shared_from_this<RingTimer> {
 public:
  // Ring durations outside 1..kMaxRingSeconds are not recorded.
  static constexpr int64_t kMaxRingSeconds = 119;

  // `settings` must not be null; without `callHistory` nothing is saved.
  RingTimer(std::shared_ptr<ZVIncomingCallSettings> settings,
            std::shared_ptr<ZVCallHistory> callHistory);
  RingTimer(const RingTimer&) = delete;
  RingTimer& operator=(const RingTimer&) = delete;

  void setHost(std::shared_ptr<IncomingCallHost> host) {
    host_ = std::move(host);
  }

  // A call's screen appears / goes.
  void initCall();
  void deallocCall();
  // Notes the time when CallHistoryRingDuration is on.
  void startRingDuration();
  // Saves the whole seconds rung since startRingDuration (1..119 only).
  void stopRingDuration();
  // True when the host's ring is put off (ringOrVibrate later).
  bool areDelayRing(const rt::Id& screen);
  void ringOrVibrate(const rt::Id& screen);
  // True when the lock-screen question is answered "not locked".
  bool areDeclineButton();

  // Between initCall and deallocCall.
  bool isIncomingCall() const { return _isIncomingCall; }
  // The platform time startRingDuration noted; 0 when not measuring.
  double ringtime() const { return _ringtime; }

 private:
  std::shared_ptr<IncomingCallHost> host_;
  std::shared_ptr<ZVIncomingCallSettings> _settings;
  std::shared_ptr<ZVCallHistory> _callhistory;
  double _ringtime = 0;
  bool _isIncomingCall = false;
  bool _isIncomingCallForDeclineButton = false;
  bool _isIncomingCallForDelayRing = false;
};

}  // namespace zv
