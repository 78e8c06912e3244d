// Files on a device root: a mapped file keeps its bytes when replaced, and
// system() runs the program named by an absolute device path from under the
// root, whatever characters the root's path holds.
#include "support/device_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/mapped_file.h"
#include "platform/platform.h"
#include "support/sim_fixture.h"

namespace zv::platform {
namespace {

namespace fs = std::filesystem;

TEST(MappedFileTest, MapsRegularFilesAndKeepsBytesWhenReplaced) {
  zv::testing::TempRoot root;
  const std::string file = root.path() + "/data";
  std::ofstream(file, std::ios::binary) << std::string("a\0b\n", 4);
  MappedFile mapped(file);
  ASSERT_TRUE(mapped.ok());
  EXPECT_EQ(mapped.bytes(), std::string_view("a\0b\n", 4));

  const std::string empty = root.path() + "/empty";
  std::ofstream(empty).close();
  MappedFile none(empty);
  EXPECT_TRUE(none.ok());
  EXPECT_TRUE(none.bytes().empty());

  EXPECT_FALSE(MappedFile(root.path()).ok());  // a directory
  EXPECT_FALSE(MappedFile(root.path() + "/missing").ok());

  // A file replaced by a rename (as every writer here saves) leaves the
  // mapping with the bytes it had.
  std::ofstream(file + ".new") << "newer";
  std::filesystem::rename(file + ".new", file);
  EXPECT_EQ(mapped.bytes(), std::string_view("a\0b\n", 4));
}

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
