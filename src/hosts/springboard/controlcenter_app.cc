#include "hosts/springboard/controlcenter_app.h"

#include "hosts/springboard/app.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/ui/view.h"

namespace zv::hosts {
namespace {

void lock(const rt::Id& app) {
  if (auto sb = rt::as<SpringBoardApplication>(app)) {
    sb->setLocked(true);
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

}  // namespace zv::hosts
