// zorvel messages: a scripted session on the simulated Messages app. It
// starts a Messages process on the device root (settings, contacts, groups,
// messages database, area database), lets ZorvelInitializer install the
// hooks, checks every action, then performs them in order and prints the
// screen after each (text, or one JSON object per action with --json).
// Rows and sections count from 1.
#include <iostream>
#include <string>
#include <vector>

#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "hosts/messages/app.h"
#include "hosts/messages/composer.h"
#include "hostsdk/messages.h"
#include "messages/group_view_controller.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/messages_screen.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/scenes.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

struct Action {
  std::string text, verb, argument;
  size_t first = 0, second = 0;  // parsed row numbers
};

// Checks one action's form; the session runs only when every action is good.
Action parse(const std::string& text) {
  Action a{text, text.substr(0, text.find(':')), ""};
  if (text.size() > a.verb.size()) a.argument = text.substr(a.verb.size() + 1);
  const bool bare = text.find(':') == std::string::npos;
  if (a.verb == "list" || a.verb == "new" || a.verb == "group" ||
      a.verb == "done" || a.verb == "cancel" || a.verb == "back") {
    if (!bare) throw UsageError(a.verb + " takes no argument");
  } else if (a.verb == "open" || a.verb == "check" ||
             a.verb == "delete-saved") {
    a.first = actionCount(a.argument, text);
  } else if (a.verb == "pick") {
    auto colon = a.argument.find(':');
    if (colon == std::string::npos) throw UsageError("pick needs SECTION:ROW");
    a.first = actionCount(a.argument.substr(0, colon), text);
    a.second = actionCount(a.argument.substr(colon + 1), text);
  } else if (a.verb == "to" || a.verb == "save") {
    if (a.argument.empty()) throw UsageError(a.verb + " needs a value");
  } else {
    throw UsageError("unknown action " + text);
  }
  return a;
}

class Session {
 public:
  Session(platform::SimProcess& proc, hosts::MessagesApplication& app)
      : proc_(proc), app_(app) {}

  void perform(const Action& a) {
    auto top = app_.topController();
    auto group = std::dynamic_pointer_cast<ZVSMSGroupViewController>(top);
    auto checklist =
        std::dynamic_pointer_cast<ZVSMSSelectContactsViewController>(top);
    auto composer = app_.composer();
    if (a.verb == "list") {
      while (app_.back()) {
      }
    } else if (a.verb == "open") {
      if (top != app_.list || !app_.openConversation(a.first - 1))
        throw CommandError("open: no such conversation in the list");
    } else if (a.verb == "new") {
      if (top != app_.list) throw CommandError("new: only from the list");
      app_.newMessage();
    } else if (a.verb == "to") {
      if (!composer || top != composer)
        throw CommandError("to: no composer open");
      rt::send(composer->toField, sdk::CKComposeRecipientView::addAddress,
               a.argument);
    } else if (a.verb == "group") {
      if (!composer || top != composer)
        throw CommandError("group: no composer open");
      auto item = composer->navigationItem()->leftBarButtonItem;
      if (!item || item->title != "Group" || !item->press())
        throw CommandError("group: the composer has no Group button");
    } else if (a.verb == "pick") {
      if (!group || !group->tapRow({a.first - 1, a.second - 1}))
        throw CommandError("pick: no such row on the group screen");
    } else if (a.verb == "check") {
      if (!checklist || !checklist->tapRow({0, a.first - 1}))
        throw CommandError("check: no such row in a checklist");
    } else if (a.verb == "done") {
      if (!checklist) throw CommandError("done: no checklist open");
      checklist->navigationItem()->rightBarButtonItem->press();
    } else if (a.verb == "save") {
      if (!group) throw CommandError("save: no group screen open");
      if (!proc_.openAlert()) group->tapRow({2, 0});
      auto alert = proc_.openAlert();
      if (!alert) throw CommandError("save: nothing to save");
      alert->inputText = a.argument;
      proc_.pressAlertButton(1);
    } else if (a.verb == "delete-saved") {
      if (!group || !group->commitDelete({1, a.first - 1}))
        throw CommandError("delete-saved: no such saved list");
    } else if (a.verb == "cancel") {
      if (proc_.openAlert()) {
        proc_.pressAlertButton(0);
      } else if (group) {
        group->navigationItem()->leftBarButtonItem->press();
      } else if (checklist) {
        checklist->navigationController()->popViewControllerAnimated(true);
      } else if (composer && top == composer) {
        composer->navigationItem()->rightBarButtonItem->press();
      } else {
        throw CommandError("cancel: nothing to cancel");
      }
    } else if (a.verb == "back") {
      if (checklist)
        checklist->navigationController()->popViewControllerAnimated(true);
      else if (!app_.back())
        throw CommandError("back: already at the list");
    }
  }

 private:
  platform::SimProcess& proc_;
  hosts::MessagesApplication& app_;
};

void run(const SessionOptions& options) {
  std::vector<Action> actions;
  for (const auto& text : options.actions) actions.push_back(parse(text));
  SessionRunner runner(options);
  auto& proc = runner.launch(hosts::messagesHost());
  runner.world().advance(0.1);
  auto app = proc.run([] { return hosts::MessagesApplication::shared(); });
  MessagesScreen screen(proc, *app);
  proc.run([&] { screen.capture(); });
  // Pictures fetched in the background land before the screen is read.
  runner.play(
      options.actions,
      [&](size_t i) {
        proc.run([&] { Session(proc, *app).perform(actions[i]); });
        return std::optional<std::string>();
      },
      [&](const std::string& action) {
        Frame f;
        f.screen = proc.run([&] { return screen.capture(); });
        f.text = MessagesScreen::render(f.screen);
        f.picture = runner.picture(proc, action,
                                   [&] { return messagesScene(proc, *app); });
        return f;
      },
      0.1);
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<SessionOptions>();
  auto* cmd = app.add_subcommand(
      "messages",
      "Run actions on the simulated Messages app (the conversation list, "
      "chats, the composer and its recipient groups) and print the screen "
      "after each. Rows and sections count from 1.");
  options->screen = "4";
  addSessionOptions(*cmd, *options,
                    "list open:ROW new to:NUMBER group pick:SECTION:ROW "
                    "check:ROW done save:NAME delete-saved:ROW cancel back");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
