// Caller information, ring durations and the ring's extras end to end: the
// springboard (7.x), or the in-call service beside it (8.x), with the
// extension loaded; what the screens and banners show and the device's files.
#include <gtest/gtest.h>

#include <cstdio>

#include "hosts/incallservice/app.h"
#include "hosts/kit/call_views.h"
#include "hosts/kit/host_kit.h"
#include "hosts/springboard/app.h"
#include "platform/telephony/call_objects.h"
#include "platform/ui/text_metrics.h"
#include "platform/ui/text_view.h"
#include "search/call_history.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv::testing {
namespace {

constexpr const char* kShenzhen = "075588886666";
constexpr const char* kArea = "广东省深圳市";  // its area, name only
constexpr const char* kPhoneSection = "com.apple.mobilephone | ";

class CallerInfoE2ETest : public World,
                          public ::testing::WithParamInterface<const char*> {
 protected:
  CallerInfoE2ETest() { installChinaDatabase(); }

  bool sevenX() const { return std::string(GetParam()) < "8"; }

  // The call screen's host of the generation and, on 8.x, the springboard
  // beside it, settled for a minute.
  void startHosts(Dict settings, std::string_view screen = "4.7") {
    writeSettings(settings);
    if (!sevenX()) screen_ = &start(hosts::inCallServiceHost(), "8.1", screen);
    springboard_ = &start(hosts::springboardHost(), GetParam(), screen);
    if (sevenX()) screen_ = springboard_;
    advance(60);
    world_.clearEvents();
  }
  platform::CallId ring(const std::string& number) {
    auto id = network().incoming(number);
    advance(0);
    return id;
  }
  hosts::CallScreenText screen() {
    auto text = screen_->run([] { return hosts::currentCallScreenText(); });
    EXPECT_TRUE(text) << "no call screen is up";
    return text.value_or(hosts::CallScreenText{});
  }
  // The information text view on the screen now.
  std::shared_ptr<ui::UITextView> infoView() {
    return screen_->run([this] {
      return std::dynamic_pointer_cast<ui::UITextView>(
          hosts::keyWindow(*screen_)->viewWithTag(10086));
    });
  }
  std::string ringKey(double date) const {
    char key[64];
    std::snprintf(key, sizeof key, sevenX() ? "%.0lf" : "%f", date);
    return key;
  }
  bool ringing(platform::CallId id) {
    for (const auto& c : callScreens(*screen_).screenedCalls())
      if (c.id == id) return c.ringtone;
    return false;
  }

  // Li Lei, whose number is kShenzhen.
  static DeviceContact liLei() {
    return deviceContact(7, "Lei", "Li", kShenzhen);
  }

  platform::SimProcess* screen_ = nullptr;
  platform::SimProcess* springboard_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Generations, CallerInfoE2ETest,
                         ::testing::Values("7.1", "8.1"), [](const auto& info) {
                           return std::string(info.param) < "8" ? "Seven"
                                                                : "Eight";
                         });

// The whole story: a stranger rings 12 s unanswered; the row lands in the
// call history, 12 is saved under its date, other processes are told 2 s
// later (that the Phone app then shows it is the Recents end-to-end
// test's), and the banner shows the seconds. Rings
// shorter than a second or of two minutes and more leave nothing, and their
// banner shows the area alone; seconds are cut, so 119.9 s is kept as 119.
TEST_P(CallerInfoE2ETest, MissedCallRingTimeReachesTheBannerAndOtherProcesses) {
  startHosts({{"CallHistoryRingDuration", true}});
  auto missed = [&](double seconds) {
    auto id = ring(kShenzhen);
    advance(seconds);
    network().remoteHangup(id);
    advance(0);
  };

  missed(12);
  advance(2);
  auto posts = events("post");
  ASSERT_EQ(posts.size(), 1u);
  EXPECT_EQ(posts[0].detail, "ZVCallHistoryChanged");
  EXPECT_DOUBLE_EQ(posts[0].time, events("bulletin").at(0).time + 2);

  for (double seconds : {119.9, 0.9, 120.0}) {
    missed(seconds);
    advance(5);
  }
  auto dates = callDates(GetParam());
  ASSERT_EQ(dates.size(), 4u);
  EXPECT_EQ(ringDurations(),
            (Dict{{ringKey(dates[0]), 12}, {ringKey(dates[1]), 119}}));
  const std::string plain =
      kPhoneSection + std::string(kShenzhen) + "  " + kArea;
  EXPECT_EQ(details("bulletin"),
            (std::vector<std::string>{plain + " (12sec)", plain + " (119sec)",
                                      plain, plain}));
}

// A message banner has no ring record: the area without seconds. The
// status bar shows the user's carrier name.
TEST_P(CallerInfoE2ETest, MessageBannerAndCarrierName) {
  writeSettings({{"CallHistoryRingDuration", true}, {"CarrierName", "Zorvel"}});
  auto& sb = start(hosts::springboardHost(), GetParam());
  EXPECT_EQ(details("carrier"), std::vector<std::string>{"Zorvel"});
  sb.run([] {
    hosts::SpringBoardApplication::shared()->messageReceived(kShenzhen, "hi");
  });
  EXPECT_EQ(details("bulletin"),
            std::vector<std::string>{"com.apple.MobileSMS | " +
                                     std::string(kShenzhen) + "  " + kArea});
}

// A contact with the default label gets the area joined with two blanks on
// the incoming screen (7.x), the participants view and the "more" label
// (8.x).
TEST_P(CallerInfoE2ETest, ContactLabelGetsTheAreaJoined) {
  writeDevicePeople(root_, {liLei()});
  startHosts({{"AreaNameMore", true}});
  auto id = ring(kShenzhen);
  const std::string joined = std::string("mobile  ") + kArea;
  if (sevenX()) {
    EXPECT_EQ(screen().labelLines, std::vector<std::string>{joined});
    return;
  }
  EXPECT_EQ(screen().labelLines,
            (std::vector<std::string>{joined, "incoming call"}));
  EXPECT_EQ(springboard_->run([id] {
    return rt::send(platform::callObject(id),
                    platform::msg::TUCall::localizedLabel);
  }),
            std::optional<std::string>(joined));
}

// Style 1 leaves the host's label alone and puts the area into the text
// view, with the text view's own look and place.
TEST_P(CallerInfoE2ETest, StyleOneFillsTheTextViewInsteadOfTheLabel) {
  startHosts({{"AreaStyleIncomingCall", 1}});
  ring(kShenzhen);
  auto text = screen();
  EXPECT_EQ(text.labelLines, sevenX()
                                 ? std::vector<std::string>{}
                                 : std::vector<std::string>{"incoming call"});
  EXPECT_EQ(text.infoLines, std::vector<std::string>{kArea});
  auto view = infoView();
  ASSERT_TRUE(view);
  const double line = ui::lineHeight(view->font());
  // Inset top 4, one line, 6 points after it, 2 points of room.
  const double height = 4 + line + 6 + 2;
  if (sevenX()) {
    EXPECT_EQ(view->frame(), (ui::Rect{{15, 59}, {290, height}}));
    EXPECT_EQ(view->font().size, 17);
  } else {
    // The 4.7-inch screen moves it in: x + 7, y + 14, width - 14.
    EXPECT_EQ(view->frame(), (ui::Rect{{27, 139}, {375 - 40 - 14, height}}));
  }
  EXPECT_EQ(view->textAlignment(), ui::TextAlignment::Center);
  EXPECT_EQ(view->contentInset(), (ui::EdgeInsets{4, 2, 0, 2}));
  EXPECT_FALSE(view->userInteractionEnabled());
}

// A contact under AreaOnlyStrangers shows no area on the call screen, but
// its number and details from the address book in the order of the mask
// bits, the birthday in the locale's long style. (Each switch's line is the
// unit tests'; the banner's joiner has no such condition.)
TEST_P(CallerInfoE2ETest, ContactUnderOnlyStrangersShowsDetailsWithoutArea) {
  DeviceContact li = liLei();
  li.organization = "Acme", li.note = "VIP";
  li.birthday = -336787200;  // 1 May 1990
  writeDevicePeople(root_, {li});
  startHosts({{"AreaOnlyStrangers", true},
              {"AreaStyleIncomingCall", 1},
              {"EnableInfo", true},
              {"InfoIncomingCallOrganization", true},
              {"InfoIncomingCallBirthday", true},
              {"InfoIncomingCallNote", true}});
  ring(kShenzhen);
  auto text = screen();
  EXPECT_EQ(text.infoLines, (std::vector<std::string>{kShenzhen, "Acme",
                                                      "May 1, 1990", "VIP"}));
  // The host's label alone: no area joined to it.
  EXPECT_EQ(text.labelLines,
            sevenX() ? std::vector<std::string>{"mobile"}
                     : (std::vector<std::string>{"mobile", "incoming call"}));
}

// The lock-screen question: on 7.x only the first one of a call is
// answered "not locked" (the decline button), later ones get the host's
// answer; on 8.x every one is.
TEST_P(CallerInfoE2ETest, DeclineButtonOverTheLockScreen) {
  startHosts({{"IncomingCallDeclineButton", true}});
  auto& host = callScreens(*screen_);
  auto lock = [&] { screen_->run([&] { host.setLocked(true); }); };
  lock();
  ring(kShenzhen);
  EXPECT_TRUE(screen().declineButton);
  lock();
  EXPECT_EQ(screen().declineButton, !sevenX());
}

// The Answer button under a finger on the window answers the call; its
// controls go once the call no longer rings.
TEST_P(CallerInfoE2ETest, AnswerUnderTheFingerAnswersTheCall) {
  startHosts({});
  auto id = ring(kShenzhen);
  // The visible answer controls of the window, or null.
  auto controls = [](ui::UIView& window) {
    std::shared_ptr<hosts::CallAnswerControls> found;
    std::function<void(const std::shared_ptr<ui::UIView>&)> walk =
        [&](const std::shared_ptr<ui::UIView>& v) {
          if (auto c = std::dynamic_pointer_cast<hosts::CallAnswerControls>(v);
              c && c->isVisible())
            found = c;
          for (const auto& child : v->subviews()) walk(child);
        };
    for (const auto& child : window.subviews()) walk(child);
    return found;
  };
  screen_->run([&] {
    auto window = hosts::keyWindow(*screen_);
    auto c = controls(*window);
    ASSERT_TRUE(c);
    ASSERT_EQ(c->mode(), hosts::CallAnswerControls::Mode::Buttons);
    ui::Point p{c->answerButton()->frame().size.width / 2, 20};
    for (const ui::UIView* v = c->answerButton().get(); v != window.get();
         v = v->superview().get()) {
      p.x += v->frame().origin.x;
      p.y += v->frame().origin.y;
    }
    for (auto v = window->hitTest(p); v; v = v->superview())
      if (v->perform(ui::Gesture::Tap)) break;
  });
  advance(0);
  EXPECT_EQ(network().call(id)->status, platform::kCallActive);
  screen_->run([&] { EXPECT_FALSE(controls(*hosts::keyWindow(*screen_))); });
}

class SevenXE2ETest : public CallerInfoE2ETest {};
INSTANTIATE_TEST_SUITE_P(Seven, SevenXE2ETest, ::testing::Values("7.1"));

// The delayed ring: 0 rings at once; 3 s rings after three seconds, and a
// call hung up inside the delay never rings.
TEST_P(SevenXE2ETest, DelayedRing) {
  startHosts({{"IncomingCallDelayRing", 0.0}});
  auto first = ring(kShenzhen);
  EXPECT_TRUE(ringing(first));
  network().remoteHangup(first);
  advance(1);

  writeSettings({{"IncomingCallDelayRing", 3.0}});
  springboard_->post("ZVSettingsChanged", platform::Scope::System);
  advance(5);
  auto late = ring(kShenzhen);
  advance(2.9);
  EXPECT_FALSE(ringing(late));
  advance(0.1);
  EXPECT_TRUE(ringing(late));
  network().remoteHangup(late);
  advance(1);

  auto never = ring(kShenzhen);
  advance(1);
  network().remoteHangup(never);
  advance(5);
  EXPECT_FALSE(ringing(never));
}

class EightXE2ETest : public CallerInfoE2ETest {};
INSTANTIATE_TEST_SUITE_P(Eight, EightXE2ETest, ::testing::Values("8.1"));

// An outgoing call vibrates once when answered, with the user's pattern; an
// incoming one never does. (Re-arming on hold is the controller's unit
// tests'.)
TEST_P(EightXE2ETest, ConnectVibrationForOutgoingCallsOnly) {
  startHosts({{"EnableConnectedVibrate", true},
              {"ConnectedVibrateIntensity", 0.5},
              {"ConnectedVibrateTotalDuration", 0.3},
              {"ConnectedVibrateOnDuration", 0.1},
              {"ConnectedVibrateOffDuration", 0.05}});
  auto out = network().dial(kShenzhen);
  network().connect(out);
  advance(1);
  network().end(out);
  network().answer(ring(kShenzhen));  // an incoming call: no vibration
  advance(1);
  EXPECT_EQ(details("vibrate"),
            std::vector<std::string>{
                "4095 Intensity=0.5 VibePattern=on,100,off,50,on,100"});
}

// The outgoing call's own label (tag 10010) shows the area and a contact's
// number, and goes when the call becomes active; the text view of an
// incoming call goes when the keypad comes up.
TEST_P(EightXE2ETest, OwnViewsComeAndGo) {
  writeDevicePeople(root_, {liLei()});
  startHosts({{"AreaStyleOutgoingCall", 1},
              {"AreaStyleIncomingCall", 1},
              {"EnableInfo", true},
              {"InfoOutgoingCallNumber", true}});
  auto out = network().dial(kShenzhen);
  advance(0);
  EXPECT_EQ(screen().extraLabels,
            std::vector<std::string>{std::string(kArea) + " " + kShenzhen});
  network().connect(out);
  advance(0);
  EXPECT_TRUE(screen().extraLabels.empty());
  network().end(out);
  advance(1);

  ring("075588880000");
  EXPECT_EQ(screen().infoLines, std::vector<std::string>{kArea});
  screen_->run([] { hosts::InCallServiceApplication::shared()->showKeypad(); });
  EXPECT_TRUE(screen().infoLines.empty());
}

}  // namespace
}  // namespace zv::testing
