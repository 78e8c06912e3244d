// ZVControlCenterController against a fake springboard: what the hosts
// cannot show end to end (tests/hooks/controlcenter_e2e_test.cc): taps
// that are not the replaced buttons', the Home glyph of each model, the
// glyph files read once, and the cellular module it remembers.
#include "controlcenter/control_center_controller.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "control_center_fixture.h"

namespace zv {
namespace {

using testing::glyphFile;

using Actions = std::vector<std::string>;

class QuickLaunchTest : public testing::ControlCenterTest {
 protected:
  // Starts 7.1 with the glyph files and `settings`; a quick-launch section
  // with three fresh buttons.
  rt::Id begin(const Dict& settings) {
    writeGlyphs();
    start(settings, "7.1");
    clock_ = button();
    calculator_ = button();
    camera_ = button();
    rt::Id s = object();
    s->setIvar("_clockButton", rt::Id(clock_));
    s->setIvar("_calculatorButton", rt::Id(calculator_));
    s->setIvar("_cameraButton", rt::Id(camera_));
    return s;
  }
  std::shared_ptr<testing::FakeButton> clock_, calculator_, camera_;
};

TEST_F(QuickLaunchTest, EachButtonRunsItsOwnActionAsA7xPress) {
  rt::Id section = begin({{"ControlCenterHome", 1},
                          {"ControlCenterMultitasking", 1},
                          {"ControlCenterLockScreen", 1}});
  run([&](ZVControlCenterController& c) {
    c.updateCCQuickLaunch(section);
    EXPECT_TRUE(c.actionCCQuickLaunch(section, camera_));
    EXPECT_TRUE(c.actionCCQuickLaunch(section, calculator_));
    EXPECT_TRUE(c.actionCCQuickLaunch(section, clock_));
    EXPECT_EQ(host_->actions,
              (Actions{"lockButtonUpFromSource:1", "switcher", "home"}));
    // Another button of the section, a button that is not a Control Centre
    // button and no button at all go to the host.
    host_->actions.clear();
    EXPECT_FALSE(c.actionCCQuickLaunch(section, button()));
    rt::Id plain = object();
    section->setIvar("_clockButton", plain);
    EXPECT_FALSE(c.actionCCQuickLaunch(section, plain));
    EXPECT_FALSE(c.actionCCQuickLaunch(section, nullptr));
    EXPECT_FALSE(c.actionCCQuickLaunch(nullptr, camera_));
    EXPECT_FALSE(c.actionCCShortcut(module("com.apple.camera"), object()));
    // A section without the buttons, or none, is left alone.
    rt::Id bare = object();
    c.updateCCQuickLaunch(bare);
    EXPECT_FALSE(c.actionCCQuickLaunch(bare, button()));
    c.updateCCQuickLaunch(nullptr);
    EXPECT_TRUE(host_->actions.empty());
  });
}

using ShortcutTest = testing::ControlCenterTest;

TEST_F(ShortcutTest, HomeGlyphFollowsTheModelAndScreen) {
  struct Case {
    const char* hardware;
    platform::Size pixels;
    const char* expected;
  } cases[] = {
      {"iPhone5,2", {640, 1136}, "home_normal"},    // iPhone 5
      {"iPhone4,1", {640, 960}, "home_normal"},     // 3.5-inch iPhone 4S
      {"iPhone3,1", {960, 640}, "home_normal"},     // either orientation
      {"iPhone6,1", {640, 1136}, "home5s_normal"},  // iPhone 5s
      {"iPhone7,2", {750, 1334}, "home5s_normal"},  // iPhone 6
  };
  writeGlyphs();
  for (const Case& k : cases) {
    platform::DeviceFacts facts;
    facts.hardwareModel = k.hardware;
    facts.screenPixels = k.pixels;
    start({{"ControlCenterHome", 1}}, "8.1", facts);
    run([&](ZVControlCenterController& c) {
      EXPECT_EQ(glyphFile(c.glyphImage(module("com.apple.mobiletimer"), 0)),
                k.expected)
          << k.hardware;
    });
    world_.terminate(*process_);
  }
}

TEST_F(ShortcutTest, ImagesAreReadOnceAndMissingOnesGiveNone) {
  // Only the lock pair is installed.
  writeDeviceFile("/Library/Zorvel/lock_normal.png",
                  ui::Image::filled(4, 4, 2, {40, 0, 0, 255}).encodePng());
  writeDeviceFile("/Library/Zorvel/switcher_normal.png", "not a picture");
  start({{"ControlCenterHome", 1},
         {"ControlCenterMultitasking", 1},
         {"ControlCenterLockScreen", 1}});
  run([&](ZVControlCenterController& c) {
    EXPECT_EQ(c.glyphImage(module("com.apple.mobiletimer"), 0), nullptr);
    EXPECT_EQ(c.glyphImage(module("com.apple.calculator"), 0), nullptr);
    auto lock = c.glyphImage(module("com.apple.camera"), 0);
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(lock->scale(), 2);
    // The action does not depend on the image.
    EXPECT_TRUE(c.actionCCShortcut(module("com.apple.mobiletimer"), button()));
    // Files that change later are not read again.
    writeGlyphs();
    EXPECT_EQ(c.glyphImage(module("com.apple.mobiletimer"), 0), nullptr);
    EXPECT_EQ(c.glyphImage(module("com.apple.camera"), 0), lock);
  });
}

using BluetoothAsCellularTest = testing::ControlCenterTest;

TEST_F(BluetoothAsCellularTest, UpdateWithoutAModuleUsesTheOneLastSeen) {
  writeGlyphs();
  start({{"ControlCenterCellularData", 1}})
      .setLocalizedStrings({{"Cellular", "蜂窝数据"}});
  run([&](ZVControlCenterController& c) {
    EXPECT_TRUE(c.bluetoothUpdateState(nullptr));  // none seen: nothing
    auto bluetooth = module("bluetooth");
    EXPECT_EQ(c.bluetoothDisplayName(bluetooth), "蜂窝数据");
    EXPECT_TRUE(c.bluetoothActivate(bluetooth));
    host_->cellular = true;
    EXPECT_TRUE(c.bluetoothUpdateState(nullptr));
    EXPECT_TRUE(bluetooth->enabled);
    EXPECT_TRUE(c.bluetoothDeactivate(bluetooth));
    EXPECT_EQ(c.cellularDataSettingModule(), nullptr);
    host_->cellular = false;
    EXPECT_TRUE(c.bluetoothUpdateState(nullptr));
    EXPECT_TRUE(bluetooth->enabled);  // forgotten: not updated
    // The reference is not owned: a module the host dropped is gone.
    {
      auto shortLived = module("bluetooth");
      c.bluetoothActivate(shortLived);
    }
    EXPECT_EQ(c.cellularDataSettingModule(), nullptr);
    EXPECT_TRUE(c.bluetoothUpdateState(nullptr));
  });
}

}  // namespace
}  // namespace zv
