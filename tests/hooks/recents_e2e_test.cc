// Recents end to end on both generations: areas, ring times and avatars on
// the Phone app's rows, and the call-history backup kept in step.
#include <gtest/gtest.h>

#include "lists_world.h"
#include "platform/sim/sim_telephony.h"
#include "platform/ui/text_metrics.h"
#include "search/call_history.h"

namespace zv {
namespace {

using hosts::PhoneApplication;
using hosts::RecentsCell;

class RecentsE2ETest : public testing::ListsWorld {
 protected:
  platform::SimProcess& startPhone(Dict settings, const char* version = "8.1",
                                   const char* screen = "4.7") {
    settings.emplace("Enable", true);
    phone_ = &startHost(hosts::phoneHost(), settings, version, screen);
    return *phone_;
  }
  // Shows Recents, leaving the keypad first when `again`.
  void openRecents(bool again = false) {
    in(*phone_, [again] {
      if (again)
        PhoneApplication::shared()->selectTab(PhoneApplication::kKeypad);
      PhoneApplication::shared()->selectTab(PhoneApplication::kRecents);
    });
  }
  std::vector<std::shared_ptr<RecentsCell>> rows() {
    return phone_->run([] {
      std::vector<std::shared_ptr<RecentsCell>> out;
      auto table = PhoneApplication::shared()->recents->table();
      for (const auto& [row, cell] : table->visibleCells())
        out.push_back(std::dynamic_pointer_cast<RecentsCell>(cell));
      return out;
    });
  }
  std::vector<std::string> labels() {
    std::vector<std::string> out;
    for (auto& r : rows()) out.push_back(r->label->text());
    return out;
  }

  platform::SimProcess* phone_ = nullptr;
};

TEST_F(RecentsE2ETest, ARingTimeSavedInTheSpringboardShowsAfterItsNotice) {
  modernCall(1, 437000000.5, testing::kHanMeimei);  // an older missed call
  startPhone({{"CallHistoryRingDuration", true}});
  openRecents();  // the Phone app has read the (empty) ring times
  auto& springboard = world_.launch("com.apple.springboard",
                                    *platform::simulatedDevice("8.1", "4.7"));
  auto& telephony = world_.telephony();
  const auto call = telephony.incoming(testing::kStranger);
  advance(12);
  telephony.remoteHangup(call);
  advance(0);
  springboard.run(
      [] { ZVCallHistory::sharedInstance()->saveLastRingDuration(12); });
  openRecents(true);
  // Not yet: the Phone app still holds the ring times it read.
  EXPECT_EQ(labels(), (std::vector<std::string>{"北京市", "home 上海市"}));
  advance(2.5);  // "ZVCallHistoryChanged" reaches the Phone app
  in(*phone_, [] { PhoneApplication::shared()->recents->refresh(); });
  EXPECT_EQ(labels(),
            (std::vector<std::string>{"北京市 (12sec)", "home 上海市"}));
}

TEST_F(RecentsE2ETest, AvatarsMoveTheTextsAndTheIconAndNeverLandOnAReusedRow) {
  modernCall(1, 437000000.5, testing::kWangWu, 0, true);
  modernCall(2, 437000100.5, testing::kStranger);
  modernCall(3, 437000200.5, testing::kLiLei, 0, true);
  startPhone({{"EnableAvatar", true}, {"EnableArea", false}});
  openRecents();
  auto before = rows();
  ASSERT_EQ(before.size(), 3u);
  EXPECT_EQ(before[0]->nameLabel->text(), std::string(7, ' ') + "李雷");
  EXPECT_TRUE(before[0]->contentView()->viewWithTag(10086));  // moved icon
  EXPECT_EQ(before[0]->separatorInset().left, 67);
  EXPECT_TRUE(
      testing::allPixels(before[0]->imageView()->image(), testing::kRed));
  in(*phone_, [] { PhoneApplication::shared()->recents->setEditing(true); });
  EXPECT_EQ(rows()[0]->separatorInset().left, 105);

  // A fresh process: no pictures cached. Deleting the top row while its
  // picture loads redraws the stranger's row in the same cell; the picture
  // that arrives then is not put on it.
  testing::execSql(root_ + testing::schema::kCallHistoryStorePath,
                   "DELETE FROM ZCALLRECORD");
  modernCall(1, 437000000.5, testing::kStranger);
  modernCall(2, 437000100.5, testing::kLiLei);
  auto& second = startPhone({{"EnableAvatar", true}});
  auto reused = second.run([] {
    auto app = PhoneApplication::shared();
    app->selectTab(PhoneApplication::kRecents);  // 李雷's picture loads
    auto cell = app->recents->table()->cellForRowAtIndex(0);
    app->recents->deleteRow(0);  // the list now shows the stranger alone
    return cell;
  });
  world_.advance(0);
  auto after = rows();
  ASSERT_EQ(after.size(), 1u);
  ASSERT_EQ(after[0], reused);
  EXPECT_EQ(after[0]->call->call.number, testing::kStranger);
  EXPECT_TRUE(
      testing::allPixels(after[0]->imageView()->image(), testing::kGrey));
}

// The backup follows the host: appearing puts an older backed-up call back
// (and the host lists it), deleting a row or clearing the list removes the
// calls' copies from the backup by their dates since 2001.
TEST_F(RecentsE2ETest, BackupFollowsAppearingDeletingAndClearing) {
  modernCall(1, 2000.25, testing::kLiLei);
  modernCall(2, 3000.25, testing::kStranger);
  modernCall(13, 900.25, testing::kWangWu, 0, false, "ZVZCALLRECORD");
  startPhone({{"CallHistoryLimit", 101}});
  openRecents();
  EXPECT_EQ(modernDates("ZCALLRECORD"),
            (std::vector<double>{900.25, 2000.25, 3000.25}));
  EXPECT_TRUE(modernDates("ZVZCALLRECORD").empty());
  EXPECT_EQ(phone_->run([] {
    return PhoneApplication::shared()->recents->manager->calls.size();
  }),
            3u);
  // Copies of the listed calls, as a sync client leaves them.
  modernCall(11, 2000.25, testing::kLiLei, 0, false, "ZVZCALLRECORD");
  modernCall(12, 3000.25, testing::kStranger, 0, false, "ZVZCALLRECORD");
  in(*phone_, [] { PhoneApplication::shared()->recents->deleteRow(0); });
  EXPECT_EQ(modernDates("ZVZCALLRECORD"), (std::vector<double>{2000.25}));
  EXPECT_EQ(modernDates("ZCALLRECORD"), (std::vector<double>{900.25, 2000.25}));
  in(*phone_, [] { PhoneApplication::shared()->recents->clearAll(); });
  EXPECT_TRUE(modernDates("ZVZCALLRECORD").empty());
  EXPECT_TRUE(modernDates("ZCALLRECORD").empty());
}

TEST_F(RecentsE2ETest, BeforeEightDeletingGoesThroughZvtoolWithDatesSince1970) {
  legacyCall(1, 1415307200, testing::kLiLei, 0, 1);
  legacyCall(2, 1415307300, testing::kStranger);
  startPhone({{"CallHistoryLimit", 120}, {"AreaOnlyStrangers", true}}, "7.1",
             "4");
  std::vector<std::string> commands;
  phone_->setSystemHandler([&](const std::string& command) {
    commands.push_back(command);
    return 0;
  });
  openRecents();
  EXPECT_TRUE(commands.empty());  // nothing backed up: nothing to restore
  // The calls come from call_history.db, the contact with the call; only
  // the stranger gets the area.
  EXPECT_EQ(labels(), (std::vector<std::string>{"北京市", "mobile"}));
  in(*phone_, [] { PhoneApplication::shared()->recents->deleteRow(0); });
  in(*phone_, [] { PhoneApplication::shared()->recents->clearAll(); });
  EXPECT_EQ(commands, (std::vector<std::string>{
                          "/Library/Zorvel/zvtool -d 1415307300",
                          "/Library/Zorvel/zvtool -c",
                      }));
}

}  // namespace
}  // namespace zv
