// Shared by the fuzz targets that fill the platform's databases: rows whose
// every column takes a value of the type the input picks (NULL, integer,
// real, text or blob, texts and blobs of 0 to 255 bytes), as a damaged or
// foreign database may hold where the platform writes one type.
#pragma once

#include <sqlite3.h>

#include <string>

#include "fuzz/fuzz_device.h"
#include "platform/db/platform_schema.h"

namespace zv::fuzz {

// Binds one value of the type the next input byte picks. Integers are kept
// below `intRange` so that record ids of different tables meet.
inline void bindValue(sqlite3_stmt* stmt, int index, Bytes& in,
                      int64_t intRange = 8) {
  switch (in.byte() % 5) {
    case 0:
      sqlite3_bind_null(stmt, index);
      break;
    case 1:
      sqlite3_bind_int64(stmt, index, in.int64() % intRange);
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

// Creates `file` with the schema of `which` and runs `insert` (with
// `columns` parameters) for up to 11 rows taken from the input.
inline void fillRows(const std::string& file, platform_schema::Database which,
                     const char* insert, int columns, Bytes& in) {
  if (!platform_schema::createDatabase(file, which)) return;
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

}  // namespace zv::fuzz
