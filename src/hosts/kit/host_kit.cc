#include "hosts/kit/host_kit.h"

#include "platform/platform.h"
#include "platform/process.h"
#include "platform/runtime/exception.h"
#include "platform/ui/view.h"

namespace zv::hosts {

std::shared_ptr<ui::UIApplication> launch(const HostDefinition& host,
                                          ExtensionEntry extension) {
  auto& process = platform::Process::current();
  const auto& bundle = process.platform().device().bundleIdentifier;
  if (bundle != host.bundleIdentifier)
    throw rt::Exception(
        "NSInternalInconsistencyException",
        "host " + host.bundleIdentifier + " launched in process " + bundle);
  ui::registerClasses(process.runtime());
  if (host.registerClasses) host.registerClasses();
  process.finishLaunching();
  if (extension) extension();
  auto app = host.makeApplication();
  ui::UIApplication::setShared(app);
  app->didFinishLaunching();
  return app;
}

platform::SimProcess& launchSimulated(platform::SimWorld& world,
                                      const HostDefinition& host,
                                      platform::DeviceFacts facts,
                                      ExtensionEntry extension) {
  facts.bundleIdentifier = host.bundleIdentifier;
  auto& process = world.launch(host.bundleIdentifier, facts);
  process.run([&] { launch(host, extension); });
  return process;
}

std::shared_ptr<ui::UIWindow> keyWindow(platform::Size screen,
                                        SystemShows system) {
  auto app = ui::UIApplication::shared();
  auto window = app ? app->keyWindow() : ui::UIWindow::makeForScreen(screen);
  window->statusBar()->carrier = system.carrier;
  window->alert = std::move(system.alert);
  window->pressAlertButton = std::move(system.pressAlertButton);
  window->layoutIfNeeded();
  return window;
}

std::shared_ptr<ui::UIWindow> keyWindow(platform::SimProcess& process) {
  SystemShows system;
  for (const auto& e : process.world().events())
    if (e.kind == "carrier") system.carrier = e.detail;
  system.alert = process.openAlert();
  system.pressAlertButton = [&process](int index) {
    process.pressAlertButton(index);
  };
  return keyWindow(process.device().screenPoints, std::move(system));
}

}  // namespace zv::hosts
