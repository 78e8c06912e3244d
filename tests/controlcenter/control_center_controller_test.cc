// ZVControlCenterController against a fake springboard: which buttons each
// setting value replaces, what their taps do, the cellular toggle on both
// system generations, and the glyph files it reads.
#include "controlcenter/control_center_controller.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "control_center_fixture.h"

namespace zv {
namespace {

using testing::glyphTag;
using testing::tagOf;

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

TEST_F(QuickLaunchTest, OnlyTheValueOneReplacesAButton) {
  rt::Id section =
      begin({{"ControlCenterHome", 1}, {"ControlCenterMultitasking", 2}});
  run([&](ZVControlCenterController& c) {
    c.updateCCQuickLaunch(section);
    // iPhone 6 hardware: the ring-only Home glyph.
    EXPECT_EQ(glyphTag(clock_->normal), tagOf("home5s_normal"));
    EXPECT_EQ(glyphTag(clock_->source), tagOf("home5s_normal"));
    EXPECT_EQ(glyphTag(clock_->selected), tagOf("home5s_selected"));
    EXPECT_FALSE(clock_->isSelected);
    EXPECT_EQ(calculator_->glyphSets, 0);
    EXPECT_TRUE(calculator_->isSelected);
    EXPECT_EQ(camera_->glyphSets, 0);

    EXPECT_FALSE(c.actionCCQuickLaunch(section, calculator_));
    EXPECT_FALSE(c.actionCCQuickLaunch(section, camera_));
    EXPECT_TRUE(host_->actions.empty());
    clock_->isSelected = true;
    EXPECT_TRUE(c.actionCCQuickLaunch(section, clock_));
    EXPECT_FALSE(clock_->isSelected);
    EXPECT_EQ(host_->actions, Actions{"home"});
  });
}

TEST_F(QuickLaunchTest, EachButtonRunsItsOwnActionAsA7xPress) {
  rt::Id section = begin({{"ControlCenterHome", 1},
                          {"ControlCenterMultitasking", 1},
                          {"ControlCenterLockScreen", 1}});
  run([&](ZVControlCenterController& c) {
    c.updateCCQuickLaunch(section);
    EXPECT_EQ(glyphTag(calculator_->normal), tagOf("switcher_normal"));
    EXPECT_EQ(glyphTag(calculator_->selected), tagOf("switcher_selected"));
    EXPECT_EQ(glyphTag(camera_->normal), tagOf("lock_normal"));
    EXPECT_EQ(glyphTag(camera_->selected), tagOf("lock_selected"));
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
    // A section without the buttons, or none, is left alone.
    rt::Id bare = object();
    c.updateCCQuickLaunch(bare);
    EXPECT_FALSE(c.actionCCQuickLaunch(bare, button()));
    c.updateCCQuickLaunch(nullptr);
    EXPECT_TRUE(host_->actions.empty());
  });
}

class CellularSettingsTest : public testing::ControlCenterTest {
 protected:
  rt::Id settingsSection(const rt::Id& bluetooth, const rt::Id& wifi) {
    rt::Id s = object();
    s->setIvar("_buttonsByID", std::map<std::string, rt::Id>{
                                   {"bluetooth", bluetooth}, {"wifi", wifi}});
    return s;
  }
};

TEST_F(CellularSettingsTest, TogglingTwiceReturnsToTheFirstState) {
  writeGlyphs();
  start({{"ControlCenterCellularData", 1}}, "7.1");
  auto bluetooth = button("bluetooth");
  auto wifi = button("wifi");
  run([&](ZVControlCenterController& c) {
    rt::Id section = settingsSection(bluetooth, wifi);
    host_->cellular = false;
    c.updateCCSettings(section);
    EXPECT_EQ(glyphTag(bluetooth->normal), tagOf("cellular_normal"));
    EXPECT_EQ(glyphTag(bluetooth->source), tagOf("cellular_normal"));
    EXPECT_EQ(glyphTag(bluetooth->selected), tagOf("cellular_selected"));
    EXPECT_FALSE(bluetooth->isSelected);
    EXPECT_EQ(wifi->glyphSets, 0);

    EXPECT_TRUE(c.actionCCSettings(section, bluetooth));
    EXPECT_TRUE(host_->cellular);
    EXPECT_TRUE(bluetooth->isSelected);
    EXPECT_TRUE(c.actionCCSettings(section, bluetooth));
    EXPECT_FALSE(host_->cellular);
    EXPECT_FALSE(bluetooth->isSelected);
    EXPECT_EQ(host_->actions, (Actions{"cellular:on", "cellular:off"}));

    EXPECT_FALSE(c.actionCCSettings(section, wifi));
    EXPECT_FALSE(c.actionCCSettings(section, object()));
    EXPECT_EQ(host_->actions.size(), 2u);

    // The look follows the platform's state on the next appearance.
    host_->cellular = true;
    c.updateCCSettings(section);
    EXPECT_TRUE(bluetooth->isSelected);
  });
}

class ShortcutTest : public testing::ControlCenterTest {};

TEST_F(ShortcutTest, IdentifiersPickTheReplacementForEveryState) {
  writeGlyphs();
  start({{"ControlCenterHome", 1},
         {"ControlCenterMultitasking", 1},
         {"ControlCenterLockScreen", 1}});
  run([&](ZVControlCenterController& c) {
    auto clock = module("com.apple.mobiletimer");
    auto calculator = module("com.apple.calculator");
    auto camera = module("com.apple.camera");
    for (int64_t state : {0, 1, 2}) {
      EXPECT_EQ(glyphTag(c.glyphImage(clock, state)), tagOf("home5s_normal"));
      EXPECT_EQ(glyphTag(c.glyphImage(calculator, state)),
                tagOf("switcher_normal"));
      EXPECT_EQ(glyphTag(c.glyphImage(camera, state)), tagOf("lock_normal"));
    }
    auto b = button();
    EXPECT_TRUE(c.actionCCShortcut(camera, b));
    EXPECT_FALSE(b->isSelected);
    EXPECT_TRUE(c.actionCCShortcut(clock, b));
    EXPECT_TRUE(c.actionCCShortcut(calculator, b));
    EXPECT_EQ(host_->actions, (Actions{"lockButtonUp:1", "home", "switcher"}));
  });
}

TEST_F(ShortcutTest, OtherIdentifiersAndOtherValuesKeepTheHostsButton) {
  writeGlyphs();
  start({{"ControlCenterHome", 2}, {"ControlCenterLockScreen", 1}});
  run([&](ZVControlCenterController& c) {
    auto flashlight = module("com.apple.flashlight");
    auto clock = module("com.apple.mobiletimer");
    auto b = button();
    EXPECT_EQ(c.glyphImage(flashlight, 0), nullptr);
    EXPECT_FALSE(c.actionCCShortcut(flashlight, b));
    EXPECT_EQ(c.glyphImage(clock, 0), nullptr);
    EXPECT_FALSE(c.actionCCShortcut(clock, b));
    // A tap must come from a Control Centre button.
    EXPECT_FALSE(c.actionCCShortcut(module("com.apple.camera"), object()));
    EXPECT_TRUE(b->isSelected);
    EXPECT_TRUE(host_->actions.empty());
  });
}

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
      EXPECT_EQ(glyphTag(c.glyphImage(module("com.apple.mobiletimer"), 0)),
                tagOf(k.expected))
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

class BluetoothAsCellularTest : public testing::ControlCenterTest {};

TEST_F(BluetoothAsCellularTest, NameGlyphAndTogglesFollowCellularData) {
  writeGlyphs();
  auto& p = start({{"ControlCenterCellularData", 1}});
  p.setLocalizedStrings({{"Cellular", "蜂窝数据"}});
  run([&](ZVControlCenterController& c) {
    auto bluetooth = module("bluetooth");
    EXPECT_EQ(c.bluetoothDisplayName(bluetooth), "蜂窝数据");
    EXPECT_EQ(glyphTag(c.bluetoothGlyphImage(bluetooth, 1)),
              tagOf("cellular_normal"));
    EXPECT_EQ(c.bluetoothGlyphImage(module("wifi"), 1), nullptr);

    host_->cellular = true;
    EXPECT_TRUE(c.bluetoothUpdateState(bluetooth));
    EXPECT_TRUE(bluetooth->enabled);
    EXPECT_EQ(c.cellularDataSettingModule(), bluetooth);

    bool flag = false;
    EXPECT_TRUE(c.bluetoothToggleState(bluetooth, flag));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(host_->cellular);
    EXPECT_FALSE(bluetooth->enabled);
    EXPECT_TRUE(c.bluetoothToggleState(bluetooth, flag));
    EXPECT_TRUE(host_->cellular);
    EXPECT_TRUE(bluetooth->enabled);
    EXPECT_EQ(host_->actions, (Actions{"cellular:off", "cellular:on"}));

    // Bluetooth itself is never switched.
    EXPECT_TRUE(c.bluetoothActivate(bluetooth));
    EXPECT_TRUE(c.bluetoothDeactivate(bluetooth));
  });
}

TEST_F(BluetoothAsCellularTest, UpdateWithoutAModuleUsesTheOneLastSeen) {
  writeGlyphs();
  start({{"ControlCenterCellularData", 1}});
  run([&](ZVControlCenterController& c) {
    EXPECT_TRUE(c.bluetoothUpdateState(nullptr));  // none seen: nothing
    auto bluetooth = module("bluetooth");
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

TEST_F(BluetoothAsCellularTest, OtherValuesLeaveTheHostsBluetooth) {
  writeGlyphs();
  start({{"ControlCenterCellularData", 2}, {"ControlCenterHome", 1}});
  run([&](ZVControlCenterController& c) {
    auto bluetooth = module("bluetooth");
    bool flag = false;
    EXPECT_EQ(c.bluetoothDisplayName(bluetooth), std::nullopt);
    EXPECT_EQ(c.bluetoothGlyphImage(bluetooth, 0), nullptr);
    EXPECT_FALSE(c.bluetoothUpdateState(bluetooth));
    EXPECT_FALSE(c.bluetoothToggleState(bluetooth, flag));
    EXPECT_FALSE(c.bluetoothActivate(bluetooth));
    EXPECT_FALSE(c.bluetoothDeactivate(bluetooth));
    EXPECT_FALSE(flag);
    EXPECT_FALSE(bluetooth->enabled);
    EXPECT_EQ(c.cellularDataSettingModule(), nullptr);
    EXPECT_TRUE(host_->actions.empty());
  });
}

}  // namespace
}  // namespace zv
