// ZVInCallController against a fake host: which calls it remembers, how the
// area meets the LCD label, the own label by screen size, the vibration latch.
// (A ringing call noted without its area, and the area once it is answered,
// are the Phone's end-to-end tests'.)
#include "callscreens/in_call_controller.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/sim/device_presets.h"
#include "platform/ui/label.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

constexpr char kBeijing[] = "13800138000";
constexpr char kShanghai[] = "13801700000";

struct FakeCall {
  int status = 3;
  std::optional<std::string> number;
  int abUID = -1;
  bool outgoing = true;
};

// A call is a view whose facts `calls` holds; the LCD is the controller's
// only when `hasLcd`.
struct FakeInCallHost : InCallHost {
  rt::Id controller = ui::make<ui::UIView>();
  std::shared_ptr<ui::UIView> lcd = ui::make<ui::UIView>();
  bool hasLcd = true, center = true;
  std::string lcdLabel = "calling…";
  std::vector<std::string> labelsSet;  // setLabel calls, as asked
  // The rewrite the hooks put in front of setLabel:animate:.
  std::function<std::string(const std::string&)> rewrite;
  std::map<const void*, FakeCall> calls;

  rt::Id call(FakeCall c) {
    auto id = ui::make<ui::UIView>();
    calls[id.get()] = std::move(c);
    return id;
  }
  FakeCall& of(const rt::Id& c) { return calls.at(c.get()); }
  ui::UILabel* ownLabel() {
    return dynamic_cast<ui::UILabel*>(
        lcd->viewWithTag(ZVInCallController::kOwnLabelTag).get());
  }

  int status(const rt::Id& c) override { return of(c).status; }
  std::optional<std::string> destinationID(const rt::Id& c) override {
    return of(c).number;
  }
  int abUID(const rt::Id& c) override { return of(c).abUID; }
  bool isOutgoing(const rt::Id& c) override { return of(c).outgoing; }
  rt::Id notificationObject(const rt::Id&) override { return nullptr; }
  rt::Id lcdView(const rt::Id& c) override {
    return c == controller && hasLcd ? rt::Id(lcd) : nullptr;
  }
  std::string label(const rt::Id&) override { return lcdLabel; }
  void setLabel(const rt::Id&, const std::string& l, bool) override {
    labelsSet.push_back(l);
    lcdLabel = rewrite ? rewrite(l) : l;
  }
  bool shouldCenterText(const rt::Id&) override { return center; }
  std::shared_ptr<ui::UIView> view(const rt::Id& v) override {
    return std::dynamic_pointer_cast<ui::UIView>(v);
  }
};

class InCallControllerTest : public testing::SimTest {
 protected:
  InCallControllerTest() {
    testing::writeFile(root_ + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
  }
  // Runs f in a fresh 7.1 Phone process on a phone with that screen, with
  // the controller wired to a fake host whose label rewrite is the
  // controller's, as the hooks wire it.
  template <typename F>
  void with(Dict settings, const char* inches, F&& f) {
    testing::writePlist(root_ + "/var/mobile/Library/Preferences/zorvel.plist",
                        settings);
    auto& p = world_.launch("com.apple.mobilephone",
                            *platform::simulatedDevice("7.1", inches));
    p.run([&] {
      auto host = std::make_shared<FakeInCallHost>();
      auto c = ZVInCallController::sharedInstance();
      c->setHost(host);
      host->rewrite = [c, host](const std::string& l) {
        return c->areaInCall(rt::Id(host->lcd), l);
      };
      f(*c, *host);
      // The rewrite holds the host: let go of it, or the two keep each
      // other (and the controller's area data) alive.
      host->rewrite = nullptr;
    });
  }
};

TEST_F(InCallControllerTest, RemembersDiallingAndActiveCallsAndClearsTheRest) {
  with({}, "4", [&](auto& c, auto& h) {
    auto call = h.call({3, kBeijing, -1, true});
    c.areaInCall(h.controller, call);
    EXPECT_EQ(c.curNumber(), kBeijing);
    EXPECT_EQ(c.curCallStatus(), 3);
    ASSERT_FALSE(c.curArea().empty());
    // The LCD was asked to show its own label again, which the rewrite
    // joined with two blanks.
    EXPECT_EQ(h.labelsSet, std::vector<std::string>{"calling…"});
    EXPECT_EQ(h.lcdLabel, "calling…  " + c.curArea());
    c.areaInCall(h.controller, call);
    EXPECT_EQ(h.labelsSet.size(), 1u);
    // Held, ending and ended calls forget the call; so does a withheld one.
    for (int status : {2, 5, 6}) {
      h.of(call).status = 3;
      c.areaInCall(h.controller, call);
      h.of(call).status = status;
      c.areaInCall(h.controller, call);
      EXPECT_EQ(std::tuple(c.curNumber(), c.curArea(), c.curCallStatus(),
                           c.curRecordID()),
                std::tuple("", "", 0, -1))
          << status;
    }
    h.of(call).status = 1;
    c.areaInCall(h.controller, call);
    EXPECT_EQ(c.curNumber(), kBeijing);
    c.areaInCall(h.controller, h.call({1, std::nullopt, -1, false}));
    EXPECT_EQ(c.curNumber(), "");
    c.areaInCall(h.controller, h.call({1, std::string(), -1, false}));
    EXPECT_EQ(c.curNumber(), "");
  });
}

TEST_F(InCallControllerTest, NoLcdKeepsTheAreaAndAnEndingAreaIsLeft) {
  with({{"AreaReplaceTextOutgoingCall", true}}, "4", [&](auto& c, auto& h) {
    // No LCD: the area is kept for the next label, nothing is set.
    h.hasLcd = false;
    c.areaInCall(h.controller, h.call({3, kBeijing, -1, true}));
    EXPECT_TRUE(h.labelsSet.empty());
    const std::string area = c.curArea();
    auto lcd = rt::Id(h.lcd);
    EXPECT_EQ(c.areaInCall(lcd, "calling…"), area);
    // A label that already ends with the area is left.
    EXPECT_EQ(c.areaInCall(lcd, "calling…  " + area), "calling…  " + area);
    EXPECT_EQ(c.areaInCall(lcd, ""), area);
  });
}

TEST_F(InCallControllerTest, OwnLabelByStyleAndScreen) {
  const Dict style1{{"AreaStyleOutgoingCall", 1}};
  // 4-inch: the area goes on the own label, the host label stays.
  with(style1, "4", [&](auto& c, auto& h) {
    c.areaInCall(h.controller, h.call({3, kBeijing, -1, true}));
    EXPECT_EQ(h.lcdLabel, "calling…");
    auto* own = h.ownLabel();
    ASSERT_NE(own, nullptr);
    ASSERT_TRUE(own->layerShadow());
    EXPECT_EQ(
        std::tuple(own->text(), own->frame(), own->textAlignment(),
                   own->lineBreakMode(), own->font().size, own->textColor(),
                   own->userInteractionEnabled(), own->layerShadow()->opacity),
        std::tuple(c.curArea(), ui::Rect{{5, 92}, {310, 20}},
                   ui::TextAlignment::Center, ui::LineBreakMode::TruncateMiddle,
                   17.0, ui::Color{0.85, 0.85, 0.85, 1}, false, 0.2));
    // Made once, moved left when the host does not centre its text.
    h.center = false;
    EXPECT_EQ(c.areaInCall(rt::Id(h.lcd), "calling…"), "calling…");
    EXPECT_EQ(h.lcd->subviews().size(), 1u);
    EXPECT_EQ(own->frame(), (ui::Rect{{20, 80}, {280, 20}}));
    EXPECT_EQ(own->textAlignment(), ui::TextAlignment::Left);
  });
}

// What the LCD and the own label show by settings, screen and call: a call
// is not even remembered with the area or both area names off, nor a
// contact under AreaOnlyStrangers; replacing is for dialling only; style 1
// on screens without room for it, style 2 on larger ones; the contact's
// number joins the own label on the 4-inch screen and only on it (a
// stranger's never, as the Phone's end-to-end test shows).
TEST_F(InCallControllerTest, LabelsBySettingsScreenAndCall) {
  const Dict s{{"EnableInfo", true},
               {"InfoOutgoingCallNumber", true},
               {"AreaStyleOutgoingCall", 1}};
  Dict numberOnly = s;
  numberOnly["EnableArea"] = false;
  const Dict replace{{"AreaReplaceTextOutgoingCall", true}};
  Dict replaceInCall = replace;
  replaceInCall["AreaNameInCall"] = true;
  // The own label and the host's label; A is the area, N the number.
  const struct {
    Dict settings;
    const char* inches;
    int status, abUID;
    const char *own, *lcd;
  } cases[] = {
      {{{"EnableArea", false}}, "4", 3, -1, "-", "calling…"},
      {{{"AreaNameOutgoingCall", false}}, "4", 3, -1, "-", "calling…"},
      {{{"AreaOnlyStrangers", true}}, "4", 3, 3, "-", "calling…"},
      {replace, "4", 3, -1, "-", "A"},
      {replaceInCall, "4", 1, -1, "-", "calling…  A"},
      {s, "4", 3, 5, "A N", "calling…"},
      {s, "3.5", 3, 5, "-", "calling…  A"},
      {s, "4.7", 3, 5, "A", "calling…"},
      {s, "5.5", 3, 5, "A", "calling…"},
      {numberOnly, "4", 3, 5, "-", "calling…"},
      {{{"AreaStyleOutgoingCall", 2}}, "4.7", 3, 5, "-", "calling…"},
  };
  for (const auto& k : cases) {
    with(k.settings, k.inches, [&](auto& c, auto& h) {
      c.areaInCall(h.controller, h.call({k.status, kBeijing, k.abUID, true}));
      auto fill = [&](std::string text) {
        for (auto [from, to] :
             {std::pair<char, std::string>{'A', c.curArea()}, {'N', kBeijing}})
          if (auto at = text.find(from); at != std::string::npos)
            text.replace(at, 1, to);
        return text;
      };
      const std::string row = std::string(k.inches) + " " + k.lcd;
      EXPECT_EQ(h.ownLabel() ? h.ownLabel()->text() : "-", fill(k.own)) << row;
      EXPECT_EQ(h.lcdLabel, fill(k.lcd)) << row;
    });
  }
}

TEST_F(InCallControllerTest, VibratesOnceWhenAnOutgoingCallConnects) {
  // Switched off: no latch, and (below) no vibration from this process.
  with({}, "4", [&](auto& c, auto& h) {
    c.connectedVibrate(h.call({1, kBeijing, -1, true}));
    EXPECT_FALSE(c.vibrateLatch());
  });
  Dict s{{"EnableConnectedVibrate", true},
         {"ConnectedVibrateIntensity", 0.7},
         {"ConnectedVibrateTotalDuration", 1.2345},
         {"ConnectedVibrateOnDuration", 0.3},
         {"ConnectedVibrateOffDuration", 0.1}};
  // Once per connection: held and resumed re-arms it, a second active
  // change does not; an incoming call never vibrates.
  with(s, "4", [&](auto& c, auto& h) {
    auto out = h.call({3, kBeijing, -1, true});
    std::string latch;
    for (int status : {3, 1, 1, 2, 1, 6}) {
      h.of(out).status = status;
      c.connectedVibrate(out);
      latch += c.vibrateLatch() ? 'L' : '.';
    }
    c.connectedVibrate(h.call({1, kShanghai, -1, false}));
    EXPECT_EQ(latch + (c.vibrateLatch() ? 'L' : '.'), ".LL.L..");
  });
  world_.advance(0.05);
  EXPECT_TRUE(world_.events("vibrate").empty());
  world_.advance(0.1);
  auto v = world_.events("vibrate");
  ASSERT_EQ(v.size(), 1u);  // the two schedules collapsed into one
  EXPECT_NE(
      v[0].detail.find(
          "VibePattern=on,300,off,100,on,300,off,100,on,300,off,100,on,34"),
      std::string::npos)
      << v[0].detail;
}

}  // namespace
}  // namespace zv
