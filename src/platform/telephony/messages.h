// The platform's telephony classes and selectors as typed messages (see
// platform/runtime/message.h): declared once here, defined by
// call_objects.cc, sent by hosts and hooks through hostsdk/telephony.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"

namespace zv::platform::msg {

struct TUCallCenter {
  static constexpr std::string_view kName = "TUCallCenter";
  static constexpr rt::Message<rt::Id()> sharedInstance{kName, "sharedInstance",
                                                        true};
  // The ringing voice call, nil when none.
  static constexpr rt::Message<rt::Id()> incomingCall{kName, "incomingCall"};
  // The ringing video call, nil when none.
  static constexpr rt::Message<rt::Id()> incomingVideoCall{kName,
                                                           "incomingVideoCall"};
};

struct TUCall {
  static constexpr std::string_view kName = "TUCall";
  // 1 active, 2 held, 3 dialling out, 4 ringing in, 5 ending, 6 ended.
  static constexpr rt::Message<int()> status{kName, "status"};
  // nullopt for a withheld number.
  static constexpr rt::Message<std::optional<std::string>()> destinationID{
      kName, "destinationID"};
  // The caller's address-book record, -1 when not a contact.
  static constexpr rt::Message<int()> abUID{kName, "abUID"};
  // The address book could not be read for this call: abUID -1 does not
  // mean a stranger.
  static constexpr rt::Message<bool()> contactUnknown{kName, "contactUnknown"};
  // On the platform's own blocked-callers list.
  static constexpr rt::Message<bool()> isBlocked{kName, "isBlocked"};
  static constexpr rt::Message<bool()> isOutgoing{kName, "isOutgoing"};
  // The CTCall handle, nil when none (a video call).
  static constexpr rt::Message<rt::Id()> call{kName, "call"};
  // The contact's label of the number, nullopt when none.
  static constexpr rt::Message<std::optional<std::string>()> localizedLabel{
      kName, "localizedLabel"};
};

// The core-telephony handle that CTCallDisconnect takes; no messages.
struct CTCall {
  static constexpr std::string_view kName = "CTCall";
};

// The in-process notification of a call-status change; its object is the
// TUCall (see rt::makeNotification).
inline constexpr char kCallStatusChangedNotification[] =
    "TUCallCenterCallStatusChangedNotification";

}  // namespace zv::platform::msg
