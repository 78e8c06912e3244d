#include "platform/sim/sim_telephony.h"

#include <algorithm>
#include <stdexcept>

#include "platform/db/call_records.h"
#include "platform/db/contact_lookup.h"
#include "platform/db/platform_schema.h"
#include "platform/sim/sim_platform.h"

namespace zv::platform {
namespace {

namespace ps = platform_schema;

const char* statusName(int32_t status) {
  switch (status) {
    case kCallActive:
      return "active";
    case kCallHeld:
      return "held";
    case kCallDialling:
      return "dialling";
    case kCallRinging:
      return "ringing";
    case kCallEnding:
      return "ending";
    default:
      return "ended";
  }
}

}  // namespace

SimTelephony::SimTelephony(SimWorld& world) : world_(world) {}

CallInfo& SimTelephony::live(CallId id, std::initializer_list<int32_t> allowed,
                             const char* action) {
  auto it = calls_.find(id);
  if (it == calls_.end())
    throw std::invalid_argument(std::string("cannot ") + action + " call " +
                                std::to_string(id) + ": there is no such call");
  CallInfo& call = it->second;
  if (std::find(allowed.begin(), allowed.end(), call.status) == allowed.end())
    throw std::invalid_argument(std::string("cannot ") + action + " call " +
                                std::to_string(id) + ": it is " +
                                statusName(call.status));
  return call;
}

CallInfo& SimTelephony::begin(CallInfo call, std::optional<int32_t> abUID) {
  call.id = next_id_++;
  call.date = world_.now();
  if (call.destinationID) {
    const std::string book = world_.root() + ps::kAddressBookPath;
    if (auto match = ps::findContactByNumber(book, *call.destinationID)) {
      call.abUID = static_cast<int32_t>(match->recordId);
      call.contactLabel = match->label;
    }
    for (const auto& number : blocked_)
      if (ps::sameNumber(number, *call.destinationID)) call.isBlocked = true;
  }
  if (abUID) {
    call.abUID = *abUID;
    if (*abUID == -1) call.contactLabel.clear();
  }
  const int32_t status = call.status;
  call.status = 0;
  CallInfo& stored = calls_.emplace(call.id, std::move(call)).first->second;
  change(stored, status);
  return stored;
}

CallId SimTelephony::incoming(const std::string& number,
                              IncomingOptions options) {
  if (number.empty() && !options.hidden)
    throw std::invalid_argument(
        "an incoming call needs the caller's number unless it is hidden");
  CallInfo call;
  call.status = kCallRinging;
  if (!options.hidden) call.destinationID = number;
  call.isVideo = options.video;
  call.isBlocked = options.platformBlocked;
  return begin(std::move(call), options.abUID).id;
}

CallId SimTelephony::dial(const std::string& number, bool video) {
  if (number.empty())
    throw std::invalid_argument("cannot dial an empty number");
  CallInfo call;
  call.status = kCallDialling;
  call.destinationID = number;
  call.isOutgoing = true;
  call.isVideo = video;
  return begin(std::move(call)).id;
}

void SimTelephony::answer(CallId id) {
  CallInfo& call = live(id, {kCallRinging}, "answer");
  call.connectedAt = world_.now();
  change(call, kCallActive);
}

void SimTelephony::decline(CallId id) {
  finish(live(id, {kCallRinging}, "decline"), EndedBy::kUser);
}

void SimTelephony::remoteHangup(CallId id) {
  finish(live(id, {kCallActive, kCallHeld, kCallDialling, kCallRinging},
              "hang up"),
         EndedBy::kRemote);
}

void SimTelephony::connect(CallId id) {
  CallInfo& call = live(id, {kCallDialling}, "connect");
  call.connectedAt = world_.now();
  change(call, kCallActive);
}

void SimTelephony::hold(CallId id) {
  change(live(id, {kCallActive}, "hold"), kCallHeld);
}

void SimTelephony::resume(CallId id) {
  change(live(id, {kCallHeld}, "resume"), kCallActive);
}

void SimTelephony::end(CallId id) {
  finish(live(id, {kCallActive, kCallHeld, kCallDialling, kCallRinging}, "end"),
         EndedBy::kUser);
}

void SimTelephony::blockCaller(const std::string& number) {
  blocked_.push_back(number);
}

void SimTelephony::setSystemVersion(std::string version) {
  system_version_ = std::move(version);
}

std::string SimTelephony::systemVersion() const {
  if (system_version_) return *system_version_;
  for (const auto& process : world_.processes_)
    if (process->alive_) return process->device().systemVersion;
  return DeviceFacts{}.systemVersion;
}

std::vector<CallInfo> SimTelephony::calls() const {
  std::vector<CallInfo> out;
  for (const auto& [id, call] : calls_)
    if (call.status != kCallEnded) out.push_back(call);
  return out;
}

std::optional<CallInfo> SimTelephony::call(CallId id) const {
  auto it = calls_.find(id);
  if (it == calls_.end()) return std::nullopt;
  return it->second;
}

void SimTelephony::disconnect(CallId id, SimProcess& by) {
  auto it = calls_.find(id);
  world_.record(
      by, "disconnect",
      it == calls_.end() ? "call " + std::to_string(id) : describe(it->second));
  if (it == calls_.end() || it->second.status == kCallEnding ||
      it->second.status == kCallEnded) {
    return;
  }
  finish(it->second, EndedBy::kPlatform);
}

void SimTelephony::answer(CallId id, SimProcess& by) {
  auto it = calls_.find(id);
  world_.record(
      by, "answer",
      it == calls_.end() ? "call " + std::to_string(id) : describe(it->second));
  if (it == calls_.end() || it->second.status != kCallRinging) return;
  it->second.connectedAt = world_.now();
  change(it->second, kCallActive);
}

void SimTelephony::disconnectAll(SimProcess& by) {
  world_.record(by, "disconnectAll", "");
  for (auto& [id, call] : calls_)
    if (call.status != kCallEnding && call.status != kCallEnded)
      finish(call, EndedBy::kPlatform);
}

void SimTelephony::setCellularDataEnabled(bool enabled, SimProcess& by) {
  cellular_data_ = enabled;
  world_.record(by, "cellularData", enabled ? "on" : "off");
}

CallObserverToken SimTelephony::observe(
    SimProcess& process, std::function<void(const CallInfo&)> callback) {
  CallObserverToken token = next_token_++;
  observers_.push_back(Observer{token, &process, std::move(callback)});
  return token;
}

void SimTelephony::removeObserver(CallObserverToken token) {
  std::erase_if(observers_,
                [&](const Observer& o) { return o.token == token; });
}

void SimTelephony::dropObservers(const SimProcess& process) {
  std::erase_if(observers_,
                [&](const Observer& o) { return o.process == &process; });
}

std::string SimTelephony::describe(const CallInfo& call) const {
  return call.destinationID ? *call.destinationID : "(hidden)";
}

void SimTelephony::change(CallInfo& call, int32_t status) {
  call.status = status;
  call.revision = ++revision_;
  world_.recordAs("", "call",
                  std::to_string(call.id) + " " + std::to_string(status) + " " +
                      describe(call));
  // Each observer gets its own delivery on its process's run loop; the
  // observer is looked up again then, so a removed one gets nothing.
  for (const auto& o : observers_) {
    CallObserverToken token = o.token;
    CallInfo snapshot = call;
    world_.enqueue(o.process, 0, nullptr, "", [this, token, snapshot] {
      for (const auto& live : observers_) {
        if (live.token == token) {
          auto callback = live.callback;
          callback(snapshot);
          return;
        }
      }
    });
  }
}

void SimTelephony::finish(CallInfo& call, EndedBy by) {
  change(call, kCallEnding);
  // The row is in the database before any process hears that the call
  // ended: a call screen that goes away on the change reads it as the
  // newest call.
  writeHistory(call, by);
  change(call, kCallEnded);
}

void SimTelephony::writeHistory(const CallInfo& call, EndedBy by) {
  ps::FinishedCall row;
  row.address = call.destinationID.value_or("");
  row.date = call.date;
  row.answered = call.connectedAt > 0;
  row.duration = row.answered ? world_.now() - call.connectedAt : 0;
  row.originated = call.isOutgoing;
  // A call that rang unanswered until the caller gave up (or the platform
  // hung it up) is a missed call nobody has seen yet; one the user declined
  // was seen.
  row.read = call.isOutgoing || row.answered || by == EndedBy::kUser;
  row.video = call.isVideo;
  row.recordId = call.abUID;
  row.serial = call.id;
  const ps::Database which = ps::callHistoryDatabase(systemVersion());
  std::string error;
  if (!ps::appendCallRecord(world_.root() + ps::callHistoryPath(which), which,
                            row, &error)) {
    world_.recordAs("", "log", "call history not written: " + error);
  }
}

}  // namespace zv::platform
