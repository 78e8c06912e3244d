// Start-up routines of the modules whose features are not built yet: they
// only record that the host called them. Each moves to its own file in this
// folder, with its hook table, when its feature lands.
#include "hooks/module_trace.h"
#include "hooks/modules.h"

namespace zv {

void zvincall_init() { runStartup("zvincall_init", [] {}); }
void zvrecents_init() { runStartup("zvrecents_init", [] {}); }
void zvcontacts_init() { runStartup("zvcontacts_init", [] {}); }
void zvincomingcall_init() { runStartup("zvincomingcall_init", [] {}); }
void zvcontrolcenter_init() { runStartup("zvcontrolcenter_init", [] {}); }
void zvincallservice_init() { runStartup("zvincallservice_init", [] {}); }

}  // namespace zv
