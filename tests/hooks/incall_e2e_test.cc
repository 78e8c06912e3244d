// The Phone app's in-call area end to end (7.1 Phone host, extension
// loaded): what the in-call screen shows and the vibrations played. The
// rules themselves are the controller's unit tests' (tests/callscreens).
#include <gtest/gtest.h>

#include "area/area_loader.h"
#include "callscreens/in_call_controller.h"
#include "hosts/phone/app.h"
#include "hostsdk/phone.h"
#include "hostsdk/telephony.h"
#include "platform/process.h"
#include "platform/sim/sim_telephony.h"
#include "platform/telephony/call_objects.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv {
namespace {

using hosts::PhoneApplication;

constexpr char kContact[] = "13800138000";   // John Smith, Beijing mobile
constexpr char kStranger[] = "13801700000";  // Shanghai mobile, no contact

// What the in-call screen shows.
struct Screen {
  bool shown = false;
  std::string label;               // the LCD's status line
  std::optional<std::string> own;  // the own label's text, when it has one
  ui::Rect ownFrame;
};

class InCallE2ETest : public testing::World {
 protected:
  InCallE2ETest() {
    installChinaDatabase();
    testing::writeDevicePeople(
        root_, {testing::deviceContact(1, "John", "Smith", kContact)});
  }

  platform::SimProcess& startPhone(const Dict& settings,
                                   std::string_view inches = "4",
                                   std::string_view version = "7.1") {
    phone_ = &startHost(hosts::phoneHost(), settings, version, inches);
    return *phone_;
  }

  std::string area(const std::string& number, bool type = false) {
    return phone_->run([&] {
      return ZVAreaLoader::sharedInstance()
          ->getArea(number, true, type)
          .value_or("");
    });
  }
  Screen screen() {
    return phone_->run([] {
      Screen s;
      auto app = PhoneApplication::shared();
      if (!app || !app->inCall) return s;
      s.shown = app->inCall->isShown();
      auto lcd = app->inCall->lcd();
      s.label = lcd->statusLabel->text();
      if (auto own =
              std::dynamic_pointer_cast<ui::UILabel>(lcd->viewWithTag(10086))) {
        s.own = own->text();
        s.ownFrame = own->frame();
      }
      return s;
    });
  }

  platform::SimProcess* phone_ = nullptr;
};

// The status line while dialling and in the call, each with its own type
// switch, and in an answered incoming call. (Which switch and screen gets
// what is the controller's unit tests'.)
TEST_F(InCallE2ETest, StatusLineShowsTheAreaWhileDiallingAndInTheCall) {
  startPhone({{"AreaNameInCall", true}, {"AreaTypeInCall", true}});
  const std::string a = "  " + area(kStranger);
  const std::string typed = "  " + area(kStranger, true);
  auto id = network().dial(kStranger);
  advance(0);
  Screen s = screen();
  EXPECT_TRUE(s.shown);
  EXPECT_EQ(s.label, "calling…" + a);
  EXPECT_FALSE(s.own);
  network().connect(id);
  advance(3);
  EXPECT_EQ(screen().label, "00:03" + typed);
  network().end(id);
  advance(0);
  s = screen();
  EXPECT_FALSE(s.shown);
  EXPECT_EQ(s.label, "call ended");

  id = network().incoming(kStranger);
  advance(5);
  // Ringing belongs to the springboard: the Phone app shows nothing yet,
  // though the module has noted the number (without an area).
  EXPECT_FALSE(screen().shown);
  phone_->run([&] {
    auto c = platform::Process::current().slot<ZVInCallController>();
    ASSERT_TRUE(c);
    EXPECT_EQ(std::tuple(c->curNumber(), c->curCallStatus(), c->curArea()),
              std::tuple(kStranger, 4, ""));
  });
  network().answer(id);
  advance(0);
  EXPECT_TRUE(screen().shown);
  EXPECT_EQ(screen().label, "00:00" + typed);
}

// With the own-label style the area and a contact's number go on the own
// label instead.
TEST_F(InCallE2ETest, OwnLabelLeftWithTheNumberForAContact) {
  startPhone({{"AreaStyleOutgoingCall", 1},
              {"EnableInfo", true},
              {"InfoOutgoingCallNumber", true}});
  network().dial(kContact);
  advance(0);
  Screen s = screen();
  EXPECT_EQ(s.label, "calling…");
  EXPECT_EQ(s.own, area(kContact) + " " + kContact);
  EXPECT_EQ(s.ownFrame, (ui::Rect{{20, 80}, {280, 20}}));  // 7.1: not centred
}

TEST_F(InCallE2ETest, VibratesOnceWhenAnOutgoingCallConnects) {
  startPhone({{"EnableConnectedVibrate", true},
              {"ConnectedVibrateTotalDuration", 0.25}});
  auto id = network().dial(kStranger);
  advance(5);
  network().connect(id);
  advance(10);
  auto v = details("vibrate");
  ASSERT_EQ(v.size(), 1u);
  EXPECT_NE(v[0].find("VibePattern=on,250"), std::string::npos) << v[0];
}

TEST_F(InCallE2ETest, NothingIsInstalledOnEightOne) {
  auto& phone = startPhone(
      {{"AreaNameInCall", true}, {"EnableConnectedVibrate", true}}, "4", "8.1");
  // The screen does not come up by itself on 8.1; put one up by hand to
  // see that the calls pass through untouched.
  phone.run([] {
    PhoneApplication::shared()->inCall = hosts::InCallController::start();
  });
  auto id = network().dial(kStranger);
  advance(0);
  network().connect(id);
  advance(1);
  // On these systems a status change comes as a notification carrying the
  // call; even so delivered, nothing of the module answers.
  phone.run([&] {
    auto notification = rt::makeNotification(
        std::string(sdk::NSNotification::kCallStatusChanged),
        platform::callObject(id));
    rt::send(PhoneApplication::shared()->inCall,
             sdk::InCallController::callStatusChanged, notification);
    rt::send(PhoneApplication::shared()->inCall->lcd(),
             sdk::InCallLCDView::setLabelAnimate, std::string("00:01"), false);
  });
  advance(1);
  EXPECT_EQ(screen().label, "00:02");
  EXPECT_FALSE(screen().own);
  EXPECT_TRUE(events("vibrate").empty());
}

}  // namespace
}  // namespace zv
