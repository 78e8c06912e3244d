#include "core/startup.h"
#include "hooks/loader_probe.h"
#include "hooks/modules.h"
#include "platform/platform.h"
#include "platform/process.h"

namespace zv {

const std::vector<HostStartup>& startupTable() {
  static const std::vector<HostStartup> table = {
      {"com.apple.mobilephone",
       {zvkeypad_init, zvincall_init, zvrecents_init, zvcontacts_init,
        zvphone_init}},
      {"com.apple.MobileAddressBook", {zvcontacts_init}},
      {"com.apple.MobileSMS", {zvsms_init, zvcontacts_init}},
      {"com.apple.springboard", {zvincomingcall_init, zvcontrolcenter_init}},
      {"com.apple.InCallService", {zvincallservice_init}},
  };
  return table;
}

namespace {

// Routines that only test hosts ask for, through Process::extraHosts.
void (*testRoutine(const std::string& name))() {
  if (name == "zvloaderprobe_init") return zvloaderprobe_init;
  return nullptr;
}

}  // namespace

}  // namespace zv

extern "C" void ZorvelInitializer() {
  const std::string& bundle = zv::platform::current().device().bundleIdentifier;
  for (const auto& host : zv::startupTable()) {
    if (bundle != host.bundleIdentifier) continue;
    if (!zv::zv_init()) return;
    for (auto routine : host.routines) routine();
    return;
  }
  const auto& extra = zv::platform::Process::current().extraHosts;
  bool tested = false;
  for (const auto& [host, name] : extra) {
    auto routine = zv::testRoutine(name);
    if (host != bundle || !routine) continue;
    if (!tested && !zv::zv_init()) return;
    tested = true;
    routine();
  }
}
