// The pieces of the simulated Control Centre that its files share: the
// 8.x modules (controlcenter_modules.cc) and the buttons' targets
// (controlcenter_targets.cc), used by the view controller
// (controlcenter.cc). Not for use outside the springboard host.
#pragma once

#include <memory>
#include <string>

#include "hosts/springboard/controlcenter.h"

namespace zv::hosts {

// A Control Centre button of the process's class, known by `name`.
std::shared_ptr<ControlCenterButton> makeControlCenterButton(
    const std::string& name, const std::string& identifier);

// 8.x: the module classes; the shortcut and setting modules of a new
// Control Centre with their buttons; on appearance, the buttons' glyphs and
// title asked from their modules and the settings modules activated; on
// disappearance, deactivated.
void registerModules();
void buildModules(ControlCenterViewController& cc);
void refreshModules(ControlCenterViewController& cc);
void deactivateModules(ControlCenterViewController& cc);

// SBUIController and BluetoothManager with their singletons; the Bluetooth
// radio of the process.
void registerTargets();
rt::Id bluetoothManager();

}  // namespace zv::hosts
