// zorvel contacts: a scripted session on the contacts screens of a simulated
// host (the Contacts app, or the Phone app's Contacts tab). It starts the
// host on the device root with the extension loaded, performs the actions
// in order and prints the screen after each: the contacts list with the
// avatars, or a contact's card with the areas beside its phone labels (text,
// or one JSON object per action with --json). Actions: open:NAME-or-ID (the
// card of that contact), back (to the list), scroll:ROWS (the list that
// many rows down), wait:SECONDS.
#include <iostream>
#include <string>
#include <vector>

#include "hooks/modules.h"
#include "hosts/contacts/contacts_app.h"
#include "hosts/phone/app.h"
#include "platform/linux/linux_platform.h"
#include "platform/sim/device_presets.h"
#include "platform/sim/sim_platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/list_screens.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/scenes.h"
#include "tools/zorvel/sessions/session.h"

namespace zv::cli {
namespace {

struct ContactsOptions : SessionOptions {
  std::string host = "contacts";
  int textSize = 0;
};

struct Action {
  enum Kind { kOpen, kBack, kScroll, kWait } kind;
  std::string text;
  double amount = 0;
};

// Every action is checked before the session starts.
std::vector<Action> parseActions(const std::vector<std::string>& actions) {
  std::vector<Action> out;
  for (const std::string& a : actions) {
    if (a.rfind("open:", 0) == 0 && a.size() > 5)
      out.push_back({Action::kOpen, a.substr(5)});
    else if (a == "back")
      out.push_back({Action::kBack, ""});
    else if (a.rfind("scroll:", 0) == 0)
      out.push_back({Action::kScroll, "",
                     static_cast<double>(actionCount(a.substr(7), a))});
    else if (a.rfind("wait:", 0) == 0)
      out.push_back({Action::kWait, "", actionSeconds(a.substr(5), a)});
    else
      throw UsageError("unknown action " + a);
  }
  return out;
}

// The session's contacts navigation, whichever host shows it.
std::shared_ptr<ui::UINavigationController> navigation(bool phone) {
  if (phone) {
    auto app = hosts::PhoneApplication::shared();
    return app ? app->contacts : nullptr;
  }
  auto app = hosts::ContactsApplication::shared();
  return app ? app->navigation : nullptr;
}

std::shared_ptr<hosts::MembersViewController> listOf(
    ui::UINavigationController& nav) {
  if (nav.viewControllers().empty()) return nullptr;
  return std::dynamic_pointer_cast<hosts::MembersViewController>(
      nav.viewControllers().front());
}

void perform(const Action& a, bool phone, platform::SimWorld& world) {
  auto nav = navigation(phone);
  auto list = nav ? listOf(*nav) : nullptr;
  if (!list) throw CommandError("the host shows no contacts list");
  switch (a.kind) {
    case Action::kOpen: {
      if (nav->topViewController() != list)
        nav->popViewControllerAnimated(false);
      const auto& contacts = list->contacts();
      for (const auto& c : contacts)
        if (c.name == a.text || std::to_string(c.recordId) == a.text) {
          list->openContact(c);
          return;
        }
      throw CommandError("open: no contact named " + a.text);
    }
    case Action::kBack:
      nav->popViewControllerAnimated(true);
      return;
    case Action::kScroll: {
      auto table = list->table();
      table->setContentOffset({0, table->contentOffset().y + a.amount * 44});
      table->reloadData();
      return;
    }
    case Action::kWait:
      world.advance(a.amount);
      return;
  }
}

void run(const ContactsOptions& o) {
  if (o.host != "contacts" && o.host != "phone")
    throw UsageError("unknown host " + o.host + " (use phone or contacts)");
  const std::vector<Action> actions = parseActions(o.actions);
  const bool phone = o.host == "phone";
  SessionRunner runner(o, {"7.0", "7.1", "8.1"});
  runner.facts().textSizeStep = o.textSize;
  auto& proc =
      runner.launch(phone ? hosts::phoneHost() : hosts::contactsHost());
  proc.run([&] {
    if (phone)
      hosts::PhoneApplication::shared()->selectTab(
          hosts::PhoneApplication::kContacts);
    if (auto nav = navigation(phone))
      if (auto list = listOf(*nav)) list->view();
  });
  runner.world().advance(0);
  runner.play(
      o.actions,
      [&](size_t i) {
        proc.run([&] { perform(actions[i], phone, runner.world()); });
        return std::optional<std::string>();
      },
      [&](const std::string& action) {
        Frame f;
        f.screen = proc.run([&] { return contactsScreen(*navigation(phone)); });
        f.text = renderContacts(f.screen);
        f.picture = runner.picture(proc, action, [&] {
          return phone ? phoneScene(proc, *hosts::PhoneApplication::shared())
                       : contactsScene(proc,
                                       *hosts::ContactsApplication::shared());
        });
        return f;
      });
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<ContactsOptions>();
  auto* cmd = app.add_subcommand(
      "contacts",
      "Run actions on the contacts list and cards of a simulated host (the "
      "Contacts app, or the Phone app's Contacts tab) and print the screen "
      "after each, with the areas beside phone labels and the avatars.");
  options->screen = "4";
  addSessionOptions(*cmd, *options,
                    "open:NAME-or-ID back scroll:ROWS wait:SECONDS",
                    "7.0, 7.1 or 8.1");
  cmd->add_option("--host", options->host, "phone or contacts");
  cmd->add_option("--text-size", options->textSize,
                  "text size in steps from the default (-3 to 3)")
      ->check(CLI::Range(-3, 3));
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
