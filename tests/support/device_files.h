// Files for the simulated device: whole-file read and write, property lists,
// and the China area database compiled once per test binary from the
// committed source.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "area/area_compiler.h"
#include "platform/plist.h"
#include "platform/value.h"

namespace zv::testing {

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// Writes `bytes` to `path`, making its folders.
inline void writeFile(const std::string& path, const std::string& bytes) {
  auto p = std::filesystem::path(path);
  std::filesystem::create_directories(p.parent_path());
  std::ofstream out(p, std::ios::binary);
  out << bytes;
  ASSERT_TRUE(out.good()) << "cannot write " << path;
}

inline void writePlist(const std::string& path, const Dict& dict) {
  std::filesystem::create_directories(
      std::filesystem::path(path).parent_path());
  ASSERT_TRUE(plist::writeFile(path, Value(dict))) << "cannot write " << path;
}

// The compiled China database, made once.
inline const std::string& chinaDatabase() {
  static const std::string bytes = area::compile(area::parseSource(
      readFile(ZV_SOURCE_DIR "/data/area/China.txt"), "China"));
  return bytes;
}

}  // namespace zv::testing
