// zorvel phone: a scripted keypad session printed as one JSON object per
// action, and one-line errors for bad scripts.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "area/area_compiler.h"
#include "platform/plist.h"
#include "search/device_image.h"
#include "sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class PhoneCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!fs::exists(binary_)) GTEST_SKIP() << "build the zorvel target first";
    std::ifstream in(ZV_SOURCE_DIR "/data/area/China.txt", std::ios::binary);
    std::stringstream source;
    source << in.rdbuf();
    fs::create_directories(root_ + "/Library/Zorvel/Area");
    std::ofstream(root_ + "/Library/Zorvel/Area/China", std::ios::binary)
        << area::compile(area::parseSource(source.str(), "China"));
    DevicePeople people;
    people.labels = {"_$!<Mobile>!$_"};
    DeviceContact mary;
    mary.recordId = 1;
    mary.first = "Mary";
    mary.last = "Jones";
    mary.phones.push_back({"138 0170 0000", "13801700000", 1});
    people.contacts = {mary};
    fs::create_directories(root_ + "/var/mobile/Library/AddressBook");
    writeAddressBook(
        root_ + "/var/mobile/Library/AddressBook/AddressBook.sqlitedb", people,
        1);
    const std::string prefs = root_ + "/var/mobile/Library/Preferences/";
    ASSERT_TRUE(
        plist::writeFile(prefs + "zorvel.plist",
                         Value(Dict{{"EnablePrefix", true},
                                    {"PrefixNumber", "17951"},
                                    {"PrefixLocalAreaCode", "010"},
                                    {"DialerFormatPhoneNubmer", false}})));
    ASSERT_TRUE(plist::writeFile(prefs + "zorvel.keypad.plist",
                                 Value(Dict{{"EnableSearch", true}})));
  }
  void TearDown() override { fs::remove_all(root_); }

  int run(const std::string& args, std::string& out, std::string& err) {
    const std::string errPath = root_ + ".stderr";
    std::string command = "'" + binary_ + "' phone --root '" + root_ + "' " +
                          args + " 2>'" + errPath + "'";
    FILE* pipe = popen(command.c_str(), "r");
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, pipe)) > 0) out.append(buf, n);
    int status = pclose(pipe);
    std::ifstream e(errPath);
    std::stringstream text;
    text << e.rdbuf();
    err = text.str();
    fs::remove(errPath);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::string binary_ = ZV_BINARY_DIR "/zorvel";
  std::string root_ = testing::freshRoot();
};

TEST_F(PhoneCliTest, JsonSessionShowsTheMatchAndWhatWasDialled) {
  std::string out, err;
  ASSERT_EQ(run("--json type:65 list call", out, err), 0) << err;
  std::vector<nlohmann::json> steps;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);)
    steps.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(steps.size(), 3u);
  EXPECT_EQ(steps[0]["action"], "type:65");
  EXPECT_EQ(steps[0]["pager"]["current"]["number"]["text"], "13801700000");
  EXPECT_NE(
      steps[0]["pager"]["current"]["name"]["marked"].get<std::string>().find(
          '['),
      std::string::npos);
  EXPECT_EQ(steps[0]["counter"], "1/2");
  EXPECT_EQ(steps[1]["list"].size(), 2u);
  EXPECT_EQ(steps[2]["dialled"], nlohmann::json::array({"1795113801700000"}));
}

TEST_F(PhoneCliTest, OutgoingCallOnSevenShowsTheInCallScreenWithItsArea) {
  std::string out, err;
  ASSERT_EQ(run("--json --os 7.1 --screen 4 type:13801700000 call connect "
                "wait:2 end",
                out, err),
            0)
      << err;
  std::vector<nlohmann::json> steps;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);)
    steps.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(steps.size(), 5u);
  EXPECT_FALSE(steps[0].contains("inCall"));
  // The prefixed number goes out; its area is still Shanghai's.
  EXPECT_EQ(steps[1]["inCall"]["number"], "1795113801700000");
  const std::string calling = steps[1]["inCall"]["label"];
  EXPECT_EQ(calling.rfind("calling…  ", 0), 0u) << calling;
  EXPECT_NE(calling.find("上海"), std::string::npos) << calling;
  // The in-call area is off by default: the active call shows its time.
  EXPECT_EQ(steps[2]["inCall"]["label"], "00:00");
  EXPECT_EQ(steps[3]["inCall"]["label"], "00:02");
  EXPECT_FALSE(steps[4].contains("inCall"));
}

TEST_F(PhoneCliTest, BadScriptsFailWithOneLine) {
  for (const char* args : {"jump", "select:1", "--screen 6 type:1", "type:12a",
                           "connect", "type:1 call end end"}) {
    std::string out, err;
    EXPECT_NE(run(args, out, err), 0) << args;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1)
        << args << ": " << err;
  }
  // Every action is checked before the first runs.
  std::string out, err;
  for (const char* args : {"type:1 wait:x", "type:1 connect call"}) {
    out.clear();
    EXPECT_EQ(run(args, out, err), 2) << args;
    EXPECT_EQ(out, "") << args;
  }
}

}  // namespace
}  // namespace zv
