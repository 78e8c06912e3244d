// Feeds arbitrary bytes as three files the dial-pad search reads beside the
// address book: the priority list ("zorvel.priority.plist"), the keypad
// flags file ("zorvel.keypad.plist", which other processes write too) and
// the user's reading-table overlay ("zorvel.t9.plist"); then loads them and
// searches a key from the input. Any file must read as its list (or none)
// without fault.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_device.h"
#include "search/searcher.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using zv::ZVSearcher;
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  const std::string key(in.text(16));
  // Each file is a length-prefixed part; the last one takes the rest.
  const std::string priority(in.take(static_cast<size_t>(in.int64() & 0xFFFF)));
  const std::string flags(in.take(static_cast<size_t>(in.int64() & 0xFFFF)));
  const std::string overlay(in.rest());
  for (const auto& [path, bytes] :
       {std::pair{ZVSearcher::kPriorityPath, &priority},
        std::pair{ZVSearcher::kKeypadFlagsPath, &flags},
        std::pair{ZVSearcher::kUserTablePath, &overlay}}) {
    const std::string file = d.root + path;
    std::filesystem::create_directories(
        std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary | std::ios::trunc) << *bytes;
  }
  d.phone->run([&] {
    // One searcher for the run: making one loads everything else too.
    static auto searcher = ZVSearcher::create();
    searcher->loadPriority();
    searcher->unloadT9();
    searcher->loadT9();
    (void)searcher->isAddressBookChanged();
    (void)searcher->search(key);
  });
  return 0;
}
