// ZVIncomingCallController: the call screens' controller in the springboard
// (7.x) and the in-call service (8.x), the one object the call-screen hooks
// talk to. It is a thin front over three collaborators, each with one job
// and testable alone:
//
// - CallBlockingPolicy (call_blocking_policy.h): whether an incoming call is
//   unwanted, its lists and decision cache, the hang-up and the reminder;
// - CallerInfoViews (caller_info_views.h): the caller's area on the host's
//   labels and banners, the carrier name, the information views;
// - RingTimer (ring_timer.h): ring seconds, the delayed ring, the decline
//   button;
//
// and ConnectVibration, shared with the Phone app's in-call controller. The
// front owns what ties them together: one per process (sharedInstance,
// reloading the lists on "ZVBlacklistChanged"), the host given to all of
// them, the 7.x retries that install the incoming-call screen hooks once
// the springboard has registered its class (every 10 s, ten times at
// most), and the order of work where one job needs another's (a missed-call
// banner first ends its call's ring measurement, so that it can show it).
//
// The host is reached only through IncomingCallHost (set by the hooks); with
// no host, nothing is blocked. Main thread only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "callscreens/call_blocking_policy.h"
#include "callscreens/caller_info_views.h"
#include "callscreens/connect_vibration.h"
#include "callscreens/incoming_call_host.h"
#include "callscreens/ring_timer.h"
#include "platform/runtime/object.h"
#include "platform/ui/image.h"
#include "platform/value.h"

namespace zv {

class ZVIncomingCallSettings;

class ZVIncomingCallController
    : public std::enable_shared_from_this<ZVIncomingCallController> {
 public:
  static constexpr const char* kChangedNotification = "ZVBlacklistChanged";
  static constexpr double kInitHookDelay = 10.0;
  // initHook gives up after this many attempts.
  static constexpr int kInitHookAttempts = 10;

  // The process's controller; the first call creates it (init) and
  // subscribes ZVBlacklistChanged to the system-wide "ZVBlacklistChanged".
  static std::shared_ptr<ZVIncomingCallController> sharedInstance();
  // Notification callback: unloadBlacklist on the process's controller;
  // anything thrown is swallowed.
  static void ZVBlacklistChanged();
  // A controller outside the process's slot, initialised as sharedInstance
  // does but not subscribed (tests).
  static std::shared_ptr<ZVIncomingCallController> make();

  ZVIncomingCallController(const ZVIncomingCallController&) = delete;
  ZVIncomingCallController& operator=(const ZVIncomingCallController&) = delete;

  void setHost(std::shared_ptr<IncomingCallHost> host);
  const std::shared_ptr<IncomingCallHost>& host() const { return host_; }

  // One attempt to install the 7.x incoming-call screen hooks; schedules the
  // next one 10 s later while the class is missing, ten attempts at most.
  void initHook();

  // --- Blocking (CallBlockingPolicy)
  // ------------------------------------------
  bool blockCall(const rt::Id& call) { return blocking_->blockCall(call); }
  bool blockInCall(const rt::Id& viewController) {
    return blocking_->blockInCall(viewController);
  }
  bool blockRingtone(const rt::Id&) { return blocking_->blockRingtone(); }
  bool blockAction(const rt::Id& call) { return blocking_->blockAction(call); }
  void blockRemind() { blocking_->blockRemind(); }
  bool isInBlacklist(const std::string& number) {
    return blocking_->isInBlacklist(number);
  }
  bool isInWhitelist(const std::string& number) {
    return blocking_->isInWhitelist(number);
  }
  bool isInBlockArea(const std::string& number) {
    return blocking_->isInBlockArea(number);
  }
  rt::Id getActivationCall() { return blocking_->getActivationCall(); }
  void unloadBlacklist() { blocking_->unloadBlacklist(); }

  // --- Caller information (CallerInfoViews)
  // -----------------------------------
  std::optional<std::string> areaIncomingCall(
      const rt::Id& screen, std::optional<std::string> label) {
    return info_->areaIncomingCall(screen, std::move(label));
  }
  std::optional<std::string> areaTUCall(const rt::Id& call,
                                        std::optional<std::string> label) {
    return info_->areaTUCall(call, std::move(label));
  }
  std::optional<std::string> areaInCall(const rt::Id& call,
                                        std::optional<std::string> label) {
    return info_->areaInCall(call, std::move(label));
  }
  // Ends the ring measurement of a call still ringing first, so that the
  // banner shows its seconds.
  std::optional<std::string> areaBulletin(const rt::Id& bulletin,
                                          std::optional<std::string> title);
  std::optional<std::string> updateCarrierName(
      std::optional<std::string> name) {
    return info_->updateCarrierName(std::move(name));
  }
  void infoIncomingCall(const rt::Id& screen,
                        const std::optional<std::string>& companyName,
                        const std::optional<std::string>& label) {
    info_->infoIncomingCall(screen, companyName, label);
  }
  void infoInCall(const rt::Id& participants) {
    info_->infoInCall(participants);
  }
  void hideInfoInCall(const rt::Id& audioCall) {
    info_->hideInfoInCall(audioCall);
  }
  void callStatusChangedNotification(const rt::Id& notification,
                                     const rt::Id& participants) {
    info_->callStatusChangedNotification(notification, participants);
  }
  Value areaParticipantsView(const rt::Id& participants, int32_t index,
                             const rt::Id& participantsView, Value label) {
    (void)participantsView;
    return info_->areaParticipantsView(participants, index, std::move(label));
  }
  void imageForParticipant(const ui::ImagePtr& image) {
    info_->imageForParticipant(image);
  }
  // The call's state changed: the in-call labels note it, and an outgoing
  // call that connects vibrates when EnableConnectedVibrate is on.
  void callStateChangedNotification(const rt::Id& notification);

  // --- The ring (RingTimer) -------------------------------------------------
  void initCall() { ring_->initCall(); }
  void deallocCall();
  void startRingDuration() { ring_->startRingDuration(); }
  void stopRingDuration() { ring_->stopRingDuration(); }
  bool areDelayRing(const rt::Id& screen) {
    return ring_->areDelayRing(screen);
  }
  void ringOrVibrate(const rt::Id& screen) { ring_->ringOrVibrate(screen); }
  bool areDeclineButton() { return ring_->areDeclineButton(); }
  // One vibration per connection of an outgoing call (ConnectVibration).
  void connectedVibrate(const rt::Id& call);
  void vibrate();

  // --- State, for inspection ------------------------------------------------
  bool isIncomingCall() const { return ring_->isIncomingCall(); }
  double ringtime() const { return ring_->ringtime(); }
  int32_t curInCallStatus() const { return info_->curInCallStatus(); }
  bool vibrateLatch() const { return connect_vibration_.latched(); }
  const std::optional<std::vector<std::string>>& blacklist() const {
    return blocking_->blacklist();
  }
  const std::optional<std::vector<std::string>>& whitelist() const {
    return blocking_->whitelist();
  }
  const std::map<std::string, bool>& lastBlockedNumber() const {
    return blocking_->lastBlockedNumber();
  }
  uint32_t soundID() const { return blocking_->soundID(); }
  // Attempts initHook has made in this process.
  static int initHookAttempts();

 private:
  ZVIncomingCallController();
  void init();
  void scheduleInitHook();

  std::shared_ptr<IncomingCallHost> host_;
  std::shared_ptr<ZVIncomingCallSettings> _settings;
  std::shared_ptr<CallBlockingPolicy> blocking_;
  std::shared_ptr<CallerInfoViews> info_;
  std::shared_ptr<RingTimer> ring_;
  ConnectVibration connect_vibration_;
};

}  // namespace zv
