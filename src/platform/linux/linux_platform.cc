#include "platform/linux/linux_platform.h"

#include <glib-unix.h>
#include <glib.h>
#include <sys/eventfd.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <thread>
#include <vector>

#include "platform/linux/address_book_watch.h"
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
  std::unique_ptr<Telephony> telephony = std::make_unique<NoModemTelephony>();
  std::function<void(uint32_t)> sound;
  std::function<void(std::string_view, std::string_view)> banner;
  uint32_t next_sound_id = 4096;
  std::map<uint32_t, std::string> sound_files;  // created sounds' host paths
  std::function<void(uint32_t, const Dict&)> vibration;
  std::unique_ptr<AddressBookWatch> addressBookWatch;

  // Blocks for the main loop. Any thread queues them under `queue_lock` and
  // wakes the loop through an eventfd; the loop thread runs them in order.
  // They always run later, from the loop, never on the caller (the main
  // thread outside the loop, or the notification thread). GLib's own
  // structures are touched only by the loop thread: ThreadSanitizer cannot
  // see GLib's internal locks, but it does see this one.
  std::mutex queue_lock;
  std::deque<std::function<void()>> queue;
  int wake_fd = -1;
  GSource* wake_source = nullptr;

  void startQueue() {
    wake_fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    wake_source = g_unix_fd_source_new(wake_fd, G_IO_IN);
    g_source_set_priority(wake_source, G_PRIORITY_DEFAULT);
    GUnixFDSourceFunc wake = [](int fd, GIOCondition,
                                gpointer data) -> gboolean {
      uint64_t count;
      while (read(fd, &count, sizeof count) > 0) {
      }
      static_cast<Impl*>(data)->runQueued();
      return G_SOURCE_CONTINUE;
    };
    // An fd source calls its callback with the fd signature (GLib's
    // documented cast through G_SOURCE_FUNC).
    g_source_set_callback(
        wake_source,
        reinterpret_cast<GSourceFunc>(reinterpret_cast<void (*)()>(wake)), this,
        nullptr);
    g_source_attach(wake_source, context);
  }

  void stopQueue() {
    g_source_destroy(wake_source);
    g_source_unref(wake_source);
    close(wake_fd);
  }

  void invoke(std::function<void()> block) {
    {
      std::lock_guard<std::mutex> hold(queue_lock);
      queue.push_back(std::move(block));
    }
    const uint64_t one = 1;
    [[maybe_unused]] ssize_t n = write(wake_fd, &one, sizeof one);
  }

  // Runs what was queued when the loop woke; blocks queued meanwhile wake it
  // again, so timers get their turn in between.
  void runQueued() {
    std::deque<std::function<void()>> due;
    {
      std::lock_guard<std::mutex> hold(queue_lock);
      due.swap(queue);
    }
    for (auto& block : due) block();
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
  // Never destroyed (threads and callbacks may still reach it at exit), but
  // what it leaves in the device folder goes when the program ends.
  static LinuxPlatform* platform = [] {
    auto* p = new LinuxPlatform();
    std::atexit([] { instance().shutdown(); });
    return p;
  }();
  return *platform;
}

void LinuxPlatform::shutdown() {
  std::unique_ptr<NotifyBus> bus;
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    bus = std::move(impl_->bus);
  }
  bus.reset();  // joins the listener and removes its socket
  impl_->addressBookWatch.reset();
}

LinuxPlatform::LinuxPlatform() : impl_(std::make_unique<Impl>()) {
  impl_->context = g_main_context_default();
  impl_->loop = g_main_loop_new(impl_->context, FALSE);
  impl_->startQueue();
  // A host program run under the extension names itself through the
  // environment, as the platform's launcher would.
  const char* bundle = std::getenv("ZORVEL_BUNDLE_ID");
  facts_.bundleIdentifier = bundle && *bundle ? bundle : "com.zorvel.cli";
}

LinuxPlatform::~LinuxPlatform() {
  impl_->bus.reset();
  impl_->stopQueue();
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
    // Whoever writes the address book on Linux does not announce it: the
    // signal comes from watching the database itself.
    if (name == kAddressBookExternalChangeNotification &&
        !impl_->addressBookWatch) {
      Impl* impl = impl_.get();
      impl_->addressBookWatch = std::make_unique<AddressBookWatch>(
          path("/var/mobile/Library/AddressBook/AddressBook.sqlitedb"),
          kAddressBookSettle, [impl] {
            impl->deliver(kAddressBookExternalChangeNotification,
                          Scope::System);
          });
    }
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

void LinuxPlatform::setTelephony(std::unique_ptr<Telephony> telephony) {
  impl_->telephony = std::move(telephony);
}

void LinuxPlatform::onSystemSound(std::function<void(uint32_t)> handler) {
  impl_->sound = std::move(handler);
}

void LinuxPlatform::onBanner(
    std::function<void(std::string_view, std::string_view)> handler) {
  impl_->banner = std::move(handler);
}

void LinuxPlatform::playSystemSound(uint32_t soundId) {
  if (impl_->sound) return impl_->sound(soundId);
  std::fprintf(stderr, "[sound %u]\n", soundId);
}

void LinuxPlatform::onVibration(
    std::function<void(uint32_t, const Dict&)> handler) {
  impl_->vibration = std::move(handler);
}

std::string LinuxPlatform::soundFile(uint32_t soundId) const {
  std::lock_guard<std::mutex> lock(impl_->mutex);
  auto it = impl_->sound_files.find(soundId);
  return it == impl_->sound_files.end() ? "" : it->second;
}

void LinuxPlatform::playVibration(uint32_t soundId, const Dict& pattern) {
  if (impl_->vibration) return impl_->vibration(soundId, pattern);
  std::fprintf(stderr, "[vibrate %u]\n", soundId);
}

std::optional<uint32_t> LinuxPlatform::createSystemSound(
    std::string_view devicePath) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path(devicePath), ec))
    return std::nullopt;
  std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->sound_files[impl_->next_sound_id] = path(devicePath);
  return impl_->next_sound_id++;
}

void LinuxPlatform::disposeSystemSound(uint32_t soundId) {
  std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->sound_files.erase(soundId);
}

void LinuxPlatform::showBanner(std::string_view sectionID,
                               std::string_view title) {
  if (impl_->banner) return impl_->banner(sectionID, title);
  std::fprintf(stderr, "[bulletin %.*s] %.*s\n",
               static_cast<int>(sectionID.size()), sectionID.data(),
               static_cast<int>(title.size()), title.data());
}

void LinuxPlatform::showCarrierName(std::string_view name) {
  std::fprintf(stderr, "[carrier] %.*s\n", static_cast<int>(name.size()),
               name.data());
}

Telephony& LinuxPlatform::telephony() { return *impl_->telephony; }

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
