// The simulated springboard's Control Centre without the extension, on both
// system generations: what each button shows and does, the Bluetooth
// toggle following its radio, the modules' activation, and each
// generation's lock selector alone (so that the end-to-end suite sees a
// controller that picks the wrong one).
#include <gtest/gtest.h>

#include "hosts/kit/host_kit.h"
#include "hosts/springboard/app.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/sim/device_presets.h"
#include "support/sim_fixture.h"

namespace zv::hosts {
namespace {

using Effects = std::vector<std::string>;

class ControlCenterHostTest
    : public testing::SimTest,
      public ::testing::WithParamInterface<const char*> {
 protected:
  ControlCenterHostTest() {
    auto facts = platform::simulatedDevice(GetParam(), "4.7");
    sb_ = &launchSimulated(world_, springboardHost(), *facts);
    cc_ = sb_->run([] { return SpringBoardApplication::shared(); })
              ->controlCenter;
  }
  bool modular() const { return std::string(GetParam()) >= "8"; }
  bool tap(const std::string& name) {
    return sb_->run([&] { return cc_->button(name)->touch(); });
  }
  Effects effects() {
    return sb_->run([] { return ControlCenterEffects::current().effects; });
  }

  platform::SimProcess* sb_;
  std::shared_ptr<ControlCenterViewController> cc_;
};

INSTANTIATE_TEST_SUITE_P(Generations, ControlCenterHostTest,
                         ::testing::Values("7.1", "8.1"));

// What the extension never replaces: the closed Control Centre, the
// airplane and Wi-Fi buttons, Bluetooth off again. (The app buttons, the
// torch and Bluetooth on are the end-to-end suite's.)
TEST_P(ControlCenterHostTest, ButtonsOpenTheirAppsAndFlipTheirRadios) {
  EXPECT_FALSE(tap("clock"));  // closed: nothing to touch
  sb_->run([&] { cc_->present(); });
  for (const char* name : {"airplane", "wifi"})
    EXPECT_EQ(cc_->button(name)->glyph, sb_->run([&] {
      return hostGlyph(name);
    })) << name;
  EXPECT_TRUE(cc_->button("wifi")->selected);
  for (const char* name : {"bluetooth", "bluetooth", "wifi"})
    EXPECT_TRUE(tap(name)) << name;
  EXPECT_EQ(effects(), (Effects{"bluetooth:on", "bluetooth:off", "wifi:off"}));
  EXPECT_FALSE(cc_->button("bluetooth")->selected);
  EXPECT_FALSE(cc_->button("wifi")->selected);
}

TEST_P(ControlCenterHostTest, ToggleShowsTheRadioOnEachAppearance) {
  sb_->run([&] {
    cc_->present();
    cc_->dismiss();
    rt::Id radio =
        rt::send(rt::classObject(rt::getClass(sdk::BluetoothManager::kName)),
                 sdk::BluetoothManager::sharedInstance);
    rt::send(radio, sdk::BluetoothManager::setPowered, true);
    cc_->present();
  });
  EXPECT_TRUE(cc_->button("bluetooth")->selected);
  if (modular()) {
    EXPECT_TRUE(cc_->settings->bluetooth->active);
    EXPECT_EQ(cc_->button("bluetooth")->title, "Bluetooth");
    sb_->run([&] { cc_->dismiss(); });
    EXPECT_FALSE(cc_->settings->bluetooth->active);
  }
}

TEST_P(ControlCenterHostTest, EachGenerationHasOnlyItsOwnLockSelector) {
  sb_->run([&] {
    auto app = SpringBoardApplication::shared();
    EXPECT_EQ(rt::respondsTo(app, sdk::SpringBoard::lockButtonUpFromSource8),
              modular());
    EXPECT_EQ(rt::respondsTo(app, sdk::SpringBoard::lockButtonUpFromSource),
              !modular());
  });
}

}  // namespace
}  // namespace zv::hosts
