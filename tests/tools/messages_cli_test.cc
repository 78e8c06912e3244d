// zorvel messages: a scripted session on a generated device printed as one
// JSON object per action, what it saves on the device, and one-line usage
// errors that run nothing. The screens' own rules are the messages suite's.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "devicegen/device_image.h"

namespace zv {
namespace {

class MessagesCliTest : public testing::ZorvelCliTest {
 protected:
  MessagesCliTest() : ZorvelCliTest("messages") {
    DeviceImageOptions options;
    options.contacts = 60;
    options.calls = 0;
    createDeviceImage(root(), options);
    testing::writeFile(root() + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writePlist(prefs("zorvel.plist"), Dict{{"Enable", true},
                                                    {"EnableAvatar", true},
                                                    {"SMSSelectGroup", true},
                                                    {"MyInfo", 1}});
  }
};

// The fields each screen prints; what the screens show and save is
// tests/hooks/messages_e2e_test.cc's and tests/messages'.
TEST_F(MessagesCliTest, ListConversationAndGroupSession) {
  auto s = session("list open:1 back new to:10086 group save:Team");
  ASSERT_EQ(s.size(), 7u);
  EXPECT_EQ(s[0]["screen"], "list");
  ASSERT_FALSE(s[0]["rows"].empty());
  for (const char* field : {"area", "picture", "summary"})
    EXPECT_TRUE(s[0]["rows"][0][field].is_string()) << field;
  EXPECT_EQ(s[1]["screen"], "conversation");
  EXPECT_FALSE(s[1]["messages"].empty());
  EXPECT_EQ(s[3]["left"], "Group");
  EXPECT_EQ(s[4]["recipients"][0]["address"], "10086");
  EXPECT_EQ(s[6]["sections"][1][0]["text"], "Team");
  auto saved = plist::readDictionary(prefs("zorvel.recipients.plist"));
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->count("Team"), 1u);
}

TEST_F(MessagesCliTest, BadScriptsFailWithOneLineBeforeAnythingRuns) {
  expectUsageErrors({"list frobnicate", "open:0", "open:x", "pick:1",
                     "to:", "list back:2", "--os 6.0 list"});
}

}  // namespace
}  // namespace zv
