// The load-time constructor of libzorvel.so: the platform's extension loader
// (dlopen from the device's extensions folder, or LD_PRELOAD) maps the
// library into a host process and this runs ZorvelInitializer there, once
// the host has registered its classes (at once when it already has; for a
// library preloaded before the host's main, when the host finishes
// launching).
#include "hooks/modules.h"
#include "platform/process.h"

__attribute__((constructor)) static void zorvelLoad() {
  zv::platform::Process::current().whenLaunched(ZorvelInitializer);
}
