// The start-up routine of every feature module, and the process dispatch.
// Each routine reads its module's settings, returns when the module is off,
// fetches its controller and installs its table of host replacements; an
// exception inside a routine is swallowed and the hooks installed so far
// stay. Every routine records its name in the process's startedModules.
#pragma once

#include <string>
#include <vector>

namespace zv {

void zvkeypad_init();
void zvincall_init();
void zvrecents_init();
void zvcontacts_init();
void zvphone_init();
void zvsms_init();
void zvincomingcall_init();
void zvcontrolcenter_init();
void zvincallservice_init();

// The five known hosts and their routines, in call order.
struct HostStartup {
  const char* bundleIdentifier;
  std::vector<void (*)()> routines;
};
const std::vector<HostStartup>& startupTable();

}  // namespace zv

// The load-time constructor: dispatches by the host's bundle identifier.
extern "C" void ZorvelInitializer();
