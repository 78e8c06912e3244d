// What a person sees and what happened after each action of a `zorvel call`
// session: every call the host heard of (number, status, whether the system
// blocked its screen, whether the host's own ringtone played), the call
// screen when one is up (name, label, the status label's lines, the
// information text view's lines, other labels such as the outgoing area
// label, the decline button), the status bar's carrier name, and the side
// effects since the previous look, in order (disconnect, disconnectAll,
// sound, vibration, log, alert, bulletin, and ringDuration for each ring
// time saved to the device).
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "hosts/kit/call_screens.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

class CallScreen {
 public:
  CallScreen(platform::SimWorld& world, hosts::CallScreenHost& host)
      : world_(world), host_(host) {}
  // Marks everything recorded so far as seen.
  void skipEvents();
  // The screen now, with the effects since the previous capture; keys
  // "calls", "screen", "carrier", "effects".
  nlohmann::ordered_json capture();
  // The same as text, one item per line.
  static std::string render(const nlohmann::ordered_json& screen);

 private:
  platform::SimWorld& world_;
  hosts::CallScreenHost& host_;
  size_t seen_ = 0;
  // The device's ring durations as of the previous capture.
  std::map<std::string, int64_t> ring_durations_;
};

// "active", "held", "dialling", "ringing", "ending", "ended".
const char* statusName(int32_t status);

}  // namespace zv::cli
