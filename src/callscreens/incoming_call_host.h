// What ZVIncomingCallController needs of the host it runs in (the
// springboard on 7.x, the in-call service on 8.x), as one interface: the
// properties of the platform's telephony call objects, the current incoming
// call, hanging calls up, system sounds, installing the springboard's
// incoming-call screen replacements once their class exists, and what the
// caller-information work reads of the call screens (the 7.x incoming
// screen's number, record and LCD view; the 8.x participants' view and call
// groups; a bulletin's section, number and date). The call-screen hooks
// implement it over the runtime; tests implement it with a fake host.
//
// Calls are the platform's call objects as the hooks receive them; every
// call operation is given a non-null call. Nothing here throws on an object
// that lacks a property: it answers the neutral value named below.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/object.h"
#include "platform/ui/view.h"

namespace zv {

class IncomingCallHost {
 public:
  virtual ~IncomingCallHost() = default;

  // --- The call object -------------------------------------------------
  // abUID: the caller's address-book record id, -1 when not a contact.
  virtual int32_t abUID(const rt::Id& call) = 0;
  // contactUnknown: the address book could not be read for this call, so an
  // abUID of -1 does not make the caller a stranger; false when the call
  // does not say.
  virtual bool contactUnknown(const rt::Id& call) { return false; }
  // isBlocked: the platform's own blocked-callers list holds the caller.
  virtual bool isBlocked(const rt::Id& call) = 0;
  // destinationID: the remote number; nullopt when it is nil or not text.
  virtual std::optional<std::string> destinationID(const rt::Id& call) = 0;
  // isOutgoing: the user placed the call.
  virtual bool isOutgoing(const rt::Id& call) = 0;
  // call: the core-telephony handle of the call, or null.
  virtual rt::Id callHandle(const rt::Id& call) = 0;

  // --- Finding the call ------------------------------------------------
  // The in-call view controller's alertActivationCall, or null.
  virtual rt::Id alertActivationCall(const rt::Id& viewController) = 0;
  // The call centre's incomingCall / incomingVideoCall; null when there is
  // none, or no call centre at all.
  virtual rt::Id incomingCall() = 0;
  virtual rt::Id incomingVideoCall() = 0;

  // --- Platform actions --------------------------------------------------
  // CTCallDisconnect of one core-telephony handle; CTCallListDisconnectAll.
  virtual void disconnect(const rt::Id& handle) = 0;
  virtual void disconnectAll() = 0;
  // AudioServicesPlaySystemSound.
  virtual void playSystemSound(uint32_t soundId) = 0;
  // AudioServicesCreateSystemSoundID from the file at a device path: the new
  // id, or nullopt when the platform refused it.
  virtual std::optional<uint32_t> createSystemSound(
      std::string_view devicePath) = 0;
  // AudioServicesDisposeSystemSoundID.
  virtual void disposeSystemSound(uint32_t soundId) = 0;

  // status: a CallStatus (call_status.h); kCallStatusNone when the object
  // has none.
  virtual int32_t status(const rt::Id& call) = 0;
  // A notification's object (the call of a call-status notification).
  virtual rt::Id notificationObject(const rt::Id& notification) = 0;

  // --- The 7.x incoming-call screen ---------------------------------------
  // incomingCallNumber; nullopt when nil.
  virtual std::optional<std::string> incomingCallNumber(
      const rt::Id& screen) = 0;
  // incomingCallerABUID; -1 when nil (not a contact).
  virtual int32_t incomingCallerABUID(const rt::Id& screen) = 0;
  virtual std::shared_ptr<ui::UIView> topLCDView(const rt::Id& screen) = 0;
  virtual bool shouldCenterText(const rt::Id& screen) = 0;
  // Sends the screen ringOrVibrate (through its replacement).
  virtual void ringOrVibrate(const rt::Id& screen) = 0;

  // --- The 8.x call screen -------------------------------------------------
  // The participants view controller's participantsView; null when none.
  virtual std::shared_ptr<ui::UIView> participantsView(
      const rt::Id& participants) = 0;
  // The participants view controller's callGroups, and a group's calls.
  virtual std::vector<rt::Id> callGroups(const rt::Id& participants) = 0;
  virtual std::vector<rt::Id> groupCalls(const rt::Id& group) = 0;
  // The audio call view controller's participants view controller.
  virtual rt::Id callParticipantsViewController(const rt::Id& audioCall) = 0;

  // --- Bulletins -------------------------------------------------------------
  virtual std::string bulletinSectionID(const rt::Id& bulletin) = 0;
  // The context's "contactInfo" when it is text.
  virtual std::optional<std::string> bulletinContactInfo(
      const rt::Id& bulletin) = 0;
  // The date in seconds since 2001; nullopt when the bulletin has none.
  virtual std::optional<double> bulletinDate(const rt::Id& bulletin) = 0;

  // --- Late installation (7.x springboard) --------------------------------
  // Installs the replacements of the incoming-call screen when its class
  // exists now; false (nothing installed) while it does not.
  virtual bool installIncomingCallScreenHooks() = 0;
};

}  // namespace zv
