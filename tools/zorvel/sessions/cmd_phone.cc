// zorvel phone: a scripted session on the simulated Phone app. It starts a
// Phone process on the device root (its settings, contacts and area
// database), lets ZorvelInitializer install the hooks, performs the actions
// in order and prints the keypad screen after each (text, or one JSON
// object per action with --json; on the Recents tab, its rows as a
// "recents" array). Time is virtual: wait:SECONDS moves the
// clock, so delayed work (the stored search switch) runs without sleeping.
// A number the app dials becomes a call on the simulated device; connect,
// hold, resume and end act on the last one, and on 7.1 the Phone app's own
// in-call screen shows it.
#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/settings.h"
#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "platform/sim/sim_telephony.h"
#include "platform/ui/sheets.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/phone_screen.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/scenes.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

std::string tabNames() {
  std::string names;
  for (int i = 0; i < 5; ++i)
    names += std::string(i ? ", " : "") + hosts::PhoneApplication::tabName(i);
  return names;
}

// Rejects an action that could never run, before the session starts: an
// unknown verb, a missing or malformed argument, an unknown tab.
void checkAction(const std::string& action) {
  const std::string verb = action.substr(0, action.find(':'));
  static const char* const plain[] = {
      "delete", "longdelete", "call",   "swipe:left", "swipe:right",
      "list",   "menu",       "toggle", "background", "connect",
      "hold",   "resume",     "end"};
  for (const char* p : plain)
    if (action == p) return;
  if (verb == "type") {
    std::string digits = argumentOf(action, "type");
    if (digits.empty()) throw UsageError("type: needs digits");
    for (char c : digits)
      if (std::string("0123456789*#+").find(c) == std::string::npos)
        throw UsageError(std::string("type: not a keypad key: ") + c);
  } else if (verb == "select" || verb == "menu") {
    actionCount(argumentOf(action, verb), action);
  } else if (verb == "wait") {
    actionSeconds(argumentOf(action, "wait"), action);
  } else if (verb == "tab") {
    std::string name = argumentOf(action, "tab");
    for (int i = 0; i < 5; ++i)
      if (name == hosts::PhoneApplication::tabName(i)) return;
    throw UsageError("tab: unknown tab " + name + " (" + tabNames() + ")");
  } else if (verb == "url") {
    if (argumentOf(action, "url").empty()) throw UsageError("url: needs a URL");
  } else if (verb == "recents") {
    const std::string what = argumentOf(action, "recents");
    if (what == "clear" || what == "edit" || what == "done") return;
    for (const char* rowVerb : {"delete", "open"}) {
      if (what.rfind(std::string(rowVerb) + ":", 0) != 0) continue;
      actionCount(argumentOf(what, rowVerb), action);
      return;
    }
    throw UsageError("unknown action " + action);
  } else {
    throw UsageError("unknown action " + action);
  }
}

class Session {
 public:
  Session(platform::SimWorld& world, platform::SimProcess& proc,
          hosts::PhoneApplication& app)
      : world_(world), proc_(proc), app_(app) {}

  void perform(const std::string& action) {
    auto pad = app_.dialer->dialerView()->pad;
    auto controller = platform::Process::current().slot<ZVKeypadController>();
    auto pager = controller ? controller->keypadView() : nullptr;
    const bool pagerShown = pager && pager->isVisible() &&
                            pager->superview() == app_.dialer->dialerView();
    const std::string verb = action.substr(0, action.find(':'));
    if (verb == "type") {
      std::string digits = argumentOf(action, "type");
      if (digits.empty()) throw UsageError("type: needs digits");
      for (char c : digits) {
        if (c == '+')
          pad->holdZero();
        else if (std::string("0123456789*#").find(c) != std::string::npos)
          pad->pressKey(c);
        else
          throw UsageError(std::string("type: not a keypad key: ") + c);
      }
    } else if (action == "delete") {
      if (pagerShown && pager->deleteButton()->isVisible())
        pager->deleteButton()->touch();
      else
        pad->pressDelete();
    } else if (action == "longdelete") {
      if (pagerShown && pager->deleteButton()->isVisible()) {
        pager->deleteButton()->perform(ui::Gesture::LongPress);
      } else {
        for (int i = 0; i < 50 && !app_.dialer->displayNumber().empty(); ++i)
          pad->pressDelete();
      }
    } else if (action == "call") {
      pad->pressCall();
    } else if (action == "swipe:left" || action == "swipe:right") {
      if (pagerShown)
        pager->scrollView()->drag((action == "swipe:left" ? 1 : -1) *
                                  pager->frame().size.width);
    } else if (action == "list") {
      if (pagerShown) pager->lcdViews()[1]->perform(ui::Gesture::TouchEnded);
    } else if (verb == "select") {
      const size_t row = actionCount(argumentOf(action, "select"), action);
      auto list = controller ? controller->listView() : nullptr;
      if (!list || list->isHidden() || !list->tableView()->selectRow(row - 1))
        throw CommandError("select: no such row in an open list");
    } else if (action == "menu") {
      if (pagerShown) pager->lcdViews()[1]->perform(ui::Gesture::LongPress);
    } else if (verb == "menu") {
      // Buttons count from 1, as rows of select: do.
      const size_t index = actionCount(argumentOf(action, "menu"), action) - 1;
      auto sheet = ui::UIActionSheet::presented();
      if (!sheet || index >= sheet->buttons().size())
        throw CommandError("menu: no such button in an open menu");
      sheet->dismissWithClickedButtonIndex(static_cast<int>(index));
    } else if (action == "toggle") {
      if (controller && controller->onoffButton())
        controller->onoffButton()->touch();
    } else if (verb == "wait") {
      world_.advance(actionSeconds(argumentOf(action, "wait"), action));
    } else if (verb == "tab") {
      std::string name = argumentOf(action, "tab");
      int tab = -1;
      for (int i = 0; i < 5; ++i)
        if (name == hosts::PhoneApplication::tabName(i)) tab = i;
      if (tab < 0) throw UsageError("tab: unknown tab " + name);
      app_.selectTab(tab);
    } else if (verb == "recents") {
      recents(action, argumentOf(action, "recents"));
    } else if (verb == "url") {
      app_.openURL(argumentOf(action, "url"));
    } else if (action == "background") {
      app_.enterBackground();
    } else if (action == "connect" || action == "hold" || action == "resume" ||
               action == "end") {
      callAction(action);
    } else {
      throw UsageError("unknown action " + action);
    }
    placeDialledCalls();
  }

 private:
  // recents:delete:ROW (swipe and Delete), recents:clear, recents:open:ROW
  // (a tap: the host calls the row's number), recents:edit / recents:done.
  void recents(const std::string& action, const std::string& what) {
    auto list = app_.recents;
    auto rowOf = [&](const std::string& name) {
      const size_t row = actionCount(argumentOf(what, name), action);
      if (row > list->manager->calls.size())
        throw CommandError(action.substr(0, action.rfind(':')) +
                           ": no such row in Recents");
      return row - 1;
    };
    if (what.rfind("delete:", 0) == 0) {
      list->deleteRow(rowOf("delete"));
    } else if (what == "clear") {
      list->clearAll();
    } else if (what.rfind("open:", 0) == 0) {
      const size_t row = rowOf("open");
      if (!list->table()->selectRow(row))
        throw CommandError("recents:open: row not on screen");
    } else if (what == "edit" || what == "done") {
      list->setEditing(what == "edit");
    } else {
      throw CommandError("unknown action " + action);
    }
  }

  // What the app dialled since the last action goes out on the device.
  void placeDialledCalls() {
    for (; dialled_ < app_.dialled.size(); ++dialled_) {
      const std::string& number = app_.dialled[dialled_].number;
      try {
        call_ = world_.telephony().dial(number);
      } catch (const std::invalid_argument& e) {
        throw CommandError("cannot dial " + number + ": " + e.what());
      }
    }
  }
  void callAction(const std::string& action) {
    if (!call_) throw CommandError(action + ": no call placed");
    auto& t = world_.telephony();
    try {
      if (action == "connect") t.connect(*call_);
      if (action == "hold") t.hold(*call_);
      if (action == "resume") t.resume(*call_);
      if (action == "end") t.end(*call_);
    } catch (const std::invalid_argument& e) {
      throw CommandError(action + ": " + e.what());
    }
  }

  size_t dialled_ = 0;
  std::optional<platform::CallId> call_;
  platform::SimWorld& world_;
  platform::SimProcess& proc_;
  hosts::PhoneApplication& app_;
};

void run(const SessionOptions& options) {
  // A call action before anything that dials could never run either.
  bool mayDial = false;
  for (const auto& action : options.actions) {
    checkAction(action);
    if (action == "call" || action.rfind("url:", 0) == 0) mayDial = true;
    if (!mayDial && (action == "connect" || action == "hold" ||
                     action == "resume" || action == "end"))
      throw UsageError(action + ": no call placed before it");
  }
  SessionRunner runner(options);
  warnUnparsable(ZVSearcher::kKeypadFlagsPath, "keypad flags file");
  auto& proc = runner.launch(hosts::phoneHost());
  auto app = proc.run([] { return hosts::PhoneApplication::shared(); });
  runner.world().advance(0);
  PhoneScreen screen(proc, *app);
  proc.run([&] { screen.capture(); });  // what start-up showed is not news
  Session session(runner.world(), proc, *app);
  runner.play(
      options.actions,
      [&](size_t i) {
        proc.run([&] { session.perform(options.actions[i]); });
        return std::optional<std::string>();
      },
      [&](const std::string& action) {
        Frame f;
        f.screen = proc.run([&] { return screen.capture(); });
        f.text = PhoneScreen::render(f.screen);
        f.picture = runner.picture(proc, action,
                                   [&] { return phoneScene(proc, *app); });
        return f;
      });
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<SessionOptions>();
  auto* cmd = app.add_subcommand(
      "phone",
      "Run actions on the simulated Phone app's keypad, Recents and in-call "
      "screen and print the screen after each. The session changes the "
      "device as a phone would (calls are recorded, settings and caches "
      "written); --scratch runs it on a copy. Every action is checked before "
      "the first one runs. Tabs: " +
          tabNames() + ".");
  addSessionOptions(
      *cmd, *options,
      "type:DIGITS delete longdelete call swipe:left|right list select:ROW "
      "menu menu:BUTTON (both counting from 1) toggle wait:SECONDS tab:NAME "
      "url:URL background recents:delete:ROW recents:clear recents:open:ROW "
      "recents:edit recents:done connect hold resume end");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
