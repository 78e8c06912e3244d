// The platform's telephony and bulletin classes as a host or a hook sees
// them: each class name and each selector once, with its signature. The
// platform registers them (platform/telephony/call_objects.h,
// platform/ui/bulletin.h, platform/runtime/notification.h); hosts and hooks
// send them through the runtime.
//
// Selectors are plain names for now, each with its signature beside it in a
// comment (R(A...), the receiver not counted); they become typed
// rt::Message<Sig> constants with the runtime's typed messages.
#pragma once

#include <string_view>

namespace zv::sdk {

struct TUCallCenter {
  static constexpr std::string_view kName = "TUCallCenter";
  // Class method: rt::Id()
  static constexpr std::string_view sharedInstance = "sharedInstance";
  // rt::Id(): the ringing voice call, nil when none.
  static constexpr std::string_view incomingCall = "incomingCall";
  // rt::Id(): the ringing video call, nil when none.
  static constexpr std::string_view incomingVideoCall = "incomingVideoCall";
};

struct TUCall {
  static constexpr std::string_view kName = "TUCall";
  // int(): 1 active, 2 held, 3 dialling out, 4 ringing in, 5 ending, 6 ended.
  static constexpr std::string_view status = "status";
  // std::optional<std::string>(): nullopt for a withheld number.
  static constexpr std::string_view destinationID = "destinationID";
  // int(): the caller's address-book record, -1 when not a contact.
  static constexpr std::string_view abUID = "abUID";
  // bool(): on the platform's own blocked-callers list.
  static constexpr std::string_view isBlocked = "isBlocked";
  // bool()
  static constexpr std::string_view isOutgoing = "isOutgoing";
  // rt::Id(): the CTCall handle, nil when none.
  static constexpr std::string_view call = "call";
  // std::optional<std::string>(): the contact's label of the number.
  static constexpr std::string_view localizedLabel = "localizedLabel";
};

struct CTCall {
  static constexpr std::string_view kName = "CTCall";
};

struct BBBulletin {
  static constexpr std::string_view kName = "BBBulletin";
  // std::string()
  static constexpr std::string_view title = "title";
  // std::string(), e.g. "com.apple.mobilephone"
  static constexpr std::string_view sectionID = "sectionID";
  // Dict(): "contactInfo" holds the caller's number.
  static constexpr std::string_view context = "context";
  // std::optional<Date>(): seconds since 2001.
  static constexpr std::string_view date = "date";
};

struct NSNotification {
  static constexpr std::string_view kName = "NSNotification";
  // std::string()
  static constexpr std::string_view name = "name";
  // rt::Id()
  static constexpr std::string_view object = "object";
  // The call-status change; its object is the TUCall.
  static constexpr std::string_view kCallStatusChanged =
      "TUCallCenterCallStatusChangedNotification";
};

}  // namespace zv::sdk
