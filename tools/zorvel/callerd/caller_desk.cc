#include "tools/zorvel/callerd/caller_desk.h"

#include <algorithm>

namespace zv::cli {
namespace {

using namespace platform;

std::string describe(const std::string& caller) {
  return caller.empty() ? "a withheld number" : caller;
}

std::string join(const std::vector<std::string>& lines) {
  std::string out;
  for (const auto& line : lines) {
    if (line.empty()) continue;
    if (!out.empty()) out += '\n';
    out += line;
  }
  return out;
}

}  // namespace

void CallerDesk::callChanged(const CallInfo& call) {
  if (call.isOutgoing) return;
  auto it = calls_.find(call.id);
  if (it == calls_.end()) {
    // Only a call heard of while it rings is decided on; one that is
    // already past that (answered elsewhere) is not ours to show.
    if (call.status != kCallRinging) return;
    it = calls_.emplace(call.id, Followed{call.destinationID.value_or("")})
             .first;
    decide(call, it->second);
    return;
  }
  Followed& f = it->second;
  if (call.status == kCallRinging) return;
  if (f.shown) port_.close(call.id);
  if (call.status != kCallEnded) return;
  if (f.shown && call.connectedAt == 0) {
    DesktopNotification missed;
    missed.kind = DesktopNotification::Kind::kMissed;
    missed.summary = port_.missedTitle(call);
    missed.body = "Missed call";
    port_.show(missed, 0);
    port_.log("call " + std::to_string(call.id) + " from " +
              describe(f.caller) + ": missed");
  }
  calls_.erase(it);
}

void CallerDesk::decide(const CallInfo& call, Followed& f) {
  const std::string head =
      "call " + std::to_string(call.id) + " from " + describe(f.caller) + ": ";
  const std::string unknown =
      call.contactUnknown && port_.blocksStrangers()
          ? " (the address book could not be read: not blocked as a "
            "stranger)"
          : "";
  const auto& screened = port_.screenedCalls();
  auto record = std::find_if(
      screened.rbegin(), screened.rend(),
      [&](const hosts::ScreenedCall& c) { return c.id == call.id; });
  if (record != screened.rend() && record->screenBlocked) {
    f.blocked = true;
    last_blocked_ = f.caller;
    port_.log(head + "blocked");
    return;
  }
  auto screen = port_.screenFor(call.id);
  std::string waiting;
  if (!screen) {
    waiting = " (call waiting)";
    if (port_.blockWithoutScreen(call.id)) {
      f.blocked = true;
      last_blocked_ = f.caller;
      port_.log(head + "blocked" + waiting);
      return;
    }
    screen = port_.textWithoutScreen(call);
  }
  f.shown = true;
  DesktopNotification n;
  n.kind = DesktopNotification::Kind::kCall;
  n.summary = screen->title;
  n.body = join(screen->lines);
  port_.show(n, call.id);
  port_.log(head + "shown" + waiting + unknown);
}

void CallerDesk::soundPlayed() {
  if (reminder_pending_) return;
  reminder_pending_ = true;
  // The vibration and the sound of one reminder come in one turn of the
  // loop: they make one notification.
  port_.later([this] {
    reminder_pending_ = false;
    DesktopNotification n;
    n.kind = DesktopNotification::Kind::kReminder;
    n.summary = "Call blocked";
    n.body = last_blocked_
                 ? (last_blocked_->empty() ? "Unknown" : *last_blocked_)
                 : "";
    port_.show(n, 0);
  });
}

}  // namespace zv::cli
