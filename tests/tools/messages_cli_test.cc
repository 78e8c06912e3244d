// zorvel messages: a scripted session on a generated device printed as one
// JSON object per action, and one-line usage errors that run nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_runner.h"
#include "devicegen/device_image.h"
#include "platform/plist.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class MessagesCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    DeviceImageOptions options;
    options.contacts = 60;
    options.calls = 0;
    createDeviceImage(root_.path(), options);
    testing::writeFile(root_.path() + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    ASSERT_TRUE(plist::writeFile(
        root_.path() + "/var/mobile/Library/Preferences/zorvel.plist",
        Value(Dict{{"Enable", true},
                   {"EnableAvatar", true},
                   {"SMSSelectGroup", true},
                   {"MyInfo", 1}})));
  }

  int run(const std::string& args, std::string& out, std::string& err) {
    auto r =
        testing::runZorvel("messages --root '" + root_.path() + "' " + args);
    out += r.out;
    err = r.err;
    return r.status;
  }

  testing::TempRoot root_;
};

TEST_F(MessagesCliTest, ListConversationAndGroupSession) {
  std::string out, err;
  ASSERT_EQ(run("--json list open:1 back new to:10086 group pick:1:2 check:1 "
                "done group save:Team",
                out, err),
            0)
      << err;
  auto s = testing::jsonLines(out);
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
  EXPECT_EQ(s[3]["screen"], "composer");
  EXPECT_EQ(s[3]["left"], "Group");
  EXPECT_EQ(s[4]["recipients"][0]["address"], "10086");
  EXPECT_EQ(s[5]["screen"], "group");
  EXPECT_EQ(s[5]["sections"][2][0]["text"], "Save Recipients  (1)");
  EXPECT_EQ(s[6]["screen"], "checklist");
  EXPECT_EQ(s[7]["rows"][0]["checked"], true);
  // Done: the composer holds the checked number instead of 10086.
  EXPECT_EQ(s[8]["screen"], "composer");
  ASSERT_EQ(s[8]["recipients"].size(), 1u);
  EXPECT_NE(s[8]["recipients"][0]["address"], "10086");
  EXPECT_EQ(s[10]["sections"][1][0]["text"], "Team");
  auto saved = plist::readDictionary(
      root_.path() + "/var/mobile/Library/Preferences/zorvel.recipients.plist");
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->count("Team"), 1u);
}

TEST_F(MessagesCliTest, BadScriptsFailWithOneLineBeforeAnythingRuns) {
  for (const char* args : {"list frobnicate", "open:0", "open:x", "pick:1",
                           "to:", "list back:2"}) {
    SCOPED_TRACE(args);
    std::string out, err;
    EXPECT_EQ(run(args, out, err), 2);
    EXPECT_EQ(out, "");
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
  }
  std::string out, err;
  EXPECT_EQ(run("--os 6.0 list", out, err), 2);
  // A well-formed action that does not fit the screen stops the session.
  EXPECT_EQ(run("group", out, err), 1);
  EXPECT_NE(err.find("no composer"), std::string::npos);
}

}  // namespace
}  // namespace zv
