// Rows of the platform's call histories for tests, under a device root: one
// call into the 8.x store (dates since 2001; the table may be the backup
// ZVZCALLRECORD) or into the 7.x database (dates since 1970, `id` the
// contact's record as SQL: "-1" or "NULL" for none).
#pragma once

#include <cstdint>
#include <string>

#include "platform/db/platform_schema.h"
#include "support/device_db.h"

namespace zv::testing {

inline void insertModernCall(const std::string& root, int pk, double date,
                             const std::string& number, double duration = 0,
                             bool outgoing = false,
                             const std::string& table = "ZCALLRECORD") {
  execSql(root + platform_schema::kCallHistoryStorePath,
          "INSERT INTO " + table +
              " (Z_PK, ZDATE, ZADDRESS, ZDURATION, ZORIGINATED) VALUES (" +
              std::to_string(pk) + ", " + std::to_string(date) + ", '" +
              number + "', " + std::to_string(duration) + ", " +
              (outgoing ? "1" : "0") + ")");
}

inline void insertLegacyCall(const std::string& root, int rowid, int64_t date,
                             const std::string& number, int duration = 0,
                             int flags = 4, const std::string& id = "-1") {
  execSql(root + platform_schema::kCallHistoryDbPath,
          "INSERT INTO call (ROWID, date, address, duration, flags, id) "
          "VALUES (" +
              std::to_string(rowid) + ", " + std::to_string(date) + ", '" +
              number + "', " + std::to_string(duration) + ", " +
              std::to_string(flags) + ", " + id + ")");
}

}  // namespace zv::testing
