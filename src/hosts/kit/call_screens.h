// What a call-screen host (the 7.x springboard, the 8.x in-call service)
// did for each call it heard of, in the order the calls began: whether it
// put up its call screen or something else stood in its place, whether its
// own ringtone played, and the caller as its screen names it. Tests and
// `zorvel call` read it; the hosts fill it in as the calls change.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/telephony/telephony.h"

namespace zv::hosts {

struct ScreenedCall {
  platform::CallId id = 0;
  std::optional<std::string> number;  // nullopt: hidden caller
  bool outgoing = false;
  int32_t status = platform::kCallRinging;  // as last heard
  // The host asked for its call screen and got none, or something other
  // than its call screen (the system blocked the screen).
  bool screenBlocked = false;
  bool ringtone = false;  // the host's own ringtone played for it
};

// The labels of the call screen that is up.
struct CallScreenLabels {
  std::string name;
  std::optional<std::string> companyName;
  std::optional<std::string> label;
};

class CallScreenHost {
 public:
  virtual ~CallScreenHost() = default;
  virtual const std::vector<ScreenedCall>& screenedCalls() const = 0;
  // The call screen's labels, nullopt when no call screen is up.
  virtual std::optional<CallScreenLabels> screenLabels() const = 0;
  // The lock screen.
  virtual void setLocked(bool locked) = 0;
};

// The caller as the platform's call screens name it: the contact's name
// (with its organisation as company name) when the call has a record, else
// the number, "Unknown" for a hidden caller.
CallScreenLabels callerLabels(const platform::CallInfo& call);

}  // namespace zv::hosts
