// The platform's telephony objects inside one process, over the device's
// Telephony (telephony.h):
//
//   TUCallCenter  +sharedInstance; incomingCall, incomingVideoCall (the
//                 newest ringing voice / video call, nil when none)
//   TUCall        status (int), destinationID (optional text, nullopt for
//                 a withheld number), abUID (int, -1 no contact),
//                 contactUnknown (the address book was unreadable), isBlocked,
//                 isOutgoing, call (its CTCall handle, nil for a video
//                 call), localizedLabel (optional text: the contact's label
//                 of the number, nullopt when none)
//   CTCall        the core-telephony handle that CTCallDisconnect takes
//
// (their typed messages: telephony/messages.h).
//
// Class tables are per process: a process that uses telephony registers
// the classes (registerTelephonyClasses; the first call object made in a
// process registers them too). The device owns the calls; a process holds
// one object per call, the same object every time, and that object shows
// the call as of the last change delivered to the process. Changes reach
// the process on its main run loop: the object is updated first, then the
// process's call-status observers are called with it, in order.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/runtime/object.h"
#include "platform/telephony/messages.h"
#include "platform/telephony/telephony.h"

namespace zv::platform {

// Registers the three classes in `runtime` (again: nothing changes).
void registerTelephonyClasses(rt::Runtime& runtime);

// The current process's TUCallCenter sharedInstance.
rt::Id callCenter();
// The current process's object of a call that has not ended (as far as the
// process knows); nil for an unknown or ended call.
rt::Id callObject(CallId id);
// The call a TUCall or CTCall object stands for, as the process last heard
// of it; nullopt for any other object.
std::optional<CallInfo> callInfo(const rt::Id& object);

// Calls `callback` with the TUCall after every change of a call delivered
// to the current process (a new call included).
CallObserverToken observeCallStatus(
    std::function<void(const rt::Id& call)> callback);
void removeCallStatusObserver(CallObserverToken token);

}  // namespace zv::platform
