#include "platform/mapped_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/sim_fixture.h"

namespace zv::platform {
namespace {

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

}  // namespace
}  // namespace zv::platform
