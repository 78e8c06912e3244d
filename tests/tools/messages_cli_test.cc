// zorvel messages: a scripted session on a generated device printed as one
// JSON object per action, what it saves on the device, and one-line usage
// errors that run nothing. The screens' own rules are the messages suite's.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "devicegen/device_image.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

class MessagesCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    DeviceImageOptions options;
    options.contacts = 60;
    options.calls = 0;
    createDeviceImage(root_.path(), options);
    testing::writeFile(root_.path() + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writePlist(prefs("zorvel.plist"), Dict{{"Enable", true},
                                                    {"EnableAvatar", true},
                                                    {"SMSSelectGroup", true},
                                                    {"MyInfo", 1}});
  }
  std::string prefs(const std::string& name) const {
    return root_.path() + "/var/mobile/Library/Preferences/" + name;
  }
  testing::CliResult run(const std::string& args) {
    return testing::runZorvel("messages --root '" + root_.path() + "' " + args);
  }

  testing::TempRoot root_;
};

TEST_F(MessagesCliTest, ListConversationAndGroupSession) {
  auto r =
      run("--json list open:1 back new to:10086 group pick:1:2 check:1 done "
          "group save:Team");
  ASSERT_EQ(r.status, 0) << r.err;
  auto s = testing::jsonLines(r.out);
  ASSERT_EQ(s.size(), 11u);
  EXPECT_EQ(s[0]["screen"], "list");
  ASSERT_GE(s[0]["rows"].size(), 8u);
  bool someArea = false, somePicture = false;
  for (const auto& row : s[0]["rows"]) {
    someArea |= !row["area"].get<std::string>().empty();
    somePicture |= row["picture"].get<std::string>().rfind("contact ", 0) == 0;
    EXPECT_FALSE(row["summary"].get<std::string>().empty());
  }
  EXPECT_TRUE(someArea);
  EXPECT_TRUE(somePicture);
  EXPECT_EQ(s[1]["screen"], "conversation");
  EXPECT_FALSE(s[1]["messages"].empty());
  EXPECT_EQ(s[3]["left"], "Group");
  EXPECT_EQ(s[4]["recipients"][0]["address"], "10086");
  EXPECT_EQ(s[5]["sections"][2][0]["text"], "Save Recipients  (1)");
  EXPECT_EQ(s[7]["rows"][0]["checked"], true);
  // Done: the composer holds the checked number instead of 10086.
  ASSERT_EQ(s[8]["recipients"].size(), 1u);
  EXPECT_NE(s[8]["recipients"][0]["address"], "10086");
  EXPECT_EQ(s[10]["sections"][1][0]["text"], "Team");
  auto saved = plist::readDictionary(prefs("zorvel.recipients.plist"));
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->count("Team"), 1u);
}

TEST_F(MessagesCliTest, BadScriptsFailWithOneLineBeforeAnythingRuns) {
  for (const char* args : {"list frobnicate", "open:0", "open:x", "pick:1",
                           "to:", "list back:2", "--os 6.0 list"}) {
    SCOPED_TRACE(args);
    auto r = run(args);
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.errLines(), 1u) << r.err;
  }
  // A well-formed action that does not fit the screen stops the session.
  auto r = run("group");
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("no composer"), std::string::npos);
}

}  // namespace
}  // namespace zv
