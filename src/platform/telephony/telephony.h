// The telephony service of the device, as one interface reached through
// Platform::telephony(): the calls the device has now, hanging calls up
// (CTCallDisconnect, CTCallListDisconnectAll) and answering them, the
// cellular-data switch (CTCellularDataPlanGetIsEnabled / SetIsEnabled), the
// network operator's name, and call changes delivered to a process on its own
// run loop.
//
// The call state belongs to the device, not to a process: every process of
// one device sees the same calls. A process does not read this interface
// directly for call objects; call_objects.h turns it into the platform's
// TUCallCenter / TUCall / CTCall objects of the process.
//
// Like the real platform, the service writes every finished call into the
// device's call-history database before it tells any process that the call
// ended.
//
// Implementations: sim/sim_telephony.h (a simulated network and user, on the
// virtual clock) and linux/no_modem_telephony.h (a computer with no modem:
// no calls).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform {

using CallId = uint64_t;
using CallObserverToken = uint64_t;

// The platform's call status numbers.
enum CallStatus : int32_t {
  kCallActive = 1,
  kCallHeld = 2,
  kCallDialling = 3,  // outgoing, not yet answered
  kCallRinging = 4,   // incoming, not yet answered
  kCallEnding = 5,
  kCallEnded = 6,
};

// One call as the device knows it at one moment.
struct CallInfo {
  CallId id = 0;
  int32_t status = kCallEnded;
  // The remote number as the network gave it; nullopt for a caller that
  // withheld it.
  std::optional<std::string> destinationID;
  // The address-book record whose phone number is the remote number; -1
  // when none.
  int32_t abUID = -1;
  // The address book could not be read when the call was looked up (locked
  // by another process, or damaged): abUID -1 then says nothing about
  // whether the caller is a contact.
  bool contactUnknown = false;
  // The stored label of that phone number ("_$!<Mobile>!$_", or as typed);
  // empty when none.
  std::string contactLabel;
  bool isBlocked = false;  // on the platform's own blocked-callers list
  bool isOutgoing = false;
  bool isVideo = false;    // a video call (no core-telephony handle)
  double date = 0;         // seconds since 1970 when it began
  double connectedAt = 0;  // seconds since 1970 when answered; 0 never
  // Grows with every change of any call on the device: of two snapshots of
  // one call, the one with the larger revision is the newer.
  uint64_t revision = 0;
};

class Telephony {
 public:
  virtual ~Telephony() = default;

  // The calls that have not ended, oldest first.
  virtual std::vector<CallInfo> calls() const = 0;
  // A call by id, ended ones included; nullopt for an unknown id.
  virtual std::optional<CallInfo> call(CallId id) const = 0;

  // CTCallDisconnect: hangs up one call (nothing when it has ended).
  virtual void disconnect(CallId id) = 0;
  // CTCallAnswer: answers a ringing incoming call (nothing for any other).
  virtual void answer(CallId id) = 0;
  // CTCallListDisconnectAll: hangs up every call.
  virtual void disconnectAll() = 0;

  // CTCellularDataPlanGetIsEnabled / CTCellularDataPlanSetIsEnabled.
  virtual bool cellularDataEnabled() const = 0;
  virtual void setCellularDataEnabled(bool enabled) = 0;

  // The network operator's name as the status bar would show it; empty
  // without a network.
  virtual std::string operatorName() const = 0;

  // Every later change of a call (a new call, a status change) is delivered
  // to `callback` on the calling process's main run loop, in the order the
  // changes happened.
  virtual CallObserverToken observeCalls(
      std::function<void(const CallInfo&)> callback) = 0;
  virtual void removeCallObserver(CallObserverToken token) = 0;
};

}  // namespace zv::platform
