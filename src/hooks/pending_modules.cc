// Start-up routines of the modules whose features are not built yet: they
// only record that the host called them. Each moves to its own file in this
// folder, with its hook table, when its feature lands.
#include "hooks/module_trace.h"
#include "hooks/modules.h"

namespace zv {

void zvsms_init() { runStartup("zvsms_init", [] {}); }

}  // namespace zv
