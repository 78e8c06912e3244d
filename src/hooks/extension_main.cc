// The load-time constructor of libzorvel.so: the platform's extension loader
// (dlopen from the device's extensions folder, or LD_PRELOAD) maps the
// library into a host process and this runs ZorvelInitializer there.
#include "hooks/modules.h"

__attribute__((constructor)) static void zorvelLoad() { ZorvelInitializer(); }
