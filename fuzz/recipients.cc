// Feeds arbitrary bytes as the saved recipient lists of a device
// ("zorvel.recipients.plist") and reads them as the Messages screens do.
// Beyond not failing, what was read must survive a save: writing the lists
// back and reading the file again gives the same lists, so a save never
// costs the user a list; a write is refused only for a text or key holding
// a NUL byte, and then leaves the file as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_device.h"
#include "messages/recipients_file.h"

// The corpus replay test includes this file with its own entry name.
#ifndef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY extern "C" int LLVMFuzzerTestOneInput
#endif

ZV_FUZZ_ENTRY(const uint8_t* data, size_t size) {
  namespace rf = zv::recipients_file;
  auto& d = zv::fuzz::device();
  const std::string file = d.root + rf::kRecipientsPath;
  std::filesystem::create_directories(
      std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data),
             static_cast<std::streamsize>(size));
  d.phone->run([] {
    const zv::Dict lists = rf::read();
    for (const auto& [name, list] : lists)
      for (const auto& recipient : rf::recipientsOf(list))
        if (recipient[0].empty()) std::abort();
    // Written whole, or (refused) the file left as it was: either way the
    // file reads as before.
    rf::write(lists);
    if (rf::read() != lists) std::abort();
  });
  return 0;
}
