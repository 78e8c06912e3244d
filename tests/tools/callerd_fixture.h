// The callerd suites' fixture: a private D-Bus with python3-dbusmock
// standing for ModemManager (its modem added, its method calls logged one
// a line to ROOT.mm.log) and for the desktop's notification daemon, a
// device root, and `zorvel callerd --echo` started on them with its output
// read back. The test plays the network through modem_.
#pragma once

#include "cli_runner.h"
#include "support/mock_modem.h"
#include "support/private_bus.h"

namespace zv::testing {

inline constexpr char kNotes[] = "org.freedesktop.Notifications";

class CallerdFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(bus_.ok()) << "dbus-daemon did not start a private bus";
    mm_ = modem_.spawn(root_ + ".mm.out", root_ + ".mm.log");
    modem_.spawnTemplate("notification_daemon", root_ + ".notes.out");
    ASSERT_TRUE(waitUntil(
        [&] { return bus_.hasOwner(kMM) && bus_.hasOwner(kNotes); }, 15))
        << "python3-dbusmock did not come up: " << readFile(root_ + ".mm.out");
    modem_.addModem();
  }
  void TearDown() override {
    if (callerd_ > 0) bus_.end(callerd_);
    std::error_code ec;
    for (const char* suffix :
         {".mm.out", ".mm.log", ".notes.out", ".callerd.out"})
      std::filesystem::remove(root_ + suffix, ec);
    std::filesystem::remove_all(root_, ec);
  }

  std::string prefs(const std::string& name) const {
    return root_ + "/var/mobile/Library/Preferences/" + name;
  }
  // Writes `settings` as zorvel.plist and starts callerd with `extra`
  // options; it must say it started.
  void start(const Dict& settings,
             const std::vector<std::string>& extra = {"--no-contacts"}) {
    writePlist(prefs("zorvel.plist"), settings);
    std::vector<std::string> argv = {zorvelBinary(), "callerd", "--root", root_,
                                     "--bus",        "session", "--echo"};
    argv.insert(argv.end(), extra.begin(), extra.end());
    callerd_ = bus_.spawn(argv, root_ + ".callerd.out");
    ASSERT_TRUE(says("in-call service started", 10));
  }
  std::string output() { return readFile(root_ + ".callerd.out"); }
  bool said(const std::string& text) {
    return output().find(text) != std::string::npos;
  }
  size_t count(const std::string& text) { return occurrences(output(), text); }
  // Waits up to `seconds` for callerd to have said `text` `times` times;
  // a failure shows all it said.
  ::testing::AssertionResult says(const std::string& text, double seconds = 2,
                                  size_t times = 1) {
    if (waitUntil([&] { return count(text) >= times; }, seconds))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "callerd did not say \"" << text << "\":\n"
           << output();
  }
  // Waits up to `seconds` for ModemManager to be asked to hang `call` up.
  ::testing::AssertionResult hungUp(const std::string& call,
                                    double seconds = 2) {
    if (waitUntil([&] { return modem_.hangups(call) == 1; }, seconds))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << call << " was not hung up:\n"
                                         << output();
  }

  std::string root_ = freshRoot();
  PrivateBus bus_;
  MockModemManager modem_{bus_};
  pid_t callerd_ = -1, mm_ = -1;
};

}  // namespace zv::testing
