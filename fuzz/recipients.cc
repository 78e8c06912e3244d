// Feeds arbitrary bytes as the saved recipient lists of a device
// ("zorvel.recipients.plist") and reads them as the Messages screens do.
// Beyond not failing, what was read must survive a save: writing the lists
// back and reading the file again gives the same lists (dates to the whole
// second, all an XML list keeps), so a save never costs the user a list; a
// write that could not keep what it read is refused and leaves the file as
// it was.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_device.h"
#include "messages/recipients_file.h"

namespace {

// `v` with every date cut to its whole seconds.
zv::Value wholeSeconds(const zv::Value& v) {
  const auto& s = v.storage();
  if (auto date = std::get_if<zv::Date>(&s))
    return zv::Value(zv::Date{std::trunc(date->seconds)});
  if (auto array = std::get_if<zv::Array>(&s)) {
    zv::Array out;
    for (const auto& item : *array) out.push_back(wholeSeconds(item));
    return zv::Value(std::move(out));
  }
  if (auto dict = std::get_if<zv::Dict>(&s)) {
    zv::Dict out;
    for (const auto& [key, item] : *dict) out[key] = wholeSeconds(item);
    return zv::Value(std::move(out));
  }
  return v;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
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
    if (wholeSeconds(zv::Value(rf::read())) != wholeSeconds(zv::Value(lists)))
      std::abort();
  });
  return 0;
}
