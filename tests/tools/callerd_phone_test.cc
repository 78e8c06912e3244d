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
#include "support/mock_modem.h"
#include "support/private_bus.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using testing::kMM;
using testing::kPython;
using testing::waitUntil;
constexpr char kFeedback[] = "org.sigxcpu.Feedback";
constexpr char kFeedbackPath[] = "/org/sigxcpu/Feedback";

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
    modem_ = std::make_unique<testing::MockModemManager>(*bus_);
  }
  ~CallerdPhoneTest() override {
    modem_.reset();
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
    modem_->spawn(root_ + ".mm.out");
    modem_->spawnTemplate("notification_daemon", root_ + ".notes.out");
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
    modem_->mock(kFeedbackPath, "AddMethod",
                 g_variant_new("(sssss)", kFeedback, "TriggerFeedback",
                               "ssa{sv}i", "u", "ret = dbus.UInt32(1)"),
                 kFeedback);
    modem_->addModem();
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
  std::unique_ptr<testing::MockModemManager> modem_;
  pid_t callerd_ = -1;
};

TEST_F(CallerdPhoneTest, TheUsersContactsPassAndListChangesCountAtOnce) {
  addContact("Lei", "13507551234");
  start(Dict{{"EnableBlacklist", true}, {"BlacklistBlockStrangers", true}});
  ASSERT_TRUE(
      waitUntil([&] { return said("Evolution Data Server: 1 added"); }, 20))
      << output();
  const auto contact = modem_->ring("13507551234");
  ASSERT_TRUE(waitUntil([&] { return said(": shown"); }, 2)) << output();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(modem_->hangups(contact), 0u) << output();
  modem_->end(contact);
  const auto stranger = modem_->ring("13407551234");
  ASSERT_TRUE(waitUntil([&] { return modem_->hangups(stranger) == 1; }, 2))
      << output();
  modem_->end(stranger);

  // A contact added while callerd runs passes on its next call.
  addContact("Wang", "13607551234");
  ASSERT_TRUE(waitUntil([&] { return count(": 1 added") == 2; }, 10))
      << output();
  const auto added = modem_->ring("13607551234");
  ASSERT_TRUE(waitUntil([&] { return count(": shown") >= 2; }, 2)) << output();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(modem_->hangups(added), 0u) << output();
  modem_->end(added);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));

  // Blacklisting that contact with the command hangs up its next call.
  auto r =
      testing::runZorvel("blacklist add 136-0755-1234 --root '" + root_ + "'");
  ASSERT_EQ(r.status, 0) << r.err;
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const auto listed = modem_->ring("13607551234");
  EXPECT_TRUE(waitUntil([&] { return modem_->hangups(listed) == 1; }, 2))
      << output();
}

TEST_F(CallerdPhoneTest, ABlockedCallsReminderReachesFeedbackd) {
  start(Dict{{"EnableBlacklist", true},
             {"BlacklistBlockMode", 2},
             {"BlacklistBlockingRemind", 3}},
        {"--no-contacts"});
  const auto blocked = modem_->ring("13800138000");
  ASSERT_TRUE(waitUntil([&] { return modem_->hangups(blocked) == 1; }, 2))
      << output();
  // After the reminder's second: a vibration and the reminder sound.
  std::vector<GVariant*> got;
  ASSERT_TRUE(waitUntil(
      [&] {
        for (GVariant* v : got) g_variant_unref(v);
        got = modem_->methodCalls(kFeedbackPath, "TriggerFeedback", kFeedback);
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
