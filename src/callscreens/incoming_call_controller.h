// ZVIncomingCallController: the call screens' controller in the springboard
// (7.x) and the in-call service (8.x). This file declares its state and its
// blocking part: at the moment an incoming call is about to be shown it
// decides whether the call is unwanted, and if so the hooks keep its screen
// and ringtone away, the configured action hangs it up (or not), and a
// reminder (vibration and/or sound) follows one second later.
//
// The decision, in order: master switch EnableBlacklist; mode 2 blocks all;
// strangers and platform-blocked callers by their switches; a hidden caller
// (no number) goes no further; the decision cache; whitelist mode (1) or
// blacklist mode (0); then the area rule (BlacklistBlockArea words matched
// against the number's area text or the number's start). The lists are the
// key sets of "zorvel.black.plist" / "zorvel.white.plist", read lazily and
// matched with indexOfPhoneNumber; a missing, malformed or truncated file is
// an empty list (tried again on the next lookup) and is never written. The
// cache keeps, per number, the last verdict a list or area lookup reached;
// "ZVBlacklistChanged" drops lists and cache, and the ringtone's second
// decision starts from an empty cache with the action suppressed.
//
// On 7.x the springboard's incoming-call class appears only after start-up:
// the controller retries installing its hooks every 10 s, ten times at most.
//
// The same controller puts the caller's area and contact details on the
// call screens (incoming_call_info.cc: the four label joiners, the
// information text view tagged 10086, the outgoing area label tagged 10010,
// the missed-call banner with its ring seconds, the carrier name) and looks
// after each call's ring (incoming_call_ring.cc: ring duration, delayed
// ring, decline button, the vibration when an outgoing call connects).
//
// The host is reached only through IncomingCallHost (set by the hooks); with
// no host, nothing is blocked. One per process (sharedInstance); main
// thread only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "callscreens/connect_vibration.h"
#include "callscreens/incoming_call_host.h"
#include "platform/runtime/object.h"
#include "platform/ui/image.h"
#include "platform/ui/text_view.h"
#include "platform/value.h"

namespace zv {

class ZVIncomingCallSettings;
class ZVAreaLoader;
class ZVAddressBook;
class ZVCallHistory;

class ZVIncomingCallController
    : public std::enable_shared_from_this<ZVIncomingCallController>,
      public ui::LayoutManagerDelegate {
 public:
  static constexpr int kInfoViewTag = 10086;
  static constexpr int kOutgoingLabelTag = 10010;
  // Points after every line of the information text view.
  static constexpr double kInfoLineSpacing = 6.0;
  // Ring durations outside 1..kMaxRingSeconds are not recorded.
  static constexpr int64_t kMaxRingSeconds = 119;
  static constexpr const char* kBlacklistPath =
      "/var/mobile/Library/Preferences/zorvel.black.plist";
  static constexpr const char* kWhitelistPath =
      "/var/mobile/Library/Preferences/zorvel.white.plist";
  static constexpr const char* kBlockSoundPath = "/Library/Zorvel/block.caf";
  static constexpr const char* kChangedNotification = "ZVBlacklistChanged";
  // The platform's vibrate sound.
  static constexpr uint32_t kVibrateSoundID = 4095;
  static constexpr double kRemindDelay = 1.0;
  static constexpr double kInitHookDelay = 10.0;
  // initHook gives up after this many attempts.
  static constexpr int kInitHookAttempts = 10;
  // BlacklistBlockMode values.
  enum BlockMode : int32_t {
    kBlacklistMode = 0,
    kWhitelistMode = 1,
    kBlockAll = 2
  };
  // BlacklistBlockAction values.
  enum BlockAction : int32_t { kHangUp = 0, kNoAction = 1, kHangUpAll = 2 };
  // BlacklistBlockingRemind bits.
  enum RemindBits : int32_t { kRemindVibrate = 1, kRemindSound = 2 };

  // The process's controller; the first call creates it (init) and
  // subscribes ZVBlacklistChanged to the system-wide "ZVBlacklistChanged".
  static std::shared_ptr<ZVIncomingCallController> sharedInstance();
  // Notification callback: unloadBlacklist on the process's controller;
  // anything thrown is swallowed.
  static void ZVBlacklistChanged();
  // A controller outside the process's slot, initialised as sharedInstance
  // does but not subscribed (tests).
  static std::shared_ptr<ZVIncomingCallController> make();

  // dealloc: unloadBlacklist, dispose the reminder sound.
  ~ZVIncomingCallController();
  ZVIncomingCallController(const ZVIncomingCallController&) = delete;
  ZVIncomingCallController& operator=(const ZVIncomingCallController&) = delete;

  void setHost(std::shared_ptr<IncomingCallHost> host) {
    host_ = std::move(host);
  }
  const std::shared_ptr<IncomingCallHost>& host() const { return host_; }

  // One attempt to install the 7.x incoming-call screen hooks; schedules the
  // next one 10 s later while the class is missing, ten attempts at most.
  void initHook();

  // --- Blocking -------------------------------------------------------------
  // The decision on an incoming call, and the action when it is blocked.
  bool blockCall(const rt::Id& call);
  // Decides on the call of an in-call view controller (its
  // alertActivationCall, else the current incoming call); outgoing calls
  // are never blocked.
  bool blockInCall(const rt::Id& viewController);
  // The ringtone's decision: afresh (cache emptied), action suppressed.
  bool blockRingtone(const rt::Id& ignored);
  // Hangs up as configured and schedules the reminder; always true.
  bool blockAction(const rt::Id& call);
  // Vibration and/or the reminder sound, as BlacklistBlockingRemind says.
  void blockRemind();
  // List and area lookups; a hit is cached (true for the blacklist and the
  // area rule, false for the whitelist).
  bool isInBlacklist(const std::string& number);
  bool isInWhitelist(const std::string& number);
  bool isInBlockArea(const std::string& number);
  // The platform's current incoming call (voice, else video), or null.
  rt::Id getActivationCall();
  // Drops both lists and the decision cache.
  void unloadBlacklist();

  // --- Caller information (incoming_call_info.cc) ---------------------------
  // The label joiners: the host's label with the caller's area, or the label
  // unchanged when the feature is off or the area unknown.
  std::optional<std::string> areaIncomingCall(const rt::Id& screen,
                                              std::optional<std::string> label);
  std::optional<std::string> areaTUCall(const rt::Id& call,
                                        std::optional<std::string> label);
  std::optional<std::string> areaInCall(const rt::Id& call,
                                        std::optional<std::string> label);
  std::optional<std::string> areaBulletin(const rt::Id& bulletin,
                                          std::optional<std::string> title);
  // The user's carrier name in place of the operator's, when set.
  std::optional<std::string> updateCarrierName(std::optional<std::string> name);
  // The 7.x incoming screen's information text view.
  void infoIncomingCall(const rt::Id& screen,
                        const std::optional<std::string>& companyName,
                        const std::optional<std::string>& label);
  // The 8.x call screen's information text view or outgoing area label.
  void infoInCall(const rt::Id& participants);
  // Takes both views off the participants of an audio call screen.
  void hideInfoInCall(const rt::Id& audioCall);
  void callStatusChangedNotification(const rt::Id& notification,
                                     const rt::Id& participants);
  // A participant's status label (a text or an array of texts).
  Value areaParticipantsView(const rt::Id& participants, int32_t index,
                             const rt::Id& participantsView, Value label);
  void imageForParticipant(const ui::ImagePtr& image);
  void callStateChangedNotification(const rt::Id& notification);
  // The text view's layout manager delegate: kInfoLineSpacing.
  double lineSpacingAfterGlyphAtIndex(size_t glyphIndex,
                                      const ui::Rect& proposedRect) override;

  // --- The ring (incoming_call_ring.cc) ------------------------------------
  void initCall();
  void deallocCall();
  void startRingDuration();
  // Saves the whole seconds rung since startRingDuration (1..119 only).
  void stopRingDuration();
  // True when the host's ring is put off (ringOrVibrate later).
  bool areDelayRing(const rt::Id& screen);
  void ringOrVibrate(const rt::Id& screen);
  // True when the lock-screen question is answered "not locked".
  bool areDeclineButton();
  void connectedVibrate(const rt::Id& call);
  void vibrate();

  // --- State, for inspection ------------------------------------------------
  bool isIncomingCall() const { return _isIncomingCall; }
  double ringtime() const { return _ringtime; }
  int32_t curInCallStatus() const { return _curInCallStatus; }
  bool vibrateLatch() const { return connect_vibration_.latched(); }
  const std::optional<std::vector<std::string>>& blacklist() const {
    return _blacklist;
  }
  const std::optional<std::vector<std::string>>& whitelist() const {
    return _whitelist;
  }
  const std::map<std::string, bool>& lastBlockedNumber() const {
    return _lastBlockedNumber;
  }
  uint32_t soundID() const { return _soundID; }
  // Attempts initHook has made in this process.
  static int initHookAttempts();

 private:
  ZVIncomingCallController();
  void init();
  bool isInList(std::optional<std::vector<std::string>>& list,
                const char* devicePath, bool verdict,
                const std::string& number);
  void scheduleInitHook();
  // Area, number line and contact details of a caller, as the information
  // text view shows them; nullopt when there is nothing to show.
  std::optional<std::string> infoText(bool style,
                                      const std::optional<std::string>& number,
                                      int32_t recordId);
  std::optional<std::string> areaOf(const std::optional<std::string>& number,
                                    bool name, bool type);
  std::shared_ptr<ui::UITextView> makeInfoView(const ui::Font& font,
                                               const ui::Rect& frame);
  // Shows `text` in the information view `view` inside `parent`, made
  // there with `font` when null: aligned as asked, at `origin`, `width`
  // wide and as tall as its text within the cap.
  void showInfoView(ui::UIView& parent, std::shared_ptr<ui::UITextView> view,
                    const ui::Font& font, ui::Point origin, double width,
                    ui::TextAlignment alignment, const std::string& text);
  void removeInfoViews(const std::shared_ptr<ui::UIView>& participantsView);
  // What the settings put into the information views: the area for
  // incoming or outgoing calls there (style 1) and the contact details.
  struct InfoViewParts {
    bool incomingArea, outgoingArea, details;
    bool any() const { return incomingArea || outgoingArea || details; }
  };
  InfoViewParts infoViewParts() const;  // needs _settings

  std::shared_ptr<IncomingCallHost> host_;

  std::shared_ptr<ZVIncomingCallSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ZVCallHistory> _callhistory;
  double _ringtime = 0;
  std::optional<std::vector<std::string>> _blacklist;
  std::optional<std::vector<std::string>> _whitelist;
  std::map<std::string, bool> _lastBlockedNumber;
  uint32_t _soundID = 0;
  // Per-call flags and the in-call screen's state, kept here for the caller
  // information and ring-duration work on the same screens.
  bool _isIncomingCall = false;
  bool _isIncomingCallForDeclineButton = false;
  bool _isIncomingCallForDelayRing = false;
  bool _isInCallFieldMode = false;
  bool _haveInCallLabel = false;
  bool _haveInCallImage = false;
  int32_t _curInCallStatus = 0;
  bool _skipBlockAction = false;
  // True once the connect vibration is scheduled for the active call.
  ConnectVibration connect_vibration_;
};

}  // namespace zv
