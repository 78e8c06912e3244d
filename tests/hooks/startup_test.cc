// Start-up dispatch: which hosts start which modules, and when nothing starts.
#include <gtest/gtest.h>

#include <optional>

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

// Each host's routines in order, from 7.0 on and with Enable on; a
// settings file that does not parse counts as on.
TEST_F(StartupTest, EachHostStartsItsModulesInOrder) {
  const struct {
    const char *bundle, *version;
    std::optional<bool> enable;  // none: a file that does not parse
    Modules started;
  } cases[] = {
      {"com.apple.mobilephone",
       "8.1",
       true,
       {"zvkeypad_init", "zvincall_init", "zvrecents_init", "zvcontacts_init",
        "zvphone_init"}},
      {"com.apple.MobileAddressBook", "7.0.4", true, {"zvcontacts_init"}},
      {"com.apple.MobileSMS", "8.1", true, {"zvsms_init", "zvcontacts_init"}},
      {"com.apple.springboard",
       "8.1",
       std::nullopt,
       {"zvincomingcall_init", "zvcontrolcenter_init"}},
      {"com.apple.InCallService", "7.0", true, {"zvincallservice_init"}},
      {"com.apple.mobilephone", "6.1.6", true, {}},
      {"com.apple.mobilephone", "8.1", false, {}},
  };
  for (const auto& c : cases) {
    if (c.enable)
      writeEnable(*c.enable);
    else
      writeDeviceFile("/var/mobile/Library/Preferences/zorvel.plist",
                      "\x01garbage");
    EXPECT_EQ(start(c.bundle, c.version), c.started) << c.bundle << c.version;
  }
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

TEST_F(StartupTest, UnknownHostIsLeftUntouchedWithoutReadingSettings) {
  // A settings file that would switch everything off must not matter, and
  // the settings machinery must not even subscribe to its notification.
  writeEnable(false);
  EXPECT_TRUE(start("com.apple.mobilesafari").empty());
  EXPECT_TRUE(start("com.apple.MobilePhone").empty());  // case matters
  EXPECT_EQ(world_.observerCount("ZVSettingsChanged"), 0u);
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
       {{"EnableArea", false},
        {"EnableAvatar", false},
        {"CallHistoryRingDuration", false},
        {"CallHistoryLimit", 100}},
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
