// Outgoing calls through ModemManager: the number goes to the first modem
// that has the voice interface as Modem.Voice.CreateCall({"number": ...}),
// and the call it made is started with Call.Start. From there the modem's
// call is the device's like any other (platform/linux/modem_telephony.h
// follows its states).
//
// Asynchronous on the default GLib main context; `done` runs there with ""
// when the call was started, or one line saying what failed. Dials still
// under way when the dialler goes are abandoned without calling `done`.
#pragma once

#include <functional>
#include <string>

typedef struct _GDBusConnection GDBusConnection;
typedef struct _GCancellable GCancellable;

namespace zv::window {

class ModemDialer {
 public:
  // `bus` is the bus ModemManager is on (kept referenced).
  explicit ModemDialer(GDBusConnection* bus);
  ~ModemDialer();
  ModemDialer(const ModemDialer&) = delete;
  ModemDialer& operator=(const ModemDialer&) = delete;

  void dial(const std::string& number,
            std::function<void(const std::string& problem)> done);

 private:
  GDBusConnection* bus_;
  GCancellable* cancellable_;
};

}  // namespace zv::window
