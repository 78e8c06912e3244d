// Call blocking end to end on the springboard (7.x) or the in-call service
// (8.x) with the extension loaded: what the host showed and rang, hang-ups
// and reminders. The order of the rules is the controller's unit tests'
// (tests/callscreens); here each rule is seen once through the hooks.
#include <gtest/gtest.h>

#include "callscreens/incoming_call_controller.h"
#include "hosts/incallservice/app.h"
#include "hosts/springboard/app.h"
#include "platform/ui/application.h"
#include "support/world.h"

namespace zv::testing {
namespace {

using C = ZVIncomingCallController;
using Policy = CallBlockingPolicy;
using platform::IncomingOptions;

constexpr IncomingOptions kHidden{.hidden = true};
IncomingOptions contact(bool platformBlocked = false) {
  return {.abUID = 7, .platformBlocked = platformBlocked};
}

// Numbers and what the China database says of them.
constexpr const char* kShenzhen = "075588886666";  // 广东省深圳市
constexpr const char* kBeijing = "18601234567";    // 北京市
constexpr const char* kChangzhou = "13912345678";  // 江苏省常州市

class BlockingE2ETest : public World,
                        public ::testing::WithParamInterface<const char*> {
 protected:
  BlockingE2ETest() { installChinaDatabase(); }

  bool sevenX() const { return std::string(GetParam()) < "8"; }

  // Starts the call-screen host of the generation with `settings` and
  // EnableBlacklist on, and lets its start-up settle.
  void startHost(Dict settings) {
    settings.emplace("EnableBlacklist", true);
    process_ = &World::startHost(
        sevenX() ? hosts::springboardHost() : hosts::inCallServiceHost(),
        settings, GetParam());
    advance(60);
    world_.clearEvents();
  }
  hosts::CallScreenHost& host() { return callScreens(*process_); }

  // A call comes in and the host reacts; the host's record of it.
  hosts::ScreenedCall ring(const std::string& number,
                           IncomingOptions options = {}) {
    platform::CallId id = network().incoming(number, options);
    advance(0);
    for (const auto& c : host().screenedCalls())
      if (c.id == id) return c;
    ADD_FAILURE() << "the host never heard of call " << id;
    return {};
  }
  // Whether a call from `number` was blocked; a call that was not is
  // declined, so that the next one finds no screen up.
  bool blocked(const std::string& number, IncomingOptions options = {}) {
    auto c = ring(number, options);
    EXPECT_NE(c.screenBlocked, c.ringtone) << number;
    if (!c.screenBlocked) {
      network().decline(c.id);
      advance(0);
    }
    return c.screenBlocked;
  }

  platform::SimProcess* process_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Generations, BlockingE2ETest,
                         ::testing::Values("7.1", "8.1"), [](const auto& info) {
                           return std::string(info.param) == "7.1" ? "Seven"
                                                                   : "Eight";
                         });

// The switches and the area rule once each, with the call's facts as the
// hooks read them and the real database's areas.
TEST_P(BlockingE2ETest, RulesSeeTheCallsFactsAndTheDatabasesAreas) {
  startHost({{"BlacklistBlockMode", 3},
             {"BlacklistBlockStrangers", true},
             {"BlacklistBlockBlockedCaller", true},
             {"BlacklistBlockArea", "深圳 1860"}});
  EXPECT_TRUE(blocked("", kHidden));
  EXPECT_TRUE(blocked(kChangzhou));
  EXPECT_FALSE(blocked(kChangzhou, contact()));
  EXPECT_TRUE(blocked(kChangzhou, contact(true)));
  EXPECT_TRUE(blocked(kShenzhen, contact()));  // its area holds 深圳
  EXPECT_TRUE(blocked(kBeijing, contact()));   // it starts with 1860
  EXPECT_FALSE(blocked("1860", contact()));    // but no area is known for it
}

// Every call is hung up once (the ringtone's decision blocks again without
// acting), and one reminder comes a second after the last blocked call.
TEST_P(BlockingE2ETest, BlockAllModeHangsUpEveryCallAndRemindsOnce) {
  startHost({{"BlacklistBlockMode", 2}, {"BlacklistBlockingRemind", 3}});
  writeDeviceBytes(Policy::kBlockSoundPath, "caff");
  EXPECT_TRUE(blocked(kBeijing));
  advance(0.5);
  EXPECT_TRUE(blocked("", kHidden));
  advance(0.99);
  EXPECT_TRUE(events("sound").empty());
  advance(0.01);
  EXPECT_EQ(
      details("soundCreate"),
      std::vector<std::string>{std::string("4096 ") + Policy::kBlockSoundPath});
  EXPECT_EQ(details("sound"), (std::vector<std::string>{"4095", "4096"}));
  advance(10);
  EXPECT_EQ(events("sound").size(), 2u);
  EXPECT_EQ(details("disconnect"),
            (std::vector<std::string>{kBeijing, "(hidden)"}));
  for (const auto& c : host().screenedCalls())
    EXPECT_EQ(c.status, platform::kCallEnded);
  EXPECT_FALSE(host().screenLabels());
  // A host that runs for months keeps only the latest ended calls.
  for (int i = 0; i < int(hosts::kEndedCallsKept) + 20; ++i)
    ASSERT_TRUE(blocked(kBeijing));
  advance(1);
  EXPECT_LE(host().screenedCalls().size(), hosts::kEndedCallsKept + 1);
}

// Action 1 neither answers nor hangs up: the blocked call rings on,
// unseen and unheard. Call waiting: a call ringing in after it, or under
// another call's screen, gets its own decision; a blocked one leaves the
// screen that is up as it is, any other takes the screen.
TEST_P(BlockingE2ETest, ActionOneLetsItRingUnseenAndEveryCallIsDecided) {
  writeDevicePlist(Policy::kBlacklistPath, {{"10010", true}});
  startHost({{"BlacklistBlockMode", 0}, {"BlacklistBlockAction", 1}});
  auto blocked = ring("10010");
  EXPECT_TRUE(blocked.screenBlocked);
  EXPECT_FALSE(blocked.ringtone);
  advance(20);
  EXPECT_EQ(network().call(blocked.id)->status, platform::kCallRinging);
  EXPECT_TRUE(events("disconnect").empty());
  EXPECT_TRUE(events("disconnectAll").empty());
  if (!sevenX()) {
    // The in-call service's screen for it is an empty one.
    process_->run([] {
      auto app = hosts::InCallServiceApplication::shared();
      ASSERT_TRUE(app->screen());
      EXPECT_EQ(app->screen()->className(), "UIViewController");
      EXPECT_FALSE(app->screenLabels());
      EXPECT_FALSE(app->ringtone()->playing);
    });
  }
  auto other = ring(kShenzhen);
  EXPECT_FALSE(other.screenBlocked);
  EXPECT_TRUE(other.ringtone);
  ASSERT_TRUE(host().screenLabels());
  EXPECT_EQ(host().screenLabels()->name, kShenzhen);
  EXPECT_TRUE(ring("10010").screenBlocked);
  ASSERT_TRUE(host().screenLabels());
  EXPECT_EQ(host().screenLabels()->name, kShenzhen);
}

// Action 2 hangs up every call; an outgoing call to a blacklisted number
// is never blocked.
TEST_P(BlockingE2ETest, ActionTwoHangsUpEveryCall) {
  startHost({{"BlacklistBlockMode", 0}, {"BlacklistBlockAction", 2}});
  writeDevicePlist(Policy::kBlacklistPath,
                   {{kShenzhen, true}, {kBeijing, true}});
  platform::CallId mine = network().dial(kBeijing);
  advance(0);
  network().connect(mine);
  network().end(mine);
  advance(0);
  EXPECT_TRUE(blocked(kShenzhen));
  EXPECT_EQ(events("disconnectAll").size(), 1u);
  EXPECT_TRUE(events("disconnect").empty());
  for (const auto& c : network().calls()) ADD_FAILURE() << c.id << " is live";
}

TEST_P(BlockingE2ETest, FailureIsLoggedAndTheHostShowsTheCall) {
  startHost({{"BlacklistBlockMode", 0}});
  writeDevicePlist(Policy::kBlacklistPath, {{kShenzhen, true}});
  process_->run([] {
    rt::addMethod<std::optional<std::string>()>(
        rt::getClass("TUCall"), "destinationID",
        [](const rt::Id&) -> std::optional<std::string> {
          throw rt::Exception("NSGenericException", "no number");
        });
  });
  EXPECT_FALSE(blocked(kShenzhen));
  const std::string screen =
      sevenX() ? "MPIncomingPhoneCallController initWithCall:"
               : "PHInCallRootViewControllerActual initWithNibName:bundle:";
  EXPECT_EQ(details("log"),
            (std::vector<std::string>{"ZVException: " + screen +
                                      " NSGenericException no number"}));
  EXPECT_TRUE(events("alert").empty());
  // Switched off for the life of the process: the hooks pass through.
  EXPECT_FALSE(blocked(kShenzhen));
  EXPECT_EQ(events("log").size(), 1u);
}

using SpringBoardBlockingTest = World;

// 7.x: a call before the screen class exists rings unblocked; the class
// came with it, so the next retry (at 10 s) installs the rows, once.
TEST_F(SpringBoardBlockingTest, CallBeforeTheScreenClassIsHookedIsNotBlocked) {
  installChinaDatabase();
  auto& sb = startHost(hosts::springboardHost(),
                       {{"EnableBlacklist", true}, {"BlacklistBlockMode", 2}},
                       "7.1", "4");
  advance(5);
  network().decline(network().incoming(kBeijing));
  advance(10);
  platform::CallId late = network().incoming(kShenzhen);
  advance(200);
  sb.run([&] {
    auto calls = hosts::SpringBoardApplication::shared()->screenedCalls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_TRUE(calls[0].ringtone && !calls[0].screenBlocked);
    EXPECT_TRUE(calls[1].id == late && calls[1].screenBlocked);
    EXPECT_FALSE(calls[1].ringtone);
    EXPECT_EQ(C::initHookAttempts(), 1);
    const auto& started = platform::Process::current().startedModules;
    EXPECT_EQ(std::count(started.begin(), started.end(),
                         std::string("zvincomingcall_init2")),
              1);
  });
}

}  // namespace
}  // namespace zv::testing
