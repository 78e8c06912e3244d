// The order of blockCall's rules, from the master switch to the area rule.
#include <gtest/gtest.h>

#include "area/area_loader.h"
#include "blocking_fixture.h"
#include "platform/platform.h"

namespace zv::testing {
namespace {

using Policy = CallBlockingPolicy;
using Actions = std::vector<std::string>;
constexpr int32_t kContact = 12;

TEST_F(BlockingTest, MasterSwitchOffBlocksNothingEvenInBlockAllMode) {
  start({{"EnableBlacklist", false},
         {"BlacklistBlockMode", 2},
         {"BlacklistBlockStrangers", true},
         {"BlacklistBlockArea", "南京"}});
  writeList(Policy::kBlacklistPath, {"13912345678"});
  EXPECT_FALSE(blocks("13912345678"));
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_FALSE(controller_->blockRingtone(nullptr));
  host_->incoming = call("13912345678");
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_FALSE(controller_->blockRingtone(nullptr));
  EXPECT_TRUE(takeActions().empty());
  EXPECT_FALSE(controller_->blacklist());
}

TEST_F(BlockingTest, BlockAllModeBlocksContactsWhitelistedAndHiddenCallers) {
  start({{"BlacklistBlockMode", 2}});
  writeList(Policy::kWhitelistPath, {"13912345678"});
  EXPECT_TRUE(blocks("13912345678", kContact));
  EXPECT_TRUE(blocks(std::nullopt));
  EXPECT_EQ(takeActions(),
            (Actions{"disconnect 13912345678", "disconnect hidden"}));
  // Nothing was looked up, so nothing was cached.
  EXPECT_TRUE(controller_->lastBlockedNumber().empty());
  EXPECT_FALSE(controller_->whitelist());
  EXPECT_FALSE(controller_->blockCall(nullptr));
}

TEST_F(BlockingTest, StrangersAndPlatformBlockedCallersComeBeforeTheLists) {
  start({{"BlacklistBlockMode", 1},
         {"BlacklistBlockStrangers", true},
         {"BlacklistBlockBlockedCaller", true}});
  writeList(Policy::kWhitelistPath, {"13912345678", "10086"});
  // A whitelisted stranger is blocked by the strangers switch.
  EXPECT_TRUE(blocks("13912345678"));
  // A whitelisted contact passes; a whitelisted contact the platform blocks
  // does not.
  EXPECT_FALSE(blocks("10086", kContact));
  EXPECT_TRUE(controller_->blockCall(call("10086", kContact, true)));
  // The switches block even a cached "let through".
  EXPECT_EQ(controller_->lastBlockedNumber().at("10086"), false);
  EXPECT_TRUE(controller_->blockCall(call("10086", -1)));
  // An address book that could not be read makes no stranger: the lists
  // decide (whitelisted passes, the rest of whitelist mode is blocked).
  for (auto [number, blocked] :
       {std::pair{"10086", false}, std::pair{"13800000000", true}}) {
    auto unknown = call(number, -1);
    rt::as<FakeCall>(unknown)->contactUnknown = true;
    EXPECT_EQ(controller_->blockCall(unknown), blocked) << number;
  }
  takeActions();
  // Switched off, a platform-blocked stranger rings.
  start({{"BlacklistBlockMode", 0}});
  EXPECT_FALSE(controller_->blockCall(call("13912345678", -1, true)));
  EXPECT_TRUE(takeActions().empty());
}

TEST_F(BlockingTest, HiddenCallerIsBlockedOnlyByModesAndSwitches) {
  start({{"BlacklistBlockMode", 1}, {"BlacklistBlockArea", "南京 1"}});
  // Whitelist mode with no whitelist blocks every number, but a hidden
  // caller has no number to test.
  EXPECT_FALSE(blocks(std::nullopt));
  EXPECT_TRUE(blocks("13800000000"));
  EXPECT_FALSE(controller_->blockCall(call(std::nullopt, kContact, false)));
  EXPECT_FALSE(controller_->blockCall(call(std::nullopt, -1, true)));
  // The strangers switch blocks a hidden stranger, not a hidden contact.
  start({{"BlacklistBlockStrangers", true}});
  EXPECT_TRUE(blocks(std::nullopt));
  EXPECT_FALSE(blocks(std::nullopt, kContact));
}

TEST_F(BlockingTest, WhitelistModeWithMissingOrEmptyWhitelistBlocksEveryCall) {
  start({{"BlacklistBlockMode", 1}});
  EXPECT_TRUE(blocks("13912345678", kContact));
  EXPECT_TRUE(blocks("10086"));
  // A missing file is tried again on every lookup.
  writePlist(Policy::kWhitelistPath, Dict{});
  EXPECT_TRUE(blocks("075512345678"));
  EXPECT_TRUE(controller_->whitelist());
  EXPECT_TRUE(controller_->whitelist()->empty());
  // Misses cache nothing: the next lookup would see a new list.
  EXPECT_TRUE(controller_->lastBlockedNumber().empty());
}

TEST_F(BlockingTest, WhitelistModeLetsAWhitelistedNumberThroughAndCachesIt) {
  start({{"BlacklistBlockMode", 1}});
  controller_ = ZVIncomingCallController::sharedInstance();
  controller_->setHost(host_);
  writeList(Policy::kWhitelistPath, {"138####", "*8888"});
  EXPECT_FALSE(blocks("13800001111"));
  EXPECT_FALSE(blocks("+86 010 6666 8888"));
  EXPECT_TRUE(blocks("13900001111"));
  EXPECT_EQ(controller_->lastBlockedNumber(),
            (std::map<std::string, bool>{{"13800001111", false},
                                         {"+86 010 6666 8888", false}}));
  // The cached false is final: an area rule that now covers the number
  // (and blocks its whitelisted neighbour) reaches it only once
  // "ZVBlacklistChanged" drops the cache.
  EXPECT_FALSE(blocks("13912348888"));
  writePlist(kSettingsPath, Dict{{"EnableBlacklist", true},
                                 {"BlacklistBlockMode", 1},
                                 {"BlacklistBlockArea", "南京"}});
  platform::current().post("ZVSettingsChanged");
  world_.advance(3.5);
  EXPECT_TRUE(blocks("139123418888"));
  EXPECT_FALSE(blocks("13912348888"));
  platform::current().post(ZVIncomingCallController::kChangedNotification);
  world_.advance(0);
  EXPECT_TRUE(blocks("13912348888"));
}

// Where the prose promises that a whitelisted number from a blocked area is
// let through on its second call, the decision's own steps store the area
// rule's verdict over the whitelist's: the number stays blocked from the
// cache until the lists reload.
TEST_F(BlockingTest, WhitelistedNumberInABlockedAreaIsBlockedAndStaysBlocked) {
  start({{"BlacklistBlockMode", 1}, {"BlacklistBlockArea", "南京"}});
  writeList(Policy::kWhitelistPath, {"13912345678"});
  EXPECT_TRUE(blocks("13912345678"));
  EXPECT_EQ(controller_->lastBlockedNumber().at("13912345678"), true);
  std::filesystem::remove(root_ + Policy::kWhitelistPath);
  writeList(Policy::kWhitelistPath, {"13912345678"});
  EXPECT_TRUE(blocks("13912345678"));
  EXPECT_EQ(takeActions(),
            (Actions{"disconnect 13912345678", "disconnect 13912345678"}));
}

TEST_F(BlockingTest, BlacklistModeBlocksListedNumbersAndPatterns) {
  start({{"BlacklistBlockMode", 0}});
  writeList(Policy::kBlacklistPath,
            {"10010", "95###", "*5678", "400*", "0755*123", "*"});
  // "#" patterns match a prefix ("95588 1234"); "*" alone matches nothing.
  for (const char* n : {"10010", "95588", "95588 1234", "+86 139-1234-5678",
                        "4008 123 456", "0755 8888 8123"})
    EXPECT_TRUE(blocks(n)) << n;
  EXPECT_FALSE(blocks("13900000000"));
  EXPECT_FALSE(blocks("9558"));
  EXPECT_EQ(controller_->lastBlockedNumber().size(), 6u);
  EXPECT_FALSE(controller_->lastBlockedNumber().count("13900000000"));
}

TEST_F(BlockingTest, BlacklistModeStillAppliesTheAreaRuleToOtherNumbers) {
  start({{"BlacklistBlockMode", 0}, {"BlacklistBlockArea", "深圳 1860"}});
  writeList(Policy::kBlacklistPath, {"10010"});
  EXPECT_TRUE(blocks("075512345678"));  // its area holds the word
  EXPECT_TRUE(blocks("18601234567"));   // it starts with the prefix
  EXPECT_FALSE(blocks("13912345678"));
  EXPECT_FALSE(blocks("186"));  // the prefix, but no known area
  EXPECT_EQ(controller_->lastBlockedNumber(),
            (std::map<std::string, bool>{{"075512345678", true},
                                         {"18601234567", true}}));
}

TEST_F(BlockingTest, OtherModesUseOnlyTheAreaRuleAndTheSwitches) {
  start({{"BlacklistBlockMode", 3}, {"BlacklistBlockArea", "深圳"}});
  writeList(Policy::kBlacklistPath, {"13912345678"});
  EXPECT_FALSE(blocks("13912345678"));
  EXPECT_TRUE(blocks("075512345678"));
  EXPECT_FALSE(controller_->blacklist());
  EXPECT_FALSE(controller_->whitelist());
  // Doubled blanks make no empty word that would match every area.
  start({{"BlacklistBlockMode", 3}, {"BlacklistBlockArea", "  北京  "}});
  EXPECT_FALSE(blocks("13912345678"));
  EXPECT_TRUE(blocks("18601234567"));
  EXPECT_TRUE(ZVAreaLoader::sharedInstance()->loaded());
  // Without blocked areas the area service is not even asked (so it never
  // loads).
  start({{"BlacklistBlockMode", 3}});
  EXPECT_FALSE(blocks("075512345678"));
  EXPECT_TRUE(controller_->lastBlockedNumber().empty());
  EXPECT_FALSE(ZVAreaLoader::sharedInstance()->loaded());
}

TEST_F(BlockingTest, InCallDecisionFindsTheScreensCallOrTheIncomingOne) {
  start({{"BlacklistBlockMode", 0}});
  writeList(Policy::kBlacklistPath, {"10010", "10011", "10012"});
  auto screen = rt::create(callClass_);
  host_->incoming = call("10086");
  host_->incomingVideo = call("10011");
  host_->alertCalls[screen.get()] = call("10010");
  EXPECT_TRUE(controller_->blockInCall(screen));
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10010"}));
  // A screen without a call, and no screen: the incoming voice call (one
  // that is blocked, then one that is not).
  host_->alertCalls.clear();
  host_->incoming = call("10012");
  EXPECT_TRUE(controller_->blockInCall(screen));
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10012"}));
  host_->incoming = call("10086");
  EXPECT_FALSE(controller_->blockInCall(screen));
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  // No voice call: the incoming video call.
  host_->incoming = nullptr;
  EXPECT_EQ(controller_->getActivationCall(), host_->incomingVideo);
  EXPECT_TRUE(controller_->blockInCall(nullptr));
  host_->incomingVideo = nullptr;
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10011"}));
}

TEST_F(BlockingTest, OutgoingCallsAndAMissingHostBlockNothing) {
  start({{"BlacklistBlockMode", 2}});
  auto c = call("10086");
  std::dynamic_pointer_cast<FakeCall>(c)->isOutgoing = true;
  host_->incoming = c;
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_TRUE(takeActions().empty());
  // Without a host nothing is blocked.
  std::dynamic_pointer_cast<FakeCall>(c)->isOutgoing = false;
  controller_->setHost(nullptr);
  EXPECT_FALSE(controller_->blockCall(c));
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_EQ(controller_->getActivationCall(), nullptr);
}

}  // namespace
}  // namespace zv::testing
