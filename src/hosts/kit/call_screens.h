// What a call-screen host (the 7.x springboard, the 8.x in-call service)
// did for each call it heard of (the live ones and the latest ended ones),
// in the order the calls began: whether it
// put up its call screen or something else stood in its place, whether its
// own ringtone played, and the caller as its screen names it. Tests and
// `zorvel call` read it; the hosts fill it in as the calls change.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/telephony/telephony.h"
#include "platform/ui/view.h"

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

// Ended calls a host still reports in screenedCalls (the latest ones): a
// phone that runs for months must not keep every call it ever had.
inline constexpr size_t kEndedCallsKept = 64;
// Drops the oldest ended calls of `calls` beyond kEndedCallsKept; calls
// that have not ended stay whatever their number.
void forgetOldEndedCalls(std::vector<ScreenedCall>& calls);

// The labels of the call screen that is up.
struct CallScreenLabels {
  std::string name;
  std::optional<std::string> companyName;
  std::optional<std::string> label;
};

// Everything a person reads on the call screen that is up: the caller's
// name, the status label (an array answer gives several lines, shown in
// turn), the lines of any text view on the screen, every other label added
// to it (in view order), and whether the unlocked layout with its decline
// button is shown for a ringing call.
struct CallScreenText {
  std::string name;
  std::vector<std::string> labelLines;
  std::vector<std::string> infoLines;
  std::vector<std::string> extraLabels;
  bool declineButton = false;
};

class CallScreenHost {
 public:
  virtual ~CallScreenHost() = default;
  virtual const std::vector<ScreenedCall>& screenedCalls() const = 0;
  // The call screen's labels, nullopt when no call screen is up.
  virtual std::optional<CallScreenLabels> screenLabels() const = 0;
  // What the call screen shows now; nullopt when no call screen is up.
  virtual std::optional<CallScreenText> screenText() const = 0;
  // The lock screen.
  virtual void setLocked(bool locked) = 0;
};

// The call screen of the current process's running call-screen host (the
// springboard or the in-call service), as screenText(); nullopt when the
// process runs neither or shows no call screen. For readers outside the
// host, such as a desktop notifier.
std::optional<CallScreenText> currentCallScreenText();

// The texts shown inside `view`: visible UITextViews' laid-out lines go to
// `info`, visible UILabels' non-empty texts to `labels`, depth first; views
// in `skip` (the host's own labels) are left out.
void collectScreenTexts(const std::shared_ptr<ui::UIView>& view,
                        const std::vector<const ui::UIView*>& skip,
                        std::vector<std::string>& info,
                        std::vector<std::string>& labels);

// Whether the contact has a picture in the address-book images database.
bool contactHasPicture(int32_t recordId);

// The caller as the platform's call screens name it: the contact's name
// (with its organisation as company name) when the call has a record, else
// the number, "Unknown" for a hidden caller.
CallScreenLabels callerLabels(const platform::CallInfo& call);

}  // namespace zv::hosts
