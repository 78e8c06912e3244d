// zorvel callerd with a Linux phone's own services on a private session
// bus: a real Evolution Data Server (started by D-Bus activation, its
// HOME and XDG folders in the test's temporary folder) holding the user's
// contacts, python3-dbusmock standing for ModemManager, the notification
// daemon and feedbackd. Contacts added to the server while callerd runs,
// and lists changed with the zorvel command, count for the next call.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <thread>

#include "cli_runner.h"
#include "support/device_files.h"
#include "support/private_bus.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using testing::waitUntil;

constexpr char kMM[] = "org.freedesktop.ModemManager1";
constexpr char kMMPath[] = "/org/freedesktop/ModemManager1";
constexpr char kModem[] = "/org/freedesktop/ModemManager1/Modem/0";
constexpr char kVoice[] = "org.freedesktop.ModemManager1.Modem.Voice";
constexpr char kCall[] = "org.freedesktop.ModemManager1.Call";
constexpr char kMock[] = "org.freedesktop.DBus.Mock";
constexpr char kFeedback[] = "org.sigxcpu.Feedback";
constexpr char kFeedbackPath[] = "/org/sigxcpu/Feedback";
constexpr char kPython[] = "/usr/bin/python3";

// Adds one contact to the server's own address book (argv[1]: a vCard).
constexpr char kAddContact[] = R"py(
import sys, gi
gi.require_version('EBook', '1.2')
gi.require_version('EBookContacts', '1.2')
gi.require_version('EDataServer', '1.2')
from gi.repository import EBook, EBookContacts, EDataServer
registry = EDataServer.SourceRegistry.new_sync(None)
book = EBook.BookClient.connect_sync(registry.ref_builtin_address_book(),
                                     4294967295, None)
contact = EBookContacts.Contact.new_from_vcard(sys.argv[1])
book.add_contact_sync(contact, EBookContacts.BookOperationFlags.NONE, None)
)py";

class CallerdPhoneTest : public ::testing::Test {
 protected:
  // Everything the server and the mocks keep goes under the test's folder;
  // the bus (and through it every service it starts) inherits this.
  CallerdPhoneTest() {
    for (const char* name :
         {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
          "XDG_RUNTIME_DIR", "GSETTINGS_BACKEND"})
      if (const char* v = std::getenv(name)) saved_[name] = v;
    const std::string home = root_ + ".home";
    for (const char* sub : {"/.local/share", "/.config", "/.cache", "/run"})
      fs::create_directories(home + sub);
    fs::permissions(home + "/run", fs::perms::owner_all);
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_DATA_HOME", (home + "/.local/share").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home + "/.config").c_str(), 1);
    setenv("XDG_CACHE_HOME", (home + "/.cache").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (home + "/run").c_str(), 1);
    setenv("GSETTINGS_BACKEND", "memory", 1);
    bus_ = std::make_unique<testing::PrivateBus>();
  }
  ~CallerdPhoneTest() override {
    bus_.reset();
    for (const char* name :
         {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
          "XDG_RUNTIME_DIR", "GSETTINGS_BACKEND"}) {
      auto it = saved_.find(name);
      if (it == saved_.end()) {
        unsetenv(name);
      } else {
        setenv(name, it->second.c_str(), 1);
      }
    }
    std::error_code ec;
    fs::remove_all(root_ + ".home", ec);
    for (const char* suffix :
         {".mm.out", ".notes.out", ".fb.out", ".callerd.out"})
      fs::remove(root_ + suffix, ec);
    fs::remove_all(root_, ec);
  }

  void SetUp() override {
    ASSERT_TRUE(bus_->ok()) << "dbus-daemon did not start a private bus";
    ASSERT_EQ(testing::runZorvel("init --root '" + root_ + "'").status, 0);
    // ModemManager is an object manager (-m).
    bus_->spawn(
        {kPython, "-m", "dbusmock", "--session", "-m", kMM, kMMPath, kMM},
        root_ + ".mm.out");
    bus_->spawn(
        {kPython, "-m", "dbusmock", "--session", "-t", "notification_daemon"},
        root_ + ".notes.out");
    bus_->spawn({kPython, "-m", "dbusmock", "--session", kFeedback,
                 kFeedbackPath, kFeedback},
                root_ + ".fb.out");
    ASSERT_TRUE(waitUntil(
        [&] {
          return bus_->hasOwner(kMM) && bus_->hasOwner(kFeedback) &&
                 bus_->hasOwner("org.freedesktop.Notifications");
        },
        15))
        << testing::readFile(root_ + ".mm.out");
    mock(kFeedbackPath, "AddMethod",
         g_variant_new("(sssss)", kFeedback, "TriggerFeedback", "ssa{sv}i", "u",
                       "ret = dbus.UInt32(1)"));
    mock(kMMPath, "AddObject",
         g_variant_new_parsed("(%s, 'org.freedesktop.ModemManager1.Modem', "
                              "{'State': <int32 8>}, @a(ssss) [])",
                              kModem));
    mock(kModem, "AddProperty",
         g_variant_new_parsed("(%s, 'Calls', <@ao []>)", kVoice));
    mock(kModem, "AddProperty",
         g_variant_new_parsed("(%s, 'EmergencyOnly', <false>)", kVoice));
    mock(kModem, "AddMethod",
         g_variant_new("(sssss)", kVoice, "ListCalls", "", "ao",
                       "ret = dbus.Array([], signature='o')"));
    mock(kMMPath, "EmitSignal",
         g_variant_new_parsed(
             "('org.freedesktop.DBus.ObjectManager', 'InterfacesAdded', "
             "'oa{sa{sv}}', [<%o>, <{"
             "'org.freedesktop.ModemManager1.Modem': {'State': <int32 8>}, "
             "'org.freedesktop.ModemManager1.Modem.Voice': "
             "{'Calls': <@ao []>, 'EmergencyOnly': <false>}}>])",
             kModem));
  }

  void mock(const std::string& path, const char* method, GVariant* args,
            const char* service = nullptr) {
    if (!service) service = path.starts_with(kFeedbackPath) ? kFeedback : kMM;
    std::string error;
    GVariant* r = bus_->call(service, path, kMock, method, args, &error);
    ASSERT_TRUE(r) << method << " on " << path << ": " << error;
    g_variant_unref(r);
  }
  // The argument lists of the calls `method` got on the mock at `path`.
  std::vector<GVariant*> calls(const char* service, const std::string& path,
                               const char* method) {
    std::vector<GVariant*> out;
    GVariant* r = bus_->call(service, path, kMock, "GetMethodCalls",
                             g_variant_new("(s)", method));
    if (!r) return out;
    GVariant* list = g_variant_get_child_value(r, 0);
    for (gsize i = 0; i < g_variant_n_children(list); ++i) {
      guint64 when = 0;
      GVariant* args = nullptr;
      g_variant_get_child(list, i, "(t@av)", &when, &args);
      out.push_back(args);
    }
    g_variant_unref(list);
    g_variant_unref(r);
    return out;
  }
  size_t hangups(const std::string& call) {
    auto got = calls(kMM, call, "Hangup");
    for (GVariant* v : got) g_variant_unref(v);
    return got.size();
  }

  // A call from `number` rings in; its object path.
  std::string ring(const std::string& number) {
    const std::string path =
        std::string(kMMPath) + "/Call/" + std::to_string(++calls_);
    mock(kMMPath, "AddObject",
         g_variant_new_parsed(
             "(%s, %s, {'Number': <%s>, 'Direction': <int32 1>, "
             "'State': <int32 3>, 'StateReason': <int32 2>, "
             "'Multiparty': <false>}, [('Hangup', '', '', "
             "\"self.UpdateProperties('org.freedesktop.ModemManager1.Call', "
             "{'State': dbus.Int32(7)})\"), ('Accept', '', '', '')])",
             path.c_str(), kCall, number.c_str()));
    mock(kModem, "EmitSignal",
         g_variant_new_parsed("(%s, 'CallAdded', 'o', [<%o>])", kVoice,
                              path.c_str()));
    return path;
  }
  // The call ends and ModemManager deletes it.
  void end(const std::string& path) {
    mock(path, "UpdateProperties",
         g_variant_new_parsed("(%s, {'State': <int32 7>})", kCall));
    mock(kMMPath, "RemoveObject", g_variant_new("(s)", path.c_str()));
    mock(kModem, "EmitSignal",
         g_variant_new_parsed("(%s, 'CallDeleted', 'o', [<%o>])", kVoice,
                              path.c_str()));
  }

  void addContact(const std::string& name, const std::string& number) {
    const std::string card =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" + name + "\r\nN:" + name +
        ";;;;\r\nTEL;TYPE=CELL:" + number + "\r\nEND:VCARD\r\n";
    const std::string out = root_ + ".add.out";
    pid_t pid = bus_->spawn({kPython, "-c", kAddContact, card}, out);
    ASSERT_TRUE(
        waitUntil([&] { return !testing::PrivateBus::running(pid); }, 30));
    ASSERT_EQ(bus_->end(pid), 0) << testing::readFile(out);
    fs::remove(out);
  }

  void start(const Dict& settings, std::vector<std::string> extra = {}) {
    testing::writePlist(root_ + "/var/mobile/Library/Preferences/zorvel.plist",
                        settings);
    std::vector<std::string> argv = {testing::zorvelBinary(),
                                     "callerd",
                                     "--root",
                                     root_,
                                     "--bus",
                                     "session",
                                     "--echo"};
    argv.insert(argv.end(), extra.begin(), extra.end());
    callerd_ = bus_->spawn(argv, root_ + ".callerd.out");
    ASSERT_TRUE(waitUntil([&] { return said("in-call service started"); }, 10))
        << output();
  }
  std::string output() { return testing::readFile(root_ + ".callerd.out"); }
  bool said(const std::string& text) {
    return output().find(text) != std::string::npos;
  }
  size_t count(const std::string& text) {
    return testing::occurrences(output(), text);
  }

  std::string root_ = testing::freshRoot();
  std::map<std::string, std::string> saved_;
  std::unique_ptr<testing::PrivateBus> bus_;
  pid_t callerd_ = -1;
  int calls_ = 0;
};

TEST_F(CallerdPhoneTest, TheUsersContactsPassAndListChangesCountAtOnce) {
  addContact("Lei", "13507551234");
  start(Dict{{"EnableBlacklist", true}, {"BlacklistBlockStrangers", true}});
  ASSERT_TRUE(
      waitUntil([&] { return said("Evolution Data Server: 1 added"); }, 20))
      << output();
  const auto contact = ring("13507551234");
  ASSERT_TRUE(waitUntil([&] { return said(": shown"); }, 2)) << output();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(hangups(contact), 0u) << output();
  end(contact);
  const auto stranger = ring("13407551234");
  ASSERT_TRUE(waitUntil([&] { return hangups(stranger) == 1; }, 2)) << output();
  end(stranger);

  // A contact added while callerd runs passes on its next call.
  addContact("Wang", "13607551234");
  ASSERT_TRUE(waitUntil([&] { return count(": 1 added") == 2; }, 10))
      << output();
  const auto added = ring("13607551234");
  ASSERT_TRUE(waitUntil([&] { return count(": shown") >= 2; }, 2)) << output();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(hangups(added), 0u) << output();
  end(added);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));

  // Blacklisting that contact with the command hangs up its next call.
  auto r =
      testing::runZorvel("blacklist add 136-0755-1234 --root '" + root_ + "'");
  ASSERT_EQ(r.status, 0) << r.err;
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const auto listed = ring("13607551234");
  EXPECT_TRUE(waitUntil([&] { return hangups(listed) == 1; }, 2)) << output();
}

TEST_F(CallerdPhoneTest, ABlockedCallsReminderReachesFeedbackd) {
  start(Dict{{"EnableBlacklist", true},
             {"BlacklistBlockMode", 2},
             {"BlacklistBlockingRemind", 3}},
        {"--no-contacts"});
  const auto blocked = ring("13800138000");
  ASSERT_TRUE(waitUntil([&] { return hangups(blocked) == 1; }, 2)) << output();
  // After the reminder's second: a vibration and the reminder sound.
  std::vector<GVariant*> got;
  ASSERT_TRUE(waitUntil(
      [&] {
        for (GVariant* v : got) g_variant_unref(v);
        got = calls(kFeedback, kFeedbackPath, "TriggerFeedback");
        return got.size() >= 2;
      },
      4))
      << output();
  std::vector<std::string> seen;
  for (GVariant* args : got) {
    // (app_id, event, hints, timeout), each boxed.
    GVariant *event, *hints;
    g_variant_get_child(args, 1, "v", &event);
    g_variant_get_child(args, 2, "v", &hints);
    const char* profile = "";
    const char* sound = "";
    g_variant_lookup(hints, "profile", "&s", &profile);
    g_variant_lookup(hints, "sound-file", "&s", &sound);
    seen.push_back(std::string(g_variant_get_string(event, nullptr)) + " " +
                   profile + " " + sound);
    for (GVariant* v : {event, hints, args}) g_variant_unref(v);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{
                      "notification-missed-generic quiet ",
                      "notification-missed-generic full " + root_ +
                          "/Library/Zorvel/block.caf"}));
}

}  // namespace
}  // namespace zv
