// Feeds arbitrary bytes to the reading-table reader and looks every byte
// sequence of the input up, so that malformed UTF-8, missing newlines and
// overlong lines are read without leaving the input.
#include "search/t9_table.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "search/searcher_encode.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::T9Table table;
  zv::loadT9text(table, text);
  for (size_t i = 0; i + 1 < size && i < 64; ++i)
    table.lookup(text.substr(i, 2));
  zv::EncodedName encoded;
  zv::encodeName(text.substr(0, 300), &table, encoded);
  return 0;
}
