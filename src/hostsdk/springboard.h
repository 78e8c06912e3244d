// The springboard's classes and selectors ("com.apple.springboard") that the
// call screens use, each declared once with its signature. The simulated
// springboard defines them; the incoming-call hooks replace and send them.
//
// Texts the platform may leave nil are std::optional<std::string>.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"

namespace zv::sdk {

// The springboard's application object.
struct SpringBoard {
  static constexpr std::string_view kName = "SpringBoard";
};

// The 7.x incoming-call screen, one per ringing call. Its class is
// registered only some seconds after the springboard starts.
struct MPIncomingPhoneCallController {
  static constexpr std::string_view kName = "MPIncomingPhoneCallController";
  // Answers the new screen, or nil for no screen.
  static constexpr rt::Message<rt::Id(rt::Id)> initWithCall{kName,
                                                            "initWithCall:"};
  static constexpr rt::Message<void()> dealloc{kName, "dealloc"};
  static constexpr rt::Message<void(bool)> viewWillDisappear{
      kName, "viewWillDisappear:"};
  // Name, company name and label of the caller on the screen's LCD;
  // breakPoint is where a long name may wrap.
  static constexpr rt::Message<void(std::optional<std::string>,
                                    std::optional<std::string>,
                                    std::optional<std::string>, int32_t)>
      updateLCDWithNameCompanyNameLabelBreakPoint{
          kName, "updateLCDWithName:companyName:label:breakPoint:"};
  // Starts the ringtone or the vibration of the call.
  static constexpr rt::Message<void()> ringOrVibrate{kName, "ringOrVibrate"};
  // The caller's number; nil for a hidden caller.
  static constexpr rt::Message<std::optional<std::string>()> incomingCallNumber{
      kName, "incomingCallNumber"};
  // The caller's address-book record; nil when not a contact.
  static constexpr rt::Message<std::optional<int32_t>()> incomingCallerABUID{
      kName, "incomingCallerABUID"};
  // The view at the top of the screen that holds the caller's name.
  static constexpr rt::Message<rt::Id()> topLCDView{kName, "topLCDView"};
  static constexpr rt::Message<bool()> shouldCenterText{kName,
                                                        "shouldCenterText"};
};

// The status bar's state; asks for the carrier name to show for the
// network operator's name.
struct SBStatusBarStateAggregator {
  static constexpr std::string_view kName = "SBStatusBarStateAggregator";
  static constexpr rt::Message<rt::Id()> sharedInstance{kName, "sharedInstance",
                                                        true};
  static constexpr rt::Message<std::optional<std::string>(
      std::optional<std::string>)>
      sbCarrierNameForOperator{kName, "_sbCarrierNameForOperator:"};
};

// The springboard's user agent (7.x).
struct SBUserAgent {
  static constexpr std::string_view kName = "SBUserAgent";
  static constexpr rt::Message<rt::Id()> sharedUserAgent{
      kName, "sharedUserAgent", true};
  static constexpr rt::Message<bool()> lockScreenIsShowing{
      kName, "lockScreenIsShowing"};
};

}  // namespace zv::sdk
