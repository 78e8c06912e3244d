// Where a Linux phone keeps things: its device root
// ($XDG_DATA_HOME/zorvel/device, ~/.local/share/zorvel/device by default)
// and, for `zorvel init`, the installed data it copies (the build's sample
// device when run from the build folder, share/zorvel/Library/Zorvel of an
// installed zorvel).
#pragma once

#include <string>

namespace zv::cli {

std::string phoneDeviceRoot();
// Folder whose contents become the device's /Library/Zorvel; "" if none.
std::string installedDeviceData();

}  // namespace zv::cli
