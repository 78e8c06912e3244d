// Start-up dispatch: which hosts start which modules, and when nothing starts.
#include <gtest/gtest.h>

#include "hooks/modules.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

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

// The loading probe starts only where a test host asks for it.
TEST_F(StartupTest, TheLoadingProbeStartsOnlyWhereAskedFor) {
  EXPECT_TRUE(start("com.zorvel.loaderprobe").empty());
  auto& probe = world_.launch("com.zorvel.loaderprobe");
  probe.context().extraHosts.emplace_back("com.zorvel.loaderprobe",
                                          "zvloaderprobe_init");
  probe.context().extraHosts.emplace_back("com.zorvel.loaderprobe",
                                          "no_such_routine");
  probe.run([] { ZorvelInitializer(); });
  EXPECT_EQ(probe.context().startedModules, Modules{"zvloaderprobe_init"});
}

TEST_F(StartupTest, EnableSwitchSystemVersionAndUnknownHosts) {
  // An unknown host: a settings file that would switch everything off must
  // not matter, and
  // the settings machinery must not even subscribe to its notification.
  writeEnable(false);
  EXPECT_TRUE(start("com.apple.mobilesafari").empty());
  EXPECT_TRUE(start("com.apple.MobilePhone").empty());  // case matters
  EXPECT_EQ(world_.observerCount("ZVSettingsChanged"), 0u);
  // A known host: the switch and the system version decide.
  EXPECT_TRUE(start("com.apple.mobilephone").empty());
  writeEnable(true);
  EXPECT_TRUE(start("com.apple.mobilephone", "6.1.6").empty());
  EXPECT_EQ(start("com.apple.InCallService", "7.0").size(), 1u);
  EXPECT_EQ(start("com.apple.MobileAddressBook", "7.0.4").size(), 1u);
  // A settings file that does not parse counts as Enable on.
  writeDeviceFile("/var/mobile/Library/Preferences/zorvel.plist",
                  "\x01garbage");
  EXPECT_EQ(start("com.apple.MobileAddressBook").size(), 1u);
}

// With every switch it asks off, a feature routine replaces no method of
// the classes it would change; the one switch that starts it does.
TEST_F(StartupTest, FeatureRoutinesWithTheirSwitchesOffInstallNothing) {
  const Dict noArea{{"EnableArea", false}, {"EnableAvatar", false}};
  struct Case {
    const char* bundle;
    void (*init)();
    std::vector<std::string_view> classes;
    Dict off, on;
  } cases[] = {
      {"com.apple.mobilephone",
       zvrecents_init,
       {"PHRecentsViewController", "PHRecentsCell"},
       noArea,  // ring durations off and the limit at 100 by default
       {{"CallHistoryLimit", 101}}},
      {"com.apple.MobileAddressBook",
       zvcontacts_init,
       {"ABPropertyPhoneNumberCell", "ABContactViewController",
        "ABMembersDataSource"},
       noArea,
       {{"EnableAvatar", true}}},
      {"com.apple.MobileSMS",
       zvsms_init,
       {"CKConversationListCell", "CKTranscriptController"},
       noArea,
       {{"SMSSelectGroup", true}}},
  };
  for (const Case& c : cases) {
    for (bool on : {false, true}) {
      SCOPED_TRACE(std::string(c.bundle) + (on ? " on" : " off"));
      Dict settings = c.off;
      if (on)
        for (const auto& [key, value] : c.on) settings[key] = value;
      testing::writePlist(
          root_ + "/var/mobile/Library/Preferences/zorvel.plist", settings);
      auto& process = world_.launch(c.bundle);
      const size_t methods = process.run([&] {
        for (auto name : c.classes) rt::registerClass(name);
        c.init();
        size_t count = 0;
        for (auto name : c.classes)
          count += rt::getClass(name)->selectors().size();
        return count;
      });
      EXPECT_EQ(methods > 0, on);
    }
  }
}

}  // namespace
}  // namespace zv
