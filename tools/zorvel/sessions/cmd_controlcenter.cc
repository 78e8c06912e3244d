// zorvel controlcenter: a scripted session on the simulated springboard's
// Control Centre. It starts a springboard process on the device root (its
// settings and installed glyphs), lets ZorvelInitializer install the hooks,
// checks every action, then performs them in order and prints the Control
// Centre after each (text, or one JSON object per action with --json).
// Time is virtual: wait:SECONDS moves the clock, so the delayed toggle
// update runs without sleeping.
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "hosts/springboard/app.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/controlcenter_screen.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/scenes.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

// One checked action: open, close, a tap on a button, or a wait.
struct Action {
  enum Kind { kOpen, kClose, kTap, kWait } kind;
  std::string button;  // kTap
  double seconds = 0;  // kWait
};

// The buttons a tap can name: by what they replace, or by their place.
const std::map<std::string, std::string>& tapTargets() {
  static const std::map<std::string, std::string> targets = {
      {"home", "clock"},
      {"clock", "clock"},
      {"multitasking", "calculator"},
      {"calculator", "calculator"},
      {"lock", "camera"},
      {"camera", "camera"},
      {"cellular", "bluetooth"},
      {"bluetooth", "bluetooth"}};
  return targets;
}

Action parse(const std::string& text) {
  if (text == "open") return {Action::kOpen, "", 0};
  if (text == "close") return {Action::kClose, "", 0};
  if (text.starts_with("tap:")) {
    auto it = tapTargets().find(text.substr(4));
    if (it != tapTargets().end()) return {Action::kTap, it->second, 0};
    throw UsageError("unknown button in " + text +
                     " (use home, multitasking, lock, cellular, "
                     "bluetooth, clock, calculator or camera)");
  }
  if (text.starts_with("wait:"))
    return {Action::kWait, "", actionSeconds(text.substr(5), text)};
  throw UsageError("unknown action " + text);
}

void run(const SessionOptions& options) {
  std::vector<Action> actions;
  for (const auto& a : options.actions) actions.push_back(parse(a));
  SessionRunner runner(options);
  auto& sb = runner.launch(hosts::springboardHost());
  runner.world().advance(0);
  auto app = sb.run([] { return hosts::SpringBoardApplication::shared(); });
  ControlCenterScreen screen(sb, *app);
  sb.run([&] { screen.capture(); });  // what start-up did is not news
  runner.play(
      options.actions,
      [&](size_t i) {
        const Action& a = actions[i];
        switch (a.kind) {
          case Action::kOpen:
            sb.run([&] { app->controlCenter->present(); });
            break;
          case Action::kClose:
            sb.run([&] { app->controlCenter->dismiss(); });
            break;
          case Action::kTap:
            // A closed Control Centre takes no taps.
            sb.run([&] { app->controlCenter->button(a.button)->touch(); });
            break;
          case Action::kWait:
            runner.world().advance(a.seconds);
            break;
        }
        return std::optional<std::string>();
      },
      [&](const std::string& action) {
        Frame f;
        f.screen = sb.run([&] { return screen.capture(); });
        f.text = ControlCenterScreen::render(f.screen);
        f.picture = runner.picture(
            sb, action, [&] { return controlCenterScene(sb, *app); });
        return f;
      });
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<SessionOptions>();
  auto* cmd = app.add_subcommand(
      "controlcenter",
      "Run actions on the simulated springboard's Control Centre and print "
      "it after each.");
  addSessionOptions(*cmd, *options,
                    "open close wait:SECONDS tap:home|multitasking|lock|"
                    "cellular|bluetooth|clock|calculator|camera");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
