// One fuzz input of the area reader, shared by the libFuzzer target and the
// corpus replay test: byte 0 holds the lookup flags (bits 0-2) and whether
// the string block may be cached (bit 3); then the number text up to a NUL
// byte; the rest is the database file.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "area/area_file.h"

namespace zv::fuzzing {

inline void runAreaReader(const uint8_t* data, size_t size,
                          const std::string& scratchPath) {
  if (size < 2) return;
  int flags = data[0] & 7;
  unsigned limit = (data[0] & 8) ? 10240 : 0;
  std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  size_t nul = bytes.find('\0');
  if (nul == std::string::npos) return;
  std::string number = bytes.substr(0, nul);
  std::string file = bytes.substr(nul + 1);
  FILE* f = std::fopen(scratchPath.c_str(), "wb");
  if (!f) return;
  std::fwrite(file.data(), 1, file.size(), f);
  std::fclose(f);
  ZVAreaFile* area = zvarea_load(scratchPath.c_str(), limit);
  if (area) {
    // Twice, so that the second lookup sees the first one's buffer.
    zvarea_get(area, number.c_str(), flags);
    zvarea_get(area, number.c_str(), flags ^ 4);
    zvarea_get(area, ("+" + number).c_str(), flags);
  }
  zvarea_unload(area);
}

}  // namespace zv::fuzzing
