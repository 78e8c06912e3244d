// The Control Centre end to end on both generations, with the shipped
// glyphs: the buttons' glyphs, the toggle and what taps do.
#include <gtest/gtest.h>

#include <filesystem>

#include "controlcenter/control_center_controller.h"
#include "core/guard.h"
#include "devicegen/device_image.h"
#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "hosts/springboard/app.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/sim/device_presets.h"
#include "platform/telephony/core_telephony.h"
#include "platform/ui/view.h"
#include "support/world.h"

namespace zv {
namespace {

using hosts::ControlCenterButton;
using hosts::ControlCenterEffects;
using hosts::SpringBoardApplication;
using Effects = std::vector<std::string>;

class ControlCenterE2ETest : public testing::World,
                             public ::testing::WithParamInterface<const char*> {
 protected:
  ControlCenterE2ETest() {
    DeviceImageOptions options;
    options.contacts = options.calls = 0;
    createDeviceImage(root_, options);
  }
  bool modular() const { return std::string(GetParam()) >= "8"; }

  // Starts the springboard with `settings` on a 4-inch phone (an iPhone 5s:
  // the ring-only Home glyph) and opens the Control Centre.
  void start(Dict settings) {
    settings["Enable"] = true;
    sb_ = &startHost(hosts::springboardHost(), settings, GetParam(), "4");
    seen_ = 0;
    open();
  }
  template <typename F>
  auto run(F&& f) {
    return sb_->run(std::forward<F>(f));
  }
  hosts::ControlCenterViewController& cc() {
    return *run([] { return SpringBoardApplication::shared(); })->controlCenter;
  }
  std::shared_ptr<ControlCenterButton> button(const std::string& name) {
    return cc().button(name);
  }
  void open() {
    run([&] { cc().present(); });
    world_.advance(0);
  }
  void tap(const std::string& name) {
    auto b = button(name);
    ASSERT_TRUE(b) << name;
    ASSERT_TRUE(run([&] { return b->touch(); })) << name;
    world_.advance(0);
  }
  // Effects since the previous call.
  Effects effects() {
    auto& all = run([] { return &ControlCenterEffects::current(); })->effects;
    Effects news(all.begin() + seen_, all.end());
    seen_ = all.size();
    return news;
  }
  // Whether the start-up routine went on to make the controller.
  bool started() {
    return run([] {
             return platform::Process::current()
                 .slot<ZVControlCenterController>();
           }) != nullptr;
  }
  bool cellular() {
    return run([] { return platform::CTCellularDataPlanGetIsEnabled(); });
  }
  // The glyph file an image was read from ("" for none, "host" for the
  // host's own artwork).
  std::string fileOf(const ui::ImagePtr& image, const std::string& name) {
    if (!image) return "";
    if (image == run([&] { return hosts::hostGlyph(name); })) return "host";
    for (const auto& entry :
         std::filesystem::directory_iterator(root_ + "/Library/Zorvel")) {
      auto file = ui::Image::fromFile(entry.path().string(), 2);
      if (file && file->rgba() == image->rgba())
        return entry.path().stem().string();
    }
    return "?";
  }
  std::string glyph(const std::string& name) {
    return fileOf(button(name)->glyph, name);
  }

  platform::SimProcess* sb_ = nullptr;
  size_t seen_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Generations, ControlCenterE2ETest,
                         ::testing::Values("7.1", "8.1"));

TEST_P(ControlCenterE2ETest, ReplacedButtonsLookAndActAsHomeSwitcherAndLock) {
  start({{"ControlCenterHome", 1},
         {"ControlCenterMultitasking", 1},
         {"ControlCenterLockScreen", 1}});
  EXPECT_EQ(glyph("clock"), "home5s_normal");
  EXPECT_EQ(fileOf(button("clock")->sourceGlyph, "clock"), "home5s_normal");
  // Below 8.0 the selected look is the selected file; from 8.0 on every
  // state asks the module, which answers the normal image.
  EXPECT_EQ(fileOf(button("clock")->selectedGlyph, "clock"),
            modular() ? "home5s_normal" : "home5s_selected");
  EXPECT_EQ(glyph("calculator"), "switcher_normal");
  EXPECT_EQ(glyph("camera"), "lock_normal");
  EXPECT_EQ(glyph("torch"), "host");
  EXPECT_EQ(glyph("bluetooth"), "host");

  tap("torch");
  tap("clock");
  EXPECT_FALSE(cc().presented);  // a Home press puts it away
  open();
  tap("calculator");
  EXPECT_EQ(effects(), (Effects{"torch:on", "home", "switcher:shown"}));
  EXPECT_FALSE(button("clock")->selected);
  open();
  tap("camera");
  EXPECT_EQ(effects(), Effects{"lock"});
  EXPECT_TRUE(run([] { return SpringBoardApplication::shared()->locked(); }));
  EXPECT_FALSE(cc().presented);  // locking puts the Control Centre away
  EXPECT_TRUE(run([] { return zvenabled(); }));
}

TEST_P(ControlCenterE2ETest, ValueTwoInstallsButNeitherReplacesNorActs) {
  start({{"ControlCenterHome", 2},
         {"ControlCenterMultitasking", 2},
         {"ControlCenterLockScreen", 2},
         {"ControlCenterCellularData", 2}});
  EXPECT_TRUE(started());  // the hooks are in
  for (const char* name : {"clock", "calculator", "camera", "bluetooth"})
    EXPECT_EQ(glyph(name), "host") << name;
  if (modular()) {
    EXPECT_EQ(button("bluetooth")->title, "Bluetooth");
  }
  for (const char* name : {"clock", "calculator", "camera", "bluetooth"})
    tap(name);
  EXPECT_EQ(effects(), (Effects{"launch:com.apple.mobiletimer",
                                "launch:com.apple.calculator",
                                "launch:com.apple.camera", "bluetooth:on"}));
  EXPECT_TRUE(button("bluetooth")->selected);
  EXPECT_TRUE(cellular());
  EXPECT_TRUE(world_.events("cellularData").empty());
  // With no key set the routine does not even make the controller.
  world_.terminate(*sb_);
  start({});
  EXPECT_FALSE(started());
}

// The toggle moves the platform's cellular data, never Bluetooth, and shows
// a change made elsewhere when the Control Centre next appears.
TEST_P(ControlCenterE2ETest, CellularToggleFollowsThePlatformsCellularData) {
  start({{"ControlCenterCellularData", 1}});
  EXPECT_EQ(glyph("bluetooth"), "cellular_normal");
  if (modular()) {
    EXPECT_EQ(button("bluetooth")->title, "Cellular");
  }
  EXPECT_TRUE(cellular() && button("bluetooth")->selected);
  tap("bluetooth");
  EXPECT_FALSE(cellular() || button("bluetooth")->selected);
  tap("bluetooth");
  EXPECT_TRUE(cellular() && button("bluetooth")->selected);
  EXPECT_EQ(details("cellularData"), (Effects{"off", "on"}));
  EXPECT_TRUE(effects().empty());

  run([&] {
    cc().dismiss();
    platform::CTCellularDataPlanSetIsEnabled(false);
  });
  open();
  if (modular()) {
    // Every appearance after the first updates a tenth of a second later.
    EXPECT_TRUE(button("bluetooth")->selected);
    world_.advance(0.1);
  }
  EXPECT_FALSE(button("bluetooth")->selected);
}

TEST_P(ControlCenterE2ETest, MissingGlyphFilesCrashNothing) {
  for (const char* name :
       {"home5s_normal.png", "home5s_selected.png", "cellular_normal.png"})
    std::filesystem::remove(root_ + "/Library/Zorvel/" + name);
  start({{"ControlCenterHome", 1}, {"ControlCenterCellularData", 1}});
  // Below 8.0 the button gets no image and draws an empty glyph; from 8.0
  // on no image means the host draws its own.
  EXPECT_EQ(glyph("clock"), modular() ? "host" : "");
  EXPECT_EQ(glyph("bluetooth"), modular() ? "host" : "");
  tap("bluetooth");
  tap("clock");
  EXPECT_EQ(effects(), Effects{"home"});
  EXPECT_FALSE(cellular());
  EXPECT_TRUE(run([] { return zvenabled(); }));
}

// A failure inside the system's work is logged, switches the extension off
// and leaves the tap to the host.
TEST_P(ControlCenterE2ETest, AFailingReplacementFallsBackToTheHost) {
  start({{"ControlCenterHome", 1}});
  // The button fails once, when the replacement unselects it.
  run([] {
    auto failed = std::make_shared<bool>(false);
    rt::define(sdk::SBControlCenterButton::setSelected,
               [failed](const rt::Id& s, bool on) {
                 if (!*failed) {
                   *failed = true;
                   throw rt::Exception("NSGenericException", "button is busy");
                 }
                 ui::self<ControlCenterButton>(s).selected = on;
               });
  });
  tap("clock");
  EXPECT_EQ(effects(), Effects{"launch:com.apple.mobiletimer"});
  EXPECT_FALSE(run([] { return zvenabled(); }));
  EXPECT_EQ(details("log"),
            Effects{std::string("ZVException: ") +
                    (modular() ? "SBCCShortcutButtonController"
                               : "SBCCQuickLaunchSectionController") +
                    " buttonTapped: NSGenericException button is busy"});
}

}  // namespace
}  // namespace zv
