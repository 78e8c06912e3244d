// ModemManager on a private test bus, played by python3-dbusmock's generic
// object API under its real interface names: one modem with a voice
// interface, calls the test rings in, ends and deletes or expects the
// program to make, and the record of what a program asked of the mock
// objects (any dbusmock object on the bus, by its service name). A mock
// that never takes its name fails the test.
#pragma once

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/private_bus.h"

namespace zv::testing {

inline constexpr char kMM[] = "org.freedesktop.ModemManager1";
inline constexpr char kMMPath[] = "/org/freedesktop/ModemManager1";
inline constexpr char kModem[] = "/org/freedesktop/ModemManager1/Modem/0";
inline constexpr char kVoice[] = "org.freedesktop.ModemManager1.Modem.Voice";
inline constexpr char kCall[] = "org.freedesktop.ModemManager1.Call";
inline constexpr char kPython[] = "/usr/bin/python3";

class MockModemManager {
 public:
  explicit MockModemManager(PrivateBus& bus) : bus_(bus) {}

  // Starts the mock (an object manager) with its output in `output` and,
  // when `log` is given, its one-line-per-call log there; returns its pid.
  pid_t spawn(const std::string& output, const std::string& log = "") {
    std::vector<std::string> argv = {kPython, "-m", "dbusmock", "--session",
                                     "-m"};
    if (!log.empty()) argv.insert(argv.end(), {"-l", log});
    argv.insert(argv.end(), {kMM, kMMPath, kMM});
    return bus_.spawn(argv, output);
  }
  // A dbusmock template (e.g. "notification_daemon") on the same bus.
  pid_t spawnTemplate(const char* name, const std::string& output) {
    return bus_.spawn({kPython, "-m", "dbusmock", "--session", "-t", name},
                      output);
  }

  // Calls the mock interface of the object at `path` on `service`; the
  // reply (to unref), or null after a failed expectation.
  GVariant* mockCall(const std::string& path, const char* method,
                     GVariant* args, const char* service = kMM) {
    std::string error;
    GVariant* r = bus_.call(service, path, "org.freedesktop.DBus.Mock", method,
                            args, &error);
    EXPECT_TRUE(r) << method << " on " << path << ": " << error;
    return r;
  }
  void mock(const std::string& path, const char* method, GVariant* args,
            const char* service = kMM) {
    if (GVariant* r = mockCall(path, method, args, service)) g_variant_unref(r);
  }
  // The calls of `method` the mock object at `path` got, in order, each
  // its arguments unboxed.
  using Args = std::vector<std::shared_ptr<GVariant>>;
  std::vector<Args> methodCalls(const std::string& path, const char* method,
                                const char* service = kMM) {
    std::vector<Args> out;
    GVariant* r =
        mockCall(path, "GetMethodCalls", g_variant_new("(s)", method), service);
    if (!r) return out;
    GVariantIter* calls;
    GVariantIter* args;
    g_variant_get(r, "(a(tav))", &calls);
    while (g_variant_iter_next(calls, "(tav)", nullptr, &args)) {
      Args& call = out.emplace_back();
      while (GVariant* arg = g_variant_iter_next_value(args)) {
        call.emplace_back(g_variant_get_variant(arg), g_variant_unref);
        g_variant_unref(arg);
      }
      g_variant_iter_free(args);
    }
    g_variant_iter_free(calls);
    g_variant_unref(r);
    return out;
  }
  size_t calledTimes(const std::string& path, const char* method,
                     const char* service = kMM) {
    return methodCalls(path, method, service).size();
  }
  // The Hangup requests one call got.
  size_t hangups(const std::string& call) {
    return calledTimes(call, "Hangup");
  }

  // Adds the modem and announces it as ModemManager does when it finds one.
  void addModem() {
    mock(kMMPath, "AddObject",
         g_variant_new_parsed(
             "(%s, 'org.freedesktop.ModemManager1.Modem', "
             "{'State': <int32 8>, 'Manufacturer': <'zorvel'>}, "
             "@a(ssss) [])",
             kModem));
    mock(kModem, "AddProperty",
         g_variant_new_parsed("(%s, 'Calls', <@ao []>)", kVoice));
    mock(kModem, "AddProperty",
         g_variant_new_parsed("(%s, 'EmergencyOnly', <false>)", kVoice));
    mock(kModem, "AddMethod",
         g_variant_new("(sssss)", kVoice, "ListCalls", "", "ao",
                       "ret = dbus.Array([], signature='o')"));
    mock(kModem, "AddMethod",
         g_variant_new("(sssss)", kVoice, "HangupAll", "", "", ""));
    mock(kMMPath, "EmitSignal",
         g_variant_new_parsed(
             "('org.freedesktop.DBus.ObjectManager', 'InterfacesAdded', "
             "'oa{sa{sv}}', [<%o>, <{"
             "'org.freedesktop.ModemManager1.Modem': {'State': <int32 8>}, "
             "'org.freedesktop.ModemManager1.Modem.Voice': "
             "{'Calls': <@ao []>, 'EmergencyOnly': <false>}}>])",
             kModem));
  }

  // A call rings in; `number` is the Number property's value (null: the
  // property is absent; taken). Returns the call's object path.
  std::string ring(GVariant* number, bool announce = true) {
    const std::string path =
        std::string(kMMPath) + "/Call/" + std::to_string(++calls_);
    GVariantDict props;
    g_variant_dict_init(&props, nullptr);
    if (number) g_variant_dict_insert_value(&props, "Number", number);
    g_variant_dict_insert(&props, "Direction", "i", 1);
    g_variant_dict_insert(&props, "State", "i", 3);
    g_variant_dict_insert(&props, "StateReason", "i", 2);
    g_variant_dict_insert(&props, "Multiparty", "b", FALSE);
    // Hanging up ends the call as the modem would: terminated, by the user.
    mock(kMMPath, "AddObject",
         g_variant_new_parsed(
             "(%s, %s, %@a{sv}, [('Hangup', '', '', \"self.UpdateProperties("
             "'org.freedesktop.ModemManager1.Call', {'State': dbus.Int32(7), "
             "'StateReason': dbus.Int32(3)})\"), ('Accept', '', '', '')])",
             path.c_str(), kCall, g_variant_dict_end(&props)));
    if (announce) callAdded(path);
    return path;
  }
  std::string ring(const std::string& number) {
    return ring(g_variant_new_string(number.c_str()));
  }
  void callAdded(const std::string& path) {
    mock(kModem, "EmitSignal",
         g_variant_new_parsed("(%s, 'CallAdded', 'o', [<%o>])", kVoice,
                              path.c_str()));
  }
  // Voice.CreateCall answers with a new outgoing call to `number`,
  // announced as ModemManager does, that goes to dialling when started.
  // Returns the call's object path.
  std::string expectOutgoingCall(const std::string& number) {
    const std::string path =
        std::string(kMMPath) + "/Call/" + std::to_string(++calls_);
    mock(kMMPath, "AddObject",
         g_variant_new_parsed(
             "(%s, %s, {'Number': <%s>, 'Direction': <int32 2>, "
             "'State': <int32 0>, 'StateReason': <int32 0>, "
             "'Multiparty': <false>}, [('Start', '', '', "
             "\"self.UpdateProperties('org.freedesktop.ModemManager1.Call', "
             "{'State': dbus.Int32(1)})\")])",
             path.c_str(), kCall, number.c_str()));
    const std::string create = std::string("self.EmitSignal('") + kVoice +
                               "', 'CallAdded', 'o', [dbus.ObjectPath('" +
                               path + "')]); ret = dbus.ObjectPath('" + path +
                               "')";
    mock(kModem, "AddMethod",
         g_variant_new("(sssss)", kVoice, "CreateCall", "a{sv}", "o",
                       create.c_str()));
    return path;
  }
  // The far end gives up, or the call otherwise ends.
  void terminate(const std::string& path) {
    mock(path, "UpdateProperties",
         g_variant_new_parsed("(%s, {'State': <int32 7>})", kCall));
  }
  // ModemManager deletes an ended call.
  void remove(const std::string& path) {
    mock(kMMPath, "RemoveObject", g_variant_new("(s)", path.c_str()));
    mock(kModem, "EmitSignal",
         g_variant_new_parsed("(%s, 'CallDeleted', 'o', [<%o>])", kVoice,
                              path.c_str()));
  }
  void end(const std::string& path) {
    terminate(path);
    remove(path);
  }

 private:
  PrivateBus& bus_;
  int calls_ = 0;
};

}  // namespace zv::testing
