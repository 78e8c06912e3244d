// The call centre and the call objects of a process: what they report,
// that they are the device's calls in every process, and that changes
// arrive on the process's run loop in order.
#include <gmock/gmock.h>

#include <map>

#include "platform/db/contact_lookup.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

using platform::CallId;

TEST_F(TelephonyTest, CallPropertiesComeFromTheNetworkAndTheAddressBook) {
  writeAddressBook({{3, "+86 138 0013 8000", "_$!<Mobile>!$_"},
                    {5, "010-8888 6666", "Beijing office"},
                    {6, "13900139000", ""}});
  auto& springboard = launch("com.apple.springboard");
  network().blockCaller("139 0013 9000");
  const std::tuple<std::string, platform::IncomingOptions, std::string>
      cases[] = {
          {"13800138000", {}, "4 13800138000 3 mobile"},
          {"+861088886666", {}, "4 +861088886666 5 Beijing office"},
          {"13900139000", {}, "4 13900139000 6 nil blocked"},
          {"10086", {}, "4 10086 -1 nil"},
          {"13800138000", {.hidden = true}, "4 nil -1 nil"},
          {"10086", {.abUID = 42}, "4 10086 42 nil"},
          {"10086", {.platformBlocked = true}, "4 10086 -1 nil blocked"},
      };
  for (const auto& [number, options, expected] : cases) {
    const CallId id = network().incoming(number, options);
    world_.advance(0);
    EXPECT_EQ(springboard.run([] { return describe(incoming()); }), expected);
    network().remoteHangup(id);
    world_.advance(0);
  }
}

TEST_F(TelephonyTest, NumbersMatchAcrossPrefixesButNotByTheirTailsAlone) {
  // Both ways round; the index of many numbers answers the same, with the
  // first id of several numbers that match.
  for (const auto& [a, b, same] :
       std::initializer_list<std::tuple<const char*, const char*, bool>>{
           {"+86 138 0013 8000", "13800138000", true},
           {"0086 10 8888 6666", "010-88886666", true},
           {"10086", "10086", true},
           {"13800138000", "13900138000", false},
           {"1380010086", "10086", false},  // not by the tail alone
           {"+1234 13800138000", "13800138000", false},
           {"", "", false},
           {"+", "abc", false}})
    for (const auto& [x, y] : {std::pair(a, b), std::pair(b, a)}) {
      SCOPED_TRACE(std::string(x) + " / " + y);
      EXPECT_EQ(ps::sameNumber(x, y), same);
      ps::SameNumberIndex index;
      index.add("12345678", 0);
      index.add(y, 2);
      index.add(y, 1);
      EXPECT_EQ(index.first(x), same ? std::optional<size_t>(1) : std::nullopt);
    }
}

// Voice and video calls are found apart, and an answered or outgoing call
// is not incoming; each process has its own object for a call (class tables
// and objects are per process), known at once to a process started during
// the call; an object kept past the end shows the end. With no address
// book at all: no contact, no failure.
TEST_F(TelephonyTest, EveryProcessSeesTheDevicesCallsAsItsOwnObjects) {
  auto& springboard = launch("com.apple.springboard");
  auto& incall = launch("com.apple.InCallService");
  auto ringing = [&] {
    return incall.run([] {
      return describe(incoming()) + " / " + describe(incomingVideo());
    });
  };
  const CallId video = network().incoming("13800138000", {.video = true});
  world_.advance(0);
  EXPECT_EQ(ringing(), "none / 4 13800138000 -1 nil no handle");
  const CallId voice = network().incoming("10086");
  network().answer(video);
  world_.advance(0);
  EXPECT_EQ(ringing(), "4 10086 -1 nil / none");
  network().remoteHangup(voice);
  network().remoteHangup(video);
  const CallId id = network().dial("10086");
  world_.advance(0);
  EXPECT_EQ(ringing(), "none / none");
  auto object = [&](platform::SimProcess& p) {
    return p.run([&] { return platform::callObject(id); });
  };
  auto seen = [&](platform::SimProcess& p, rt::Id call = nullptr) {
    return p.run(
        [&] { return describe(call ? call : platform::callObject(id)); });
  };
  const rt::Id first = object(springboard);
  EXPECT_EQ(seen(springboard), "3 10086 -1 nil outgoing");
  EXPECT_EQ(object(springboard), first);
  EXPECT_NE(object(incall), first);
  EXPECT_EQ(seen(incall), "3 10086 -1 nil outgoing");
  network().connect(id);
  world_.advance(0);
  EXPECT_EQ(seen(springboard, first), "1 10086 -1 nil outgoing");
  EXPECT_EQ(seen(launch("com.apple.mobilephone")), "1 10086 -1 nil outgoing");
  network().end(id);
  world_.advance(0);
  EXPECT_EQ(seen(springboard), "none");
  EXPECT_EQ(seen(springboard, first), "6 10086 -1 nil outgoing");
}

TEST_F(TelephonyTest, StatusChangesArriveOnTheRunLoopInOrder) {
  auto& incall = launch("com.apple.InCallService");
  auto& springboard = launch("com.apple.springboard");
  std::vector<std::string> heard;
  std::map<CallId, rt::Id> objects;
  incall.run([&] {
    platform::observeCallStatus([&](const rt::Id& call) {
      // The object already shows the change it is told about.
      const CallId id = platform::callInfo(call)->id;
      heard.push_back(std::to_string(id) + ":" +
                      std::to_string(rt::send(call, sdk::TUCall::status)));
      auto [it, fresh] = objects.emplace(id, call);
      EXPECT_EQ(it->second, call) << "the same object for every change";
    });
  });
  std::vector<int> springboardHeard;
  platform::CallObserverToken token = springboard.run([&] {
    return platform::observeCallStatus([&](const rt::Id& call) {
      springboardHeard.push_back(rt::send(call, sdk::TUCall::status));
    });
  });

  const CallId a = network().incoming("13800138000");
  network().answer(a);
  EXPECT_TRUE(heard.empty()) << "nothing is delivered behind the run loop";
  world_.advance(0);
  const CallId b = network().dial("10086");
  world_.advance(1);
  network().connect(b);
  network().hold(b);
  network().resume(b);
  springboard.run([&] { platform::removeCallStatusObserver(token); });
  network().remoteHangup(a);
  network().end(b);
  world_.advance(0);

  EXPECT_EQ(heard,
            (std::vector<std::string>{"1:4", "1:1", "2:3", "2:1", "2:2", "2:1",
                                      "1:5", "1:6", "2:5", "2:6"}));
  EXPECT_EQ(springboardHeard, (std::vector<int>{4, 1, 3}))
      << "a removed observer hears nothing more, not even changes made "
         "before it was removed that its run loop had not yet delivered";
  // The world's record of the calls.
  EXPECT_EQ(effects("call"),
            (Lines{"0  1 4 13800138000", "0  1 1 13800138000", "0  2 3 10086",
                   "1  2 1 10086", "1  2 2 10086", "1  2 1 10086",
                   "1  1 5 13800138000", "1  1 6 13800138000", "1  2 5 10086",
                   "1  2 6 10086"}));
}

TEST_F(TelephonyTest, ActionsThatDoNotFitTheCallChangeNothing) {
  launch("com.apple.springboard");
  EXPECT_THROW(network().incoming(""), std::invalid_argument);
  EXPECT_THROW(network().dial(""), std::invalid_argument);
  EXPECT_THROW(network().answer(99), std::invalid_argument);
  const CallId ringing = network().incoming("10086");
  const CallId dialling = network().dial("10010");
  EXPECT_THROW(network().connect(ringing), std::invalid_argument);
  EXPECT_THROW(network().answer(dialling), std::invalid_argument);
  EXPECT_THROW(network().hold(ringing), std::invalid_argument);
  EXPECT_THROW(network().resume(dialling), std::invalid_argument);
  EXPECT_THROW(network().decline(dialling), std::invalid_argument);
  network().remoteHangup(ringing);
  EXPECT_THAT([&] { network().answer(ringing); },
              ::testing::ThrowsMessage<std::invalid_argument>(
                  "cannot answer call 1: it is ended"));
  EXPECT_EQ(network().call(dialling)->status, platform::kCallDialling);
  EXPECT_EQ(network().calls().size(), 1u);
  EXPECT_EQ(storeRows().size(), 1u);
}

}  // namespace
}  // namespace zv::testing
