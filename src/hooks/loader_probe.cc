#include "hooks/loader_probe.h"

#include <string>

#include "core/hook.h"
#include "hooks/module_trace.h"

namespace zv {

void zvloaderprobe_init() {
  runStartup("zvloaderprobe_init", [] {
    hook::Hook<std::string()>::systemDecides(
        GuardKind::Log,
        rt::Message<std::string()>{kLoaderProbeClass, kLoaderProbeSelector},
        [](const rt::Id&, std::string& result) {
          result = kLoaderProbeAnswer;
          return true;
        });
  });
}

}  // namespace zv
