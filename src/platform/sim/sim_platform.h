// The deterministic platform for tests: a SimWorld holds one virtual clock,
// one notification centre, one device root and one ordered record of side
// effects; each SimProcess in it is a host process with its own process
// context (class tables, singletons, enable switch) and its own device facts.
//
// Nothing happens behind the test's back: delayed calls, notification
// deliveries, dispatched blocks and background work are queued on the world
// and run, in time order and each inside its process's context, only when
// the test calls advance() (advance(0) runs what is due now).
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/sim/sim_telephony.h"

namespace zv::platform {

class SimProcess;

// One recorded side effect.
struct SimEvent {
  double time = 0;      // virtual seconds since the world started
  std::string process;  // bundle identifier of the process
  std::string kind;     // "log", "sound", "vibrate", "openURL",
                        // "pasteboard", "alert", "system", "post",
                        // "soundCreate", "soundDispose", "bulletin",
                        // "carrier", and the telephony's (see
                        // sim_telephony.h)
  std::string detail;
};

class SimWorld {
 public:
  // root: the device root folder shared by every process (created if
  // missing). epoch: the wall-clock time (seconds since 1970) at start.
  explicit SimWorld(std::string root, double epoch = 1416182400.0);
  ~SimWorld();
  SimWorld(const SimWorld&) = delete;
  SimWorld& operator=(const SimWorld&) = delete;

  // Starts a host process. Facts default to an iPhone 6 on 8.1.
  SimProcess& launch(std::string bundleIdentifier, DeviceFacts facts = {});
  // Ends a process: its pending work is dropped, its context cleared.
  void terminate(SimProcess& process);

  const std::string& root() const { return root_; }
  // Virtual seconds since the world started, and the wall-clock equivalent.
  double elapsed() const { return elapsed_; }
  double now() const { return epoch_ + elapsed_; }

  // Moves the clock forward by `seconds`, running everything that falls due
  // on the way, in order; work queued at the current time runs too.
  void advance(double seconds);

  // Every side effect so far, and those of one kind.
  const std::vector<SimEvent>& events() const { return events_; }
  std::vector<SimEvent> events(std::string_view kind) const;
  void clearEvents() { events_.clear(); }

  // Number of queued items (timers, deliveries, blocks) not yet run.
  size_t pending() const;
  // Number of live observers of a notification name, in all processes.
  size_t observerCount(std::string_view name) const;

  // The device's telephony, and the driver of its network and user.
  SimTelephony& telephony() { return *telephony_; }

 private:
  friend class SimProcess;
  friend class SimTelephony;
  struct Item {
    double at;
    uint64_t seq;
    SimProcess* process;
    const void* target;  // for cancelPrevious; null for other work
    std::string selector;
    std::function<void()> call;
  };
  void enqueue(SimProcess* process, double delay, const void* target,
               std::string selector, std::function<void()> call);
  void record(const SimProcess& process, std::string kind, std::string detail);
  // A side effect of no process (the network's doing); `process` is "".
  void recordAs(std::string process, std::string kind, std::string detail);

  struct Observer {
    ObserverToken token;
    SimProcess* process;
    std::string name;
    Scope scope;
    std::function<void()> callback;
  };

  std::string root_;
  double epoch_;
  double elapsed_ = 0;
  uint64_t seq_ = 0;
  ObserverToken next_token_ = 1;
  std::vector<Item> queue_;
  std::vector<Observer> observers_;
  std::vector<SimEvent> events_;
  std::string pasteboard_;         // the general pasteboard is device-wide
  uint32_t next_sound_id_ = 4096;  // system sounds made from files
  std::unique_ptr<SimTelephony> telephony_;
  std::vector<std::unique_ptr<SimProcess>> processes_;
};

class SimProcess : public Platform {
 public:
  SimProcess(SimWorld& world, std::string bundleIdentifier, DeviceFacts facts);
  ~SimProcess() override;

  SimWorld& world() { return world_; }
  Process& context() { return *context_; }
  // Runs f inside this process's context and returns its result.
  template <typename F>
  auto run(F&& f) {
    Process::Scope scope(*context_);
    return f();
  }

  // Settable facts and resources.
  DeviceFacts& deviceFacts() { return facts_; }
  void setLocalizedStrings(std::map<std::string, std::string> strings) {
    strings_ = std::move(strings);
  }
  // Decides what openURL: answers (default: true for every URL).
  void setURLHandler(std::function<bool(std::string_view)> handler) {
    url_handler_ = std::move(handler);
  }
  // Replaces system(): by default the command really runs, with a leading
  // absolute program path mapped under the device root and ZORVEL_ROOT set.
  void setSystemHandler(std::function<int(const std::string&)> handler) {
    system_handler_ = std::move(handler);
  }

  // The alerts shown so far, newest last; pressing a button of the newest
  // one that is still open calls its delegate and closes it.
  const std::vector<std::shared_ptr<Alert>>& alerts() const { return alerts_; }
  std::shared_ptr<Alert> openAlert() const;
  void pressAlertButton(int index);

  // Platform
  std::string path(std::string_view absolute) const override;
  std::string root() const override { return world_.root(); }
  double now() const override { return world_.now(); }
  void performAfterDelay(const void* target, std::string_view selector,
                         double delay, std::function<void()> call) override;
  void cancelPrevious(const void* target, std::string_view selector) override;
  void dispatchMain(std::function<void()> block) override;
  void dispatchBackground(std::function<void()> block) override;
  ObserverToken observe(std::string_view name, std::function<void()> callback,
                        Scope scope) override;
  void removeObserver(ObserverToken token) override;
  void post(std::string_view name, Scope scope) override;
  const DeviceFacts& device() const override { return facts_; }
  std::string localizedString(std::string_view key,
                              std::string_view table) const override;
  void log(std::string_view line) override;
  void playSystemSound(uint32_t soundId) override;
  void playVibration(uint32_t soundId, const Dict& pattern) override;
  std::optional<uint32_t> createSystemSound(
      std::string_view devicePath) override;
  void disposeSystemSound(uint32_t soundId) override;
  void showBanner(std::string_view sectionID, std::string_view title) override;
  void showCarrierName(std::string_view name) override;
  std::string pasteboard() const override { return world_.pasteboard_; }
  void setPasteboard(std::string_view text) override;
  bool openURL(std::string_view url) override;
  void showAlert(std::shared_ptr<Alert> alert) override;
  int system(const std::string& command) override;
  Telephony& telephony() override { return *telephony_; }

 private:
  friend class SimWorld;
  friend class SimTelephony;
  SimWorld& world_;
  DeviceFacts facts_;
  std::unique_ptr<Process> context_;
  std::unique_ptr<SimProcessTelephony> telephony_;
  std::map<std::string, std::string> strings_;
  std::function<bool(std::string_view)> url_handler_;
  std::function<int(const std::string&)> system_handler_;
  std::vector<std::shared_ptr<Alert>> alerts_;
  std::shared_ptr<Alert> open_alert_;
  bool alive_ = true;
};

}  // namespace zv::platform
