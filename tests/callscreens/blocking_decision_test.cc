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
constexpr int32_t kUnknown = -2;  // the address book could not be read

// One call against fresh settings and lists. `list` is the mode's file
// (whitelist in modes 1 and 2, blacklist otherwise; empty: no file);
// switches: S blocks strangers, P callers the platform blocks. Verdict:
// B blocked and remembered, b blocked, P let through and remembered, p let
// through.
struct Rule {
  int mode;
  const char* areas;
  const char* switches;
  std::vector<std::string> list;
  std::optional<std::string> number;
  int32_t abUID;
  bool platformBlocked;
  char verdict;
};

TEST_F(BlockingTest, RulesInOrderOfModesSwitchesListsAndAreas) {
  const std::vector<std::string> white{"13912345678", "10086"};
  const std::vector<std::string> patterns{"10010", "95###", "*"};
  const Rule rules[] = {
      // Block all: contacts and whitelisted numbers alike, without looking
      // anything up. (Hidden callers here, the area rule's words and
      // prefixes, and the strangers switch on hidden callers are the
      // end-to-end suite's, tests/hooks/blocking_e2e_test.cc.)
      {2, "", "", white, "13912345678", kContact, false, 'b'},
      // The switches come before the lists: a whitelisted stranger, a
      // whitelisted contact the platform blocks.
      {1, "", "SP", white, "13912345678", -1, false, 'b'},
      {1, "", "SP", white, "10086", kContact, false, 'P'},
      {1, "", "SP", white, "10086", kContact, true, 'b'},
      // An unreadable address book makes no stranger: the lists decide.
      {1, "", "SP", white, "10086", kUnknown, false, 'P'},
      {1, "", "SP", white, "13800000000", kUnknown, false, 'b'},
      {0, "", "", {}, "13912345678", -1, true, 'p'},
      // A hidden caller has no number for the lists or the areas.
      {1, "南京 1", "", {}, std::nullopt, -1, false, 'p'},
      {1, "南京 1", "", {}, std::nullopt, kContact, false, 'p'},
      {1, "南京 1", "", {}, std::nullopt, -1, true, 'p'},
      {0, "", "S", {}, std::nullopt, kContact, false, 'p'},
      // Whitelist mode without a whitelist blocks every number (a miss is
      // not remembered, so a new list counts at once).
      {1, "南京 1", "", {}, "13800000000", -1, false, 'b'},
      {1, "", "", {}, "13912345678", kContact, false, 'b'},
      // Blacklist patterns (how each kind matches is the matcher's own
      // table, tests/core/number_utils_test.cc); "*" alone matches nothing.
      {0, "", "", patterns, "10010", -1, false, 'B'},
      {0, "", "", patterns, "95588 1234", -1, false, 'B'},
      {0, "", "", patterns, "13900000000", -1, false, 'p'},
      // The area rule in blacklist mode too.
      {0, "深圳 1860", "", {"10010"}, "075512345678", -1, false, 'B'},
      {0, "深圳 1860", "", {"10010"}, "13912345678", -1, false, 'p'},
      // Other modes: the area rule only; doubled blanks make no empty word.
      {3, "深圳", "", {"13912345678"}, "13912345678", -1, false, 'p'},
      {3, "  北京  ", "", {}, "13912345678", -1, false, 'p'},
      {3, "  北京  ", "", {}, "18601234567", -1, false, 'B'},
      {3, "", "", {}, "075512345678", -1, false, 'p'},
  };
  for (const Rule& r : rules) {
    const std::string sw = r.switches;
    start({{"BlacklistBlockMode", r.mode},
           {"BlacklistBlockArea", r.areas},
           {"BlacklistBlockStrangers", sw.find('S') != std::string::npos},
           {"BlacklistBlockBlockedCaller", sw.find('P') != std::string::npos}});
    std::filesystem::remove(root_ + Policy::kWhitelistPath);
    std::filesystem::remove(root_ + Policy::kBlacklistPath);
    if (!r.list.empty())
      writeList(r.mode == 1 || r.mode == 2 ? Policy::kWhitelistPath
                                           : Policy::kBlacklistPath,
                r.list);
    auto c =
        call(r.number, r.abUID == kUnknown ? -1 : r.abUID, r.platformBlocked);
    rt::as<FakeCall>(c)->contactUnknown = r.abUID == kUnknown;
    const std::string what = std::to_string(r.mode) + " " + r.switches + " " +
                             r.number.value_or("hidden");
    EXPECT_EQ(controller_->blockCall(c), r.verdict == 'B' || r.verdict == 'b')
        << what;
    const auto& cache = controller_->lastBlockedNumber();
    using Cache = std::map<std::string, bool>;
    const Cache cached = r.verdict == 'B' || r.verdict == 'P'
                             ? Cache{{*r.number, r.verdict == 'B'}}
                             : Cache{};
    EXPECT_EQ(cache, cached) << what;
    // Lists are read only by their modes, areas only for an area rule.
    if (r.mode >= 2) {
      EXPECT_FALSE(controller_->whitelist()) << what;
      EXPECT_FALSE(controller_->blacklist()) << what;
    }
    if (!*r.areas) {
      EXPECT_FALSE(ZVAreaLoader::sharedInstance()->loaded());
    }
  }
}

TEST_F(BlockingTest, MasterSwitchOffOrNoHostBlocksNothing) {
  start({{"EnableBlacklist", false},
         {"BlacklistBlockMode", 2},
         {"BlacklistBlockStrangers", true},
         {"BlacklistBlockArea", "南京"}});
  writeList(Policy::kBlacklistPath, {"13912345678"});
  EXPECT_FALSE(blocks("13912345678"));
  host_->incoming = call("13912345678");
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_FALSE(controller_->blockRingtone(nullptr));
  EXPECT_TRUE(takeActions().empty());
  EXPECT_FALSE(controller_->blacklist());
  // Nor is an outgoing call, even in block-all mode; nor anything without
  // a host.
  start({{"BlacklistBlockMode", 2}});
  auto c = call("10086");
  host_->incoming = c;
  rt::as<FakeCall>(c)->isOutgoing = true;
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  controller_->setHost(nullptr);
  EXPECT_FALSE(controller_->blockCall(c));
  EXPECT_FALSE(controller_->blockInCall(nullptr));
  EXPECT_EQ(controller_->getActivationCall(), nullptr);
  EXPECT_FALSE(controller_->blockCall(nullptr));
}

TEST_F(BlockingTest, SwitchesBlockEvenANumberRememberedAsLetThrough) {
  start({{"BlacklistBlockMode", 1}, {"BlacklistBlockStrangers", true}});
  // A missing whitelist is tried again on every lookup.
  EXPECT_TRUE(blocks("10086", kContact));
  writePlist(Policy::kWhitelistPath, Dict{});
  EXPECT_TRUE(blocks("10086", kContact));
  ASSERT_TRUE(controller_->whitelist());
  EXPECT_TRUE(controller_->whitelist()->empty());
  writeList(Policy::kWhitelistPath, {"10086"});
  controller_->unloadBlacklist();
  EXPECT_FALSE(blocks("10086", kContact));
  EXPECT_TRUE(blocks("10086"));
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
  // The area rule's verdict is stored over the whitelist's: the number
  // stays blocked from the cache until the lists reload.
  EXPECT_TRUE(blocks("139123418888"));
  EXPECT_EQ(controller_->lastBlockedNumber().at("139123418888"), true);
  EXPECT_FALSE(blocks("13912348888"));
  platform::current().post(ZVIncomingCallController::kChangedNotification);
  world_.advance(0);
  EXPECT_TRUE(blocks("13912348888"));
}

TEST_F(BlockingTest, InCallDecisionFindsTheScreensCallOrTheIncomingOne) {
  start({{"BlacklistBlockMode", 0}});
  writeList(Policy::kBlacklistPath, {"10010", "10011", "10012"});
  auto screen = rt::create(callClass_);
  host_->incoming = call("10086");
  host_->incomingVideo = call("10011");
  host_->calls[screen.get()] = call("10010");
  EXPECT_TRUE(controller_->blockInCall(screen));
  EXPECT_EQ(takeActions(), (Actions{"disconnect 10010"}));
  // A screen without a call, and no screen: the incoming voice call (one
  // that is blocked, then one that is not).
  host_->calls.clear();
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

}  // namespace
}  // namespace zv::testing
