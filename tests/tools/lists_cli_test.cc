// zorvel contacts and zorvel phone's Recents tab on a copy of the sample
// device: the card with areas beside the labels, the Recents rows as JSON,
// deleting a row from the device's call history, and one-line usage errors.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_runner.h"
#include "platform/db/platform_schema.h"
#include "support/device_db.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using json = nlohmann::json;

class ListsCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(fs::exists(ZV_BINARY_DIR "/sample-device"));
    fs::copy(
        ZV_BINARY_DIR "/sample-device", root_.path(),
        fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }

  // Runs zorvel with `args` on the copy; answers the exit status.
  int run(const std::string& args, std::string& out, std::string& err) {
    auto r = testing::runZorvel(args + " --root '" + root_.path() + "'");
    out = r.out;
    err = r.err;
    return r.status;
  }

  testing::TempRoot root_;
};

TEST_F(ListsCliTest, ContactsShowsTheListAndACardWithAreas) {
  std::string out, err;
  ASSERT_EQ(run("contacts --screen 4 --json open:1 back", out, err), 0) << err;
  auto screens = testing::jsonLines(out);
  ASSERT_EQ(screens.size(), 3u);
  EXPECT_EQ(screens[0]["screen"], "list");
  EXPECT_FALSE(screens[0]["rows"].empty());
  EXPECT_EQ(screens[1]["screen"], "card");
  EXPECT_EQ(screens[1]["id"], 1);
  bool area = false;
  for (const auto& phone : screens[1]["phones"])
    area |= phone["label"].get<std::string>().find("  ") != std::string::npos;
  EXPECT_TRUE(area) << screens[1].dump();
  EXPECT_EQ(screens[2]["screen"], "list");
}

TEST_F(ListsCliTest, ContactsUsageErrorsAreOneLine) {
  std::string out, err;
  EXPECT_EQ(run("contacts --host messages", out, err), 2);
  EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
  EXPECT_EQ(run("contacts jump:3", out, err), 2);
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(run("contacts open:nobody-here", out, err), 1);
  EXPECT_NE(err.find("no contact named"), std::string::npos) << err;
}

TEST_F(ListsCliTest, PhoneRecentsRowsAndDeletingOne) {
  const std::string store =
      root_.path() + platform_schema::kCallHistoryStorePath;
  const size_t calls =
      testing::columnValues<int64_t>(store, "SELECT Z_PK FROM ZCALLRECORD")
          .size();
  std::string out, err;
  ASSERT_EQ(run("phone --json tab:recents recents:delete:1", out, err), 0)
      << err;
  auto screens = testing::jsonLines(out);
  ASSERT_EQ(screens.size(), 2u);
  ASSERT_TRUE(screens[0].contains("recents"));
  const json& rows = screens[0]["recents"];
  ASSERT_FALSE(rows.empty());
  EXPECT_TRUE(rows[0].contains("avatar"));
  EXPECT_EQ(rows[0]["inset"], 67);
  const size_t grouped =
      rows[0].contains("count")
          ? std::stoul(rows[0]["count"].get<std::string>().substr(1))
          : 1;
  EXPECT_EQ(
      testing::columnValues<int64_t>(store, "SELECT Z_PK FROM ZCALLRECORD")
          .size(),
      calls - grouped);

  EXPECT_EQ(run("phone tab:recents recents:delete:999", out, err), 1);
  EXPECT_NE(err.find("no such row"), std::string::npos) << err;
}

}  // namespace
}  // namespace zv
