// libFuzzer target: area database reader over arbitrary file bytes and
// lookup numbers (input layout in area_reader_input.h).
#include <unistd.h>

#include <string>

#include "area_reader_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path =
      "/tmp/zv-fuzz-area-" + std::to_string(getpid());
  zv::fuzzing::runAreaReader(data, size, path);
  return 0;
}
