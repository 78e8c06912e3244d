// A Phone process on a device with the China area database and a settings
// file, for the dialler's controller and view tests.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>

#include "area/area_compiler.h"
#include "platform/plist.h"
#include "sim_fixture.h"

namespace zv::testing {

inline const std::string& chinaAreaDatabase() {
  static const std::string bytes = [] {
    std::ifstream in(ZV_SOURCE_DIR "/data/area/China.txt", std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return area::compile(area::parseSource(s.str(), "China"));
  }();
  return bytes;
}

class DialerTest : public SimTest {
 protected:
  DialerTest() {
    writeDeviceFile("/Library/Zorvel/Area/China", chinaAreaDatabase());
  }

  void writePlist(const std::string& devicePath, const Dict& dict) {
    auto path = std::filesystem::path(root_ + devicePath);
    std::filesystem::create_directories(path.parent_path());
    ASSERT_TRUE(plist::writeFile(path.string(), Value(dict)));
  }
  // Launches the Phone process with `settings` as zorvel.plist.
  platform::SimProcess& launch(const Dict& settings,
                               platform::DeviceFacts facts = {}) {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist", settings);
    return world_.launch("com.apple.mobilephone", facts);
  }
};

}  // namespace zv::testing
