#include "tools/zorvel/screens/scenes.h"

#include "hosts/kit/host_kit.h"

namespace zv::cli {

render::Scene windowScene(platform::SimProcess& process) {
  return render::Scene::ofWindow(hosts::keyWindow(process),
                                 process.device().screenScale);
}

}  // namespace zv::cli
