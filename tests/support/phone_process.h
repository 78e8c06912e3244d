// The base of the fixtures whose hosts read settings and areas: a Phone
// process (or any process of the simulated world) on a device with the
// China area database and a settings file. The dialler, lists and messages
// fixtures build on it.
#pragma once

#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

class PhoneProcessTest : public SimTest {
 protected:
  PhoneProcessTest() {
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
