// CallBlockingPolicy: whether an incoming call is unwanted, and what to do
// with it. At the moment a call is about to be shown the call screens ask
// blockCall; a true answer keeps its screen and ringtone away, the
// configured action hangs it up (or not), and a reminder (vibration and/or
// sound) follows one second later.
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
// unloadBlacklist drops lists and cache, and the ringtone's second decision
// starts from an empty cache with the action suppressed.
//
// The host is reached only through IncomingCallHost; with no host, nothing
// is blocked. Main thread only; made as a shared object (the reminder is
// scheduled on the run loop and skipped once the policy is gone).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "callscreens/incoming_call_host.h"
#include "platform/runtime/object.h"

namespace zv {

class ZVIncomingCallSettings;
class ZVAreaLoader;

class CallBlockingPolicy
    : public std::enable_shared_from_this<CallBlockingPolicy> {
 public:
  static constexpr const char* kBlacklistPath =
      "/var/mobile/Library/Preferences/zorvel.black.plist";
  static constexpr const char* kWhitelistPath =
      "/var/mobile/Library/Preferences/zorvel.white.plist";
  static constexpr const char* kBlockSoundPath = "/Library/Zorvel/block.caf";
  // The platform's vibrate sound.
  static constexpr uint32_t kVibrateSoundID = 4095;
  static constexpr double kRemindDelay = 1.0;
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

  // `settings` and `area` must not be null.
  CallBlockingPolicy(std::shared_ptr<ZVIncomingCallSettings> settings,
                     std::shared_ptr<ZVAreaLoader> area);
  // Drops the lists; releases the reminder sound through the host.
  ~CallBlockingPolicy();
  CallBlockingPolicy(const CallBlockingPolicy&) = delete;
  CallBlockingPolicy& operator=(const CallBlockingPolicy&) = delete;

  void setHost(std::shared_ptr<IncomingCallHost> host) {
    host_ = std::move(host);
  }

  // The decision on an incoming call, and the action when it is blocked.
  bool blockCall(const rt::Id& call);
  // Decides on the call of an in-call view controller (its
  // alertActivationCall, else the current incoming call); outgoing calls
  // are never blocked.
  bool blockInCall(const rt::Id& viewController);
  // The ringtone's decision: afresh (cache emptied), action suppressed.
  bool blockRingtone();
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

 private:
  bool isInList(std::optional<std::vector<std::string>>& list,
                const char* devicePath, bool verdict,
                const std::string& number);

  std::shared_ptr<IncomingCallHost> host_;
  std::shared_ptr<ZVIncomingCallSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::optional<std::vector<std::string>> _blacklist;
  std::optional<std::vector<std::string>> _whitelist;
  std::map<std::string, bool> _lastBlockedNumber;
  uint32_t _soundID = 0;
  bool skip_block_action_ = false;
};

}  // namespace zv
