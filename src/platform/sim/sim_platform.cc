#include "platform/sim/sim_platform.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace zv::platform {

SimWorld::SimWorld(std::string root, double epoch)
    : root_(std::move(root)),
      epoch_(epoch),
      telephony_(std::make_unique<SimTelephony>(*this)) {
  std::error_code ec;
  std::filesystem::create_directories(root_, ec);
}

SimWorld::~SimWorld() {
  // Contexts first (their singletons may remove observers), then the rest.
  for (auto& p : processes_) {
    Process::Scope scope(*p->context_);
    p->context_->clear();
  }
  queue_.clear();
  observers_.clear();
  processes_.clear();
}

SimProcess& SimWorld::launch(std::string bundleIdentifier, DeviceFacts facts) {
  facts.bundleIdentifier = bundleIdentifier;
  processes_.push_back(
      std::make_unique<SimProcess>(*this, bundleIdentifier, std::move(facts)));
  return *processes_.back();
}

void SimWorld::terminate(SimProcess& process) {
  process.alive_ = false;
  std::erase_if(queue_, [&](const Item& i) { return i.process == &process; });
  std::erase_if(observers_,
                [&](const Observer& o) { return o.process == &process; });
  telephony_->dropObservers(process);
  Process::Scope scope(*process.context_);
  process.context_->clear();
}

void SimWorld::enqueue(SimProcess* process, double delay, const void* target,
                       std::string selector, std::function<void()> call) {
  if (!process->alive_) return;
  queue_.push_back(Item{elapsed_ + std::max(0.0, delay), seq_++, process,
                        target, std::move(selector), std::move(call)});
}

void SimWorld::advance(double seconds) {
  const double end = elapsed_ + std::max(0.0, seconds);
  for (;;) {
    auto next = std::min_element(
        queue_.begin(), queue_.end(), [](const Item& a, const Item& b) {
          return a.at != b.at ? a.at < b.at : a.seq < b.seq;
        });
    if (next == queue_.end() || next->at > end + 1e-9) break;
    Item item = std::move(*next);
    queue_.erase(next);
    elapsed_ = std::max(elapsed_, item.at);
    Process::Scope scope(*item.process->context_);
    item.call();
  }
  elapsed_ = end;
}

size_t SimWorld::pending() const { return queue_.size(); }

size_t SimWorld::observerCount(std::string_view name) const {
  return static_cast<size_t>(
      std::count_if(observers_.begin(), observers_.end(),
                    [&](const Observer& o) { return o.name == name; }));
}

std::vector<SimEvent> SimWorld::events(std::string_view kind) const {
  std::vector<SimEvent> out;
  for (const auto& e : events_)
    if (e.kind == kind) out.push_back(e);
  return out;
}

void SimWorld::record(const SimProcess& process, std::string kind,
                      std::string detail) {
  recordAs(process.facts_.bundleIdentifier, std::move(kind), std::move(detail));
}

void SimWorld::recordAs(std::string process, std::string kind,
                        std::string detail) {
  events_.push_back(SimEvent{elapsed_, std::move(process), std::move(kind),
                             std::move(detail)});
}

SimProcess::SimProcess(SimWorld& world, std::string bundleIdentifier,
                       DeviceFacts facts)
    : world_(world),
      facts_(std::move(facts)),
      context_(std::make_unique<Process>(this)),
      telephony_(
          std::make_unique<SimProcessTelephony>(world.telephony(), *this)) {
  facts_.bundleIdentifier = std::move(bundleIdentifier);
}

SimProcess::~SimProcess() = default;

std::string SimProcess::path(std::string_view absolute) const {
  std::string out = world_.root();
  if (!absolute.empty() && absolute.front() != '/') out += '/';
  out += absolute;
  return out;
}

void SimProcess::performAfterDelay(const void* target,
                                   std::string_view selector, double delay,
                                   std::function<void()> call) {
  world_.enqueue(this, delay, target, std::string(selector), std::move(call));
}

void SimProcess::cancelPrevious(const void* target, std::string_view selector) {
  std::erase_if(world_.queue_, [&](const SimWorld::Item& i) {
    return i.process == this && i.target == target && target != nullptr &&
           i.selector == selector;
  });
}

void SimProcess::dispatchMain(std::function<void()> block) {
  world_.enqueue(this, 0, nullptr, "", std::move(block));
}

void SimProcess::dispatchBackground(std::function<void()> block) {
  // Background work runs deterministically too, in queue order, inside the
  // process's context; what it hands back to the main queue runs after it.
  world_.enqueue(this, 0, nullptr, "", std::move(block));
}

ObserverToken SimProcess::observe(std::string_view name,
                                  std::function<void()> callback, Scope scope) {
  ObserverToken token = world_.next_token_++;
  world_.observers_.push_back(SimWorld::Observer{token, this, std::string(name),
                                                 scope, std::move(callback)});
  return token;
}

void SimProcess::removeObserver(ObserverToken token) {
  std::erase_if(world_.observers_,
                [&](const SimWorld::Observer& o) { return o.token == token; });
}

void SimProcess::post(std::string_view name, Scope scope) {
  world_.record(*this, "post", std::string(name));
  // Deliveries are asynchronous, on each observer's own run loop; the
  // callback is looked up again at delivery so a removed observer gets none.
  for (const auto& o : world_.observers_) {
    if (o.name != name || o.scope != scope) continue;
    if (scope == Scope::Process && o.process != this) continue;
    ObserverToken token = o.token;
    SimWorld* world = &world_;
    world_.enqueue(o.process, 0, nullptr, "", [world, token] {
      for (const auto& live : world->observers_) {
        if (live.token == token) {
          auto callback = live.callback;
          callback();
          return;
        }
      }
    });
  }
}

std::string SimProcess::localizedString(std::string_view key,
                                        std::string_view table) const {
  if (table == "Zorvel") {
    auto it = strings_.find(std::string(key));
    if (it != strings_.end()) return it->second;
  }
  return std::string(key);
}

void SimProcess::log(std::string_view line) {
  world_.record(*this, "log", std::string(line));
}

void SimProcess::playSystemSound(uint32_t soundId) {
  world_.record(*this, "sound", std::to_string(soundId));
}

void SimProcess::playVibration(uint32_t soundId, const Dict& dict) {
  const Value pattern(dict);
  std::ostringstream out;
  out << soundId << " Intensity=" << pattern["Intensity"].stringValue()
      << " VibePattern=";
  if (const Array* a = pattern["VibePattern"].array()) {
    for (size_t i = 0; i < a->size(); ++i) {
      if (i) out << ',';
      const Value& v = (*a)[i];
      out << (v.isBool() ? (v.boolValue() ? "on" : "off") : v.stringValue());
    }
  }
  world_.record(*this, "vibrate", out.str());
}

std::optional<uint32_t> SimProcess::createSystemSound(
    std::string_view devicePath) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path(devicePath), ec))
    return std::nullopt;
  const uint32_t id = world_.next_sound_id_++;
  world_.record(*this, "soundCreate",
                std::to_string(id) + " " + std::string(devicePath));
  return id;
}

void SimProcess::disposeSystemSound(uint32_t soundId) {
  world_.record(*this, "soundDispose", std::to_string(soundId));
}

void SimProcess::showBanner(std::string_view sectionID,
                            std::string_view title) {
  world_.record(*this, "bulletin",
                std::string(sectionID) + " | " + std::string(title));
}

void SimProcess::showCarrierName(std::string_view name) {
  world_.record(*this, "carrier", std::string(name));
}

void SimProcess::setPasteboard(std::string_view text) {
  world_.pasteboard_ = std::string(text);
  world_.record(*this, "pasteboard", std::string(text));
}

bool SimProcess::openURL(std::string_view url) {
  world_.record(*this, "openURL", std::string(url));
  return url_handler_ ? url_handler_(url) : true;
}

void SimProcess::showAlert(std::shared_ptr<Alert> alert) {
  if (!alert) return;
  std::string detail = alert->title + " | " + alert->message + " |";
  for (const auto& b : alert->buttons()) detail += " [" + b + "]";
  world_.record(*this, "alert", detail);
  alerts_.push_back(alert);
  open_alert_ = alert;
}

std::shared_ptr<Alert> SimProcess::openAlert() const { return open_alert_; }

void SimProcess::pressAlertButton(int index) {
  auto alert = std::move(open_alert_);
  open_alert_.reset();
  if (!alert) return;
  Process::Scope scope(*context_);
  if (alert->onButton) alert->onButton(*alert, index);
}

int SimProcess::system(const std::string& command) {
  world_.record(*this, "system", command);
  if (system_handler_) return system_handler_(command);
  return runDeviceCommand(world_.root(), command);
}

}  // namespace zv::platform
