// The platform's telephony, bulletin and notification classes as a host or
// a hook sees them: each class name and each selector once, with its
// signature (typed messages, platform/runtime/message.h). The platform
// declares and defines them beside their implementations
// (platform/telephony/messages.h, platform/ui/bulletin.h,
// platform/runtime/notification.h); this header gives hosts and hooks the
// one name to include, as an extension includes the frameworks' headers.
//
//   TUCallCenter  sharedInstance (class), incomingCall, incomingVideoCall
//   TUCall        status, destinationID, abUID, contactUnknown, isBlocked,
//                 isOutgoing, call, localizedLabel
//   CTCall        the handle CTCallDisconnect takes
//                 (platform/telephony/core_telephony.h)
//   BBBulletin    title, sectionID, context, date
//   NSNotification name, object; kCallStatusChanged is the name of the
//                 notification whose object is the TUCall
#pragma once

#include <string_view>

#include "platform/runtime/notification.h"
#include "platform/telephony/messages.h"
#include "platform/ui/bulletin.h"

namespace zv::sdk {

using TUCallCenter = platform::msg::TUCallCenter;
using TUCall = platform::msg::TUCall;
using CTCall = platform::msg::CTCall;
using BBBulletin = ui::msg::BBBulletin;

struct NSNotification : rt::msg::NSNotification {
  static constexpr std::string_view kCallStatusChanged =
      platform::msg::kCallStatusChangedNotification;
};

}  // namespace zv::sdk
