// zorvel callerd with a Linux phone's own services: a real Evolution Data
// Server (started by D-Bus activation in a private HOME) holding the user's
// contacts, and feedbackd mocked. Contacts added while it runs count.
#include <gtest/gtest.h>

#include <cstdlib>

#include "callerd_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
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

// HOME and the XDG folders in a folder of the test's own while it lives:
// everything the server and the mocks keep goes there. A base before the
// bus, so that the bus (and through it every service it starts) inherits
// them.
class PrivateHome {
 protected:
  PrivateHome() {
    for (auto [name, sub] : kVariables) {
      if (const char* v = std::getenv(name)) saved_[name] = v;
      const std::string value = sub ? home_ + sub : "memory";
      if (sub) fs::create_directories(value);
      setenv(name, value.c_str(), 1);
    }
    fs::permissions(home_ + "/run", fs::perms::owner_all);
  }
  ~PrivateHome() {
    for (auto [name, sub] : kVariables) {
      auto it = saved_.find(name);
      it == saved_.end() ? unsetenv(name) : setenv(name, it->second.c_str(), 1);
    }
    std::error_code ec;
    fs::remove_all(home_, ec);
  }
  // Each variable with its folder under the home (none: GSettings keeps
  // its settings in memory).
  static constexpr std::pair<const char*, const char*> kVariables[] = {
      {"HOME", ""},
      {"XDG_DATA_HOME", "/.local/share"},
      {"XDG_CONFIG_HOME", "/.config"},
      {"XDG_CACHE_HOME", "/.cache"},
      {"XDG_RUNTIME_DIR", "/run"},
      {"GSETTINGS_BACKEND", nullptr}};
  std::string home_ = testing::freshRoot();
  std::map<std::string, std::string> saved_;
};

class CallerdPhoneTest : public PrivateHome, public testing::CallerdFixture {
 protected:
  void SetUp() override {
    ASSERT_EQ(testing::runZorvel("init --root '" + root_ + "'").status, 0);
    CallerdFixture::SetUp();
    bus_.spawn({kPython, "-m", "dbusmock", "--session", kFeedback,
                kFeedbackPath, kFeedback},
               root_ + "/fb.out");
    ASSERT_TRUE(waitUntil([&] { return bus_.hasOwner(kFeedback); }, 15))
        << testing::readFile(root_ + "/fb.out");
    modem_.mock(kFeedbackPath, "AddMethod",
                g_variant_new("(sssss)", kFeedback, "TriggerFeedback",
                              "ssa{sv}i", "u", "ret = dbus.UInt32(1)"),
                kFeedback);
  }

  void addContact(const std::string& name, const std::string& number) {
    const std::string card =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" + name + "\r\nN:" + name +
        ";;;;\r\nTEL;TYPE=CELL:" + number + "\r\nEND:VCARD\r\n";
    const std::string out = root_ + "/add.out";
    pid_t pid = bus_.spawn({kPython, "-c", kAddContact, card}, out);
    ASSERT_TRUE(
        waitUntil([&] { return !testing::PrivateBus::running(pid); }, 30));
    ASSERT_EQ(bus_.end(pid), 0) << testing::readFile(out);
  }
};

TEST_F(CallerdPhoneTest, TheUsersContactsPassAlsoOnesAddedWhileItRuns) {
  addContact("Lei", "13507551234");
  start(Dict{{"EnableBlacklist", true}, {"BlacklistBlockStrangers", true}}, {});
  ASSERT_TRUE(says("Evolution Data Server: 1 added", 20));
  const auto contact = modem_.ring("13507551234");
  ASSERT_TRUE(says(": shown", 2));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(modem_.hangups(contact), 0u) << output();
  modem_.end(contact);
  const auto stranger = modem_.ring("13407551234");
  ASSERT_TRUE(hungUp(stranger, 2));
  modem_.end(stranger);

  // A contact added while callerd runs passes on its next call.
  addContact("Wang", "13607551234");
  ASSERT_TRUE(says(": 1 added", 10, 2));
  const auto added = modem_.ring("13607551234");
  ASSERT_TRUE(says(": shown", 2, 2));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(modem_.hangups(added), 0u) << output();
  // (A list changed with the command counts for the next call: the
  // command's notice is phone_setup_cli_test.cc's, callerd reloading on it
  // callerd_test.cc's.)
}

TEST_F(CallerdPhoneTest, ABlockedCallsReminderReachesFeedbackd) {
  start(Dict{{"EnableBlacklist", true},
             {"BlacklistBlockMode", 2},
             {"BlacklistBlockingRemind", 3}});
  const auto blocked = modem_.ring("13800138000");
  ASSERT_TRUE(hungUp(blocked, 2));
  // After the reminder's second: a vibration and the reminder sound.
  std::vector<std::string> seen;
  ASSERT_TRUE(waitUntil(
      [&] {
        return modem_.calledTimes(kFeedbackPath, "TriggerFeedback",
                                  kFeedback) >= 2;
      },
      4))
      << output();
  // (app_id, event, hints, timeout)
  for (const auto& args :
       modem_.methodCalls(kFeedbackPath, "TriggerFeedback", kFeedback)) {
    const char *profile = "", *sound = "";
    g_variant_lookup(args[2].get(), "profile", "&s", &profile);
    g_variant_lookup(args[2].get(), "sound-file", "&s", &sound);
    seen.push_back(std::string(g_variant_get_string(args[1].get(), nullptr)) +
                   " " + profile + " " + sound);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{
                      "notification-missed-generic quiet ",
                      "notification-missed-generic full " + root_ +
                          "/Library/Zorvel/block.caf"}));
}

}  // namespace
}  // namespace zv
