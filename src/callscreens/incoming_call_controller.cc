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
  _area = ZVAreaLoader::sharedInstance();
  _addressbook = ZVAddressBook::sharedInstance();
  _callhistory = ZVCallHistory::sharedInstance();
  // Below 8.0 the incoming-call screen lives in the springboard, whose class
  // is registered only some seconds after launch.
  if (UIDevice::OSVersion() < 8.0f) scheduleInitHook();
  _haveInCallLabel = true;
  _lastBlockedNumber.clear();
}

ZVIncomingCallController::~ZVIncomingCallController() {
  unloadBlacklist();
  if (_soundID != 0 && host_) {
    try {
      host_->disposeSystemSound(_soundID);
    } catch (...) {
      // The process is going away; a sound it cannot release goes with it.
    }
  }
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

void ZVIncomingCallController::unloadBlacklist() {
  _blacklist.reset();
  _whitelist.reset();
  _lastBlockedNumber.clear();
}

}  // namespace zv
