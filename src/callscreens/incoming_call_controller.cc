#include "callscreens/incoming_call_controller.h"

#include "area/area_loader.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/call_history.h"

namespace zv {
namespace {

// initHook's process-wide attempt counter.
struct InitHookCounter {
  int attempts = 0;
};

int& initHookCounter() {
  auto& slot = platform::Process::current().slot<InitHookCounter>();
  if (!slot) slot = std::make_shared<InitHookCounter>();
  return slot->attempts;
}

}  // namespace

ZVIncomingCallController::ZVIncomingCallController() = default;

std::shared_ptr<ZVIncomingCallController> ZVIncomingCallController::make() {
  std::shared_ptr<ZVIncomingCallController> controller(
      new ZVIncomingCallController());
  controller->init();
  return controller;
}

std::shared_ptr<ZVIncomingCallController>
ZVIncomingCallController::sharedInstance() {
  return platform::Process::current().singleton<ZVIncomingCallController>([] {
    auto controller = make();
    platform::current().observe(kChangedNotification,
                                &ZVIncomingCallController::ZVBlacklistChanged);
    return controller;
  });
}

void ZVIncomingCallController::ZVBlacklistChanged() {
  try {
    if (auto& controller =
            platform::Process::current().slot<ZVIncomingCallController>())
      controller->unloadBlacklist();
  } catch (...) {
    // A notification must never take the host down; nothing to report.
  }
}

void ZVIncomingCallController::init() {
  _settings = ZVIncomingCallSettings::sharedInstance();
  auto area = ZVAreaLoader::sharedInstance();
  auto callHistory = ZVCallHistory::sharedInstance();
  blocking_ = std::make_shared<CallBlockingPolicy>(_settings, area);
  info_ = std::make_shared<CallerInfoViews>(
      _settings, area, ZVAddressBook::sharedInstance(), callHistory);
  ring_ = std::make_shared<RingTimer>(_settings, callHistory);
  // Below 8.0 the incoming-call screen lives in the springboard, whose class
  // is registered only some seconds after launch.
  if (UIDevice::OSVersion() < 8.0f) scheduleInitHook();
}

void ZVIncomingCallController::setHost(std::shared_ptr<IncomingCallHost> host) {
  blocking_->setHost(host);
  info_->setHost(host);
  ring_->setHost(host);
  host_ = std::move(host);
}

void ZVIncomingCallController::scheduleInitHook() {
  std::weak_ptr<ZVIncomingCallController> weak = weak_from_this();
  platform::current().performAfterDelay(this, "initHook", kInitHookDelay,
                                        [weak] {
                                          if (auto self = weak.lock())
                                            self->initHook();
                                        });
}

void ZVIncomingCallController::initHook() {
  int attempt = ++initHookCounter();
  if (host_ && host_->installIncomingCallScreenHooks()) return;
  if (attempt >= kInitHookAttempts) return;
  scheduleInitHook();
}

int ZVIncomingCallController::initHookAttempts() { return initHookCounter(); }

std::optional<std::string> ZVIncomingCallController::areaBulletin(
    const rt::Id& bulletin, std::optional<std::string> title) {
  // The banner of a call that just stopped ringing: its ring time first, so
  // that the banner can show it.
  if (ring_->isIncomingCall() && info_->annotatesBulletin(bulletin))
    ring_->stopRingDuration();
  return info_->areaBulletin(bulletin, std::move(title));
}

void ZVIncomingCallController::callStateChangedNotification(
    const rt::Id& notification) {
  if (!_settings || !host_) return;
  rt::Id call = host_->notificationObject(notification);
  info_->callStateChanged(call);
  if (_settings->EnableConnectedVibrate()) connectedVibrate(call);
}

void ZVIncomingCallController::deallocCall() {
  ring_->deallocCall();
  info_->deallocCall();
}

void ZVIncomingCallController::connectedVibrate(const rt::Id& call) {
  if (!_settings || !_settings->EnableConnectedVibrate() || !call || !host_)
    return;
  if (connect_vibration_.shouldVibrate(host_->status(call),
                                       host_->isOutgoing(call)))
    ConnectVibration::schedule(*this);
}

void ZVIncomingCallController::vibrate() {
  if (_settings) ConnectVibration::vibrate(*_settings);
}

}  // namespace zv
