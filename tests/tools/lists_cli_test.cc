// zorvel contacts and zorvel phone's Recents tab on a copy of the sample
// device: the card with areas beside the labels, the Recents rows as JSON,
// deleting a row from the device's call history, and one-line usage errors.
#include <gtest/gtest.h>

#include "cli_runner.h"
#include "platform/db/platform_schema.h"
#include "support/device_db.h"

namespace zv {
namespace {

using json = nlohmann::json;

class ListsCliTest : public testing::SampleDeviceTest {};

TEST_F(ListsCliTest, ContactsShowsTheListAndACardWithAreas) {
  // One object per action, as every session prints.
  auto r = run("contacts --screen 4 --json open:1 back");
  ASSERT_EQ(r.status, 0) << r.err;
  auto screens = testing::jsonLines(r.out);
  ASSERT_EQ(screens.size(), 2u);
  EXPECT_EQ(screens[0]["action"], "open:1");
  EXPECT_EQ(screens[0]["screen"], "card");
  EXPECT_EQ(screens[0]["id"], 1);
  bool area = false;
  for (const auto& phone : screens[0]["phones"])
    area |= phone["label"].get<std::string>().find("  ") != std::string::npos;
  EXPECT_TRUE(area) << screens[0].dump();
  EXPECT_EQ(screens[1]["screen"], "list");
  EXPECT_FALSE(screens[1]["rows"].empty());
}

// (Its usage errors and a contact or row that is not there are rows of
// area_cli_test.cc's conventions.)
TEST_F(ListsCliTest, PhoneRecentsRowsAndDeletingOne) {
  const std::string store =
      root_.path() + platform_schema::kCallHistoryStorePath;
  const size_t calls =
      testing::columnValues<int64_t>(store, "SELECT Z_PK FROM ZCALLRECORD")
          .size();
  auto r = run("phone --json tab:recents recents:delete:1");
  ASSERT_EQ(r.status, 0) << r.err;
  auto screens = testing::jsonLines(r.out);
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

  // On 7.1 the deletion runs zvtool, whose report goes to the log: every
  // line of the output is still one JSON object.
  r = run("phone --os 7.1 --json tab:recents recents:delete:1");
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(testing::jsonLines(r.out).size(), 2u) << r.out;
  EXPECT_EQ(r.out.find("deleted"), std::string::npos) << r.out;
}

}  // namespace
}  // namespace zv
