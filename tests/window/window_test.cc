// zorvel window on Xvfb and a private D-Bus with a mocked ModemManager:
// typed keys show what `zorvel phone --png` draws (status bar masked: its
// clock is the real one), and Return dials the prefixed number.
#include <gtest/gtest.h>

#include <regex>

#include "support/mock_modem.h"
#include "support/private_bus.h"
#include "tools/cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using testing::shellQuoted;
using testing::waitUntil;

// Mary's number as it goes out: the dialling prefix 17951 in front.
constexpr char kDialled[] = "1795113801700000";

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(fs::exists(zorvel_)) << "zorvel is built with the tests";
    testing::writePrefixDiallingPhone(root_);
    startDisplay();
    startModemManager();
  }

  void TearDown() override {
    if (window_ > 0) bus_.end(window_);
    if (xvfb_ > 0) bus_.end(xvfb_);
    for (const char* suffix : {".x.out", ".mm.out", ".window.out"})
      fs::remove(root_ + suffix);
    fs::remove_all(root_);
    // A failed comparison keeps both pictures to look at.
    if (HasFailure()) return;
    fs::remove(root_ + ".shot.png");
    fs::remove_all(pictures_);
  }

  // An X server of the test's own: Xvfb takes a display number nobody
  // uses (tests run side by side) and, once it takes clients, writes it as
  // a line of its own among its messages.
  void startDisplay() {
    xvfb_ = bus_.spawn({"/usr/bin/Xvfb", "-displayfd", "1", "-screen", "0",
                        "1024x1200x24", "-nolisten", "tcp"},
                       root_ + ".x.out");
    ASSERT_TRUE(waitUntil(
        [&] {
          const std::string out = testing::readFile(root_ + ".x.out");
          std::smatch number;
          if (!std::regex_search(out, number, std::regex("(^|\\n)(\\d+)\\n")))
            return false;
          display_ = ":" + number[2].str();
          return true;
        },
        20))
        << "Xvfb did not start: " << testing::readFile(root_ + ".x.out");
    setenv("DISPLAY", display_.c_str(), 1);
    // No accessibility bus for the window on the private bus.
    setenv("GTK_A11Y", "none", 1);
  }

  // One modem whose CreateCall makes the call to the number the test
  // expects.
  void startModemManager() {
    ASSERT_TRUE(bus_.ok()) << "dbus-daemon did not start a private bus";
    modem_.spawn(root_ + ".mm.out");
    ASSERT_TRUE(waitUntil([&] { return bus_.hasOwner(testing::kMM); }, 15))
        << testing::readFile(root_ + ".mm.out");
    modem_.addModem();
    call_ = modem_.expectOutgoingCall(kDialled);
  }

  // The numbers CreateCall was asked for.
  std::vector<std::string> created() {
    std::vector<std::string> numbers;
    const gchar* number = nullptr;
    for (const auto& args : modem_.methodCalls(testing::kModem, "CreateCall"))
      if (g_variant_lookup(args[0].get(), "number", "&s", &number))
        numbers.push_back(number);
    return numbers;
  }

  // Opens the window; returns its X window id.
  std::string open(const std::vector<std::string>& args) {
    std::vector<std::string> argv = {zorvel_, "window",  "--root",   root_,
                                     "--bus", "session", "--screen", "3.5"};
    argv.insert(argv.end(), args.begin(), args.end());
    window_ = bus_.spawn(argv, root_ + ".window.out");
    std::string id;
    waitUntil(
        [&] {
          auto r = testing::runShell(
              "xdotool search --onlyvisible --name '^Phone$' | head -1");
          id = r.out.substr(0, r.out.find('\n'));
          return !id.empty();
        },
        30);
    EXPECT_FALSE(id.empty())
        << "no window: " << testing::readFile(root_ + ".window.out");
    return id;
  }

  // Types `keys` (xdotool key names) into the window.
  void press(const std::string& id, const std::string& keys) {
    auto r = testing::runShell("xdotool windowfocus --sync " + id +
                               " && xdotool key --delay 30 " + keys);
    ASSERT_EQ(r.status, 0) << r.err;
  }

  // What `zorvel phone --png` draws after `actions`, as a PNG path.
  std::string phonePicture(const std::string& actions) {
    auto r = testing::runZorvel("phone --root " + shellQuoted(root_) +
                                " --screen 3.5 --scratch --json --png " +
                                shellQuoted(pictures_) + " " + actions);
    EXPECT_EQ(r.status, 0) << r.err;
    auto steps = testing::jsonLines(r.out);
    return steps.empty() ? "" : steps.back()["picture"].get<std::string>();
  }

  // How many pixels of the window's picture differ from `png`, below the
  // 20-point status bar (40 pixels at the phone's scale 2); -1 when the
  // window could not be captured.
  long differentPixels(const std::string& id, const std::string& png) {
    const std::string shot = root_ + ".shot.png";
    auto grab =
        testing::runShell("import -window " + id + " " + shellQuoted(shot));
    if (grab.status != 0) return -1;
    auto r = testing::runShell("compare -metric AE \\( " + shellQuoted(shot) +
                               " -crop 640x920+0+40 +repage \\) \\( " +
                               shellQuoted(png) +
                               " -crop 640x920+0+40 +repage \\) null: 2>&1");
    try {
      return std::stol(r.out);
    } catch (const std::exception&) {
      return -1;
    }
  }

  // Waits for the window to show what `png` shows (it repaints on its own
  // time); a failure names both pictures and the last difference counted.
  ::testing::AssertionResult settlesTo(const std::string& id,
                                       const std::string& png) {
    long diff = -1;
    if (waitUntil([&] { return (diff = differentPixels(id, png)) == 0; }, 10))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << diff << " pixels differ: " << root_ << ".shot.png against " << png
           << "\n"
           << testing::readFile(root_ + ".window.out");
  }

  std::string zorvel_ = ZV_BINARY_DIR "/zorvel";
  std::string root_ = testing::freshRoot();
  std::string pictures_ = testing::freshRoot();
  std::string display_;
  testing::PrivateBus bus_;
  testing::MockModemManager modem_{bus_};
  std::string call_;
  pid_t xvfb_ = -1, window_ = -1;
};

// (Which key does what is phone_input_test.cc's.)
TEST_F(WindowTest, TypedKeysShowWhatThePhoneSessionDraws) {
  // The picture first: the window's process adds sockets to the device,
  // which a scratch copy does not take.
  const std::string typed = phonePicture("type:93");
  const std::string id = open({});
  ASSERT_FALSE(id.empty());
  press(id, "9 3");
  EXPECT_TRUE(settlesTo(id, typed));
}

// On 7.x, where the in-call screen follows the modem's call.
TEST_F(WindowTest, TelArgumentOpensWithTheNumberAndReturnDialsItPrefixed) {
  const std::string typed = phonePicture("--os 7.1 type:13801700000");
  const std::string calling = phonePicture("--os 7.1 type:13801700000 call");
  const std::string id = open({"--os", "7.1", "tel:138-0170-0000"});
  ASSERT_FALSE(id.empty());
  EXPECT_TRUE(settlesTo(id, typed));
  EXPECT_TRUE(created().empty()) << "a tel: argument only types the number";
  press(id, "Return");
  ASSERT_TRUE(
      waitUntil([&] { return modem_.calledTimes(call_, "Start") == 1; }, 5))
      << testing::readFile(root_ + ".window.out");
  EXPECT_EQ(created(), std::vector<std::string>{kDialled});
  EXPECT_TRUE(settlesTo(id, calling));
}

TEST(WindowCliTest, BadArgumentsAndNoDisplayAreOneLine) {
  testing::expectFailures(
      [](const std::string& args) {
        return testing::runShell("env -u DISPLAY -u WAYLAND_DISPLAY " +
                                 std::string(ZV_BINARY_DIR "/zorvel ") + args);
      },
      {{"window mailto:a@b", 2, "not a tel: URI"},
       {"window tel:12ab", 2, "not a phone number"},
       {"window --scale 9", 2, "--scale"},
       {"window --os 6.0", 2, "unknown system version"},
       {"window tel:10086", 1, "cannot open a display"}});
}

}  // namespace
}  // namespace zv
