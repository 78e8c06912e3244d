#include "core/startup.h"
#include "hooks/loader_probe.h"
#include "hooks/modules.h"
#include "platform/platform.h"

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
      // Not a real host: proves that loading the extension reaches a host.
      {kLoaderProbeBundle, {zvloaderprobe_init}},
  };
  return table;
}

}  // namespace zv

extern "C" void ZorvelInitializer() {
  const std::string& bundle = zv::platform::current().device().bundleIdentifier;
  for (const auto& host : zv::startupTable()) {
    if (bundle != host.bundleIdentifier) continue;
    if (!zv::zv_init()) return;
    for (auto routine : host.routines) routine();
    return;
  }
}
