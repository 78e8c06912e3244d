#include "callscreens/call_blocking_policy.h"

#include <filesystem>
#include <string_view>

#include "area/area_loader.h"
#include "core/number_utils.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"

namespace zv {
namespace {

bool deviceFileExists(const char* devicePath) {
  std::error_code ec;
  return std::filesystem::exists(platform::current().path(devicePath), ec);
}

// Sets a flag for a scope and clears it when the scope ends, however it
// ends.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  ~FlagScope() { flag_ = false; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

 private:
  bool& flag_;
};

}  // namespace

CallBlockingPolicy::CallBlockingPolicy(
    std::shared_ptr<ZVIncomingCallSettings> settings,
    std::shared_ptr<ZVAreaLoader> area)
    : _settings(std::move(settings)), _area(std::move(area)) {}

CallBlockingPolicy::~CallBlockingPolicy() {
  unloadBlacklist();
  if (_soundID != 0 && host_) {
    try {
      host_->disposeSystemSound(_soundID);
    } catch (...) {
      // The process is going away; a sound it cannot release goes with it.
    }
  }
}

void CallBlockingPolicy::unloadBlacklist() {
  _blacklist.reset();
  _whitelist.reset();
  _lastBlockedNumber.clear();
}

bool CallBlockingPolicy::blockCall(const rt::Id& call) {
  if (!_settings->EnableBlacklist() || !call || !host_) return false;
  const int32_t mode = _settings->BlacklistBlockMode();
  if (mode == kBlockAll) return blockAction(call);
  // A caller whose record could not be looked up may well be a contact:
  // hanging up on a friend because another process held the address book
  // is worse than letting a stranger ring.
  if (_settings->BlacklistBlockStrangers() && host_->abUID(call) == -1 &&
      !host_->contactUnknown(call))
    return blockAction(call);
  if (_settings->BlacklistBlockBlockedCaller() && host_->isBlocked(call))
    return blockAction(call);

  // A hidden caller has no number for the lists and the area rule.
  std::optional<std::string> number = host_->destinationID(call);
  if (!number) return false;
  const std::string& n = *number;

  // A verdict once reached for a number stands until the lists reload.
  if (auto cached = _lastBlockedNumber.find(n);
      cached != _lastBlockedNumber.end())
    return cached->second ? blockAction(call) : false;

  // A whitelisted number is not let through here: it still meets the area
  // rule below.
  if (mode == kWhitelistMode && !isInWhitelist(n)) return blockAction(call);
  if (mode == kBlacklistMode && isInBlacklist(n)) return blockAction(call);
  if (_settings->BlacklistBlockArea().empty()) return false;
  if (isInBlockArea(n)) return blockAction(call);
  return false;
}

bool CallBlockingPolicy::isInBlacklist(const std::string& number) {
  return isInList(_blacklist, kBlacklistPath, true, number);
}

bool CallBlockingPolicy::isInWhitelist(const std::string& number) {
  return isInList(_whitelist, kWhitelistPath, false, number);
}

bool CallBlockingPolicy::isInList(std::optional<std::vector<std::string>>& list,
                                  const char* devicePath, bool verdict,
                                  const std::string& number) {
  if (!list && deviceFileExists(devicePath)) {
    // Only the keys count; a file that does not read as a dictionary is an
    // empty list, read again on the next lookup.
    if (auto dict = platform::readDictionary(devicePath)) {
      std::vector<std::string> keys;
      keys.reserve(dict->size());
      for (const auto& [key, value] : *dict) keys.push_back(key);
      list = std::move(keys);
    }
  }
  if (!list) return false;
  if (indexOfPhoneNumber(*list, number) == kNotFound) return false;
  _lastBlockedNumber[number] = verdict;
  return true;
}

bool CallBlockingPolicy::isInBlockArea(const std::string& number) {
  // A number the area service does not know is not tried against the
  // prefixes either.
  std::optional<std::string> area = _area->getArea(number, true, false, false);
  if (!area) return false;
  std::string_view words = _settings->BlacklistBlockArea();
  bool hit = false;
  while (!hit) {
    size_t blank = words.find(' ');
    std::string_view word = words.substr(0, blank);
    // Doubled blanks leave empty words, which match nothing.
    if (!word.empty() &&
        (area->find(word) != std::string::npos || number.starts_with(word)))
      hit = true;
    if (blank == std::string_view::npos) break;
    words.remove_prefix(blank + 1);
  }
  if (!hit) return false;
  _lastBlockedNumber[number] = true;
  return true;
}

bool CallBlockingPolicy::blockInCall(const rt::Id& viewController) {
  if (!_settings->EnableBlacklist() || !host_) return false;
  rt::Id call;
  if (viewController) call = host_->alertActivationCall(viewController);
  if (!call) call = getActivationCall();
  if (!call) return false;
  if (host_->isOutgoing(call)) return false;
  return blockCall(call);
}

rt::Id CallBlockingPolicy::getActivationCall() {
  if (!host_) return nullptr;
  if (rt::Id call = host_->incomingCall()) return call;
  return host_->incomingVideoCall();
}

bool CallBlockingPolicy::blockRingtone() {
  if (!_settings->EnableBlacklist()) return false;
  _lastBlockedNumber.clear();
  // The screen's decision already acted on this call: silence it only.
  FlagScope skip(skip_block_action_);
  return blockInCall(nullptr);
}

bool CallBlockingPolicy::blockAction(const rt::Id& call) {
  if (skip_block_action_) return true;
  if (_settings->BlacklistBlockingRemind() != 0) {
    // Several blocked calls within a second give one reminder.
    auto& platform = platform::current();
    platform.cancelPrevious(this, "blockRemind");
    std::weak_ptr<CallBlockingPolicy> weak = weak_from_this();
    platform.performAfterDelay(this, "blockRemind", kRemindDelay, [weak] {
      if (auto self = weak.lock()) self->blockRemind();
    });
  }
  if (!host_) return true;
  switch (_settings->BlacklistBlockAction()) {
    case kHangUpAll:
      host_->disconnectAll();
      break;
    case kHangUp:
      if (rt::Id handle = host_->callHandle(call)) host_->disconnect(handle);
      break;
    default:
      // The call rings on, unseen and unheard.
      break;
  }
  return true;
}

void CallBlockingPolicy::blockRemind() {
  if (!host_) return;
  const int32_t remind = _settings->BlacklistBlockingRemind();
  if (remind & kRemindVibrate) host_->playSystemSound(kVibrateSoundID);
  if (remind & kRemindSound) {
    // Made once per process from the installed file, then reused.
    if (_soundID == 0 && deviceFileExists(kBlockSoundPath)) {
      if (auto id = host_->createSystemSound(kBlockSoundPath)) _soundID = *id;
    }
    if (_soundID != 0) host_->playSystemSound(_soundID);
  }
}

}  // namespace zv
