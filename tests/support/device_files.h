// Files for tests: read a whole file, write bytes or a property list to a
// host path (creating its folders), and the China area database compiled
// from the committed source, made once per test binary.
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

// How often `needle` occurs in `text`, overlapping runs counted.
inline size_t occurrences(const std::string& text, const std::string& needle) {
  size_t n = 0;
  for (size_t at = text.find(needle); at != std::string::npos;
       at = text.find(needle, at + 1))
    ++n;
  return n;
}

// The whole file as bytes; "" when it cannot be read.
inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

// Writes `bytes` to the host path `path`, creating its folders.
inline void writeFile(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(
      std::filesystem::path(path).parent_path());
  std::ofstream out(path, std::ios::binary);
  out << bytes;
  ASSERT_TRUE(out.good()) << path;
}

// Writes `dict` as a property list to the host path `path`, creating its
// folders.
inline void writePlist(const std::string& path, const Dict& dict) {
  std::filesystem::create_directories(
      std::filesystem::path(path).parent_path());
  ASSERT_TRUE(plist::writeFile(path, Value(dict))) << path;
}

// The area database compiled from data/area/China.txt.
inline const std::string& chinaDatabase() {
  static const std::string bytes = area::compile(area::parseSource(
      readFile(ZV_SOURCE_DIR "/data/area/China.txt"), "China"));
  return bytes;
}

}  // namespace zv::testing
