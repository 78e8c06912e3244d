// The process context: everything the system keeps per host process (the
// runtime's class tables, the platform the process runs on, the extension's
// enable switch, the lazily created service and settings singletons, the
// trace of started modules).
//
// A real program has one context on the Linux platform,
// Process::linuxDefault(), defined beside the Linux platform (as a storage
// library defines its default environment beside its POSIX implementation)
// and made on first use. The simulated platform runs several host processes
// in one binary, each with its own context; Process::current() is the
// context of the calling thread (set with Process::Scope), else the
// program-wide default. The two platforms stay separate doors: while a
// simulated world exists, a thread that entered none of its processes gets
// an error, never the real platform.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "platform/runtime/object.h"

namespace zv::platform {

class Platform;

class Process {
 public:
  // platform is not owned; it must outlive the process context.
  explicit Process(Platform* platform);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // The context of the calling thread: the one a Scope made current, else
  // the one given to setDefault, else linuxDefault(). While a simulated world
  // exists (see beginSimulation) the last step throws std::logic_error.
  static Process& current();
  // The default context of the program (used by threads that set none).
  static void setDefault(Process* process);
  // A real program's context on the Linux platform, made on first use and
  // kept for the program's life. Defined in platform/linux/linux_process.cc.
  static Process& linuxDefault();
  // Counts the simulated worlds alive (SimWorld's constructor and
  // destructor call these).
  static void beginSimulation();
  static void endSimulation();

  // Makes `process` current on this thread for the scope's lifetime.
  class Scope {
   public:
    explicit Scope(Process& process);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    Process* previous_;
  };

  Platform& platform() { return *platform_; }
  rt::Runtime& runtime() { return *runtime_; }

  // The extension's process-wide switch (1 from load, 0 after the first
  // guarded failure, never back).
  unsigned char zvenabled = 1;

  // Names of the start-up routines run in this process, in call order.
  std::vector<std::string> startedModules;

  // Test hosts only: start-up routines (by name) that the extension runs
  // in a host whose bundle identifier is not one of the five real hosts.
  // A test host program sets this before the extension starts.
  std::vector<std::pair<std::string, std::string>> extraHosts;

  // Extensions and the host's launch. A host program registers its classes
  // with code, so an extension mapped before that (LD_PRELOAD runs its
  // constructor before main) must wait for them: whenLaunched runs `start`
  // at once when the host has finished launching, else when it does.
  // finishLaunching marks the host ready and runs what waited, in order.
  void whenLaunched(std::function<void()> start);
  void finishLaunching();
  bool launched() const { return launched_; }

  // A per-process slot for a singleton of type T, empty until filled.
  template <typename T>
  std::shared_ptr<T>& slot() {
    auto& entry = slots_[typeid(T)];
    if (!entry) {
      auto holder = std::make_shared<std::shared_ptr<T>>();
      entry = Slot{holder, [](Slot& s) {
                     static_cast<std::shared_ptr<T>*>(s.holder.get())->reset();
                   }};
      order_.push_back(typeid(T));
    }
    return *static_cast<std::shared_ptr<T>*>(entry.holder.get());
  }

  // The singleton of T, created with `make` on first use.
  template <typename T, typename Make>
  std::shared_ptr<T> singleton(Make&& make) {
    auto& s = slot<T>();
    if (!s) s = make();
    return s;
  }

  // Drops every singleton (newest first) and the class tables. Called by the
  // destructor; exposed so a simulated process can "quit".
  void clear();

 private:
  struct Slot {
    std::shared_ptr<void> holder;
    void (*reset)(Slot&) = nullptr;
    explicit operator bool() const { return holder != nullptr; }
  };
  Platform* platform_;
  std::unique_ptr<rt::Runtime> runtime_;
  std::unordered_map<std::type_index, Slot> slots_;
  std::vector<std::type_index> order_;
  bool launched_ = false;
  std::vector<std::function<void()>> waiting_for_launch_;
};

// Shorthand for Process::current().platform().
Platform& current();

}  // namespace zv::platform
