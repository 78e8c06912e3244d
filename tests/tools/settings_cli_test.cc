// `zorvel settings` run as a program on a temporary device root.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "platform/plist.h"

namespace zv {
namespace {

using json = nlohmann::json;

class SettingsCliTest : public testing::ZorvelCliTest {
 protected:
  SettingsCliTest() : ZorvelCliTest("settings") {}
};

TEST_F(SettingsCliTest, JsonShowsFileValuesAndDefaults) {
  ASSERT_TRUE(plist::writeFile(prefs("zorvel.plist"),
                               Value(Dict{{"MyInfo", 3},
                                          {"ConnectedVibrateIntensity", "0.8"},
                                          {"ControlCenterHome", 2}})));
  auto result = run("--json");
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  auto doc = json::parse(result.out);
  EXPECT_EQ(doc["fileStatus"], "loaded");
  // The classes in order, and each key as "Class.Key".
  std::vector<std::string> classes;
  std::map<std::string, json> key;
  for (const auto& c : doc["classes"]) {
    classes.push_back(c["class"]);
    for (const auto& k : c["keys"])
      key[classes.back() + "." + k["key"].get<std::string>()] = k;
  }
  EXPECT_EQ(classes,
            (std::vector<std::string>{"ZVGeneralSettings", "ZVPhoneSettings",
                                      "ZVSMSSettings", "ZVIncomingCallSettings",
                                      "ZVControlCenterSettings"}));
  EXPECT_EQ(key["ZVGeneralSettings.MyInfo"], (json{{"key", "MyInfo"},
                                                   {"type", "integer"},
                                                   {"value", 3},
                                                   {"default", -1},
                                                   {"source", "file"}}));
  EXPECT_EQ(key["ZVIncomingCallSettings.ConnectedVibrateIntensity"]["value"],
            0.8);
  EXPECT_EQ(key["ZVGeneralSettings.AreaDatabase"],
            (json{{"key", "AreaDatabase"},
                  {"type", "string"},
                  {"value", "China"},
                  {"default", "China"},
                  {"source", "default"}}));
  // Feature classes list only the keys they add.
  EXPECT_FALSE(key.contains("ZVPhoneSettings.MyInfo"));
  EXPECT_EQ(key["ZVControlCenterSettings.ControlCenterHome"]["value"], 2);
}

TEST_F(SettingsCliTest, KeypadFlagsAreListedWithTheirFile) {
  const std::string flags = prefs("zorvel.keypad.plist");
  ASSERT_TRUE(plist::writeFile(flags, Value(Dict{{"EnableSearch", true}})));
  auto result = run("--json");
  ASSERT_EQ(result.status, 0) << result.err;
  auto doc = json::parse(result.out);
  auto flag = [](const char* key, bool value, bool fromFile) {
    return json{{"key", key},
                {"type", "boolean"},
                {"value", value},
                {"default", false},
                {"source", fromFile ? "file" : "default"}};
  };
  EXPECT_EQ(doc["keypadFlags"],
            (json{{"file", flags},
                  {"fileStatus", "loaded"},
                  {"keys",
                   {flag("EnableSearch", true, true),
                    flag("AddressBookChanged", false, false)}}}));

  // Files that do not parse: each is said once (the command reads the
  // settings file twice), and the listing goes on with the defaults.
  testing::writeFile(flags, "garbage");
  testing::writeFile(prefs("zorvel.plist"), "<plist><dict>");
  result = run("");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "zorvel: settings file " + prefs("zorvel.plist") +
                            " does not parse; using defaults\n"
                            "zorvel: keypad flags file " +
                            flags + " does not parse; using defaults\n");
  EXPECT_NE(result.out.find("keypad flags file " + flags + " (unparsable)"),
            std::string::npos);
  EXPECT_NE(result.out.find("EnableSearch"), std::string::npos);
}

}  // namespace
}  // namespace zv
