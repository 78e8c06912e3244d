// The call-screen controller's host (IncomingCallHost) over the runtime of
// the springboard or the in-call service: call properties through the
// platform's telephony objects, the current incoming call through
// TUCallCenter, hang-ups through core telephony, sounds through the
// platform, and the 7.x incoming-screen rows through zvincomingcall_init2.
// Shared by the incoming-call and the in-call service start-up routines.
#pragma once

#include <memory>

#include "callscreens/incoming_call_host.h"

namespace zv {

std::shared_ptr<IncomingCallHost> makeRuntimeIncomingCallHost();

// Installs the springboard's incoming-call screen rows; false (nothing
// installed) while MPIncomingPhoneCallController does not exist.
bool zvincomingcall_init2();

}  // namespace zv
