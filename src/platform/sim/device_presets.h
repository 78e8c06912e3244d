// The simulated phones: device facts for a system version ("7.1", "8.1",
// any "X.Y[.Z]") on a screen size in inches ("3.5", "4", "4.7", "5.5"),
// with the screen's points, pixels, scale and the hardware model of the
// phone that has it. Sessions and tests take their devices from here.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace zv::platform {

// nullopt for a screen size that no phone has.
std::optional<DeviceFacts> simulatedDevice(std::string_view systemVersion,
                                           std::string_view screenInches);

// The screen sizes simulatedDevice knows, smallest first.
const std::vector<std::string>& screenSizes();

}  // namespace zv::platform
