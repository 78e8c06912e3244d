// Feeds arbitrary bytes to the persons-cache reader, then searches and
// highlights the persons it produced.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "search/searcher.h"
#include "search/searcher_cache.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::ZVSearcher::PersonList persons;
  zv::readPersonsCache(text, persons);
  for (const auto& p : persons) {
    zv::formatCacheLine(*p);
    for (int bits : {4, 8, 16}) {
      p->setPriority(bits);
      zv::ZVSearcher::getHighlightNameRange(p->getNameFull(), "2", p.get());
      zv::ZVSearcher::getHighlightNameRange(p->getNameFull(), "64", p.get());
    }
    zv::ZVSearcher::getHighlightNumberRange(p->getPhoneNumber(), "13");
  }
  return 0;
}
