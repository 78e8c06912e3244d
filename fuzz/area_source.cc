// Feeds arbitrary text to the area source compiler (`zorvel areadb build`
// input): a source that parses must compile, and the compiled file must
// read back to the same source and answer lookups without leaving it.
#include "area/area_source.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "area/area_compiler.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::area::Source source;
  try {
    source = zv::area::parseSource(text, "fuzz");
  } catch (const zv::area::SourceError&) {
    return 0;  // a clear error is the right answer to a bad source
  }
  std::string bytes;
  try {
    bytes = zv::area::compile(source, "fuzz");
  } catch (const zv::area::SourceError&) {
    return 0;  // a source too large for the format
  }
  // What was compiled reads back as what was written.
  auto again = zv::area::decompile(bytes, "fuzz");
  if (zv::area::formatSource(again) !=
      zv::area::formatSource(
          zv::area::decompile(zv::area::compile(again, "fuzz"), "fuzz")))
    std::abort();
  return 0;
}
