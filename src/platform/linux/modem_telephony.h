// The telephony of a Linux phone: ModemManager's voice calls over D-Bus,
// through its client library (libmm-glib) on the default GLib main context
// that the Linux platform's main loop runs.
//
// Every modem that has the voice interface is followed; each of its calls
// becomes one CallInfo: the call's number is destinationID (a call without a
// number, or with one that is not UTF-8 text, is a withheld caller), the
// direction is isOutgoing, the call state is the platform's status number
// (dialling and ringing-out 3, ringing-in and waiting 4, active 1, held 2,
// terminated 5 then 6) and the number's record in the device root's
// address book is abUID (looked up without waiting for a lock: an address
// book that cannot be read at once leaves abUID -1 and sets contactUnknown). A
// call whose state is not yet known is announced when it becomes known.
//
// disconnect() hangs up that call (Call.Hangup), disconnectAll() hangs up
// every call of every modem (Modem.Voice.HangupAll), answer() accepts a
// ringing call (Call.Accept); all return at once and the modem's state
// changes follow. A call that ends is written into the
// device root's call-history database (of the device's system generation)
// before its ending is delivered, as the platform does, when the database
// takes it without waiting; when another program holds the database (or it
// is full) the row is kept in call order, across restarts, and written as
// soon as it can be (call_history_queue.h): the main loop never waits on
// it. A call object that disappears from the bus ends the call, and so
// does its modem's (or ModemManager's) going.
//
// Every call is announced as soon as its state is known: a call that rings
// in while another rings (call waiting) is not held back, so each ringing
// call is decided on by itself and at once.
//
// Starting without ModemManager on the bus is not an error: the service is
// followed from the moment it appears (and again after it restarts), and
// the presence callback says when it is there or not.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/telephony/telephony.h"

typedef struct _GDBusConnection GDBusConnection;

namespace zv::platform {

class ModemTelephony final : public Telephony {
 public:
  // `connection` is the bus ModemManager is on (kept referenced). `root`
  // and `systemVersion` give the device root and its system version when a
  // call needs them. Must be made, used and destroyed on the thread that
  // runs the default main context.
  ModemTelephony(GDBusConnection* connection, std::function<std::string()> root,
                 std::function<std::string()> systemVersion);
  ~ModemTelephony() override;
  ModemTelephony(const ModemTelephony&) = delete;
  ModemTelephony& operator=(const ModemTelephony&) = delete;

  // Starts following ModemManager. False, with `error` set, only when the
  // client cannot be made at all.
  bool start(std::string* error);
  // Called with true when ModemManager is on the bus, false when it is not
  // (once at start, then at each change).
  void onPresence(std::function<void(bool)> callback) {
    presence_ = std::move(callback);
  }
  // Called with one line when something ModemManager was asked for failed,
  // or the call history refused rows (then from the history's writer
  // thread).
  void onProblem(std::function<void(const std::string&)> callback) {
    problem_ = std::move(callback);
  }

  std::vector<CallInfo> calls() const override;
  std::optional<CallInfo> call(CallId id) const override;
  void disconnect(CallId id) override;
  void answer(CallId id) override;
  void disconnectAll() override;
  // Mobile data belongs to the network manager, not to the modem's voice
  // side: off, and not switched from here.
  bool cellularDataEnabled() const override { return false; }
  void setCellularDataEnabled(bool) override {}
  std::string operatorName() const override;
  CallObserverToken observeCalls(
      std::function<void(const CallInfo&)> callback) override;
  void removeCallObserver(CallObserverToken token) override;

  struct Impl;

 private:
  std::unique_ptr<Impl> impl_;
  std::function<void(bool)> presence_;
  std::function<void(const std::string&)> problem_;
};

}  // namespace zv::platform
