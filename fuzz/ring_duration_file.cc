// Feeds arbitrary bytes as the ring-duration file ("zorvel.missed.plist")
// that other processes write too, then stores, removes and reads entries
// under keys taken from the input: any file must count as a dictionary (or
// as empty) and be replaced whole, never torn or grown without bound.
#include "search/ring_duration_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_device.h"
#include "platform/plist.h"
#include "search/call_history.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  namespace rd = zv::ring_duration_file;
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  const std::string key(in.text(24));
  const int64_t seconds = in.int64();
  const auto bytes = in.rest();
  const std::string file = d.root + zv::ZVCallHistory::kRingDurationPath;
  std::filesystem::create_directories(
      std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
  (void)rd::storeFirstNow(file, key, seconds);
  (void)rd::remove(file, {key, std::string(bytes.substr(0, 8))});
  (void)rd::storeFirst(file, key, seconds);
  d.phone->run([&] {
    auto history = zv::ZVCallHistory::sharedInstance();
    history->unloadRingDurations();
    (void)history->getRingDuration(static_cast<double>(seconds));
  });
  return 0;
}
