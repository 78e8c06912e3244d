// The three hook shapes and the exception guard, on a host class of a
// simulated process.
#include "core/guard.h"

#include <gtest/gtest.h>

#include "core/hook.h"
#include "core/zv_exception.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using hook::Hook;

constexpr rt::Message<int(int)> kTwice{"DialerController", "twice:"};
constexpr rt::Message<void(int)> kPress{"DialerController", "press:"};
constexpr rt::Message<int(int)> kMissingTwice{"NoSuchClass", "twice:"};

class GuardTest : public testing::SimTest {
 protected:
  GuardTest() : phone_(world_.launch("com.apple.mobilephone")) {
    phone_.deviceFacts().systemVersion = "7.1.2";
    phone_.run([&] {
      cls_ = rt::registerClass("DialerController");
      rt::addMethod<int(int)>(cls_, "twice:", [this](const rt::Id&, int x) {
        ++hostCalls_;
        return 2 * x;
      });
      rt::addMethod<void(int)>(
          cls_, "press:", [this](const rt::Id&, int) { ++hostCalls_; });
      object_ = rt::create(cls_);
    });
  }
  ~GuardTest() override {
    phone_.run([&] { object_.reset(); });
  }

  platform::SimProcess& phone_;
  rt::Class* cls_ = nullptr;
  rt::Id object_;
  int hostCalls_ = 0;
  int workCalls_ = 0;
};

TEST_F(GuardTest, HostFirstReturnsHostResultAndSurvivesAFailure) {
  phone_.run([&] {
    // A class the host does not have: nothing is installed.
    EXPECT_FALSE(
        Hook<int(int)>::hostFirst(GuardKind::Alert, kMissingTwice, nullptr));
    int seenByWork = 0;
    ASSERT_TRUE(Hook<int(int)>::hostFirst(
        GuardKind::Alert, kTwice, [&](const rt::Id&, int& result, int) {
          ++workCalls_;
          seenByWork = result;
          result = 99;  // the caller still gets the host's result
          if (workCalls_ == 1)
            throw rt::Exception("NSRangeException", "index 3 beyond bounds");
        }));
    EXPECT_EQ(rt::send<int>(object_, "twice:", 21), 42);
    EXPECT_EQ(seenByWork, 42);
    EXPECT_EQ(hostCalls_, 1);
    EXPECT_FALSE(zvenabled());
    // Switched off: the work never runs again, the host still does.
    EXPECT_EQ(rt::send<int>(object_, "twice:", 5), 10);
    EXPECT_EQ(workCalls_, 1);
    EXPECT_EQ(hostCalls_, 2);
  });
  auto alerts = world_.events("alert");
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_EQ(alerts[0].detail,
            "Zorvel Exception | DialerController twice: NSRangeException "
            "index 3 beyond bounds | [Close] [Report bug]");
}

TEST_F(GuardTest, OtherThrownObjectsGiveTheShortMessage) {
  phone_.run([&] {
    Hook<void(int)>::systemFirst(GuardKind::Alert, kPress,
                                 [&](const rt::Id&, int) {
                                   ++workCalls_;
                                   throw 42;
                                 });
    rt::send<void>(object_, "press:", 1);
    rt::send<void>(object_, "press:", 1);
  });
  EXPECT_EQ(workCalls_, 1);
  EXPECT_EQ(hostCalls_, 2);
  ASSERT_EQ(phone_.alerts().size(), 1u);
  EXPECT_EQ(phone_.alerts()[0]->message, "DialerController press:");
}

TEST_F(GuardTest, SystemDecidesConsumesOrPassesOn) {
  bool consume = true;
  bool fail = false;
  phone_.run([&] {
    Hook<int(int)>::systemDecides(GuardKind::Log, kTwice,
                                  [&](const rt::Id&, int& result, int x) {
                                    ++workCalls_;
                                    if (fail) throw rt::Exception("E", "r");
                                    result = -x;
                                    return consume;
                                  });
    EXPECT_EQ(rt::send<int>(object_, "twice:", 3), -3);
    EXPECT_EQ(hostCalls_, 0);
    consume = false;
    EXPECT_EQ(rt::send<int>(object_, "twice:", 3), 6);
    EXPECT_EQ(hostCalls_, 1);
    // A failing decision passes the event on to the host.
    fail = true;
    EXPECT_EQ(rt::send<int>(object_, "twice:", 4), 8);
    EXPECT_EQ(hostCalls_, 2);
    fail = false;
    consume = true;
    EXPECT_EQ(rt::send<int>(object_, "twice:", 4), 8);
    EXPECT_EQ(workCalls_, 3);
  });
  // The log guard writes a line and shows no alert.
  auto logs = world_.events("log");
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_EQ(logs[0].detail, "ZVException: DialerController twice: E r");
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
