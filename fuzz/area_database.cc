// Feeds arbitrary bytes as a file to `zorvel areadb info` and `areadb dump`
// (the area decompiler): a file it describes must lie where its layout says
// and count what it holds, its dump must parse back to the very same text
// (so `areadb build` takes what `dump` wrote), and what that builds must
// read back stably.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "area/area_compiler.h"
#include "area/area_source.h"

namespace {

bool within(uint32_t offset, uint32_t size, size_t fileSize) {
  return offset && size && uint64_t(offset) + size <= fileSize;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  namespace area = zv::area;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  area::Layout l;
  area::Source source;
  try {
    source = area::decompile(bytes, "fuzz", &l);
  } catch (const area::SourceError&) {
    return 0;  // one line saying why is the right answer
  }
  if (!within(l.keyIndexOffset, l.keyIndexSize, size) ||
      !within(l.rangeTableOffset, l.rangeTableSize, size) ||
      !within(l.recordTableOffset, l.recordTableSize, size) ||
      !within(l.stringBlockOffset, l.stringBlockSize, size) ||
      l.usedRecords != source.records.size() || l.usedRecords > l.records ||
      l.longFormKeys > l.keys || l.lengthBoundRecords > l.usedRecords ||
      l.texts > 2 * l.usedRecords)
    std::abort();
  const std::string dumped = area::formatSource(source);
  area::Source parsed;
  try {
    parsed = area::parseSource(dumped, "dump");
  } catch (const area::SourceError&) {
    std::abort();  // a dump that does not build back
  }
  if (area::formatSource(parsed) != dumped) std::abort();
  std::string built;
  try {
    built = area::compile(parsed, "dump");
  } catch (const area::SourceError&) {
    return 0;  // beyond the format's limits once laid out canonically
  }
  const std::string again = area::formatSource(area::decompile(built, "built"));
  if (area::formatSource(area::decompile(
          area::compile(area::parseSource(again, "again"), "again"),
          "again")) != again)
    std::abort();
  return 0;
}
