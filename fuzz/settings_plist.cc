// Feeds arbitrary bytes as the settings file (and the keypad flags file) of
// a device and loads every settings class: property-list values of any
// type, size or nesting must convert to the keys' types or their defaults.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "core/settings.h"
#include "core/settings_catalogue.h"
#include "fuzz/fuzz_device.h"
#include "platform/plist.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto& d = zv::fuzz::device();
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string file = d.root + zv::ZVSettings::kPath;
  std::filesystem::create_directories(
      std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
  d.phone->run([&] {
    for (auto& settings : zv::makeSettingsCatalogue())
      for (const auto& info : settings->describe()) {
        (void)info.value.stringValue();
        (void)info.value.doubleValue();
      }
    // The same bytes read as a property list of any shape.
    if (auto value = zv::plist::parse(bytes)) {
      (void)value->boolValue();
      (void)value->intValue();
    }
  });
  return 0;
}
