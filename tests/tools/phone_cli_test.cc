// zorvel phone: a scripted keypad session printed as one JSON object per
// action, and one-line errors for bad scripts.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "devicegen/device_image.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class PhoneCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(fs::exists(binary_))
        << "the suite depends on the zorvel target";
    testing::writeFile(root_ + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
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
    testing::writePlist(prefs + "zorvel.plist",
                        Dict{{"EnablePrefix", true},
                             {"PrefixNumber", "17951"},
                             {"PrefixLocalAreaCode", "010"},
                             {"DialerFormatPhoneNubmer", false}});
    testing::writePlist(prefs + "zorvel.keypad.plist",
                        Dict{{"EnableSearch", true}});
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
    err = testing::readFile(errPath);
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

TEST_F(PhoneCliTest, BadScriptsFailWithOneLineBeforeAnyActionRuns) {
  // Mistakes in the script are usage errors: nothing runs, exit 2.
  for (const char* args :
       {"jump", "--screen 6 type:1", "type:12a", "call tab:nowhere",
        "type:65 call menu:0", "call select:x"}) {
    std::string out, err;
    EXPECT_EQ(run(args, out, err), 2) << args;
    EXPECT_EQ(out, "") << args;  // the call before the mistake never ran
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1)
        << args << ": " << err;
  }
  // What the screen did not offer is a failure of the session itself.
  std::string out, err;
  EXPECT_EQ(run("select:1", out, err), 1);
  EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
}

TEST_F(PhoneCliTest, MenuButtonsAndListRowsCountFromOne) {
  std::string out, err;
  ASSERT_EQ(run("--json type:65 menu menu:1", out, err), 0) << err;
  std::vector<nlohmann::json> steps;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);)
    steps.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(steps.size(), 3u);
  ASSERT_TRUE(steps[1].contains("menu")) << steps[1].dump();
  // The first button of the menu was pressed and the menu is gone.
  EXPECT_FALSE(steps[2].contains("menu") && !steps[2]["menu"].is_null())
      << steps[2].dump();
  EXPECT_NE(run("type:65 menu menu:9", out, err), 0);
}

TEST_F(PhoneCliTest, ScratchLeavesTheDeviceAsItWas) {
  const std::string calls =
      root_ + "/var/mobile/Library/CallHistoryDB/CallHistory.storedata";
  auto listing = [&] {
    std::string all;
    for (auto& e : fs::recursive_directory_iterator(root_))
      if (e.is_regular_file())
        all += e.path().string() + " " + std::to_string(e.file_size()) + " " +
               std::to_string(e.last_write_time().time_since_epoch().count()) +
               "\n";
    return all;
  };
  const std::string before = listing();
  std::string out, err;
  ASSERT_EQ(run("--scratch type:65 call wait:3", out, err), 0) << err;
  EXPECT_EQ(listing(), before);
  // Without it, the session is the phone's own: its cache is written.
  ASSERT_EQ(run("type:65", out, err), 0) << err;
  EXPECT_NE(listing(), before);
}

}  // namespace
}  // namespace zv
