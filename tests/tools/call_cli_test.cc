// zorvel call: a scripted session on the simulated call screens, printed
// as one JSON object per action, its pictures read back with OCR, and
// one-line usage errors that leave the device untouched.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>

#include "cli_runner.h"

namespace zv {
namespace {

using nlohmann::json;

class CallCliTest : public testing::ZorvelCliTest {
 protected:
  CallCliTest() : ZorvelCliTest("call") {
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
};

// How the session prints calls, screens and effects (the blocking rules
// and the reminder are tests/hooks/blocking_e2e_test.cc's).
TEST_F(CallCliTest, BlockedCallsAndTheirReminderArePrinted) {
  auto steps = session("incoming:10010 wait:1 incoming:13912345678");
  ASSERT_EQ(steps.size(), 3u);
  const std::string blocked =
      R"("calls":[{"number":"10010","direction":"incoming","status":"ended",)"
      R"("blocked":true,"ringtone":false}],"screen":null,"carrier":"中国移动",)";
  EXPECT_EQ(steps[0], json::parse(R"({"action":"incoming:10010",)" + blocked +
                                  R"("effects":[{"type":"disconnect",)"
                                  R"("number":"10010"},{"type":"bulletin",)"
                                  R"("title":"10010  中国联通客服"}]})"));
  EXPECT_EQ(steps[1], json::parse(R"({"action":"wait:1",)" + blocked +
                                  R"("effects":[{"type":"sound","id":4095},)"
                                  R"({"type":"sound","id":4096,)"
                                  R"("file":"/Library/Zorvel/block.caf"}]})"));
  EXPECT_EQ(steps[2]["calls"].back()["ringtone"], true);
  EXPECT_EQ(steps[2]["screen"]["name"], "13912345678");
}

// The call-screen pictures read back as a person would, with OCR: a
// ringing call offers its answer controls, an answered one none, a blocked
// call no call screen at all; on both generations. (Which controls each
// state has, over the lock screen too, is tests/hooks' and
// tests/callscreens'.)
TEST_F(CallCliTest, CallScreenPicturesReadBackByOcrShowOnlyWhatIsTrue) {
  testing::TempRoot pictures;
  // Which of the caller's number, the blocked number and the answer
  // buttons' words tesseract reads in the picture after each action.
  auto read = [&](const std::string& os, const std::string& actions) {
    const std::string dir = pictures.path() + "/" + os;
    auto r = run("--os " + os + " --screen 4.7 --json --png '" + dir + "' " +
                 actions);
    EXPECT_EQ(r.status, 0) << r.err;
    std::vector<std::string> seen;
    for (const auto& step : testing::jsonLines(r.out)) {
      auto ocr =
          testing::runShell("tesseract '" + step["picture"].get<std::string>() +
                            "' stdout 2>/dev/null");
      EXPECT_EQ(ocr.status, 0);
      for (char& c : ocr.out) c = static_cast<char>(std::tolower(c));
      std::string words;
      for (const char* word : {"13912345678", "10010", "answer", "decline"})
        if (ocr.out.find(word) != std::string::npos)
          words += (words.empty() ? "" : " ") + std::string(word);
      seen.push_back(words);
    }
    return seen;
  };
  // Ringing: the caller with both buttons. Answered: nothing offers to
  // answer any more. The blocked caller never shows (the first picture
  // proves the reading finds numbers and controls when they show).
  using ::testing::AnyOf;
  for (const char* os : {"7.1", "8.1"})
    EXPECT_THAT(
        read(os, "incoming:13912345678 answer hangup incoming:10010"),
        ::testing::ElementsAre("13912345678 answer decline",
                               AnyOf("", "13912345678"), ::testing::_, ""))
        << os;
}

// On 8.x the in-call service measures the ring and the springboard beside
// it shows the banner (tests/hooks/caller_info_e2e_test.cc); here the
// effects are printed and the saved ring time is on the device root for
// the next command's Recents.
TEST_F(CallCliTest, MissedCallRingTimeOnEightReachesTheNextCommand) {
  testing::writePlist(prefs("zorvel.plist"),
                      Dict{{"CallHistoryRingDuration", true}});
  auto steps = session("--os 8.1 lock incoming:13912345678 wait:12 hangup");
  ASSERT_EQ(steps.size(), 4u);
  const json& effects = steps[3]["effects"];
  ASSERT_EQ(effects.size(), 2u) << effects.dump();
  EXPECT_EQ(effects[0], (json{{"type", "bulletin"},
                              {"title", "13912345678  江苏省常州市 (12sec)"}}));
  EXPECT_EQ(effects[1]["type"], "ringDuration");
  EXPECT_EQ(effects[1]["seconds"], 12);
  auto recents =
      testing::runZorvel("phone --root '" + root() + "' --os 8.1 tab:recents");
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
  std::vector<std::string> statuses;  // of the newest call after each step
  for (int i = 1; i <= 7; ++i)
    statuses.push_back(steps[i]["calls"].back()["status"]);
  EXPECT_EQ(statuses,
            (std::vector<std::string>{"active", "held", "active", "ended",
                                      "dialling", "active", "ended"}));
  EXPECT_EQ(steps[5]["calls"].size(), 2u);
  EXPECT_FALSE(steps[7].contains("note"));
  EXPECT_EQ(steps[8]["note"], "no ringing call to answer");
}

TEST_F(CallCliTest, BytesThatAreNotUtf8AreWrittenAsJsonAnyway) {
  auto r = run("--json \"$(printf 'incoming:\\377138')\" answer");
  ASSERT_EQ(r.status, 0) << r.err;
  auto steps = testing::jsonLines(r.out);
  ASSERT_EQ(steps.size(), 2u);
  EXPECT_EQ(steps[0]["action"], "incoming:\uFFFD138");
  EXPECT_EQ(steps[0]["action_bytes"], "incoming:\\xFF138");
  EXPECT_EQ(steps[0]["calls"][0]["number"], "\uFFFD138");
  EXPECT_FALSE(steps[1].contains("action_bytes"));
}

TEST_F(CallCliTest, BadActionsOrRootAreOneLineAndWriteNothing) {
  const auto before = testing::fileSnapshot(root());
  expectUsageErrors({"incoming:10010 bogus", "incoming:1:contact=x",
                     "incoming:1:platform-blocked:platform-blocked", "wait:-1",
                     "wait:soon", "notify:", "outgoing:", "message:",
                     "--os 9.0 answer", "--screen 6 answer",
                     // CLI11's own parse errors: an unknown option, no
                     // actions at all, an option without its value.
                     "--bogus answer", "", "answer --os"});
  EXPECT_EQ(testing::fileSnapshot(root()), before);
  // A call the device cannot record (a folder where its call history
  // belongs) fails the command, with the reason on stderr. (A missing
  // device: area_cli_test.cc's table.)
  std::filesystem::create_directories(
      root() + "/var/mobile/Library/CallHistoryDB/CallHistory.storedata");
  auto r = testing::runZorvel("call --root '" + root() +
                              "' --os 8.1 incoming:10086 decline");
  EXPECT_EQ(r.status, 1);
  ASSERT_EQ(r.errLines(), 1u) << r.err;
  EXPECT_NE(r.err.find("call history not written"), std::string::npos);
}

}  // namespace
}  // namespace zv
