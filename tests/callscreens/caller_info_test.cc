// The call screens' caller information and ring extras against a fake host: the
// joiners' branches and flags, the banner's date units and unit text, the
// information view's place and reuse, the status-change removal and the
// lock-screen answers per generation.
#include <gtest/gtest.h>

#include <functional>

#include "callscreens/blocking_fixture.h"
#include "callscreens/ring_timer.h"
#include "core/settings_catalogue.h"
#include "platform/db/platform_schema.h"
#include "platform/ui/label.h"
#include "platform/ui/text_view.h"
#include "search/call_history.h"
#include "support/device_db.h"

namespace zv::testing {
namespace {

using Text = std::optional<std::string>;
constexpr const char* kNumber = "07551234";
constexpr const char* kArea = "广东深圳";  // the override for "0755"

class CallerInfoTest : public BlockingTest {
 protected:
  rt::Id callWithStatus(int32_t status, int32_t abUID = -1,
                        const char* number = kNumber) {
    auto c = call(number, abUID);
    std::dynamic_pointer_cast<FakeCall>(c)->status = status;
    return c;
  }
  // An incoming-call screen showing `c`.
  rt::Id screenOf(rt::Id c) {
    auto screen = rt::create(callClass_);
    host_->calls[screen.get()] = std::move(c);
    return screen;
  }
  // The information text view on the LCD, or null.
  std::shared_ptr<ui::UITextView> infoView() {
    return std::dynamic_pointer_cast<ui::UITextView>(
        host_->lcd->viewWithTag(10086));
  }
  Text inCall(Dict settings, int32_t status, Text label) {
    start(std::move(settings));
    return controller_->areaInCall(callWithStatus(status), std::move(label));
  }
};

TEST_F(CallerInfoTest, InCallJoinerFollowsTheCallStatus) {
  const std::string joined = std::string("mobile  ") + kArea;
  // Ringing: incoming flags, style 0 only, its replace flag.
  EXPECT_EQ(inCall({}, 4, "mobile"), joined);
  EXPECT_EQ(inCall({{"AreaStyleIncomingCall", 1}}, 4, "mobile"), "mobile");
  EXPECT_EQ(inCall({{"AreaReplaceTextIncomingCall", true}}, 4, "mobile"),
            kArea);
  // Dialling: its own label (style 1) leaves the host's alone.
  EXPECT_EQ(inCall({{"AreaReplaceTextOutgoingCall", true}}, 3, "calling"),
            kArea);
  EXPECT_EQ(inCall({{"AreaStyleOutgoingCall", 1}, {"AreaNameInCall", true}}, 3,
                   "calling"),
            "calling");
  // Active: only with the in-call name, never replaced.
  EXPECT_EQ(inCall({}, 1, "00:12"), "00:12");
  EXPECT_EQ(inCall({{"AreaNameInCall", true}}, 1, "00:12"),
            std::string("00:12  ") + kArea);
  // A label the area begins or ends with, or none, gives the area; held:
  // unchanged.
  EXPECT_EQ(inCall({}, 4, "广东"), kArea);
  EXPECT_EQ(inCall({}, 4, std::string("Office ") + kArea), kArea);
  EXPECT_EQ(inCall({}, 4, std::nullopt), kArea);
  EXPECT_EQ(inCall({{"AreaNameInCall", true}}, 2, "on hold"), "on hold");
}

TEST_F(CallerInfoTest, MoreAndIncomingJoinersTreatAnEndingAreaDifferently) {
  start({{"AreaNameMore", true}});
  auto c = callWithStatus(4);
  const std::string ends = std::string("home ") + kArea;
  EXPECT_EQ(controller_->areaTUCall(c, ends), kArea);
  EXPECT_EQ(controller_->areaTUCall(c, std::nullopt), kArea);
  EXPECT_EQ(controller_->areaTUCall(c, "home"), std::string("home  ") + kArea);
  auto screen = screenOf(c);
  EXPECT_EQ(controller_->areaIncomingCall(screen, ends), ends);
  EXPECT_EQ(controller_->areaIncomingCall(screen, ""), kArea);
  // A contact under AreaOnlyStrangers keeps every label.
  start({{"AreaNameMore", true}, {"AreaOnlyStrangers", true}});
  EXPECT_EQ(controller_->areaTUCall(call(kNumber, 5), "home"), "home");
}

// Each screen's type switch, and only it, adds the line type to its area.
TEST_F(CallerInfoTest, EachScreenTakesItsOwnAreaTypeSwitch) {
  writeDeviceFile("/Library/Zorvel/Area/China", chinaDatabase());
  const char* mobile = "13001000000";
  const std::string plain = "北京市", typed = "北京市 中国联通";
  const std::pair<const char*, std::function<Text()>> screens[] = {
      {"AreaTypeIncomingCall",
       [&] {
         return controller_->areaIncomingCall(screenOf(call(mobile)), "");
       }},
      {"AreaTypeOutgoingCall",
       [&] {
         return controller_->areaInCall(callWithStatus(3, -1, mobile), {});
       }},
      {"AreaTypeInCall",
       [&] {
         return controller_->areaInCall(callWithStatus(1, -1, mobile), {});
       }},
      {"AreaTypeNotification",
       [&] {
         host_->contactInfo = mobile;
         return controller_->areaBulletin(rt::create(callClass_), "");
       }},
      {"AreaTypeMore",
       [&] { return controller_->areaTUCall(call(mobile), std::nullopt); }},
  };
  for (const auto& [key, screen] : screens) {
    SCOPED_TRACE(key);
    Dict own{{"AreaNameInCall", true}, {"AreaNameMore", true}};
    Dict others = own;
    own[key] = true;
    for (const auto& [other, unused] : screens)
      if (std::string(other) != key) others[other] = true;
    start(own);
    EXPECT_EQ(screen(), typed);
    start(others);
    EXPECT_EQ(screen(), plain);
  }
}

// Each detail switch adds its own line under the contact's number, which
// has a switch of its own.
TEST_F(CallerInfoTest, EachDetailSwitchAddsItsOwnLine) {
  namespace schema = platform_schema;
  ASSERT_TRUE(schema::createDatabase(root_ + schema::kAddressBookPath,
                                     schema::Database::kAddressBook));
  execSql(root_ + schema::kAddressBookPath,
          "INSERT INTO ABPerson (ROWID, First, Organization, Department, "
          "JobTitle, Nickname, Birthday, Note) VALUES (7, 'Lei', 'Acme', "
          "'R&D', 'Engineer', 'Lee', '-336787200', 'VIP')");
  const std::pair<const char*, Text> cases[] = {
      {"InfoIncomingCallNumber", kNumber},
      {"InfoIncomingCallOrganization", "Acme"},
      {"InfoIncomingCallDepartment", "R&D"},
      {"InfoIncomingCallJobTitle", "Engineer"},
      {"InfoIncomingCallNickname", "Lee"},
      {"InfoIncomingCallBirthday", "May 1, 1990"},
      {"InfoIncomingCallNote", "VIP"},
      {"none", std::nullopt},
  };
  for (const auto& [key, line] : cases) {
    SCOPED_TRACE(key);
    Dict settings{{"EnableInfo", true}, {"InfoIncomingCallNumber", false}};
    settings[key] = true;
    start(settings);
    host_->lcd = ui::make<ui::UIView>();
    controller_->infoIncomingCall(screenOf(call(kNumber, 7)), "Li", "mobile");
    EXPECT_EQ(infoView() ? Text(infoView()->text()) : std::nullopt, line);
  }
}

TEST_F(CallerInfoTest, BannerTitleAndCarrierName) {
  writePlist(ZVCallHistory::kRingDurationPath,
             Dict{{"1416182474", 9}, {"437875274.000000", 7}});
  start({{"CallHistoryRingDuration", true}, {"CarrierName", "Zorvel"}}, "7.1",
        "com.apple.springboard");
  process_->setLocalizedStrings({{"sec", "秒"}});
  auto b = rt::create(callClass_);
  host_->contactInfo = kNumber;
  // 7.x keys ring times by seconds since 1970.
  host_->bulletinDateValue = 1416182474 - 978307200.0;
  EXPECT_EQ(controller_->areaBulletin(b, "Li"),
            std::string("Li  ") + kArea + " (9秒)");
  EXPECT_EQ(controller_->areaBulletin(b, ""), std::string(kArea) + " (9秒)");
  // A title that names the area already is kept.
  EXPECT_EQ(controller_->areaBulletin(b, std::string("x ") + kArea + " y"),
            std::string("x ") + kArea + " y");
  host_->section = "com.apple.mobilemail";
  EXPECT_EQ(controller_->areaBulletin(b, "Li"), "Li");
  // (The user's carrier name shown is the end-to-end suite's.)
  EXPECT_EQ(controller_->updateCarrierName(std::nullopt), std::nullopt);
  // Ring durations switched off: the area alone.
  start({}, "7.1", "com.apple.springboard");
  host_->contactInfo = kNumber;
  host_->bulletinDateValue = 1416182474 - 978307200.0;
  EXPECT_EQ(controller_->areaBulletin(rt::create(callClass_), "Li"),
            std::string("Li  ") + kArea);
}

TEST_F(CallerInfoTest, IncomingInfoViewPlaceHeightAndReuse) {
  start({{"AreaStyleIncomingCall", 1}});
  host_->lcd = ui::make<ui::UIView>();
  auto screen = screenOf(call(kNumber));
  host_->centerText = false;
  controller_->infoIncomingCall(screen, "Acme", std::nullopt);
  ASSERT_TRUE(infoView());
  EXPECT_EQ(infoView()->frame().origin.y, 69);
  EXPECT_EQ(infoView()->textAlignment(), ui::TextAlignment::Left);
  host_->centerText = true;
  // Built once: a later call's text does not replace the first.
  host_->calls[screen.get()] = call("18601234");
  controller_->infoIncomingCall(screen, std::nullopt, "mobile");
  EXPECT_EQ(infoView()->frame().origin.y, 85);
  EXPECT_EQ(infoView()->text(), kArea);
  controller_->infoIncomingCall(screen, std::nullopt, std::nullopt);
  EXPECT_EQ(infoView()->frame().origin.y, 59);
  EXPECT_EQ(host_->lcd->subviews().size(), 1u);
  // Many lines stop at 200 points.
  infoView()->setText(std::string(40, 'x') + std::string(20, '\n'));
  controller_->infoIncomingCall(screen, std::nullopt, std::nullopt);
  EXPECT_EQ(infoView()->frame().size.height, 200);
}

TEST_F(CallerInfoTest, StatusChangeRemovesOwnViewsOnlyForSomeStatuses) {
  start({{"AreaStyleOutgoingCall", 1}});
  host_->participants = ui::make<ui::UIView>();
  auto participants = rt::create(callClass_);
  auto note = rt::create(callClass_);
  for (int32_t status = 1; status <= 6; ++status) {
    auto label = ui::make<ui::UILabel>();
    label->setTag(10010);
    host_->participants->addSubview(label);
    host_->calls[note.get()] = callWithStatus(status);
    controller_->callStatusChangedNotification(note, participants);
    const bool removed = !host_->participants->viewWithTag(10010);
    EXPECT_EQ(removed, status != 3 && status != 4) << status;
    if (!removed) label->removeFromSuperview();
  }
}

// The ring timer stands alone: settings in, answers out. (The answers per
// generation with the switch on are the call screens' end-to-end tests'.)
TEST_F(CallerInfoTest, DeclineButtonSwitchedOffAnswersTheHost) {
  start({}, "8.1");
  RingTimer ring(ZVIncomingCallSettings::sharedInstance(), nullptr);
  ring.initCall();
  EXPECT_FALSE(ring.areDeclineButton());
}

}  // namespace
}  // namespace zv::testing
