// zorvel controlcenter: scripted Control Centre sessions on both system
// generations, printed as one JSON object per action or as text, and bad
// scripts refused with one line before anything runs. What the buttons do
// is the hooks suite's; here is what the program prints of it.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "devicegen/device_image.h"

namespace zv {
namespace {

using json = nlohmann::json;

class ControlCenterCliTest : public testing::ZorvelCliTest {
 protected:
  ControlCenterCliTest() : ZorvelCliTest("controlcenter") {
    DeviceImageOptions options;
    options.contacts = options.calls = 0;
    createDeviceImage(root(), options);
    testing::writePlist(prefs("zorvel.plist"),
                        Dict{{"Enable", true},
                             {"ControlCenterHome", 1},
                             {"ControlCenterMultitasking", 2},
                             {"ControlCenterCellularData", 1}});
  }
  static json button(const json& step, const std::string& name) {
    for (const auto& b : step["buttons"])
      if (b["name"] == name) return b;
    return json();
  }
};

TEST_F(ControlCenterCliTest, JsonSession) {
  auto steps = session(
      "--os 8.1 --screen 3.5 open tap:cellular tap:multitasking close "
      "tap:home");
  ASSERT_EQ(steps.size(), 5u);
  EXPECT_EQ(steps[0]["action"], "open");
  EXPECT_EQ(steps[0]["open"], true);
  EXPECT_EQ(button(steps[0], "clock")["glyph"], "home_normal.png");
  EXPECT_EQ(button(steps[0], "calculator")["glyph"], "(host)");
  EXPECT_EQ(steps[0]["toggle"], (json{{"on", true}, {"title", "Cellular"}}));
  EXPECT_EQ(steps[0]["effects"], json::array());
  EXPECT_EQ(steps[1]["effects"], json::array({"cellular data off"}));
  EXPECT_EQ(steps[2]["effects"], json::array({"open com.apple.calculator"}));
  EXPECT_EQ(steps[3]["open"], false);
  EXPECT_EQ(steps[4]["effects"], json::array());  // closed: no taps
}

TEST_F(ControlCenterCliTest, TextShowsButtonsAndEffects) {
  auto r = run("--os 7.1 --screen 4 open tap:home");
  ASSERT_EQ(r.status, 0) << r.err;
  for (const char* line :
       {"> tap:home\n",
        "  clock: home5s_normal.png, selected home5s_selected.png\n",
        "  effects: home press\n"})
    EXPECT_NE(r.out.find(line), std::string::npos) << line << r.out;
}

TEST_F(ControlCenterCliTest, BadScriptsFailWithOneLineBeforeRunning) {
  expectUsageErrors({"open jump", "open tap:torchlight", "open wait:-1",
                     "--screen 6 open", "--os 9.0 open"});
}

}  // namespace
}  // namespace zv
