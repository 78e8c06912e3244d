#include "platform/linux/linux_platform.h"

#include <glib.h>
#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include "platform/linux/no_modem_telephony.h"
#include "platform/linux/notify_bus.h"
#include "platform/plist.h"

namespace zv::platform {

struct LinuxPlatform::Impl {
  GMainContext* context = nullptr;
  GMainLoop* loop = nullptr;
  std::string root, default_root;
  std::mutex mutex;  // guards timers and observers against background posts

  struct Timer {
    const void* target;
    std::string selector;
    guint source;
  };
  std::vector<Timer> timers;

  struct Observer {
    ObserverToken token;
    std::string name;
    Scope scope;
    std::function<void()> callback;
  };
  std::vector<Observer> observers;
  ObserverToken next_token = 1;
  std::string pasteboard;
  std::unique_ptr<NotifyBus> bus;
  NoModemTelephony telephony;
  uint32_t next_sound_id = 4096;

  // Queues a block on the main loop's context. Always through a source, so
  // the block runs later on the thread that runs the loop: invoking directly
  // would run it at once on a caller that happens to be able to acquire the
  // context (the main thread outside the loop, or the notification thread).
  void invoke(std::function<void()> block) {
    auto* heap = new std::function<void()>(std::move(block));
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
          (*static_cast<std::function<void()>*>(data))();
          return G_SOURCE_REMOVE;
        },
        heap,
        [](gpointer data) {
          delete static_cast<std::function<void()>*>(data);
        });
    g_source_attach(source, context);
    g_source_unref(source);
  }

  void deliver(const std::string& name, Scope scope) {
    std::vector<std::function<void()>> callbacks;
    {
      std::lock_guard<std::mutex> lock(mutex);
      for (const auto& o : observers)
        if (o.name == name && o.scope == scope) callbacks.push_back(o.callback);
    }
    for (auto& cb : callbacks) cb();
  }
};

LinuxPlatform& LinuxPlatform::instance() {
  static LinuxPlatform* platform = new LinuxPlatform();
  return *platform;
}

LinuxPlatform::LinuxPlatform() : impl_(std::make_unique<Impl>()) {
  impl_->context = g_main_context_default();
  impl_->loop = g_main_loop_new(impl_->context, FALSE);
  // A host program run under the extension names itself through the
  // environment, as the platform's launcher would.
  const char* bundle = std::getenv("ZORVEL_BUNDLE_ID");
  facts_.bundleIdentifier = bundle && *bundle ? bundle : "com.zorvel.cli";
}

LinuxPlatform::~LinuxPlatform() {
  impl_->bus.reset();
  g_main_loop_unref(impl_->loop);
}

void LinuxPlatform::setRoot(std::string root) { impl_->root = std::move(root); }

void LinuxPlatform::setDefaultRoot(std::string root) {
  impl_->default_root = std::move(root);
}

std::string LinuxPlatform::root() const {
  if (!impl_->root.empty()) return impl_->root;
  if (const char* env = std::getenv("ZORVEL_ROOT"); env && *env) return env;
  return impl_->default_root;
}

std::string LinuxPlatform::path(std::string_view absolute) const {
  std::string out = root();
  if (!absolute.empty() && absolute.front() != '/') out += '/';
  out += absolute;
  return out;
}

double LinuxPlatform::now() const {
  return static_cast<double>(g_get_real_time()) / 1e6;
}

// A host whose main loop runs has finished launching, as with the
// platform's application main.
void LinuxPlatform::run() {
  Process::current().finishLaunching();
  g_main_loop_run(impl_->loop);
}

void LinuxPlatform::runFor(double seconds) {
  Process::current().finishLaunching();
  guint source = g_timeout_add_full(
      G_PRIORITY_DEFAULT, static_cast<guint>(seconds * 1000),
      [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      impl_->loop, nullptr);
  g_main_loop_run(impl_->loop);
  if (GSource* s = g_main_context_find_source_by_id(impl_->context, source))
    g_source_destroy(s);
}

void LinuxPlatform::quit() { g_main_loop_quit(impl_->loop); }

void LinuxPlatform::performAfterDelay(const void* target,
                                      std::string_view selector, double delay,
                                      std::function<void()> call) {
  struct Pending {
    Impl* impl;
    std::function<void()> call;
    guint source = 0;
  };
  auto* pending = new Pending{impl_.get(), std::move(call)};
  GSource* source =
      g_timeout_source_new(static_cast<guint>(delay < 0 ? 0 : delay * 1000));
  g_source_set_callback(
      source,
      [](gpointer data) -> gboolean {
        auto* p = static_cast<Pending*>(data);
        {
          std::lock_guard<std::mutex> lock(p->impl->mutex);
          std::erase_if(p->impl->timers, [&](const Impl::Timer& t) {
            return t.source == p->source;
          });
        }
        p->call();
        return G_SOURCE_REMOVE;
      },
      pending, [](gpointer data) { delete static_cast<Pending*>(data); });
  // Attach and record under the lock: a timer that fires at once on the
  // loop's thread must find itself in the table to remove.
  std::lock_guard<std::mutex> lock(impl_->mutex);
  pending->source = g_source_attach(source, impl_->context);
  impl_->timers.push_back({target, std::string(selector), pending->source});
  g_source_unref(source);
}

void LinuxPlatform::cancelPrevious(const void* target,
                                   std::string_view selector) {
  std::vector<guint> sources;
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    std::erase_if(impl_->timers, [&](const Impl::Timer& t) {
      if (t.target == target && t.selector == selector) {
        sources.push_back(t.source);
        return true;
      }
      return false;
    });
  }
  for (guint id : sources)
    if (GSource* s = g_main_context_find_source_by_id(impl_->context, id))
      g_source_destroy(s);
}

void LinuxPlatform::dispatchMain(std::function<void()> block) {
  impl_->invoke(std::move(block));
}

void LinuxPlatform::dispatchBackground(std::function<void()> block) {
  Process* process = &Process::current();
  std::thread([process, block = std::move(block)] {
    Process::Scope scope(*process);
    block();
  }).detach();
}

ObserverToken LinuxPlatform::observe(std::string_view name,
                                     std::function<void()> callback,
                                     Scope scope) {
  std::lock_guard<std::mutex> lock(impl_->mutex);
  ObserverToken token = impl_->next_token++;
  impl_->observers.push_back(
      Impl::Observer{token, std::string(name), scope, std::move(callback)});
  if (scope == Scope::System) {
    if (!impl_->bus) {
      Impl* impl = impl_.get();
      impl_->bus = std::make_unique<NotifyBus>(
          path("/var/run/zorvel/notify"), [impl](const std::string& name) {
            impl->invoke([impl, name] { impl->deliver(name, Scope::System); });
          });
    }
    impl_->bus->listen();
  }
  return token;
}

void LinuxPlatform::removeObserver(ObserverToken token) {
  std::lock_guard<std::mutex> lock(impl_->mutex);
  std::erase_if(impl_->observers,
                [&](const Impl::Observer& o) { return o.token == token; });
}

void LinuxPlatform::post(std::string_view name, Scope scope) {
  if (scope == Scope::Process) {
    Impl* impl = impl_.get();
    impl_->invoke(
        [impl, n = std::string(name)] { impl->deliver(n, Scope::Process); });
    return;
  }
  // System-wide: every listening process gets it, this one included (through
  // its own socket, so delivery is always asynchronous on the main loop).
  NotifyBus::send(path("/var/run/zorvel/notify"), std::string(name));
}

std::string LinuxPlatform::localizedString(std::string_view key,
                                           std::string_view table) const {
  // The host bundle's table: /Library/Zorvel/<language>.lproj/<table>.plist.
  auto dict =
      plist::readDictionary(path("/Library/Zorvel/" + facts_.language +
                                 ".lproj/" + std::string(table) + ".plist"));
  if (dict) {
    auto it = dict->find(key);
    if (it != dict->end() && it->second.isString()) return *it->second.string();
  }
  return std::string(key);
}

void LinuxPlatform::log(std::string_view line) {
  openlog("zorvel", LOG_PID, LOG_USER);
  syslog(LOG_NOTICE, "%.*s", static_cast<int>(line.size()), line.data());
  closelog();
}

void LinuxPlatform::playSystemSound(uint32_t soundId) {
  std::fprintf(stderr, "[sound %u]\n", soundId);
}

void LinuxPlatform::playVibration(uint32_t soundId, const Dict& pattern) {
  std::fprintf(stderr, "[vibrate %u]\n", soundId);
}

std::optional<uint32_t> LinuxPlatform::createSystemSound(
    std::string_view devicePath) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path(devicePath), ec))
    return std::nullopt;
  std::lock_guard<std::mutex> lock(impl_->mutex);
  return impl_->next_sound_id++;
}

void LinuxPlatform::disposeSystemSound(uint32_t soundId) {}

void LinuxPlatform::showBanner(std::string_view sectionID,
                               std::string_view title) {
  std::fprintf(stderr, "[bulletin %.*s] %.*s\n",
               static_cast<int>(sectionID.size()), sectionID.data(),
               static_cast<int>(title.size()), title.data());
}

void LinuxPlatform::showCarrierName(std::string_view name) {
  std::fprintf(stderr, "[carrier] %.*s\n", static_cast<int>(name.size()),
               name.data());
}

Telephony& LinuxPlatform::telephony() { return impl_->telephony; }

std::string LinuxPlatform::pasteboard() const { return impl_->pasteboard; }

void LinuxPlatform::setPasteboard(std::string_view text) {
  impl_->pasteboard = std::string(text);
}

bool LinuxPlatform::openURL(std::string_view url) {
  std::fprintf(stderr, "[open %.*s]\n", static_cast<int>(url.size()),
               url.data());
  return true;
}

void LinuxPlatform::showAlert(std::shared_ptr<Alert> alert) {
  if (!alert) return;
  std::fprintf(stderr, "[alert] %s: %s\n", alert->title.c_str(),
               alert->message.c_str());
}

int LinuxPlatform::system(const std::string& command) {
  return runDeviceCommand(root(), command);
}

}  // namespace zv::platform
