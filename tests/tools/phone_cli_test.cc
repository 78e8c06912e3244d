// zorvel phone: a scripted keypad session printed as one JSON object per
// action, one-line errors for bad scripts, and --scratch leaving the device
// as it was.
#include <gtest/gtest.h>

#include "cli_runner.h"

namespace zv {
namespace {

class PhoneCliTest : public testing::ZorvelCliTest {
 protected:
  PhoneCliTest() : ZorvelCliTest("phone") {
    testing::writePrefixDiallingPhone(root());
  }
};

TEST_F(PhoneCliTest, JsonSessionShowsTheMatchMenuAndWhatWasDialled) {
  auto steps = session("type:65 list menu menu:1 call");
  ASSERT_EQ(steps.size(), 5u);
  EXPECT_EQ(steps[0]["action"], "type:65");
  const auto& current = steps[0]["pager"]["current"];
  EXPECT_EQ(current["number"]["text"], "13801700000");
  EXPECT_NE(current["name"]["marked"].get<std::string>().find('['),
            std::string::npos);
  EXPECT_EQ(steps[0]["counter"], "1/2");
  EXPECT_EQ(steps[1]["list"].size(), 2u);
  // Menu buttons count from one; pressing one closes the menu.
  ASSERT_TRUE(steps[2].contains("menu")) << steps[2].dump();
  EXPECT_TRUE(!steps[3].contains("menu") || steps[3]["menu"].is_null())
      << steps[3].dump();
  EXPECT_EQ(steps[4]["dialled"], nlohmann::json::array({"1795113801700000"}));
  EXPECT_NE(run("type:65 menu menu:9").status, 0);
}

// The in-call screen's fields on 7.x (what its label shows is
// tests/hooks/incall_e2e_test.cc's).
TEST_F(PhoneCliTest, OutgoingCallOnSevenPrintsTheInCallScreen) {
  auto steps = session("--os 7.1 --screen 4 type:13801700000 call end");
  ASSERT_EQ(steps.size(), 3u);
  EXPECT_FALSE(steps[0].contains("inCall"));
  EXPECT_EQ(steps[1]["inCall"]["number"], "1795113801700000");
  EXPECT_EQ(steps[1]["inCall"]["label"], "calling…  上海市");
  EXPECT_FALSE(steps[2].contains("inCall"));
}

TEST_F(PhoneCliTest, BadScriptsFailWithOneLineBeforeAnyActionRuns) {
  // Mistakes in the script are usage errors: nothing runs, exit 2.
  expectUsageErrors({"jump", "--screen 6 type:1", "type:12a",
                     "call tab:nowhere", "type:65 call menu:0",
                     "call select:x"});
  // (What the screen did not offer: rows of area_cli_test.cc's conventions.)
}

TEST_F(PhoneCliTest, ScratchLeavesTheDeviceAsItWas) {
  const auto before = testing::fileSnapshot(root());
  ASSERT_EQ(run("--scratch type:65 call wait:3").status, 0);
  EXPECT_EQ(testing::fileSnapshot(root()), before);
  // Without it, the session is the phone's own: its cache is written.
  ASSERT_EQ(run("type:65").status, 0);
  EXPECT_NE(testing::fileSnapshot(root()), before);
}

}  // namespace
}  // namespace zv
