// zorvel phone: a scripted session on the simulated Phone app. It starts a
// Phone process on the device root (its settings, contacts and area
// database), lets ZorvelInitializer install the hooks, performs the actions
// in order and prints the keypad screen after each (text, or one JSON
// object per action with --json). Time is virtual: wait:SECONDS moves the
// clock, so delayed work (the stored search switch) runs without sleeping.
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "platform/ui/sheets.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/phone_screen.h"

namespace zv::cli {
namespace {

struct PhoneOptions {
  std::string root;
  std::string screen = "4.7";
  std::string os = "8.1";
  bool json = false;
  std::vector<std::string> actions;
};

platform::DeviceFacts deviceFor(const PhoneOptions& o) {
  if (o.os != "7.1" && o.os != "8.1")
    throw CommandError("unknown system version " + o.os + " (use 7.1 or 8.1)");
  auto facts = platform::simulatedDevice(o.os, o.screen);
  if (!facts)
    throw CommandError("unknown screen " + o.screen +
                       " (use 3.5, 4, 4.7 or 5.5)");
  return *facts;
}

// The argument after "name:" of an action, or "" when there is none.
std::string argumentOf(const std::string& action, const std::string& name) {
  return action.size() > name.size() + 1 ? action.substr(name.size() + 1) : "";
}

double parseNumber(const std::string& text, const std::string& action) {
  try {
    size_t used = 0;
    double v = std::stod(text, &used);
    if (used == text.size() && v >= 0) return v;
  } catch (const std::exception&) {
  }
  throw CommandError("bad number in action " + action);
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
      if (digits.empty()) throw CommandError("type: needs digits");
      for (char c : digits) {
        if (c == '+')
          pad->holdZero();
        else if (std::string("0123456789*#").find(c) != std::string::npos)
          pad->pressKey(c);
        else
          throw CommandError(std::string("type: not a keypad key: ") + c);
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
      double row = parseNumber(argumentOf(action, "select"), action);
      auto list = controller ? controller->listView() : nullptr;
      if (!list || list->isHidden() || row < 1 ||
          !list->tableView()->selectRow(static_cast<size_t>(row) - 1))
        throw CommandError("select: no such row in an open list");
    } else if (action == "menu") {
      if (pagerShown) pager->lcdViews()[1]->perform(ui::Gesture::LongPress);
    } else if (verb == "menu") {
      double index = parseNumber(argumentOf(action, "menu"), action);
      auto sheet = ui::UIActionSheet::presented();
      if (!sheet || index >= sheet->buttons().size())
        throw CommandError("menu: no such button in an open menu");
      sheet->dismissWithClickedButtonIndex(static_cast<int>(index));
    } else if (action == "toggle") {
      if (controller && controller->onoffButton())
        controller->onoffButton()->touch();
    } else if (verb == "wait") {
      world_.advance(parseNumber(argumentOf(action, "wait"), action));
    } else if (verb == "tab") {
      std::string name = argumentOf(action, "tab");
      int tab = -1;
      for (int i = 0; i < 5; ++i)
        if (name == hosts::PhoneApplication::tabName(i)) tab = i;
      if (tab < 0) throw CommandError("tab: unknown tab " + name);
      app_.selectTab(tab);
    } else if (verb == "url") {
      app_.openURL(argumentOf(action, "url"));
    } else if (action == "background") {
      app_.enterBackground();
    } else {
      throw CommandError("unknown action " + action);
    }
  }

 private:
  platform::SimWorld& world_;
  platform::SimProcess& proc_;
  hosts::PhoneApplication& app_;
};

void run(const PhoneOptions& options) {
  applyRoot(options.root);
  platform::SimWorld world(platform::LinuxPlatform::instance().root());
  auto& proc = world.launch("com.apple.mobilephone", deviceFor(options));
  auto app = proc.run([] {
    return std::static_pointer_cast<hosts::PhoneApplication>(
        hosts::launch(hosts::phoneHost(), ZorvelInitializer));
  });
  world.advance(0);
  PhoneScreen screen(proc, *app);
  proc.run([&] { screen.capture(); });  // what start-up showed is not news
  for (const auto& action : options.actions) {
    proc.run([&] { Session(world, proc, *app).perform(action); });
    world.advance(0);
    auto s = proc.run([&] { return screen.capture(); });
    if (options.json) {
      nlohmann::ordered_json out{{"action", action}};
      out.update(s);
      std::cout << out.dump() << "\n";
    } else {
      std::cout << "> " << action << "\n" << PhoneScreen::render(s);
    }
  }
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<PhoneOptions>();
  auto* cmd = app.add_subcommand(
      "phone", "run actions on the simulated Phone app's keypad and print it");
  addRootOption(*cmd, options->root);
  cmd->add_option("--screen", options->screen, "screen size: 3.5, 4, 4.7, 5.5");
  cmd->add_option("--os", options->os, "system version: 7.1 or 8.1");
  cmd->add_flag("--json", options->json, "one JSON object per action");
  cmd->add_option("actions", options->actions,
                  "type:DIGITS delete longdelete call swipe:left|right list "
                  "select:ROW menu menu:INDEX toggle wait:SECONDS tab:NAME "
                  "url:URL background")
      ->required();
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
