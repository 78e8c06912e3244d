#include "core/device.h"

#include <gtest/gtest.h>

#include "core/image_geometry.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

std::string describe(const Dict& dict) {
  const Value v(dict);
  std::string out = "I=" + v["Intensity"].stringValue() + ":";
  if (const Array* a = v["VibePattern"].array())
    for (const Value& item : *a)
      out += item.isBool() ? (item.boolValue() ? " on" : " off")
                           : " " + item.stringValue();
  return out;
}

TEST(VibrationPattern, PulsesWithinTheTotal) {
  EXPECT_EQ(describe(vibrationPattern(1, 1200, 500, 200)),
            "I=1: on 500 off 200 on 500");
  EXPECT_EQ(describe(vibrationPattern(0.8f, 500, 500, 0)), "I=0.8: on 500");
  EXPECT_EQ(describe(vibrationPattern(1, 0, 500, 0)), "I=1:");
  // The last pulse is cut to what remains; no pause closes the pattern.
  EXPECT_EQ(describe(vibrationPattern(1, 1300, 500, 200)),
            "I=1: on 500 off 200 on 500");
  EXPECT_EQ(describe(vibrationPattern(1, 1000, 500, 200)),
            "I=1: on 500 off 200 on 300");
  // At most ten passes.
  EXPECT_EQ(vibrationPattern(1, 100000, 10, 10)["VibePattern"].array()->size(),
            40u);
}

class DeviceTest : public testing::SimTest {};

// (A pattern's device text is the call screens' end-to-end tests'.)
TEST_F(DeviceTest, VibrationIsPlayedEvenWhenEmpty) {
  world_.launch("com.apple.springboard").run([] {
    UIDevice::vibrateWithIntensity(0.5f, 0, 500, 0);
  });
  EXPECT_EQ(world_.events("vibrate").at(0).detail,
            "4095 Intensity=0.5 VibePattern=");
}

// An iPhone 6 Plus on 8.1.2 (its screen turned) and an iPhone 5 on 7.0:
// 6 Plus, 6, 5, 5s, then the 6 Plus, 6, 5 and 4 screens.
TEST_F(DeviceTest, ModelAndScreenTestsFollowTheDeviceFacts) {
  auto facts = [](const char* version, const char* model, platform::Size points,
                  platform::Size pixels) {
    platform::DeviceFacts f;
    f.systemVersion = version;
    f.hardwareModel = model;
    f.screenPoints = points;
    f.screenPixels = pixels;
    return f;
  };
  auto& plus =
      world_.launch("com.apple.springboard",
                    facts("8.1.2", "iPhone7,1", {736, 414}, {1242, 2208}));
  auto& five =
      world_.launch("com.apple.mobilephone",
                    facts("7.0", "iPhone5,2", {320, 568}, {640, 1136}));
  auto answers = [] {
    std::string out;
    for (bool b : {UIDevice::isPhone6p(), UIDevice::isPhone6(),
                   UIDevice::isPhone5(), UIDevice::isPhone5s(),
                   UIDevice::isPhone6pscreen(), UIDevice::isPhone6screen(),
                   UIDevice::isPhone5screen(), UIDevice::isPhone4screen()})
      out += b ? '1' : '0';
    return out + " " + std::to_string(UIDevice::OSVersion());
  };
  EXPECT_EQ(plus.run(answers), "10001000 8.100000");
  EXPECT_EQ(five.run(answers), "00100010 7.000000");
}

TEST_F(DeviceTest, AnswersAreKeptForTheLifeOfTheProcess) {
  auto& p = world_.launch("com.apple.mobilephone");
  p.deviceFacts().hardwareModel = "iPhone4,1";
  p.deviceFacts().systemVersion = "7.1";
  p.run([] {
    EXPECT_TRUE(UIDevice::isPhone4s());
    EXPECT_FLOAT_EQ(UIDevice::OSVersion(), 7.1f);
  });
  p.deviceFacts().hardwareModel = "iPhone3,1";
  p.deviceFacts().systemVersion = "8.0";
  p.run([] {
    EXPECT_TRUE(UIDevice::isPhone4s());
    EXPECT_FLOAT_EQ(UIDevice::OSVersion(), 7.1f);
    // A test not asked before reads the facts as they are now.
    EXPECT_TRUE(UIDevice::isPhone4());
  });
  // A restarted process reads them afresh.
  world_.terminate(p);
  p.run([] {
    EXPECT_FALSE(UIDevice::isPhone4s());
    EXPECT_FLOAT_EQ(UIDevice::OSVersion(), 8.0f);
  });
}

TEST(AspectFillRect, CoversAndCentres) {
  using platform::Size;
  EXPECT_EQ(aspectFillRect({40, 40}, {200, 100}),
            (ui::Rect{{-20, 0}, {80, 40}}));
  EXPECT_EQ(aspectFillRect({40, 40}, {100, 200}),
            (ui::Rect{{0, -20}, {40, 80}}));
  EXPECT_EQ(aspectFillRect({60, 30}, {50, 50}), (ui::Rect{{0, 0}, {60, 30}}));
  EXPECT_EQ(aspectFillRect({60, 30}, {0, 50}), (ui::Rect{{0, 0}, {60, 30}}));
}

}  // namespace
}  // namespace zv
