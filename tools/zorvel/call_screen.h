// What a person sees and what happened after each action of a `zorvel call`
// session: every call the host heard of (number, status, whether the system
// blocked its screen, whether the host's own ringtone played), the call
// screen's labels when one is up, and the side effects recorded since the
// previous look, in order (disconnect, disconnectAll, sound, vibration,
// log, alert, bulletin).
#pragma once

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
  void skipEvents() { seen_ = world_.events().size(); }
  // The screen now, with the effects since the previous capture; keys
  // "calls", "screen", "effects".
  nlohmann::ordered_json capture();
  // The same as text, one item per line.
  static std::string render(const nlohmann::ordered_json& screen);

 private:
  platform::SimWorld& world_;
  hosts::CallScreenHost& host_;
  size_t seen_ = 0;
};

// "active", "held", "dialling", "ringing", "ending", "ended".
const char* statusName(int32_t status);

}  // namespace zv::cli
