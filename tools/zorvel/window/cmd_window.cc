// zorvel window: the simulated Phone app, with the extension's hooks
// installed as `zorvel phone` installs them, in a real window on the Linux
// platform: real clock, GLib main loop, ModemManager's calls. The window
// (libzvwindow.so, loaded here) shows the app's key window painted by the
// painter of --png and repaints when host code has run (watched_platform.h);
// touches and keys reach the app through phone_input.h; what the app dials goes
// out through ModemManager (modem_dialer.h), and on 7.1 the app's own in-call
// screen follows the call. A tel: argument opens the keypad with the number
// typed. The window runs until it is closed, SIGINT or SIGTERM.
#include <gio/gio.h>
#include <glib-unix.h>

#include <csignal>
#include <ctime>
#include <iostream>
#include <memory>
#include <optional>

#include "core/settings.h"
#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "hosts/phone/app.h"
#include "platform/linux/linux_platform.h"
#include "platform/linux/modem_telephony.h"
#include "platform/phone_number_class.h"
#include "platform/telephony/call_objects.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/libraries.h"
#include "tools/zorvel/window/modem_dialer.h"
#include "tools/zorvel/window/phone_input.h"
#include "tools/zorvel/window/surface.h"
#include "tools/zorvel/window/watched_platform.h"

namespace zv::cli {
namespace {

struct WindowOptions {
  std::string root, os = "8.1", screen = "4.7", bus = "system", tel;
  double scale = 0;  // 0: the phone's own
};

// The keypad characters of a tel: URI ("tel:+86-10-10086"): its visual
// separators dropped, parameters after ';' or '?' ignored. Anything else
// is a usage error.
std::string telDigits(const std::string& uri) {
  std::string rest;
  if (uri.rfind("tel://", 0) == 0)
    rest = uri.substr(6);
  else if (uri.rfind("tel:", 0) == 0)
    rest = uri.substr(4);
  else
    throw UsageError("not a tel: URI: " + uri);
  rest = rest.substr(0, rest.find_first_of(";?"));
  std::string digits;
  for (char c : rest) {
    if (std::string("0123456789*#+").find(c) != std::string::npos)
      digits += c;
    else if (std::string("-.() ").find(c) == std::string::npos)
      throw UsageError("not a phone number: " + uri);
  }
  if (digits.empty()) throw UsageError("no number in " + uri);
  return digits;
}

GDBusConnection* connectBus(const std::string& bus, std::string* error) {
  GError* e = nullptr;
  GDBusConnection* c = g_bus_get_sync(
      bus == "system" ? G_BUS_TYPE_SYSTEM : G_BUS_TYPE_SESSION, nullptr, &e);
  if (!c) {
    *error = e ? e->message : "unknown error";
    if (e) g_error_free(e);
  }
  return c;
}

// The status bar's clock, as the phone shows it ("9:41").
std::string clockNow() {
  const std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  return std::to_string(local.tm_hour) + ":" + (local.tm_min < 10 ? "0" : "") +
         std::to_string(local.tm_min);
}

class PhoneWindow final : public window::PhoneInput::Port {
 public:
  // `windows` is the window library, started.
  PhoneWindow(platform::LinuxPlatform& real, void* windows,
              const WindowOptions& options)
      : linux_(real),
        windows_(windows),
        watched_(real, [this] { changed(); }),
        process_(&watched_) {
    platform::registerPhoneNumberClass(process_.runtime());
    platform::registerTelephonyClasses(process_.runtime());
    platform::Process::setDefault(&process_);
    connectModem(options.bus);
    app_ = std::static_pointer_cast<hosts::PhoneApplication>(
        hosts::launch(hosts::phoneHost(), ZorvelInitializer));
    if (!app_) throw CommandError("the Phone app did not start");
    input_ = std::make_unique<window::PhoneInput>(*app_, *this);
    // The app's own observers come first: the picture shows what they did.
    calls_ = linux_.telephony().observeCalls(
        [this](const platform::CallInfo&) { changed(); });
    openSurface();
    for (char c : options.tel) input_->type("", static_cast<uint8_t>(c));
    dialled_ = app_->dialled.size();  // typing a tel: number never dials
    repaint();
    clock_ = clockNow();
    ticker_ = g_timeout_add_seconds(
        1,
        [](gpointer data) -> gboolean {
          auto* self = static_cast<PhoneWindow*>(data);
          if (clockNow() != self->clock_) self->changed();
          return G_SOURCE_CONTINUE;
        },
        this);
  }

  ~PhoneWindow() override {
    g_source_remove(ticker_);
    if (idle_) g_source_remove(idle_);
    linux_.telephony().removeCallObserver(calls_);
    surface_.reset();
  }

  std::shared_ptr<ui::UIWindow> window() override {
    const std::string op = linux_.telephony().operatorName();
    hosts::SystemShows system;
    system.carrier = op.empty() ? watched_.carrier() : op;
    system.alert = watched_.openAlert();
    system.pressAlertButton = [this](int index) {
      watched_.pressAlertButton(index);
    };
    auto window = hosts::keyWindow(linux_.device().screenPoints, system);
    window->statusBar()->time = clockNow();
    return window;
  }
  void changed() override {
    placeDialled();
    if (!idle_)
      idle_ = g_idle_add_full(
          G_PRIORITY_HIGH_IDLE,
          [](gpointer data) -> gboolean {
            auto* self = static_cast<PhoneWindow*>(data);
            self->idle_ = 0;
            self->repaint();
            return G_SOURCE_REMOVE;
          },
          this, nullptr);
  }
  void closed() override { linux_.quit(); }

 private:
  void connectModem(const std::string& bus) {
    std::string error;
    GDBusConnection* c = connectBus(bus, &error);
    if (!c) {
      std::cerr << "zorvel: cannot reach the " << bus << " bus (" << error
                << "): calls cannot go out\n";
      return;
    }
    auto* modem = new platform::ModemTelephony(
        c, [this] { return linux_.root(); },
        [this] { return linux_.device().systemVersion; });
    modem->onProblem([](const std::string& line) {
      std::cerr << "zorvel: " << line << "\n";
    });
    linux_.setTelephony(std::unique_ptr<platform::Telephony>(modem));
    if (!modem->start(&error))
      throw CommandError("cannot follow ModemManager: " + error);
    dialler_ = std::make_unique<window::ModemDialer>(c);
    g_object_unref(c);
  }

  void openSurface() {
    auto open = reinterpret_cast<decltype(&zvOpenWindow)>(
        entryOf(windows_, "zvOpenWindow", "window"));
    window::SurfaceOptions options;
    surface_.reset(open(&options, input_.get()));
  }

  void repaint() {
    if (!surface_) return;  // still starting: the first picture follows
    surface_->show(*window(), linux_.device().screenScale);
  }

  // What the app dialled since the last look goes out through the modem.
  void placeDialled() {
    if (!app_) return;
    for (; dialled_ < app_->dialled.size(); ++dialled_) {
      const std::string number = app_->dialled[dialled_].number;
      if (!dialler_) {
        std::cerr << "zorvel: cannot call " << number << ": no bus\n";
        continue;
      }
      platform::current().log("calling " + number);
      dialler_->dial(number, [](const std::string& problem) {
        if (!problem.empty()) std::cerr << "zorvel: " << problem << "\n";
      });
    }
  }

  platform::LinuxPlatform& linux_;
  void* windows_;
  window::WatchedPlatform watched_;
  platform::Process process_;
  std::shared_ptr<hosts::PhoneApplication> app_;
  std::unique_ptr<window::PhoneInput> input_;
  std::unique_ptr<window::ModemDialer> dialler_;
  std::unique_ptr<window::Surface> surface_;
  platform::CallObserverToken calls_ = 0;
  size_t dialled_ = 0;
  std::string clock_;
  unsigned ticker_ = 0, idle_ = 0;
};

void run(const WindowOptions& options) {
  auto facts = sessionDevice(options.os, options.screen);
  const std::string typed = options.tel.empty() ? "" : telDigits(options.tel);
  if (options.scale != 0) {
    if (!(options.scale >= 0.25 && options.scale <= 4))
      throw UsageError("--scale must be between 0.25 and 4");
    facts.screenScale = options.scale;
    facts.screenPixels = {facts.screenPoints.width * options.scale,
                          facts.screenPoints.height * options.scale};
  }
  // Without a display there is nothing to do: say so before anything starts.
  void* windows = openBesideProgram("libzvwindow.so", "window");
  auto start = reinterpret_cast<decltype(&zvStartWindows)>(
      entryOf(windows, "zvStartWindows", "window"));
  std::string error;
  if (!start(&error)) throw CommandError("window: " + error);

  applyRoot(options.root);
  warnUnparsable(ZVSettings::kPath, "settings file");
  auto& real = platform::LinuxPlatform::instance();
  facts.bundleIdentifier = "com.apple.mobilephone";
  real.deviceFacts() = facts;

  WindowOptions opened = options;
  opened.tel = typed;
  // Never destroyed: the hooks and the process's singletons may still reach
  // the process while the program ends.
  auto* window = new PhoneWindow(real, windows, opened);
  auto stop = [](gpointer) -> gboolean {
    platform::LinuxPlatform::instance().quit();
    return G_SOURCE_CONTINUE;
  };
  g_unix_signal_add(SIGTERM, stop, nullptr);
  g_unix_signal_add(SIGINT, stop, nullptr);
  real.run();
  (void)window;
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<WindowOptions>();
  auto* cmd = app.add_subcommand(
      "window",
      "show the Phone app with Zorvel in a window (GTK 4): type with the "
      "keypad or the keyboard (digits, * # +, BackSpace, Return calls); calls "
      "go out through ModemManager");
  addRootOption(*cmd, options->root);
  cmd->add_option("--os", options->os, "system version: 7.1 or 8.1");
  cmd->add_option("--screen", options->screen, "screen size: 3.5, 4, 4.7, 5.5");
  cmd->add_option("--scale", options->scale,
                  "pixels per point (default: the phone's own)");
  cmd->add_option("--bus", options->bus,
                  "the bus ModemManager is on: system (default) or session")
      ->check(CLI::IsMember({"system", "session"}));
  cmd->add_option("number", options->tel,
                  "a tel: URI whose number the keypad opens with");
  cmd->callback([options] { run(*options); });
});

}  // namespace
}  // namespace zv::cli
