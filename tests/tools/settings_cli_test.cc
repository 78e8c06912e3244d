// `zorvel settings` run as a program on a temporary device root.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_runner.h"
#include "platform/plist.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class SettingsCliTest : public ::testing::Test {
 protected:
  testing::CliResult run(const std::string& args) {
    return testing::runZorvel("settings --root '" + root() + "' " + args);
  }
  static const nlohmann::json* find(const nlohmann::json& doc,
                                    std::string_view cls,
                                    std::string_view key) {
    for (const auto& c : doc["classes"])
      if (c["class"] == cls)
        for (const auto& k : c["keys"])
          if (k["key"] == key) return &k;
    return nullptr;
  }
  const std::string& root() const { return root_.path(); }
  std::string prefs(const std::string& name) const {
    return root() + "/var/mobile/Library/Preferences/" + name;
  }

  testing::TempRoot root_;
};

TEST_F(SettingsCliTest, JsonShowsFileValuesAndDefaults) {
  ASSERT_TRUE(plist::writeFile(prefs("zorvel.plist"),
                               Value(Dict{{"MyInfo", 3},
                                          {"ConnectedVibrateIntensity", "0.8"},
                                          {"ControlCenterHome", 2}})));
  auto result = run("--json");
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  auto doc = nlohmann::json::parse(result.out);
  EXPECT_EQ(doc["fileStatus"], "loaded");

  std::vector<std::string> classes;
  for (const auto& c : doc["classes"]) classes.push_back(c["class"]);
  EXPECT_EQ(classes,
            (std::vector<std::string>{"ZVGeneralSettings", "ZVPhoneSettings",
                                      "ZVSMSSettings", "ZVIncomingCallSettings",
                                      "ZVControlCenterSettings"}));

  const auto* myInfo = find(doc, "ZVGeneralSettings", "MyInfo");
  ASSERT_TRUE(myInfo);
  EXPECT_EQ((*myInfo)["value"], 3);
  EXPECT_EQ((*myInfo)["default"], -1);
  EXPECT_EQ((*myInfo)["source"], "file");
  const auto* intensity =
      find(doc, "ZVIncomingCallSettings", "ConnectedVibrateIntensity");
  ASSERT_TRUE(intensity);
  EXPECT_EQ((*intensity)["value"], 0.8);
  EXPECT_EQ((*intensity)["default"], 0.3);
  const auto* area = find(doc, "ZVGeneralSettings", "AreaDatabase");
  ASSERT_TRUE(area);
  EXPECT_EQ((*area)["value"], "China");
  EXPECT_EQ((*area)["source"], "default");
  // Feature classes list only the keys they add.
  EXPECT_EQ(find(doc, "ZVPhoneSettings", "MyInfo"), nullptr);
  EXPECT_EQ(
      (*find(doc, "ZVControlCenterSettings", "ControlCenterHome"))["value"], 2);
}

TEST_F(SettingsCliTest, UnparsableFileWarnsOnceAndWritesNothing) {
  fs::create_directories(fs::path(prefs("zorvel.plist")).parent_path());
  std::ofstream(prefs("zorvel.plist"))
      << "<?xml version=\"1.0\"?><plist><dict>";
  auto before = fs::last_write_time(prefs("zorvel.plist"));

  auto result = run("");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "zorvel: settings file " + prefs("zorvel.plist") +
                            " does not parse; showing defaults\n");
  EXPECT_NE(result.out.find("AreaDatabase"), std::string::npos);
  EXPECT_NE(result.out.find("\"China\""), std::string::npos);
  EXPECT_EQ(result.out.find("file (default"), std::string::npos);

  EXPECT_EQ(fs::last_write_time(prefs("zorvel.plist")), before);
  size_t entries = 0;
  for (const auto& e : fs::recursive_directory_iterator(root()))
    entries += e.is_regular_file() || e.is_socket();
  EXPECT_EQ(entries, 1u);
}

TEST_F(SettingsCliTest, KeypadFlagsAreListedWithTheirFile) {
  const std::string flags = prefs("zorvel.keypad.plist");
  ASSERT_TRUE(plist::writeFile(flags, Value(Dict{{"EnableSearch", true}})));
  auto result = run("--json");
  ASSERT_EQ(result.status, 0) << result.err;
  auto doc = nlohmann::json::parse(result.out);
  const auto& keypad = doc["keypadFlags"];
  EXPECT_EQ(keypad["file"], flags);
  EXPECT_EQ(keypad["fileStatus"], "loaded");
  ASSERT_EQ(keypad["keys"].size(), 2u);
  EXPECT_EQ(keypad["keys"][0]["key"], "EnableSearch");
  EXPECT_EQ(keypad["keys"][0]["value"], true);
  EXPECT_EQ(keypad["keys"][0]["source"], "file");
  EXPECT_EQ(keypad["keys"][1]["key"], "AddressBookChanged");
  EXPECT_EQ(keypad["keys"][1]["value"], false);
  EXPECT_EQ(keypad["keys"][1]["source"], "default");

  std::ofstream(flags) << "garbage";
  result = run("");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "zorvel: keypad flags file " + flags +
                            " does not parse; showing defaults\n");
  EXPECT_NE(result.out.find("keypad flags file " + flags + " (unparsable)"),
            std::string::npos);
  EXPECT_NE(result.out.find("EnableSearch"), std::string::npos);
}

TEST_F(SettingsCliTest, MissingRootIsAnError) {
  auto result = testing::runZorvel("settings --root '" + root() + "/absent'");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errLines(), 1u) << result.err;
  EXPECT_NE(result.err.find("device root not found"), std::string::npos);
}

}  // namespace
}  // namespace zv
