// The settings store and catalogue on a simulated device: defaults, file
// damage, value conversions, the delayed reload after change notifications
// and the one-key file helpers.
#include "core/settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "core/settings_catalogue.h"
#include "platform/plist.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

constexpr const char* kKeypadPlist =
    "/var/mobile/Library/Preferences/zorvel.keypad.plist";

class SettingsTest : public testing::SimTest {
 protected:
  void writeSettings(const Dict& dict) {
    testing::writePlist(root_ + ZVSettings::kPath, dict);
  }
  platform::SimProcess& phone_ = world_.launch("com.apple.mobilephone");
};

// No file, or one that exists but is not a settings dictionary, gives every
// key of every class its default.
TEST_F(SettingsTest, MissingOrDamagedFilesGiveDefaults) {
  // (How a file fails to parse is the property-list reader's tests'.)
  const std::optional<std::string> files[] = {
      std::nullopt,                          // no file
      "",                                    // does not parse
      plist::toXml(Value(Array{Value(1)})),  // not a dictionary
  };
  for (const auto& bytes : files) {
    if (bytes) writeDeviceFile(ZVSettings::kPath, *bytes);
    phone_.run([] {
      for (const auto& object : makeSettingsCatalogue()) {
        EXPECT_TRUE(object->settings().empty());
        for (const auto& info : object->describe()) {
          EXPECT_FALSE(info.fromFile) << info.key;
          EXPECT_EQ(info.value, info.defaultValue) << info.key;
        }
      }
    });
  }
  // Defaults of each kind, and a class has its superclass's keys.
  phone_.run([] {
    auto phone = ZVPhoneSettings::sharedInstance();
    EXPECT_EQ(
        std::tuple(phone->Enable(), phone->MyInfo(),
                   phone->ConnectedVibrateIntensity(), phone->AreaDatabase()),
        std::tuple(true, -1, 0.3f, "China"));
  });
}

// The conversions themselves are Value's; here each kind of key reads
// through them whatever type the file stored.
TEST_F(SettingsTest, ValuesAreConvertedWhateverTheirStoredType) {
  writeSettings({
      {"ConnectedVibrateIntensity", "0.8"},
      {"EnableAvatar", "1"},
      {"MyInfo", "42"},
      {"ControlCenterHome", int64_t{(int64_t{1} << 32) + 3}},
      {"PrefixNumber", 17951},
      {"AreaNameContacts", false},
  });
  phone_.run([] {
    auto phone = ZVSettings::make<ZVPhoneSettings>();
    EXPECT_FLOAT_EQ(phone->ConnectedVibrateIntensity(), 0.8f);
    EXPECT_TRUE(phone->EnableAvatar());
    EXPECT_EQ(phone->MyInfo(), 42);
    EXPECT_EQ(phone->PrefixNumber(), "17951");
    EXPECT_FALSE(phone->AreaNameContacts());
    EXPECT_EQ(ZVSettings::make<ZVControlCenterSettings>()->ControlCenterHome(),
              3);
    // A key two classes share is read by each from the same file.
    EXPECT_FALSE(ZVSettings::make<ZVSMSSettings>()->AreaNameContacts());

    // The listing marks what came from the file; superclass keys first.
    auto keys = phone->describe();
    EXPECT_EQ(std::tie(keys[7].key, keys[7].type, keys[7].value),
              std::tuple("MyInfo", "integer", Value(42)));
    EXPECT_TRUE(keys[7].fromFile);
    EXPECT_FALSE(keys[8].fromFile);  // AreaDatabase
    keys = ZVSettings::make<ZVSMSSettings>()->describe();
    EXPECT_EQ(keys[0].key + " " + keys[12].key + " " + keys.back().key,
              "Enable AreaNameSMS SMSMultiSelect");
  });
}

TEST_F(SettingsTest, SingletonsAreRegisteredOncePerProcess) {
  auto& springboard = world_.launch("com.apple.springboard");
  auto inPhone = phone_.run([] {
    auto a = ZVPhoneSettings::sharedInstance();
    EXPECT_EQ(a, ZVPhoneSettings::sharedInstance());
    ZVSettings::addSharedInstance(a);  // already there
    ZVSettings::addSharedInstance(nullptr);
    auto plain = ZVSettings::make<ZVSettings>();  // start-up's probe
    EXPECT_EQ(ZVSettings::sharedInstances().size(), 1u);
    // Every object of the process reads the one shared dictionary.
    EXPECT_EQ(&plain->settings(), &a->settings());
    return a;
  });
  springboard.run([&] {
    EXPECT_NE(ZVPhoneSettings::sharedInstance(), inPhone);
    ZVSettings::removeSharedInstance(ZVPhoneSettings::sharedInstance().get());
    EXPECT_TRUE(ZVSettings::sharedInstances().empty());
  });
}

TEST_F(SettingsTest, ReloadKeepsTheStringObject) {
  writeSettings({{"AreaDatabase", "Taiwan"}, {"PrefixNumber", "17951"}});
  phone_.run([&] {
    auto general = ZVGeneralSettings::sharedInstance();
    const std::string& area = general->AreaDatabase();
    const std::string& prefix = general->PrefixNumber();
    EXPECT_EQ(area, "Taiwan");
    writeSettings({{"PrefixNumber", "12593"}});
    general->reloadSettings();
    EXPECT_EQ(&area, &general->AreaDatabase());
    EXPECT_EQ(area, "China");
    EXPECT_EQ(prefix, "12593");
  });
}

// Counts its loads, to see how often a notification burst reloads it.
class CountingSettings : public ZVGeneralSettings {
 public:
  void loadSettings() override {
    ++loads;
    ZVGeneralSettings::loadSettings();
  }
  int loads = 0;
};

TEST_F(SettingsTest, BurstOfNotificationsReloadsEachObjectOnce) {
  writeSettings({{"MyInfo", 1}});
  auto& springboard = world_.launch("com.apple.springboard");
  auto& pane = world_.launch("com.apple.Preferences");
  std::shared_ptr<CountingSettings> first;
  std::shared_ptr<ZVIncomingCallSettings> incoming;
  springboard.run([&] {
    first = ZVSettings::make<CountingSettings>();
    ZVSettings::addSharedInstance(first);
    incoming = ZVIncomingCallSettings::sharedInstance();
  });
  auto phoneSettings =
      phone_.run([] { return ZVPhoneSettings::sharedInstance(); });
  auto probe = phone_.run([] { return ZVSettings::make<CountingSettings>(); });
  ASSERT_EQ(first->loads, 1);

  // The settings pane, another process, posts three times within 3 s.
  for (double wait : {1.0, 1.5, 2.999}) {  // 2.999: just before 3 s
    writeSettings({{"MyInfo", wait < 2 ? 2 : 3}});
    pane.run([] { platform::current().post("ZVSettingsChanged"); });
    world_.advance(wait);
  }
  EXPECT_EQ(first->loads, 1);
  EXPECT_EQ(incoming->MyInfo(), 1);
  EXPECT_EQ(phoneSettings->MyInfo(), 1);

  world_.advance(0.002);
  EXPECT_EQ(first->loads, 2);
  EXPECT_EQ(incoming->MyInfo(), 3);
  EXPECT_EQ(phoneSettings->MyInfo(), 3);  // each process reloads its own

  world_.advance(30);
  EXPECT_EQ(first->loads, 2);
  EXPECT_EQ(world_.pending(), 0u);
  // An object that was never registered is not reloaded.
  EXPECT_EQ(probe->loads, 1);
}

TEST_F(SettingsTest, OneKeyHelpers) {
  phone_.run([&] {
    EXPECT_TRUE(objectForKey("ContactsChanged", kKeypadPlist).isNull());

    setObject(Value(true), "ContactsChanged", kKeypadPlist);
    setObject(Value("x"), "Other", kKeypadPlist);
    EXPECT_EQ(*plist::readDictionary(root_ + kKeypadPlist),
              (Dict{{"ContactsChanged", true}, {"Other", "x"}}));
    EXPECT_EQ(objectForKey("Other", kKeypadPlist), Value("x"));
    EXPECT_TRUE(objectForKey("Missing", kKeypadPlist).isNull());

    // A damaged file reads as nothing and is replaced on the next write.
    writeDeviceFile(kKeypadPlist, "not a plist");
    EXPECT_TRUE(objectForKey("ContactsChanged", kKeypadPlist).isNull());
    setObject(Value(7), "Count", kKeypadPlist);
    EXPECT_EQ(*plist::readDictionary(root_ + kKeypadPlist),
              (Dict{{"Count", 7}}));
  });
}

}  // namespace
}  // namespace zv
