// What happens to a blocked call: the hang-up, the reminder a second later,
// the ringtone's second decision, and the 7.x hook retries.
#include <gtest/gtest.h>

#include "blocking_fixture.h"
#include "platform/platform.h"

namespace zv::testing {
namespace {

using C = ZVIncomingCallController;
using Policy = CallBlockingPolicy;
using Actions = std::vector<std::string>;

// Actions 0, 1 and 2 are seen through the hooks (tests/hooks); here what
// the hosts cannot show.
TEST_F(BlockingTest, UnknownActionAndACallWithoutAHandleHangUpNothing) {
  start({{"BlacklistBlockMode", 2}, {"BlacklistBlockAction", 7}});
  EXPECT_TRUE(blocks("10010"));
  EXPECT_TRUE(takeActions().empty());
  start({{"BlacklistBlockMode", 2}, {"BlacklistBlockAction", 0}});
  auto handleless = call("10011");
  rt::as<FakeCall>(handleless)->handle = nullptr;
  EXPECT_TRUE(controller_->blockCall(handleless));
  EXPECT_TRUE(takeActions().empty());
  // Action 1 answers "blocked" without acting.
  start({{"BlacklistBlockMode", 2}, {"BlacklistBlockAction", 1}});
  EXPECT_TRUE(controller_->blockAction(call("10011")));
  EXPECT_TRUE(takeActions().empty());
}

TEST_F(BlockingTest, ReminderBitsChooseVibrationAndSound) {
  writeDeviceFile(Policy::kBlockSoundPath, "caf");
  // Remind off: nothing is even scheduled.
  start({{"BlacklistBlockMode", 2}, {"BlacklistBlockAction", 1}});
  size_t before = world_.pending();
  EXPECT_TRUE(blocks("10010"));
  EXPECT_EQ(world_.pending(), before);
  // Vibration only: no sound is made; a reminder outlives no controller.
  start({{"BlacklistBlockMode", 2},
         {"BlacklistBlockAction", 1},
         {"BlacklistBlockingRemind", 1}});
  EXPECT_TRUE(blocks("10010"));
  world_.advance(1);
  EXPECT_EQ(takeActions(), (Actions{"sound 4095"}));
  EXPECT_EQ(controller_->soundID(), 0u);
  EXPECT_TRUE(blocks("10010"));
  controller_.reset();
  world_.advance(2);
  EXPECT_TRUE(takeActions().empty());
}

// Without the file, or with one the platform refuses, a reminder vibrates
// only and the sound is tried again on the next; once made it is reused
// and let go with the controller. (When a reminder comes is the end-to-end
// suite's.)
TEST_F(BlockingTest, ReminderSoundIsTriedUntilMadeThenReusedAndDisposed) {
  start({{"BlacklistBlockMode", 2},
         {"BlacklistBlockAction", 1},
         {"BlacklistBlockingRemind", 3}});
  EXPECT_TRUE(blocks("10010"));
  world_.advance(1);
  EXPECT_EQ(takeActions(), (Actions{"sound 4095"}));
  writeDeviceFile(Policy::kBlockSoundPath, "caf");
  host_->refuseSounds = true;
  controller_->blockRemind();
  EXPECT_EQ(takeActions(),
            (Actions{"sound 4095", "create /Library/Zorvel/block.caf"}));
  host_->refuseSounds = false;
  controller_->blockRemind();
  controller_->blockRemind();
  EXPECT_EQ(takeActions(),
            (Actions{"sound 4095", "create /Library/Zorvel/block.caf",
                     "sound 7001", "sound 4095", "sound 7001"}));
  controller_.reset();
  EXPECT_EQ(takeActions(), (Actions{"dispose 7001"}));
}

// The ringtone's decision starts from an empty cache.
TEST_F(BlockingTest, RingtoneDecisionSilencesWithoutActingTwice) {
  start({{"BlacklistBlockMode", 0}, {"BlacklistBlockingRemind", 1}});
  writeList(Policy::kBlacklistPath, {"10010"});
  host_->incoming = call("10010");
  EXPECT_TRUE(controller_->blockInCall(nullptr));
  EXPECT_TRUE(controller_->blockRingtone(nullptr));
  world_.advance(1);
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10010", "sound 4095"}));
  // A caller that is not blocked rings.
  host_->incoming = call("10086");
  EXPECT_FALSE(controller_->blockRingtone(nullptr));
  // The suppression ends with the ringtone's decision.
  host_->incoming = call("10010");
  EXPECT_TRUE(controller_->blockInCall(nullptr));
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10010"}));
  // The user switches to area-only blocking; the settings reload 3 s later.
  writePlist(kSettingsPath,
             Dict{{"EnableBlacklist", true}, {"BlacklistBlockMode", 3}});
  platform::current().post(ZVSettings::kChangedNotification);
  world_.advance(3);
  // The screen's decision still finds the cached verdict, the ringtone's
  // does not.
  EXPECT_TRUE(controller_->blockInCall(nullptr));
  EXPECT_FALSE(controller_->blockRingtone(nullptr));
  EXPECT_TRUE(controller_->lastBlockedNumber().empty());
}

TEST_F(BlockingTest, InitHookRetriesEveryTenSecondsAtMostTenTimesBeforeEight) {
  start({}, "7.1", "com.apple.springboard");
  world_.advance(9.9);
  EXPECT_TRUE(takeActions().empty());
  world_.advance(0.1);
  EXPECT_EQ(takeActions(), (Actions{"install"}));
  world_.advance(89.9);
  EXPECT_EQ(C::initHookAttempts(), 9);
  world_.advance(1000);
  EXPECT_EQ(C::initHookAttempts(), 10);
  EXPECT_EQ(takeActions(), Actions(9, "install"));
  // Once the class exists the retries stop.
  start({}, "7.1", "com.apple.springboard");
  world_.advance(20);
  host_->screenClassExists = true;
  world_.advance(300);
  EXPECT_EQ(takeActions(), Actions(3, "install"));
  EXPECT_EQ(C::initHookAttempts(), 3);
  start({}, "8.0", "com.apple.InCallService");
  world_.advance(200);
  EXPECT_EQ(C::initHookAttempts(), 0);
  EXPECT_TRUE(takeActions().empty());
}

}  // namespace
}  // namespace zv::testing
