// zorvel controlcenter: scripted Control Centre sessions on both system
// generations, printed as one JSON object per action, and bad scripts
// refused with one line before anything runs.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_runner.h"
#include "devicegen/device_image.h"
#include "platform/plist.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using json = nlohmann::json;

class ControlCenterCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    DeviceImageOptions options;
    options.contacts = options.calls = 0;
    createDeviceImage(root_.path(), options);
    ASSERT_TRUE(plist::writeFile(
        root_.path() + "/var/mobile/Library/Preferences/zorvel.plist",
        Value(Dict{{"Enable", true},
                   {"ControlCenterHome", 1},
                   {"ControlCenterMultitasking", 2},
                   {"ControlCenterCellularData", 1}})));
  }

  int run(const std::string& args, std::string& out, std::string& err) {
    auto r = testing::runZorvel("controlcenter --root '" + root_.path() + "' " +
                                args);
    out += r.out;
    err = r.err;
    return r.status;
  }
  std::vector<json> session(const std::string& args) {
    std::string out, err;
    EXPECT_EQ(run("--json " + args, out, err), 0) << err;
    return testing::jsonLines(out);
  }
  static json button(const json& step, const std::string& name) {
    for (const auto& b : step["buttons"])
      if (b["name"] == name) return b;
    return json();
  }

  testing::TempRoot root_;
};

TEST_F(ControlCenterCliTest, SessionsOnBothGenerations) {
  for (const char* os : {"7.1", "8.1"}) {
    SCOPED_TRACE(os);
    auto steps = session(std::string("--os ") + os + " --screen 3.5 open " +
                         "tap:cellular tap:multitasking close tap:home");
    ASSERT_EQ(steps.size(), 5u);
    EXPECT_EQ(steps[0]["action"], "open");
    EXPECT_EQ(steps[0]["open"], true);
    // The 3.5-inch phone gets the Home button with the square.
    EXPECT_EQ(button(steps[0], "clock")["glyph"], "home_normal.png");
    EXPECT_EQ(button(steps[0], "calculator")["glyph"], "(host)");
    EXPECT_EQ(button(steps[0], "bluetooth")["glyph"], "cellular_normal.png");
    EXPECT_EQ(steps[0]["toggle"]["on"], true);
    EXPECT_EQ(steps[0]["effects"], json::array());

    EXPECT_EQ(steps[1]["toggle"]["on"], false);
    EXPECT_EQ(steps[1]["effects"], json::array({"cellular data off"}));
    // Value 2: the calculator stays the calculator.
    EXPECT_EQ(steps[2]["effects"], json::array({"open com.apple.calculator"}));
    EXPECT_EQ(steps[3]["open"], false);
    EXPECT_EQ(steps[4]["effects"], json::array());  // closed: no taps
  }
  auto eight = session("--os 8.1 open");
  EXPECT_EQ(eight[0]["toggle"]["title"], "Cellular");
}

TEST_F(ControlCenterCliTest, TextShowsButtonsToggleAndEffects) {
  std::string out, err;
  ASSERT_EQ(run("--os 7.1 --screen 4 open tap:home", out, err), 0) << err;
  EXPECT_NE(out.find("> tap:home\n"), std::string::npos) << out;
  EXPECT_NE(out.find("  clock: home5s_normal.png, selected "
                     "home5s_selected.png\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("  effects: home press\n"), std::string::npos) << out;
}

TEST_F(ControlCenterCliTest, BadScriptsFailWithOneLineBeforeRunning) {
  for (const char* args : {"open jump", "open tap:torchlight", "open wait:-1",
                           "--screen 6 open", "--os 9.0 open"}) {
    std::string out, err;
    EXPECT_EQ(run(args, out, err), 2) << args;
    EXPECT_EQ(out, "") << args;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1)
        << args << ": " << err;
  }
}

}  // namespace
}  // namespace zv
