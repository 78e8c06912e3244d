// The simulated device's telephony: the calls of one SimWorld, shared by
// all its processes, and the driver a test or a scripted session uses as
// "the network" and "the user" (a call comes in, the user answers, the far
// end hangs up, ...). Every action happens at the world's current virtual
// time; changes reach each observing process on its own run loop, so they
// are seen after the next SimWorld::advance (advance(0) for "now").
//
// A call's number is looked up in the device's address book when the call
// begins (abUID and the number's label, see db/contact_lookup.h). When a
// call ends it goes through "ending" (5) to "ended" (6), and before either
// change is delivered anywhere its row is written into the call-history
// database of the device's system generation (db/call_records.h).
//
// Recorded in the world's events: "call" for every status change ("<id>
// <status> <number or (hidden)>", no process), and, under the asking
// process, "disconnect" and "answer" (the call's number), "disconnectAll" and
// "cellularData" ("on" / "off"). A call-history write that fails is
// recorded as a "log" line and the call still ends.
//
// A driver action that does not fit the call's state (answering a call that
// is not ringing, an unknown id) throws std::invalid_argument and changes
// nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/telephony/telephony.h"

namespace zv::platform {

class SimWorld;
class SimProcess;

struct IncomingOptions {
  bool hidden = false;             // the caller withholds the number
  std::optional<int32_t> abUID{};  // report this record instead of a lookup
  bool platformBlocked = false;    // on the platform's blocked-callers list
  bool video = false;              // a video call (incomingVideoCall)
};

class SimTelephony {
 public:
  explicit SimTelephony(SimWorld& world);
  SimTelephony(const SimTelephony&) = delete;
  SimTelephony& operator=(const SimTelephony&) = delete;

  // --- The network and the user -------------------------------------------
  // A call comes in and rings (4).
  CallId incoming(const std::string& number, IncomingOptions options = {});
  // The user answers a ringing call (4 -> 1) or declines it (ends it).
  void answer(CallId id);
  void decline(CallId id);
  // The far end hangs up any call that has not ended.
  void remoteHangup(CallId id);
  // The user dials (3); the far end answers (3 -> 1).
  CallId dial(const std::string& number, bool video = false);
  void connect(CallId id);
  // The user holds an active call (1 -> 2) and resumes it (2 -> 1).
  void hold(CallId id);
  void resume(CallId id);
  // The user hangs up any call that has not ended (a ringing one is
  // declined).
  void end(CallId id);

  // --- Device state --------------------------------------------------------
  // Adds a number to the platform's own blocked-callers list.
  void blockCaller(const std::string& number);
  // The system version whose call-history database gets the rows. Default:
  // that of the world's first living process, else the platform default.
  void setSystemVersion(std::string version);
  std::string systemVersion() const;
  // The network operator (default "中国移动").
  void setOperatorName(std::string name) { operator_ = std::move(name); }
  const std::string& operatorName() const { return operator_; }
  bool cellularDataEnabled() const { return cellular_data_; }

  // Calls that have not ended, oldest first; a call by id.
  std::vector<CallInfo> calls() const;
  std::optional<CallInfo> call(CallId id) const;

  // --- On behalf of a process (through its Telephony) ---------------------
  void disconnect(CallId id, SimProcess& by);
  // A process answers a ringing call (CTCallAnswer); nothing for another.
  void answer(CallId id, SimProcess& by);
  void disconnectAll(SimProcess& by);
  void setCellularDataEnabled(bool enabled, SimProcess& by);
  CallObserverToken observe(SimProcess& process,
                            std::function<void(const CallInfo&)> callback);
  void removeObserver(CallObserverToken token);
  void dropObservers(const SimProcess& process);

 private:
  struct Observer {
    CallObserverToken token;
    SimProcess* process;
    std::function<void(const CallInfo&)> callback;
  };
  // Why a call ends: decides whether a missed call counts as seen.
  enum class EndedBy { kUser, kRemote, kPlatform };

  CallInfo& live(CallId id, std::initializer_list<int32_t> allowed,
                 const char* action);
  // Numbers the call, looks its number up and announces it; `abUID`
  // replaces the address-book lookup's record.
  CallInfo& begin(CallInfo call, std::optional<int32_t> abUID = {});
  void change(CallInfo& call, int32_t status);
  void finish(CallInfo& call, EndedBy by);
  void writeHistory(const CallInfo& call, EndedBy by);
  std::string describe(const CallInfo& call) const;

  SimWorld& world_;
  std::map<CallId, CallInfo> calls_;
  CallId next_id_ = 1;
  uint64_t revision_ = 0;
  std::vector<std::string> blocked_;
  std::optional<std::string> system_version_;
  std::string operator_ = "中国移动";
  bool cellular_data_ = true;
  std::vector<Observer> observers_;
  CallObserverToken next_token_ = 1;
};

// The Telephony of one simulated process: the device's calls, with changes
// delivered on that process's run loop and its requests recorded under its
// bundle identifier.
class SimProcessTelephony final : public Telephony {
 public:
  SimProcessTelephony(SimTelephony& device, SimProcess& process)
      : device_(device), process_(process) {}

  std::vector<CallInfo> calls() const override { return device_.calls(); }
  std::optional<CallInfo> call(CallId id) const override {
    return device_.call(id);
  }
  void disconnect(CallId id) override { device_.disconnect(id, process_); }
  void answer(CallId id) override { device_.answer(id, process_); }
  void disconnectAll() override { device_.disconnectAll(process_); }
  bool cellularDataEnabled() const override {
    return device_.cellularDataEnabled();
  }
  void setCellularDataEnabled(bool enabled) override {
    device_.setCellularDataEnabled(enabled, process_);
  }
  std::string operatorName() const override { return device_.operatorName(); }
  CallObserverToken observeCalls(
      std::function<void(const CallInfo&)> callback) override {
    return device_.observe(process_, std::move(callback));
  }
  void removeCallObserver(CallObserverToken token) override {
    device_.removeObserver(token);
  }

 private:
  SimTelephony& device_;
  SimProcess& process_;
};

}  // namespace zv::platform
