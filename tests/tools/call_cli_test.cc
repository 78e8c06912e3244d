// zorvel call: a scripted session on the simulated call screens, printed
// as one JSON object per action, and one-line usage errors that leave the
// device untouched.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_runner.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class CallCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::writeFile(root_ + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writeFile(root_ + "/Library/Zorvel/block.caf", "caff");
    const std::string prefs = root_ + "/var/mobile/Library/Preferences/";
    testing::writePlist(prefs + "zorvel.plist",
                        Dict{{"EnableBlacklist", true},
                             {"BlacklistBlockMode", 0},
                             {"BlacklistBlockingRemind", 3},
                             {"BlacklistBlockArea", "深圳"}});
    testing::writePlist(prefs + "zorvel.black.plist",
                        Dict{{"10010", Value(true)}});
  }
  void TearDown() override { fs::remove_all(root_); }

  int run(const std::string& args, std::string& out, std::string& err,
          const std::string& subcommand = "call") {
    auto r = testing::runZorvel(subcommand + " " + args);
    out += r.out;
    err = r.err;
    return r.status;
  }
  std::vector<json> session(const std::string& args) {
    std::string out, err;
    EXPECT_EQ(run("--root '" + root_ + "' --json " + args, out, err), 0) << err;
    return testing::jsonLines(out);
  }
  // Every file under the root with its bytes.
  std::map<std::string, std::string> snapshot() {
    std::map<std::string, std::string> files;
    for (const auto& e : fs::recursive_directory_iterator(root_))
      if (e.is_regular_file())
        files[e.path().string()] = testing::readFile(e.path().string());
    return files;
  }

  std::string root_ = testing::freshRoot();
};

TEST_F(CallCliTest, BlockedCallsAreHungUpAndRemindedOnBothGenerations) {
  for (const char* os : {"7.1", "8.1"}) {
    SCOPED_TRACE(os);
    auto steps = session(std::string("--os ") + os +
                         " incoming:10010 wait:1 incoming:13912345678");
    ASSERT_EQ(steps.size(), 3u);
    const json& first = steps[0];
    EXPECT_EQ(first["action"], "incoming:10010");
    ASSERT_EQ(first["calls"].size(), 1u);
    EXPECT_EQ(first["calls"][0]["number"], "10010");
    EXPECT_EQ(first["calls"][0]["status"], "ended");
    EXPECT_EQ(first["calls"][0]["blocked"], true);
    EXPECT_EQ(first["calls"][0]["ringtone"], false);
    EXPECT_TRUE(first["screen"].is_null());
    ASSERT_FALSE(first["effects"].empty());
    EXPECT_EQ(first["effects"][0],
              (json{{"type", "disconnect"}, {"number", "10010"}}));
    // One second later: the vibration and the reminder sound.
    const json& effects = steps[1]["effects"];
    ASSERT_EQ(effects.size(), 2u) << effects.dump();
    EXPECT_EQ(effects[0], (json{{"type", "sound"}, {"id", 4095}}));
    EXPECT_EQ(effects[1]["file"], "/Library/Zorvel/block.caf");
    // A caller from elsewhere rings with its screen up.
    const json& last = steps[2]["calls"].back();
    EXPECT_EQ(last["status"], "ringing");
    EXPECT_EQ(last["blocked"], false);
    EXPECT_EQ(last["ringtone"], true);
    EXPECT_EQ(steps[2]["screen"]["name"], "13912345678");
  }
}

// On 8.x the in-call service measures the ring and the springboard beside
// it shows the banner; the saved ring time is on the device root for the
// next command's Recents.
TEST_F(CallCliTest, MissedCallRingTimeOnEightReachesBannerAndNextCommand) {
  testing::writePlist(root_ + "/var/mobile/Library/Preferences/zorvel.plist",
                      Dict{{"CallHistoryRingDuration", true},
                           {"AreaStyleIncomingCall", 1},
                           {"IncomingCallDeclineButton", true},
                           {"CarrierName", "Zorvel"}});
  auto steps = session("--os 8.1 lock incoming:13912345678 wait:12 hangup");
  ASSERT_EQ(steps.size(), 4u);
  EXPECT_EQ(steps[0]["carrier"], "Zorvel");
  const json& ringing = steps[1]["screen"];
  EXPECT_EQ(ringing["label"], "incoming call");
  EXPECT_EQ(ringing["info"], json::array({"江苏省常州市"}));
  EXPECT_EQ(ringing["declineButton"], true);
  const json& effects = steps[3]["effects"];
  ASSERT_EQ(effects.size(), 2u) << effects.dump();
  EXPECT_EQ(effects[0], (json{{"type", "bulletin"},
                              {"title", "13912345678  江苏省常州市 (12sec)"}}));
  EXPECT_EQ(effects[1]["type"], "ringDuration");
  EXPECT_EQ(effects[1]["seconds"], 12);

  std::string out, err;
  ASSERT_EQ(
      run("--root '" + root_ + "' --os 8.1 tab:recents", out, err, "phone"), 0)
      << err;
  EXPECT_NE(out.find("13912345678 | 江苏省常州市 (12sec)"), std::string::npos)
      << out;
}

TEST_F(CallCliTest, HiddenCallerAndUserActions) {
  auto steps = session(
      "incoming: answer hold resume end outgoing:10086 "
      "connect hangup answer");
  ASSERT_EQ(steps.size(), 9u);
  EXPECT_TRUE(steps[0]["calls"][0]["number"].is_null());
  EXPECT_EQ(steps[1]["calls"][0]["status"], "active");
  EXPECT_EQ(steps[2]["calls"][0]["status"], "held");
  EXPECT_EQ(steps[3]["calls"][0]["status"], "active");
  EXPECT_EQ(steps[4]["calls"][0]["status"], "ended");
  EXPECT_EQ(steps[5]["calls"][1]["status"], "dialling");
  EXPECT_EQ(steps[6]["calls"][1]["status"], "active");
  EXPECT_EQ(steps[7]["calls"][1]["status"], "ended");
  EXPECT_FALSE(steps[7].contains("note"));
  EXPECT_EQ(steps[8]["note"], "no ringing call to answer");
}

TEST_F(CallCliTest, BadActionsOrRootAreOneLineAndWriteNothing) {
  auto before = snapshot();
  const std::string root = "--root '" + root_ + "' ";
  for (const std::string& args :
       {root + "incoming:10010 bogus", root + "incoming:1:contact=x",
        root + "incoming:1:platform-blocked:platform-blocked", root + "wait:-1",
        root + "wait:soon", root + "notify:", root + "outgoing:",
        root + "message:", root + "--os 9.0 answer", root + "--screen 6 answer",
        // CLI11's own parse errors: an unknown option, no actions at all, an
        // option without its value.
        root + "--bogus answer", root, root + "answer --os",
        std::string("--root '") + root_ + "/none' incoming:10010"}) {
    SCOPED_TRACE(args);
    std::string out, err;
    EXPECT_EQ(run(args, out, err), 2);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
  }
  EXPECT_EQ(snapshot(), before);
}

}  // namespace
}  // namespace zv
