// The host kit: what every simulated host application shares. A host is
// only its own classes (HostDefinition); launching it, loading the extension
// the way the platform's loader does, and keeping the running application
// are the kit's.
//
// launch() in the current process, in the platform's order:
//   1. the UI model's classes, then the host's own classes are registered;
//   2. the host finishes launching: an extension mapped before (LD_PRELOAD)
//      installs its hooks now;
//   3. the extension entry given (ZorvelInitializer, what the platform's
//      loader runs when it maps the library) runs;
//   4. the host builds its application object, which becomes the running
//      application (UIApplication::shared()) and then shows its first
//      screen (didFinishLaunching).
// The host's bundle identifier must be the process's: a host launched in
// the wrong process raises.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/sim/sim_platform.h"
#include "platform/ui/application.h"

namespace zv::hosts {

// The load-time constructor of the extension (ZorvelInitializer), or null to
// run the host without it.
using ExtensionEntry = void (*)();

struct HostDefinition {
  std::string bundleIdentifier;
  // Registers the host's own classes (the UI model's are in place).
  std::function<void()> registerClasses;
  // Builds the application object with its screens (step 4).
  std::function<std::shared_ptr<ui::UIApplication>()> makeApplication;
};

// Launches `host` in the current process; returns its application.
std::shared_ptr<ui::UIApplication> launch(const HostDefinition& host,
                                          ExtensionEntry extension = nullptr);

// Starts a simulated process for `host` in `world` with the given device
// facts (their bundle identifier is set to the host's) and launches the host
// in it.
platform::SimProcess& launchSimulated(platform::SimWorld& world,
                                      const HostDefinition& host,
                                      platform::DeviceFacts facts,
                                      ExtensionEntry extension = nullptr);

// What the system shows over an application's own views: the carrier name
// in the status bar, the open alert and what presses its buttons.
struct SystemShows {
  std::string carrier = "Carrier";
  std::shared_ptr<platform::Alert> alert;
  std::function<void(int buttonIndex)> pressAlertButton;
};

// The key window of the application running in the current process, with
// what the system shows; laid out, ready to draw (render::paintWindow) or
// to hit test. Without an application, an empty window of `screen`.
std::shared_ptr<ui::UIWindow> keyWindow(platform::Size screen,
                                        SystemShows system);

// The same for a simulated process (call inside it): its carrier events and
// its open alert, pressed through the process.
std::shared_ptr<ui::UIWindow> keyWindow(platform::SimProcess& process);

}  // namespace zv::hosts
