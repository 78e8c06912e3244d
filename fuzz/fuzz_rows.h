// Shared by the fuzz targets that fill the platform's databases: rows whose
// every column takes a value of the type the input picks (NULL, integer,
// real, text or blob, texts and blobs of 0 to 255 bytes), as a damaged or
// foreign database may hold where the platform writes one type.
#pragma once

#include <string>

#include "fuzz/fuzz_device.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"

namespace zv::fuzz {

// Binds one value of the type the next input byte picks. Integers are kept
// below `intRange` so that record ids of different tables meet.
inline void bindValue(sql::Statement& stmt, int index, Bytes& in,
                      int64_t intRange = 8) {
  switch (in.byte() % 5) {
    case 0:
      stmt.bindNull(index);
      break;
    case 1:
      stmt.bind(index, static_cast<int64_t>(in.int64() % intRange));
      break;
    case 2:
      stmt.bind(index, static_cast<double>(in.int64()) / 7);
      break;
    case 3:
      stmt.bindText(index, in.text(255));
      break;
    default:
      stmt.bindBlob(index, in.text(255));
  }
}

// Creates `file` with the schema of `which` and runs `insert` (with
// `columns` parameters) for up to 11 rows taken from the input.
inline void fillRows(const std::string& file, platform_schema::Database which,
                     const char* insert, int columns, Bytes& in) {
  if (!platform_schema::createDatabase(file, which)) return;
  sql::Database db(file, sql::Database::Mode::kReadWrite);
  db.exec("PRAGMA synchronous=OFF; BEGIN");
  sql::Statement stmt(db, insert);
  if (stmt.ok()) {
    for (int rows = in.byte() % 12; rows > 0 && !in.empty(); --rows) {
      for (int c = 1; c <= columns; ++c) bindValue(stmt, c, in);
      stmt.step();
      stmt.reset();
    }
  }
  db.exec("COMMIT");
}

}  // namespace zv::fuzz
