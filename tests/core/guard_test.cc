// The hook shapes and the exception guard on a made-up host class of a
// simulated process: typed messages and the object life cycle, what each
// shape runs in which order, and what a failure logs, shows and switches off.
#include "core/guard.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/hook.h"
#include "core/zv_exception.h"
#include "platform/runtime/message.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using hook::Hook;

// A host header of a made-up call screen.
struct CallScreen {
  static constexpr std::string_view kName = "CallScreen";
  static constexpr rt::Message<rt::Id(std::string)> initWithCall{
      kName, "initWithCall:"};
  static constexpr rt::Message<void()> dealloc{kName, "dealloc"};
  static constexpr rt::Message<std::string()> title{kName, "title"};
  static constexpr rt::Message<int(int)> twice{kName, "twice:"};
  static constexpr rt::Message<void(bool)> ring{kName, "ring:"};
  static constexpr rt::IvarName<std::string> number{kName, "_number"};
};
constexpr rt::Message<int(int)> kMissingTwice{"NoSuchClass", "twice:"};

// A signature mismatch between a host header and a hook row does not
// compile: these are the rows that would not.
template <typename Msg, typename Work>
concept SystemFirstRow = requires(Msg m, Work w) {
  hook::systemFirst(GuardKind::Log, m, w);
};
template <typename Msg, typename Work>
concept AfterRow = requires(Msg m, Work w) {
  hook::after(GuardKind::Log, m, w);
};
using RingMsg = decltype(CallScreen::ring);
using TitleMsg = decltype(CallScreen::title);
static_assert(SystemFirstRow<RingMsg, void (*)(const rt::Id&, bool)>);
static_assert(!SystemFirstRow<RingMsg, void (*)(const rt::Id&)>);
static_assert(!SystemFirstRow<RingMsg, void (*)(const rt::Id&, bool, int)>);
static_assert(!SystemFirstRow<RingMsg, void (*)(const rt::Id&, std::string)>);
static_assert(AfterRow<TitleMsg, void (*)(const rt::Id&, std::string&)>);
static_assert(!AfterRow<TitleMsg, void (*)(const rt::Id&, int&)>);
// A void method has no result to rewrite.
static_assert(!AfterRow<RingMsg, void (*)(const rt::Id&, bool)>);

// A call screen of the host, "10010", in a Phone process on 7.1.2; the
// host's own methods count their calls and log the life cycle.
class GuardTest : public testing::SimTest {
 protected:
  GuardTest() : phone_(world_.launch("com.apple.mobilephone")) {
    phone_.deviceFacts().systemVersion = "7.1.2";
    phone_.run([&] {
      rt::registerClass(CallScreen::kName);
      rt::define(CallScreen::initWithCall,
                 [this](const rt::Id& self, std::string number) {
                   log_.push_back("host init " + number);
                   rt::setIvar(self, CallScreen::number, number);
                   return self;
                 });
      rt::define(CallScreen::dealloc, [this](const rt::Id& self) {
        log_.push_back("host dealloc " +
                       rt::ivar(self, CallScreen::number).value_or("?"));
      });
      rt::define(CallScreen::title, [](const rt::Id& self) {
        return "Call " + rt::ivar(self, CallScreen::number).value_or("");
      });
      rt::define(CallScreen::twice, [this](const rt::Id&, int x) {
        ++hostCalls_;
        return 2 * x;
      });
      rt::define(CallScreen::ring,
                 [this](const rt::Id&, bool) { ++hostCalls_; });
      object_ = rt::make(CallScreen::initWithCall, "10010");
    });
    log_.clear();
  }
  ~GuardTest() override {
    phone_.run([&] { object_.reset(); });
  }

  platform::SimProcess& phone_;
  rt::Id object_;
  std::vector<std::string> log_;
  int hostCalls_ = 0;
  int workCalls_ = 0;
};

TEST_F(GuardTest, InitialisersAndDeallocAreReplaceableMessages) {
  phone_.run([&] {
    using hook::systemDecides;
    using hook::systemFirst;
    systemDecides(GuardKind::Log, CallScreen::initWithCall,
                  [&](const rt::Id&, rt::Id& result, std::string number) {
                    log_.push_back("hook init " + number);
                    result = nullptr;  // a blocked call gets no screen
                    return number == "10086";
                  });
    systemFirst(GuardKind::Log, CallScreen::dealloc,
                [&](const rt::Id& self) { log_.push_back("hook dealloc"); });

    rt::Id screen = rt::make(CallScreen::initWithCall, "13800138000");
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(rt::send(screen, CallScreen::title), "Call 13800138000");
    screen.reset();
    EXPECT_EQ(log_, (std::vector<std::string>{
                        "hook init 13800138000", "host init 13800138000",
                        "hook dealloc", "host dealloc 13800138000"}));

    // The replaced initialiser answers nil: the creation yields nil, and
    // the object that was allocated still deallocates once.
    log_.clear();
    EXPECT_EQ(rt::make(CallScreen::initWithCall, "10086"), nullptr);
    EXPECT_EQ(log_, (std::vector<std::string>{"hook init 10086", "hook dealloc",
                                              "host dealloc ?"}));
  });
}

TEST_F(GuardTest, AfterRewritesTheResultUnlessTheWorkFails) {
  phone_.run([&] {
    int calls = 0;
    ASSERT_TRUE(hook::after(GuardKind::Log, CallScreen::title,
                            [&](const rt::Id&, std::string& title) {
                              if (++calls == 2) throw rt::Exception("E", "r");
                              title += "  Beijing";
                            }));
    EXPECT_EQ(rt::send(object_, CallScreen::title), "Call 10010  Beijing");
    EXPECT_EQ(rt::trySend(rt::Id(), CallScreen::title), "");  // nil answers ""
    // A failing rewrite leaves the host's own result, and switches off.
    EXPECT_EQ(rt::send(object_, CallScreen::title), "Call 10010");
    EXPECT_FALSE(zvenabled());
    EXPECT_EQ(rt::send(object_, CallScreen::title), "Call 10010");
    EXPECT_EQ(calls, 2);
  });
  EXPECT_EQ(world_.events("log").size(), 1u);
}

TEST_F(GuardTest, HostFirstReturnsHostResultAndSurvivesAFailure) {
  phone_.run([&] {
    // A class the host does not have: nothing is installed.
    EXPECT_FALSE(
        Hook<int(int)>::hostFirst(GuardKind::Alert, kMissingTwice, nullptr));
    int seenByWork = 0;
    ASSERT_TRUE(hook::hostFirst(
        GuardKind::Alert, CallScreen::twice,
        [&](const rt::Id&, int& result, int) {
          ++workCalls_;
          seenByWork = result;
          result = 99;  // the caller still gets the host's result
          if (workCalls_ == 1)
            throw rt::Exception("NSRangeException", "index 3 beyond bounds");
        }));
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 21), 42);
    EXPECT_EQ(seenByWork, 42);
    EXPECT_EQ(hostCalls_, 1);
    EXPECT_FALSE(zvenabled());
    // Switched off: the work never runs again, the host still does.
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 5), 10);
    EXPECT_EQ(workCalls_, 1);
    EXPECT_EQ(hostCalls_, 2);
  });
  auto alerts = world_.events("alert");
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_EQ(alerts[0].detail,
            "Zorvel Exception | CallScreen twice: NSRangeException "
            "index 3 beyond bounds | [Close] [Report bug]");
}

TEST_F(GuardTest, OtherThrownObjectsGiveTheShortMessage) {
  phone_.run([&] {
    hook::systemFirst(GuardKind::Alert, CallScreen::ring,
                      [&](const rt::Id&, bool) {
                        ++workCalls_;
                        throw 42;
                      });
    rt::send(object_, CallScreen::ring, true);
    rt::send(object_, CallScreen::ring, true);
  });
  EXPECT_EQ(workCalls_, 1);
  EXPECT_EQ(hostCalls_, 2);
  ASSERT_EQ(phone_.alerts().size(), 1u);
  EXPECT_EQ(phone_.alerts()[0]->message, "CallScreen ring:");
}

TEST_F(GuardTest, SystemDecidesConsumesOrPassesOn) {
  bool consume = true;
  bool fail = false;
  phone_.run([&] {
    hook::systemDecides(GuardKind::Log, CallScreen::twice,
                        [&](const rt::Id&, int& result, int x) {
                          ++workCalls_;
                          if (fail) throw rt::Exception("E", "r");
                          result = -x;
                          return consume;
                        });
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 3), -3);
    EXPECT_EQ(hostCalls_, 0);
    consume = false;
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 3), 6);
    EXPECT_EQ(hostCalls_, 1);
    // A failing decision passes the event on to the host.
    fail = true;
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 4), 8);
    EXPECT_EQ(hostCalls_, 2);
    fail = false;
    consume = true;
    EXPECT_EQ(rt::send(object_, CallScreen::twice, 4), 8);
    EXPECT_EQ(workCalls_, 3);
  });
  // The log guard writes a line and shows no alert.
  auto logs = world_.events("log");
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_EQ(logs[0].detail, "ZVException: CallScreen twice: E r");
  EXPECT_TRUE(phone_.alerts().empty());
}

TEST_F(GuardTest, ReportBugOpensTheEscapedMailLink) {
  phone_.deviceFacts().systemName = "iPhone OS";
  phone_.deviceFacts().model = "iPhone";
  phone_.run([&] { ZVException::showException("A b <c>"); });
  phone_.pressAlertButton(0);  // Close
  EXPECT_TRUE(world_.events("openURL").empty());
  phone_.run([&] { ZVException::showException("A b <c>"); });
  phone_.pressAlertButton(1);  // Report bug
  auto opened = world_.events("openURL");
  ASSERT_EQ(opened.size(), 1u);
  EXPECT_EQ(opened[0].detail,
            std::string("mailto:") + ZVException::kMaintainers +
                "?subject=Zorvel%20Exception&body=A%20b%20%3Cc%3E%20(1.0.0%"
                "20alpha7)%20iPhone%20OS7.1.2iPhone");
}

TEST(PercentEscapes, KeepsUrlCharactersAndEscapesTheRest) {
  EXPECT_EQ(addingPercentEscapes("a-z_0.9~!$&'()*+,/:;=?@#"),
            "a-z_0.9~!$&'()*+,/:;=?@#");
  EXPECT_EQ(addingPercentEscapes("50% \"x\" {y}|\\^`[]"),
            "50%25%20%22x%22%20%7By%7D%7C%5C%5E%60%5B%5D");
  EXPECT_EQ(addingPercentEscapes("张"), "%E5%BC%A0");
}

}  // namespace
}  // namespace zv
