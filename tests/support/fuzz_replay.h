// Replays a committed fuzz corpus (fuzz/corpus/<name>/) through a fuzz
// target's body, included into a suite under its own entry name, so that
// every build (gcc ones too) runs the malformed inputs. Each input must
// return 0; the number of inputs is returned so a suite can check the
// corpus is there.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "support/device_files.h"

namespace zv::testing {

inline int replayCorpus(const char* name,
                        int (*target)(const uint8_t*, size_t)) {
  int files = 0;
  auto dir = std::filesystem::path(ZV_SOURCE_DIR) / "fuzz/corpus" / name;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    std::string bytes = readFile(entry.path());
    EXPECT_EQ(
        target(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()), 0)
        << entry.path();
    ++files;
  }
  return files;
}

}  // namespace zv::testing
