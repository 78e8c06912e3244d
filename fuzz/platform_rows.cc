// Fills the platform's address-book and call-history tables with rows of
// any type and size taken from the input (NULLs, integers, reals, texts and
// blobs where the platform writes text, lengths of 0 to 255), then loads
// the contacts and recent calls and searches them, as the keypad does.
#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "fuzz/fuzz_device.h"
#include "platform/db/platform_schema.h"
#include "search/searcher.h"

// The corpus replay test includes this file with its own entry name.
#ifndef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY extern "C" int LLVMFuzzerTestOneInput
#endif

namespace {

namespace ps = zv::platform_schema;

// Binds one value of the type the next input byte picks.
void bindValue(sqlite3_stmt* stmt, int index, zv::fuzz::Bytes& in) {
  switch (in.byte() % 5) {
    case 0:
      sqlite3_bind_null(stmt, index);
      break;
    case 1:
      // Small, so that record ids of the two tables meet.
      sqlite3_bind_int64(stmt, index, in.int64() % 8);
      break;
    case 2:
      sqlite3_bind_double(stmt, index, static_cast<double>(in.int64()) / 7);
      break;
    case 3: {
      auto t = in.text(255);
      sqlite3_bind_text(stmt, index, t.data(), static_cast<int>(t.size()),
                        SQLITE_TRANSIENT);
      break;
    }
    default: {
      auto t = in.text(255);
      sqlite3_bind_blob(stmt, index, t.data(), static_cast<int>(t.size()),
                        SQLITE_TRANSIENT);
    }
  }
}

void fill(const std::string& file, ps::Database which, const char* insert,
          int columns, zv::fuzz::Bytes& in) {
  if (!ps::createDatabase(file, which)) return;
  sqlite3* db = nullptr;
  if (sqlite3_open(file.c_str(), &db) == SQLITE_OK) {
    sqlite3_exec(db, "PRAGMA synchronous=OFF; BEGIN", nullptr, nullptr,
                 nullptr);
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, insert, -1, &stmt, nullptr) == SQLITE_OK) {
      for (int rows = in.byte() % 12; rows > 0 && !in.empty(); --rows) {
        for (int c = 1; c <= columns; ++c) bindValue(stmt, c, in);
        sqlite3_step(stmt);
        sqlite3_reset(stmt);
      }
    }
    sqlite3_finalize(stmt);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  }
  sqlite3_close(db);
}

}  // namespace

ZV_FUZZ_ENTRY(const uint8_t* data, size_t size) {
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  for (const char* path : {zv::ZVSearcher::kCachePath, ps::kAddressBookPath,
                           ps::kCallHistoryStorePath})
    std::filesystem::remove(d.root + path);
  fill(d.root + ps::kAddressBookPath, ps::Database::kAddressBook,
       "INSERT INTO ABPerson(ROWID,First,Last,Organization) VALUES(?,?,?,?)", 4,
       in);
  fill(d.root + ps::kAddressBookPath, ps::Database::kAddressBook,
       "INSERT INTO ABMultiValue(record_id,property,label,value) "
       "VALUES(?,3,?,?)",
       3, in);
  fill(d.root + ps::kCallHistoryStorePath, ps::Database::kCallHistoryStore,
       "INSERT INTO ZCALLRECORD(ZADDRESS,ZDATE) VALUES(?,?)", 2, in);
  d.phone->run([] {
    auto searcher = zv::ZVSearcher::create();
    for (const char* key : {"2", "22", "##", "**", "1"}) searcher->search(key);
    // The cache it wrote reads back.
    searcher->loadAddressBookCache();
  });
  return 0;
}
