// What makes a folder a device root: the data folder of the phone's user
// ("var/mobile/Library"), which every device has (its settings, address
// book and call history live below it). Every command but the ones that
// make devices (`zorvel device create`, `zorvel init`) refuses a folder
// without it, so that pointing --root at the wrong folder never writes
// beside the user's own files.
#pragma once

#include <string>

namespace zv::cli {

bool isDeviceRoot(const std::string& dir);

// Throws CommandError when `dir` is missing, not a folder, or not a device
// root, naming the folder and what is wrong with it.
void requireDeviceRoot(const std::string& dir);

}  // namespace zv::cli
