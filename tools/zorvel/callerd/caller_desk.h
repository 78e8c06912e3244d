// What `zorvel callerd` makes of each call the in-call service heard of,
// told after the host has handled the change: the decision on a call that
// rings in (blocked: its screen was replaced; shown: its call screen is up)
// as one log line (which says
// when a caller was let through the strangers rule because the address
// book could not be read), the call
// screen's text as a desktop notification while the call rings, one quiet
// reminder notification when the host plays the blocked-call reminder, and
// a notification that stays for a call that rang on screen and ended
// unanswered (the missed-call bulletin's title). Outgoing calls pass.
//
// The in-call service shows one call: a call that rings in while another
// call's screen is up (call waiting) is decided on by itself at once, as
// its screen would have it decided, and when it is not blocked its caller
// goes to the desktop all the same ("(call waiting)" in its log lines).
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hosts/kit/call_screens.h"
#include "platform/telephony/telephony.h"
#include "tools/zorvel/callerd/desktop_notifications.h"

namespace zv::cli {

// What the call screen shows: its title (the caller) and the lines under it.
struct ScreenText {
  std::string title;
  std::vector<std::string> lines;
};

class CallerDesk {
 public:
  // The desk's surroundings: the in-call service, the desktop, the log.
  class Port {
   public:
    virtual ~Port() = default;
    virtual const std::vector<hosts::ScreenedCall>& screenedCalls() const = 0;
    // What the call screen shows when it is up for call `id`.
    virtual std::optional<ScreenText> screenFor(platform::CallId id) const = 0;
    // Decides on call `id`, which has no screen of its own, and takes the
    // blocking action: true when it is blocked.
    virtual bool blockWithoutScreen(platform::CallId id) = 0;
    // What a notification says of a call without a screen of its own.
    virtual ScreenText textWithoutScreen(const platform::CallInfo& call) = 0;
    // The title of the missed-call bulletin of `call`.
    virtual std::string missedTitle(const platform::CallInfo& call) = 0;
    // Blocking is on and blocks callers that are not contacts.
    virtual bool blocksStrangers() const = 0;
    virtual void show(const DesktopNotification& n, uint64_t key) = 0;
    virtual void close(uint64_t key) = 0;
    virtual void log(const std::string& line) = 0;
    // Runs `block` on the main loop after what is running now.
    virtual void later(std::function<void()> block) = 0;
  };

  explicit CallerDesk(Port& port) : port_(port) {}

  void callChanged(const platform::CallInfo& call);
  // The host played a system sound (the blocked-call reminder's vibration
  // or sound): one quiet notification for the sounds of one reminder.
  void soundPlayed();

  // Calls still followed (ringing or talking).
  size_t followed() const { return calls_.size(); }

 private:
  struct Followed {
    std::string caller;  // the number, or "" for a withheld one
    bool shown = false;
    bool blocked = false;
  };
  void decide(const platform::CallInfo& call, Followed& f);

  Port& port_;
  std::map<platform::CallId, Followed> calls_;
  std::optional<std::string> last_blocked_;
  bool reminder_pending_ = false;
};

}  // namespace zv::cli
