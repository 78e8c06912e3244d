// What the Control Centre's buttons act on: the springboard UI controller
// (a Home press, the app switcher) and the Bluetooth radio, each a
// per-process singleton reached through its +sharedInstance.
#include "hosts/springboard/app.h"
#include "hosts/springboard/controlcenter_parts.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/process.h"
#include "platform/ui/view.h"

namespace zv::hosts {
namespace {

using ui::self;
using UIController = sdk::SBUIController;
using Radio = sdk::BluetoothManager;

// A Home press or the app switcher puts the Control Centre away.
void putAwayControlCenter() {
  auto app = SpringBoardApplication::shared();
  if (app && app->controlCenter) app->controlCenter->dismiss();
}

template <typename T>
rt::Id singleton(std::string_view cls) {
  auto& slot = platform::Process::current().slot<T>();
  if (!slot) slot = std::dynamic_pointer_cast<T>(rt::alloc(rt::getClass(cls)));
  return slot;
}

}  // namespace

rt::Id bluetoothManager() {
  return rt::send(rt::classObject(rt::getClass(Radio::kName)),
                  Radio::sharedInstance);
}

void registerTargets() {
  rt::registerClass<SpringBoardUIController>(UIController::kName);
  rt::define(UIController::sharedInstance, [](const rt::Id&) {
    return singleton<SpringBoardUIController>(UIController::kName);
  });
  // A Home press closes the switcher if it is open, else goes home.
  rt::define(UIController::handleButtonEventToSuspendDisplays,
             [](const rt::Id& s, bool suspend, bool* wasSuspended) {
               auto& c = self<SpringBoardUIController>(s);
               ++c.homePresses;
               c.switcherShown = false;
               if (wasSuspended) *wasSuspended = suspend;
               putAwayControlCenter();
               ControlCenterEffects::record("home");
               return true;
             });
  rt::define(UIController::toggleSwitcher, [](const rt::Id& s) {
    auto& c = self<SpringBoardUIController>(s);
    c.switcherShown = !c.switcherShown;
    putAwayControlCenter();
    ControlCenterEffects::record(c.switcherShown ? "switcher:shown"
                                                 : "switcher:hidden");
  });

  rt::registerClass<BluetoothRadio>(Radio::kName);
  rt::define(Radio::sharedInstance, [](const rt::Id&) {
    return singleton<BluetoothRadio>(Radio::kName);
  });
  rt::define(Radio::powered,
             [](const rt::Id& s) { return self<BluetoothRadio>(s).powered; });
  rt::define(Radio::setPowered, [](const rt::Id& s, bool on) {
    auto& r = self<BluetoothRadio>(s);
    if (r.powered == on) return true;
    r.powered = on;
    ControlCenterEffects::record(on ? "bluetooth:on" : "bluetooth:off");
    return true;
  });
}

}  // namespace zv::hosts
