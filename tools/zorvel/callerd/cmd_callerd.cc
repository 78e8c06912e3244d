// zorvel callerd: the in-call service of a Linux phone. It starts the
// in-call service host (8.x) on the device root with the extension loaded,
// as the platform's loader would, over ModemManager's calls (the Linux
// platform's telephony, platform/linux/modem_telephony.h), so the
// installed hooks decide on blocking (and hang up through ModemManager),
// take ring durations and build the caller-information text. What the call
// screen shows goes to the desktop as notifications (caller_desk.h). It
// runs until SIGTERM or SIGINT and then exits with status 0.
//
// Without ModemManager on the bus it says once that it waits, and follows
// the service from when it appears. Settings, lists and area changes reach
// it through the "ZV..." notifications like any host. The user's contacts
// (Evolution Data Server) and sounds and vibration (feedbackd) come in
// through phone_setup/phone_services.h.
#include <gio/gio.h>
#include <glib-unix.h>

#include <csignal>
#include <cstdio>
#include <iostream>

#include "callscreens/incoming_call_controller.h"
#include "core/settings_catalogue.h"
#include "hooks/modules.h"
#include "hosts/incallservice/app.h"
#include "platform/db/platform_schema.h"
#include "platform/linux/linux_platform.h"
#include "platform/linux/modem_telephony.h"
#include "platform/telephony/call_objects.h"
#include "platform/telephony/messages.h"
#include "platform/ui/bulletin.h"
#include "tools/zorvel/callerd/caller_desk.h"
#include "tools/zorvel/callerd/desktop_notifications.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/phone_setup/phone_services.h"

namespace zv::cli {
namespace {

struct CallerdOptions {
  std::string root;
  std::string bus = "system";
  bool echo = false;
  PhoneServices::Options phone;
};

class Desk final : public CallerDesk::Port {
 public:
  Desk(std::shared_ptr<hosts::InCallServiceApplication> app,
       DesktopNotifications& notes, bool echo)
      : app_(std::move(app)), notes_(notes), echo_(echo) {}

  const std::vector<hosts::ScreenedCall>& screenedCalls() const override {
    return app_->screenedCalls();
  }

  std::optional<ScreenText> screenFor(platform::CallId id) const override {
    auto root = std::dynamic_pointer_cast<hosts::InCallRootViewController>(
        app_->screen());
    if (!root) return std::nullopt;
    auto info = platform::callInfo(root->call);
    auto shown = app_->screenText();
    if (!info || info->id != id || !shown) return std::nullopt;
    ScreenText text;
    text.title = shown->name;
    for (const auto* lines :
         {&shown->labelLines, &shown->infoLines, &shown->extraLabels})
      text.lines.insert(text.lines.end(), lines->begin(), lines->end());
    return text;
  }

  bool blockWithoutScreen(platform::CallId id) override {
    rt::Id call = platform::callObject(id);
    auto controller = ZVIncomingCallController::sharedInstance();
    if (!call || !controller || !platform::Process::current().zvenabled)
      return false;
    try {
      return controller->blockCall(call);
    } catch (const std::exception& e) {
      // Shown rather than lost; the hooks' guard logs the same way.
      log(std::string("ZVException: ") + e.what());
      return false;
    }
  }

  // The caller, and under it the call's label as the platform gives it
  // (with the area when the settings add it there).
  ScreenText textWithoutScreen(const platform::CallInfo& info) override {
    ScreenText text;
    text.title = hosts::callerLabels(info).name;
    if (rt::Id call = platform::callObject(info.id))
      if (auto label = rt::send(call, platform::msg::TUCall::localizedLabel))
        text.lines.push_back(*label);
    return text;
  }

  // The bulletin the springboard posts for a missed call. A Linux phone
  // has no springboard to put the area and ring seconds into its title, so
  // the in-call service's controller does what the springboard's hook on
  // the bulletin's title does, under the same settings.
  std::string missedTitle(const platform::CallInfo& call) override {
    ui::BulletinContent content;
    content.title = hosts::callerLabels(call).name;
    content.sectionID = "com.apple.mobilephone";
    if (call.destinationID)
      content.context["contactInfo"] = *call.destinationID;
    content.date = Date{call.date - platform_schema::kReferenceDateOffset};
    rt::Id bulletin = ui::makeBulletin(content);
    std::string title = rt::send(bulletin, ui::msg::BBBulletin::title);
    auto settings = ZVIncomingCallSettings::sharedInstance();
    auto controller = ZVIncomingCallController::sharedInstance();
    if (platform::Process::current().zvenabled && settings && controller &&
        settings->EnableArea() && settings->AreaNameNotification()) {
      try {
        title = controller->areaBulletin(bulletin, title).value_or(title);
      } catch (const std::exception& e) {
        // The plain title rather than none; the hooks' guard logs its
        // failures the same way.
        log(std::string("ZVException: ") + e.what());
      }
    }
    return title;
  }

  bool blocksStrangers() const override {
    auto settings = ZVIncomingCallSettings::sharedInstance();
    return settings && settings->EnableBlacklist() &&
           settings->BlacklistBlockStrangers();
  }

  void show(const DesktopNotification& n, uint64_t key) override {
    notes_.show(n, key);
  }
  void close(uint64_t key) override { notes_.close(key); }
  void log(const std::string& line) override {
    platform::current().log(line);
    if (echo_) {
      std::fprintf(stdout, "%s\n", line.c_str());
      std::fflush(stdout);
    }
  }
  void later(std::function<void()> block) override {
    platform::current().dispatchMain(std::move(block));
  }

 private:
  std::shared_ptr<hosts::InCallServiceApplication> app_;
  DesktopNotifications& notes_;
  bool echo_;
};

GDBusConnection* connect(GBusType type, const char* name) {
  GError* error = nullptr;
  GDBusConnection* c = g_bus_get_sync(type, nullptr, &error);
  if (!c) {
    std::string why = error ? error->message : "unknown error";
    if (error) g_error_free(error);
    throw CommandError(std::string("cannot reach the ") + name +
                       " bus: " + why);
  }
  return c;
}

void run(const CallerdOptions& options) {
  applyRoot(options.root);
  auto& platform = platform::LinuxPlatform::instance();
  platform.deviceFacts().bundleIdentifier = "com.apple.InCallService";
  platform.deviceFacts().systemVersion = "8.1";

  const bool system = options.bus == "system";
  GDBusConnection* modemBus =
      connect(system ? G_BUS_TYPE_SYSTEM : G_BUS_TYPE_SESSION,
              system ? "system" : "session");
  GDBusConnection* session = connect(G_BUS_TYPE_SESSION, "session");
  DesktopNotifications notes(session);
  g_object_unref(session);

  // The telephony stays for the program's life: the process's call objects
  // hold on to it.
  auto* modem = new platform::ModemTelephony(
      modemBus, [&platform] { return platform.root(); },
      [&platform] { return platform.device().systemVersion; });
  g_object_unref(modemBus);
  bool saidWaiting = false;
  modem->onPresence([&, system](bool present) {
    if (present) {
      platform.log("ModemManager is on the bus");
    } else if (!saidWaiting) {
      saidWaiting = true;
      const std::string line = std::string("waiting for ModemManager on the ") +
                               (system ? "system" : "session") + " bus";
      platform.log(line);
      std::fprintf(stderr, "zorvel: %s\n", line.c_str());
    }
  });
  modem->onProblem(
      [&platform](const std::string& line) { platform.log(line); });
  notes.onProblem([&platform](const std::string& line) { platform.log(line); });
  platform.setTelephony(std::unique_ptr<platform::Telephony>(modem));
  std::string error;
  if (!modem->start(&error))
    throw CommandError("cannot follow ModemManager: " + error);

  auto app = std::dynamic_pointer_cast<hosts::InCallServiceApplication>(
      hosts::launch(hosts::inCallServiceHost(), ZorvelInitializer));
  if (!app) throw CommandError("the in-call service did not start");
  Desk port(app, notes, options.echo);
  CallerDesk desk(port);
  // After the host's own observer: the desk sees what the host made of it.
  platform::observeCallStatus([&desk](const rt::Id& call) {
    if (auto info = platform::callInfo(call)) desk.callChanged(*info);
  });
  // The user's contacts and feedbackd, when the session has them.
  GDBusConnection* sessionBus = connect(G_BUS_TYPE_SESSION, "session");
  PhoneServices phone(
      sessionBus, options.phone, [&desk] { desk.soundPlayed(); },
      [&port](const std::string& line) { port.log(line); });
  g_object_unref(sessionBus);

  auto stop = [](gpointer) -> gboolean {
    platform::LinuxPlatform::instance().quit();
    return G_SOURCE_CONTINUE;
  };
  g_unix_signal_add(SIGTERM, stop, nullptr);
  g_unix_signal_add(SIGINT, stop, nullptr);
  port.log("in-call service started on " + platform.root());
  platform.run();
  port.log("in-call service stopped");
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<CallerdOptions>();
  auto* cmd = app.add_subcommand(
      "callerd",
      "serve a Linux phone's calls from ModemManager: blocking, caller "
      "information and missed-call notifications on the desktop");
  addRootOption(*cmd, options->root);
  cmd->add_option("--bus", options->bus,
                  "the bus ModemManager is on: system (default) or session")
      ->check(CLI::IsMember({"system", "session"}));
  cmd->add_flag("!--no-contacts", options->phone.contacts,
                "do not keep the address book in step with Evolution Data "
                "Server");
  cmd->add_flag("!--no-feedback", options->phone.feedback,
                "do not play sounds and vibration through feedbackd");
  cmd->add_flag("--echo", options->echo,
                "also print each log line on standard output");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
