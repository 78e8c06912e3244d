// zorvel call: a scripted session on the simulated call screens. It starts
// the call-screen host of the system generation (the springboard on 7.x;
// on 8.x the in-call service and, beside it, the springboard that shows the
// missed-call banners: two processes of one world on the one device root,
// as on the device) with the extension loaded, lets them run for 60 s of
// virtual time (--fresh: none) so that start-up retries have settled, then
// plays the actions as the network and the user (see call_actions.h) and
// prints, after each, the calls, the call screen and what happened (see
// call_screen.h). Time is virtual; files land on the device root, so a
// later command sees what this one saved.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "hooks/modules.h"
#include "hosts/incallservice/app.h"
#include "hosts/springboard/app.h"
#include "platform/db/call_records.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/call_screen.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/scenes.h"
#include "tools/zorvel/sessions/call_actions.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

using Kind = CallAction::Kind;

// How long the host has been running when the session begins.
constexpr double kSettleSeconds = 60;
// The virtual clock's start on a device without calls.
constexpr double kFirstEpoch = 1416182400.0;

// Sessions on one device root follow each other: the clock starts an hour
// after the newest call in the device's call history, so that calls of
// separate sessions never share a date (nor a ring duration's key).
double sessionEpoch(const std::string& root, const std::string& os) {
  namespace schema = platform_schema;
  const auto which = schema::callHistoryDatabase(os);
  sql::Database db(root + schema::callHistoryPath(which));
  const bool store = which == schema::Database::kCallHistoryStore;
  sql::Statement newest(db, store ? "SELECT MAX(ZDATE) FROM ZCALLRECORD"
                                  : "SELECT MAX(date) FROM call");
  if (!newest.step() || newest.isNull(0)) return kFirstEpoch;
  const double date =
      newest.real(0) + (store ? schema::kReferenceDateOffset : 0);
  return std::max(kFirstEpoch, std::ceil(date) + 3600);
}

// The newest call of the device in one of `statuses`, incoming or outgoing
// as asked (either when nullopt).
std::optional<platform::CallId> newestCall(
    platform::SimTelephony& telephony, std::initializer_list<int32_t> statuses,
    std::optional<bool> outgoing = std::nullopt) {
  auto calls = telephony.calls();
  for (auto it = calls.rbegin(); it != calls.rend(); ++it) {
    if (outgoing && it->isOutgoing != *outgoing) continue;
    if (std::find(statuses.begin(), statuses.end(), it->status) !=
        statuses.end())
      return it->id;
  }
  return std::nullopt;
}

class Session {
 public:
  // `springboard` is the springboard beside an 8.x in-call service, or
  // null.
  Session(platform::SimWorld& world, platform::SimProcess& process,
          hosts::CallScreenHost& host, platform::SimProcess* springboard)
      : world_(world),
        process_(process),
        host_(host),
        springboard_(springboard) {}

  // Performs one action; returns a note when it found nothing to act on.
  std::optional<std::string> perform(const CallAction& a) {
    auto& tel = world_.telephony();
    using namespace platform;
    switch (a.kind) {
      case Kind::Incoming: {
        IncomingOptions o;
        o.hidden = !a.number;
        o.abUID = a.contact;
        o.platformBlocked = a.platformBlocked;
        tel.incoming(a.number.value_or(""), o);
        return std::nullopt;
      }
      case Kind::Answer:
        return act("no ringing call to answer",
                   newestCall(tel, {kCallRinging}, false),
                   [&](CallId id) { tel.answer(id); });
      case Kind::Decline:
        return act("no ringing call to decline",
                   newestCall(tel, {kCallRinging}, false),
                   [&](CallId id) { tel.decline(id); });
      case Kind::Hangup:
        return act("no call for the other side to end",
                   newestCall(tel, {kCallActive, kCallHeld, kCallDialling,
                                    kCallRinging}),
                   [&](CallId id) { tel.remoteHangup(id); });
      case Kind::Outgoing:
        tel.dial(*a.number);
        return std::nullopt;
      case Kind::Connect:
        return act("no outgoing call to connect",
                   newestCall(tel, {kCallDialling}, true),
                   [&](CallId id) { tel.connect(id); });
      case Kind::Hold:
        return act("no active call to hold", newestCall(tel, {kCallActive}),
                   [&](CallId id) { tel.hold(id); });
      case Kind::Resume:
        return act("no held call to resume", newestCall(tel, {kCallHeld}),
                   [&](CallId id) { tel.resume(id); });
      case Kind::End:
        return act("no call to end",
                   newestCall(tel, {kCallActive, kCallDialling, kCallHeld,
                                    kCallRinging}),
                   [&](CallId id) { tel.end(id); });
      case Kind::Wait:
        world_.advance(a.seconds);
        return std::nullopt;
      case Kind::Lock:
      case Kind::Unlock:
        process_.run([&] { host_.setLocked(a.kind == Kind::Lock); });
        if (springboard_) springboard_->run([&] { lockSpringboard(a); });
        return std::nullopt;
      case Kind::Notify:
        process_.post(a.name, platform::Scope::System);
        return std::nullopt;
      case Kind::Message:
        (springboard_ ? *springboard_ : process_).run([&] {
          hosts::SpringBoardApplication::shared()->messageReceived(*a.number,
                                                                   "");
        });
        return std::nullopt;
      case Kind::Keypad:
        return process_.run([]() -> std::optional<std::string> {
          auto ics = hosts::InCallServiceApplication::shared();
          if (!ics || !ics->participants()) return "no call screen keypad";
          ics->showKeypad();
          return std::nullopt;
        });
    }
    return std::nullopt;
  }

 private:
  template <typename F>
  static std::optional<std::string> act(const char* note,
                                        std::optional<platform::CallId> id,
                                        F&& f) {
    if (!id) return note;
    f(*id);
    return std::nullopt;
  }

  static void lockSpringboard(const CallAction& a) {
    if (auto sb = hosts::SpringBoardApplication::shared())
      sb->setLocked(a.kind == Kind::Lock);
  }

  platform::SimWorld& world_;
  platform::SimProcess& process_;
  hosts::CallScreenHost& host_;
  platform::SimProcess* springboard_;
};

struct CallOptions : SessionOptions {
  bool fresh = false;
};

void run(const CallOptions& options) {
  // Everything is checked before the first action runs.
  const std::vector<CallAction> actions = parseCallActions(options.actions);
  SessionRunner runner(options);
  runner.world(sessionEpoch(runner.root(), options.os));
  const bool springboard = options.os == "7.1";
  auto& process = runner.launch(springboard ? hosts::springboardHost()
                                            : hosts::inCallServiceHost());
  // On 8.x the missed-call banners are the springboard's.
  platform::SimProcess* beside =
      springboard ? nullptr : &runner.launch(hosts::springboardHost());
  runner.world().advance(options.fresh ? 0 : kSettleSeconds);
  auto* host = process.run([]() -> hosts::CallScreenHost* {
    return dynamic_cast<hosts::CallScreenHost*>(
        ui::UIApplication::shared().get());
  });
  if (!host) throw CommandError("the call-screen host did not start");
  CallScreen screen(runner.world(), *host);
  screen.skipEvents();  // what start-up did is not news

  Session session(runner.world(), process, *host, beside);
  runner.play(
      options.actions, [&](size_t i) { return session.perform(actions[i]); },
      [&](const std::string& action) {
        Frame f;
        f.screen = process.run([&] { return screen.capture(); });
        f.text = CallScreen::render(f.screen);
        f.picture = runner.picture(process, action,
                                   [&] { return callScene(process, *host); });
        return f;
      });
  // A call or ring time the device could not record is a failed command,
  // however the screens went.
  for (const auto& event : runner.world().events("log"))
    if (event.detail.starts_with("call history not written") ||
        event.detail.starts_with("ring duration not written"))
      throw CommandError(event.detail);
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<CallOptions>();
  auto* cmd = app.add_subcommand(
      "call",
      "Play incoming and outgoing calls on the simulated call screens (the "
      "springboard on 7.1, the in-call service on 8.1) and print what "
      "happens after each action. Saved ring durations and call records "
      "land on the device; --scratch runs it on a copy.");
  addSessionOptions(
      *cmd, *options,
      "incoming:NUMBER[:contact=ID][:platform-blocked] answer decline "
      "hangup outgoing:NUMBER connect hold resume end wait:SECONDS lock "
      "unlock notify:NAME message:NUMBER keypad",
      "7.1 (springboard) or 8.1 (in-call service)");
  cmd->add_flag("--fresh", options->fresh,
                "start at the host's launch instead of 60 s after it");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
