// Fills the platform's address-book and call-history tables with rows of
// any type and size taken from the input (NULLs, integers, reals, texts and
// blobs where the platform writes text, lengths of 0 to 255), then loads
// the contacts and recent calls and searches them, as the keypad does.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "fuzz/fuzz_rows.h"
#include "search/searcher.h"

namespace ps = zv::platform_schema;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  for (const char* path : {zv::ZVSearcher::kCachePath, ps::kAddressBookPath,
                           ps::kCallHistoryStorePath})
    std::filesystem::remove(d.root + path);
  zv::fuzz::fillRows(
      d.root + ps::kAddressBookPath, ps::Database::kAddressBook,
      "INSERT INTO ABPerson(ROWID,First,Last,Organization) VALUES(?,?,?,?)", 4,
      in);
  zv::fuzz::fillRows(d.root + ps::kAddressBookPath, ps::Database::kAddressBook,
                     "INSERT INTO ABMultiValue(record_id,property,label,value) "
                     "VALUES(?,3,?,?)",
                     3, in);
  zv::fuzz::fillRows(
      d.root + ps::kCallHistoryStorePath, ps::Database::kCallHistoryStore,
      "INSERT INTO ZCALLRECORD(ZADDRESS,ZDATE) VALUES(?,?)", 2, in);
  d.phone->run([] {
    auto searcher = zv::ZVSearcher::create();
    for (const char* key : {"2", "22", "##", "**", "1"}) searcher->search(key);
    // The cache it wrote reads back.
    searcher->loadAddressBookCache();
  });
  return 0;
}
