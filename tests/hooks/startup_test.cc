// Start-up dispatch: which hosts start which modules, and when nothing starts.
#include <gtest/gtest.h>

#include "hooks/modules.h"
#include "sim_fixture.h"

namespace zv {
namespace {

using Modules = std::vector<std::string>;

class StartupTest : public testing::SimTest {
 protected:
  Modules start(const std::string& bundle, const std::string& version = "8.1") {
    platform::DeviceFacts facts;
    facts.systemVersion = version;
    auto& process = world_.launch(bundle, facts);
    process.run([] { ZorvelInitializer(); });
    return process.context().startedModules;
  }
  void writeEnable(bool on) {
    writeDeviceFile("/var/mobile/Library/Preferences/zorvel.plist",
                    std::string("<plist><dict><key>Enable</key><") +
                        (on ? "true" : "false") + "/></dict></plist>");
  }
};

TEST_F(StartupTest, EachHostStartsItsModulesInOrder) {
  EXPECT_EQ(start("com.apple.mobilephone"),
            (Modules{"zvkeypad_init", "zvincall_init", "zvrecents_init",
                     "zvcontacts_init", "zvphone_init"}));
  EXPECT_EQ(start("com.apple.MobileAddressBook"), Modules{"zvcontacts_init"});
  EXPECT_EQ(start("com.apple.MobileSMS"),
            (Modules{"zvsms_init", "zvcontacts_init"}));
  EXPECT_EQ(start("com.apple.springboard"),
            (Modules{"zvincomingcall_init", "zvcontrolcenter_init"}));
  EXPECT_EQ(start("com.apple.InCallService"), Modules{"zvincallservice_init"});
}

TEST_F(StartupTest, UnknownHostIsLeftUntouchedWithoutReadingSettings) {
  // A settings file that would switch everything off must not matter, and
  // the settings machinery must not even subscribe to its notification.
  writeEnable(false);
  EXPECT_TRUE(start("com.apple.mobilesafari").empty());
  EXPECT_TRUE(start("com.apple.MobilePhone").empty());  // case matters
  EXPECT_EQ(world_.observerCount("ZVSettingsChanged"), 0u);
}

TEST_F(StartupTest, EnableSwitchAndSystemVersionDecide) {
  EXPECT_TRUE(start("com.apple.mobilephone", "6.1.6").empty());
  EXPECT_EQ(start("com.apple.InCallService", "7.0").size(), 1u);
  writeEnable(false);
  EXPECT_TRUE(start("com.apple.mobilephone").empty());
  writeEnable(true);
  EXPECT_EQ(start("com.apple.MobileAddressBook", "7.0.4").size(), 1u);
  // A settings file that does not parse counts as Enable on.
  writeDeviceFile("/var/mobile/Library/Preferences/zorvel.plist",
                  "\x01garbage");
  EXPECT_EQ(start("com.apple.MobileAddressBook").size(), 1u);
}

}  // namespace
}  // namespace zv
