// system() on a device: the program named by an absolute device path runs
// from under the device root, whatever characters the root's path holds.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/platform.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::platform {
namespace {

namespace fs = std::filesystem;

TEST(DeviceCommand, RootsWithBlanksAndQuotesRunTheDevicesProgram) {
  zv::testing::TempRoot temp;
  for (const char* name : {"plain", "with space", "it's \"quoted\" $HOME"}) {
    const std::string root = temp.path() + "/" + name;
    const fs::path tool = fs::path(root) / "Library/Zorvel/zvtool";
    fs::create_directories(tool.parent_path());
    // A stand-in tool that records its arguments and the root it was given.
    std::ofstream(tool) << "#!/bin/sh\nprintf '%s|' \"$@\" \"$ZORVEL_ROOT\" > "
                           "\"$ZORVEL_ROOT/ran\"\n";
    fs::permissions(tool, fs::perms::owner_all);
    EXPECT_EQ(runDeviceCommand(root, "/Library/Zorvel/zvtool -d 1416182400"), 0)
        << name;
    EXPECT_EQ(zv::testing::readFile(root + "/ran"),
              "-d|1416182400|" + root + "|")
        << name;
  }
}

}  // namespace
}  // namespace zv::platform
