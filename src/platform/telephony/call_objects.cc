#include "platform/telephony/call_objects.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/db/phone_labels.h"
#include "platform/platform.h"
#include "platform/process.h"

namespace zv::platform {
namespace {

class TUCallObject : public rt::Object {
 public:
  using rt::Object::Object;
  CallInfo info;
  rt::Id handle;  // the CTCall; null for a video call
};

class CTCallObject : public rt::Object {
 public:
  using rt::Object::Object;
  CallId id = 0;
};

// The telephony objects of one process (a process-context singleton).
class ProcessCalls {
 public:
  explicit ProcessCalls(Telephony& telephony) : telephony_(telephony) {
    registerTelephonyClasses(rt::runtime());
    token_ =
        telephony_.observeCalls([this](const CallInfo& info) { apply(info); });
    for (const CallInfo& info : telephony_.calls()) objectFor(info);
  }
  ~ProcessCalls() { telephony_.removeCallObserver(token_); }
  ProcessCalls(const ProcessCalls&) = delete;
  ProcessCalls& operator=(const ProcessCalls&) = delete;

  rt::Id center() {
    if (!center_) center_ = rt::create(rt::getClass(msg::TUCallCenter::kName));
    return center_;
  }

  rt::Id find(CallId id) const {
    auto it = live_.find(id);
    return it == live_.end() ? nullptr : it->second;
  }

  // The newest incoming call still ringing, voice or video: the one the
  // phone is presenting. A call that rang in while an earlier one rings on
  // unseen (blocked, left ringing) is the one its screen and ringtone are
  // about.
  rt::Id ringing(bool video) const {
    for (auto it = live_.rbegin(); it != live_.rend(); ++it) {
      const CallInfo& info = it->second->info;
      if (info.status == kCallRinging && !info.isOutgoing &&
          info.isVideo == video) {
        return it->second;
      }
    }
    return nullptr;
  }

  CallObserverToken observe(std::function<void(const rt::Id&)> callback) {
    const CallObserverToken token = next_token_++;
    observers_.emplace(token, std::move(callback));
    return token;
  }
  void remove(CallObserverToken token) { observers_.erase(token); }

 private:
  std::shared_ptr<TUCallObject> objectFor(const CallInfo& info) {
    auto& call = live_[info.id];
    if (!call) {
      call = rt::create<TUCallObject>(rt::getClass(msg::TUCall::kName));
      call->info = info;
      if (!info.isVideo) {
        auto handle =
            rt::create<CTCallObject>(rt::getClass(msg::CTCall::kName));
        handle->id = info.id;
        call->handle = std::move(handle);
      }
    } else if (info.revision > call->info.revision) {
      call->info = info;
    }
    return call;
  }

  void apply(const CallInfo& info) {
    auto it = live_.find(info.id);
    if (it != live_.end() && info.revision <= it->second->info.revision)
      return;  // the object already shows a newer state
    rt::Id call = objectFor(info);
    if (info.status == kCallEnded) live_.erase(info.id);
    // Observers may add or remove observers while they run.
    std::vector<std::function<void(const rt::Id&)>> callbacks;
    for (const auto& [token, callback] : observers_)
      callbacks.push_back(callback);
    for (auto& callback : callbacks) callback(call);
  }

  Telephony& telephony_;
  CallObserverToken token_ = 0;
  rt::Id center_;
  std::map<CallId, std::shared_ptr<TUCallObject>> live_;
  std::map<CallObserverToken, std::function<void(const rt::Id&)>> observers_;
  CallObserverToken next_token_ = 1;
};

ProcessCalls& processCalls() {
  return *Process::current().singleton<ProcessCalls>(
      [] { return std::make_shared<ProcessCalls>(current().telephony()); });
}

// The call a TUCall stands for; an empty call for a foreign object.
const CallInfo& infoOf(const rt::Id& self) {
  static const CallInfo kNone;
  auto call = rt::as<TUCallObject>(self);
  return call ? call->info : kNone;
}

}  // namespace

void registerTelephonyClasses(rt::Runtime& runtime) {
  if (runtime.getClass(msg::TUCall::kName)) return;
  runtime.registerClass(msg::TUCallCenter::kName);
  runtime.registerClass(msg::TUCall::kName)
      ->setFactory(
          [](rt::Class* c) -> rt::Id { return rt::create<TUCallObject>(c); });
  runtime.registerClass(msg::CTCall::kName)
      ->setFactory(
          [](rt::Class* c) -> rt::Id { return rt::create<CTCallObject>(c); });
  using C = msg::TUCallCenter;
  rt::define(runtime, C::sharedInstance,
             [](const rt::Id&) { return callCenter(); });
  rt::define(runtime, C::incomingCall,
             [](const rt::Id&) { return processCalls().ringing(false); });
  rt::define(runtime, C::incomingVideoCall,
             [](const rt::Id&) { return processCalls().ringing(true); });

  using T = msg::TUCall;
  rt::define(runtime, T::status,
             [](const rt::Id& s) { return infoOf(s).status; });
  rt::define(runtime, T::destinationID,
             [](const rt::Id& s) { return infoOf(s).destinationID; });
  rt::define(runtime, T::abUID,
             [](const rt::Id& s) { return infoOf(s).abUID; });
  rt::define(runtime, T::contactUnknown,
             [](const rt::Id& s) { return infoOf(s).contactUnknown; });
  rt::define(runtime, T::isBlocked,
             [](const rt::Id& s) { return infoOf(s).isBlocked; });
  rt::define(runtime, T::isOutgoing,
             [](const rt::Id& s) { return infoOf(s).isOutgoing; });
  rt::define(runtime, T::call, [](const rt::Id& s) -> rt::Id {
    auto object = rt::as<TUCallObject>(s);
    return object ? object->handle : nullptr;
  });
  rt::define(runtime, T::localizedLabel,
             [](const rt::Id& s) -> std::optional<std::string> {
               const CallInfo& info = infoOf(s);
               if (info.abUID == -1 || info.contactLabel.empty())
                 return std::nullopt;
               return copyLocalizedLabel(info.contactLabel);
             });
}

rt::Id callCenter() { return processCalls().center(); }

rt::Id callObject(CallId id) { return processCalls().find(id); }

std::optional<CallInfo> callInfo(const rt::Id& object) {
  if (auto call = rt::as<TUCallObject>(object)) return call->info;
  if (auto handle = rt::as<CTCallObject>(object)) {
    if (auto call = rt::as<TUCallObject>(processCalls().find(handle->id)))
      return call->info;
    return current().telephony().call(handle->id);
  }
  return std::nullopt;
}

CallObserverToken observeCallStatus(
    std::function<void(const rt::Id& call)> callback) {
  return processCalls().observe(std::move(callback));
}

void removeCallStatusObserver(CallObserverToken token) {
  processCalls().remove(token);
}

}  // namespace zv::platform
