#include "hosts/springboard/controlcenter_app.h"

#include "hostsdk/springboard_controlcenter.h"
#include "platform/ui/view.h"

namespace zv::hosts {
namespace {

void lock(const rt::Id& app) {
  if (auto sb = rt::as<ControlCenterSpringBoard>(app)) {
    sb->locked = true;
    if (sb->controlCenter) sb->controlCenter->dismiss();
  }
  ControlCenterEffects::record("lock");
}

}  // namespace

void registerLockButton(rt::Class* application) {
  if (!application) return;
  if (controlCenterIsModular()) {
    rt::define(sdk::SpringBoard::lockButtonUpFromSource8,
               [](const rt::Id& s, rt::Id, int64_t) { lock(s); });
  } else {
    rt::define(sdk::SpringBoard::lockButtonUpFromSource,
               [](const rt::Id& s, int64_t) { lock(s); });
  }
}

HostDefinition controlCenterSpringboard() {
  return HostDefinition{
      "com.apple.springboard",
      [] {
        registerControlCenterClasses();
        registerLockButton(rt::registerClass<ControlCenterSpringBoard>(
            sdk::SpringBoard::kName, "UIApplication"));
      },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<ControlCenterSpringBoard>(
                rt::alloc(rt::getClass(sdk::SpringBoard::kName))));
      }};
}

std::shared_ptr<ControlCenterSpringBoard> ControlCenterSpringBoard::shared() {
  return ui::sharedApplication<ControlCenterSpringBoard>();
}

void ControlCenterSpringBoard::didFinishLaunching() {
  controlCenter = ControlCenterViewController::make();
}

}  // namespace zv::hosts
