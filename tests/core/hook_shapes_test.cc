// Typed messages, the object life cycle and the result-rewriting hook shape,
// on host classes of a simulated process.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/guard.h"
#include "core/hook.h"
#include "platform/runtime/message.h"
#include "sim_fixture.h"

namespace zv {
namespace {

// A host header of a made-up call screen.
struct CallScreen {
  static constexpr std::string_view kName = "CallScreen";
  static constexpr rt::Message<rt::Id(std::string)> initWithCall{
      kName, "initWithCall:"};
  static constexpr rt::Message<void()> dealloc{kName, "dealloc"};
  static constexpr rt::Message<std::string()> title{kName, "title"};
  static constexpr rt::Message<void(bool)> ring{kName, "ring:"};
  static constexpr rt::Message<int()> callCount{kName, "callCount", true};
  static constexpr rt::IvarName<std::string> number{kName, "_number"};
};

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

class HookShapesTest : public testing::SimTest {
 protected:
  HookShapesTest() : springboard_(world_.launch("com.apple.springboard")) {
    springboard_.run([&] {
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
      rt::define(CallScreen::callCount, [](const rt::Id&) { return 2; });
    });
  }
  platform::SimProcess& springboard_;
  std::vector<std::string> log_;
};

TEST_F(HookShapesTest, InitialisersAndDeallocAreReplaceableMessages) {
  springboard_.run([&] {
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

TEST_F(HookShapesTest, AfterRewritesTheResultUnlessTheWorkFails) {
  springboard_.run([&] {
    int calls = 0;
    ASSERT_TRUE(hook::after(GuardKind::Log, CallScreen::title,
                            [&](const rt::Id&, std::string& title) {
                              if (++calls == 2) throw rt::Exception("E", "r");
                              title += "  Beijing";
                            }));
    rt::Id screen = rt::make(CallScreen::initWithCall, "10010");
    EXPECT_EQ(rt::send(screen, CallScreen::title), "Call 10010  Beijing");
    // A failing rewrite leaves the host's own result, and switches off.
    EXPECT_EQ(rt::send(screen, CallScreen::title), "Call 10010");
    EXPECT_FALSE(zvenabled());
    EXPECT_EQ(rt::send(screen, CallScreen::title), "Call 10010");
    EXPECT_EQ(calls, 2);
  });
  EXPECT_EQ(world_.events("log").size(), 1u);
}

TEST_F(HookShapesTest, ClassMethodsAndLateClasses) {
  springboard_.run([&] {
    // A row for a class that is not there yet installs nothing...
    constexpr rt::Message<int()> lateCount{"LateScreen", "callCount", true};
    auto row = [&] {
      return hook::after(GuardKind::Log, lateCount,
                         [](const rt::Id&, int& n) { n += 40; });
    };
    EXPECT_FALSE(row());
    // ...and works once the host has registered it.
    rt::registerClass("LateScreen", CallScreen::kName);
    EXPECT_TRUE(row());
    EXPECT_EQ(rt::send(rt::classObject(rt::getClass("LateScreen")), lateCount),
              42);
    EXPECT_EQ(rt::send(rt::classObject(rt::getClass("CallScreen")),
                       CallScreen::callCount),
              2);
  });
}

TEST_F(HookShapesTest, TrySendAnswersNothingForObjectsThatDoNotRespond) {
  springboard_.run([&] {
    rt::Id screen = rt::make(CallScreen::initWithCall, "1");
    rt::Id plain = rt::create(rt::registerClass("Plain"));
    EXPECT_EQ(rt::trySend(screen, CallScreen::title), "Call 1");
    EXPECT_EQ(rt::trySend(plain, CallScreen::title), "");
    EXPECT_EQ(rt::trySend(rt::Id(), CallScreen::title), "");
    EXPECT_THROW(rt::send(plain, CallScreen::title), rt::Exception);
    EXPECT_EQ(rt::ivar(plain, CallScreen::number), std::nullopt);
  });
}

}  // namespace
}  // namespace zv
