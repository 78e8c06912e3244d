// A Phone process on a device with the China area database and a settings
// file, for the dialler's controller and view tests.
#pragma once

#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

class DialerTest : public SimTest {
 protected:
  DialerTest() {
    writeDeviceFile("/Library/Zorvel/Area/China", chinaDatabase());
  }

  void writePlist(const std::string& devicePath, const Dict& dict) {
    testing::writePlist(root_ + devicePath, dict);
  }
  // Launches the Phone process with `settings` as zorvel.plist.
  platform::SimProcess& launch(const Dict& settings,
                               platform::DeviceFacts facts = {}) {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist", settings);
    return world_.launch("com.apple.mobilephone", facts);
  }
};

}  // namespace zv::testing
