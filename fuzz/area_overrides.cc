// Feeds arbitrary bytes as the user's area overrides ("zorvel.area.plist":
// number, prefix or pattern -> area text) and looks a number from the input
// up through the area loader: keys and values of any type, size or shape
// must answer an area text, or none, without fault.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "area/area_loader.h"
#include "fuzz/fuzz_device.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  const std::string number(in.text(32));
  const uint8_t flags = in.byte();
  const auto bytes = in.rest();
  const std::string file = d.root + zv::ZVAreaLoader::kCustomAreaPath;
  std::filesystem::create_directories(
      std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
  d.phone->run([&] {
    auto loader = zv::ZVAreaLoader::sharedInstance();
    loader->unloadData();
    (void)loader->getArea(number, flags & 1, flags & 2, flags & 4);
    // A different number, so the one-entry cache does not answer.
    (void)loader->getArea(number + "0", true, true, false);
  });
  return 0;
}
