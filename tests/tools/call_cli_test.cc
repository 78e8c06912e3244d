// zorvel call: a scripted session on the simulated call screens, printed
// as one JSON object per action, and one-line usage errors that leave the
// device untouched.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_runner.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using nlohmann::json;

class CallCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::writeFile(root() + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writeFile(root() + "/Library/Zorvel/block.caf", "caff");
    testing::writePlist(prefs("zorvel.plist"),
                        Dict{{"EnableBlacklist", true},
                             {"BlacklistBlockMode", 0},
                             {"BlacklistBlockingRemind", 3},
                             {"BlacklistBlockArea", "深圳"}});
    testing::writePlist(prefs("zorvel.black.plist"),
                        Dict{{"10010", Value(true)}});
  }
  const std::string& root() const { return root_.path(); }
  std::string prefs(const std::string& name) const {
    return root() + "/var/mobile/Library/Preferences/" + name;
  }
  testing::CliResult run(const std::string& args,
                         const std::string& command = "call") {
    return testing::runZorvel(command + " --root '" + root() + "' " + args);
  }
  std::vector<json> session(const std::string& args) {
    auto r = run("--json " + args);
    EXPECT_EQ(r.status, 0) << r.err;
    return testing::jsonLines(r.out);
  }

  testing::TempRoot root_;
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
  testing::writePlist(prefs("zorvel.plist"),
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

  auto recents = run("--os 8.1 tab:recents", "phone");
  ASSERT_EQ(recents.status, 0) << recents.err;
  EXPECT_NE(recents.out.find("13912345678 | 江苏省常州市 (12sec)"),
            std::string::npos)
      << recents.out;
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
  const auto before = testing::fileSnapshot(root());
  for (const char* args : {"incoming:10010 bogus", "incoming:1:contact=x",
                           "incoming:1:platform-blocked:platform-blocked",
                           "wait:-1", "wait:soon", "notify:", "outgoing:",
                           "message:", "--os 9.0 answer", "--screen 6 answer",
                           // CLI11's own parse errors: an unknown option, no
                           // actions at all, an option without its value.
                           "--bogus answer", "", "answer --os"}) {
    SCOPED_TRACE(args);
    auto r = run(args);
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.out.empty());
    EXPECT_EQ(r.errLines(), 1u) << r.err;
  }
  // A missing device is not a usage error: exit 1, as every command.
  auto r = testing::runZorvel("call --root '" + root() + "/none' incoming:1");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.errLines(), 1u) << r.err;
  EXPECT_EQ(testing::fileSnapshot(root()), before);
}

}  // namespace
}  // namespace zv
