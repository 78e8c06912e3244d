// A minimal springboard application ("com.apple.springboard") for the
// Control Centre alone: the application object with its lock button and
// one Control Centre. It stands in until the full springboard host (with
// its call screens) is in place, which then takes over registerLockButton()
// and the Control Centre from here.
//
//   auto& sb = hosts::launchSimulated(world, hosts::controlCenterSpringboard(),
//                                     facts, ZorvelInitializer);
#pragma once

#include <memory>

#include "hosts/kit/host_kit.h"
#include "hosts/springboard/controlcenter.h"
#include "platform/ui/application.h"

namespace zv::hosts {

HostDefinition controlCenterSpringboard();

class ControlCenterSpringBoard : public ui::UIApplication {
 public:
  static constexpr const char* kClassName = "SpringBoard";
  explicit ControlCenterSpringBoard(rt::Class* isa) : ui::UIApplication(isa) {}

  // The running one of the current process, or null.
  static std::shared_ptr<ControlCenterSpringBoard> shared();

  std::shared_ptr<ControlCenterViewController> controlCenter;
  bool locked = false;

  void didFinishLaunching() override;
};

// Defines the application class's lock-button selector of the process's
// system generation (_lockButtonUp:fromSource: from 8.0 on,
// _lockButtonUpFromSource: below): the screen locks.
void registerLockButton(rt::Class* application);

}  // namespace zv::hosts
