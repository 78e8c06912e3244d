#include "platform/db/call_records.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/db/sqlite_db.h"

namespace zv::platform_schema {
namespace {

constexpr char kInsertStoreRow[] =
    "INSERT INTO ZCALLRECORD (Z_PK, Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, "
    "ZDISCONNECTED_CAUSE, ZFACE_TIME_DATA, ZNUMBER_AVAILABILITY, "
    "ZORIGINATED, ZREAD, ZDATE, ZDURATION, ZADDRESS, ZDEVICE_ID, "
    "ZISO_COUNTRY_CODE, ZNAME, ZUNIQUE_ID, ZSERVICE_PROVIDER) "
    "VALUES (?, ?, 1, ?, ?, 0, NULL, ?, ?, ?, ?, ?, ?, NULL, 'cn', NULL, ?, "
    "?)";
// Core Data keeps the highest primary key it ever gave each entity and
// gives the next row the one after it, so a key is never used twice, even
// after the row that held the highest was deleted (a row put back from a
// backup keeps its old key and must not meet a new row of the same key).
constexpr char kNextKey[] =
    "SELECT MAX(COALESCE((SELECT Z_MAX FROM Z_PRIMARYKEY WHERE Z_ENT = ?), 0), "
    "COALESCE((SELECT MAX(Z_PK) FROM ZCALLRECORD), 0)) + 1";
constexpr char kUpdateMaxKey[] =
    "UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_ENT = ?";
constexpr char kInsertMaxKey[] =
    "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME, Z_SUPER, Z_MAX) "
    "VALUES (?, 'CallRecord', 0, ?)";

// The platform keeps its newest calls only: recording one drops the oldest
// beyond kCallHistoryKept, in the same transaction.
constexpr char kTrimStore[] =
    "DELETE FROM ZCALLRECORD WHERE Z_PK NOT IN (SELECT Z_PK FROM ZCALLRECORD "
    "ORDER BY ZDATE DESC, Z_PK DESC LIMIT ?)";
constexpr char kTrimDb[] =
    "DELETE FROM call WHERE ROWID NOT IN (SELECT ROWID FROM call ORDER BY "
    "date DESC, ROWID DESC LIMIT ?)";

constexpr char kInsertDbRow[] =
    "INSERT INTO call (address, date, duration, flags, id, name, "
    "country_code, network_code, read, assisted, face_time_data, "
    "originalAddress) VALUES (?, ?, ?, ?, ?, NULL, '460', '00', ?, 0, NULL, "
    "?)";

// A unique id in the platform's text form, derived from the call so that a
// simulated device writes the same rows on every run.
std::string uniqueId(const FinishedCall& call) {
  uint64_t a = call.serial * 0x9E3779B97F4A7C15ull ^
               static_cast<uint64_t>(std::llround(call.date * 1000));
  uint64_t b = std::hash<std::string>{}(call.address) ^ (a >> 7);
  char out[40];
  std::snprintf(out, sizeof out, "%08X-%04X-%04X-%04X-%012llX",
                static_cast<unsigned>(a >> 32),
                static_cast<unsigned>((a >> 16) & 0xFFFF),
                static_cast<unsigned>(0x4000 | (a & 0x0FFF)),
                static_cast<unsigned>(0x8000 | ((b >> 48) & 0x3FFF)),
                static_cast<unsigned long long>(b & 0xFFFFFFFFFFFFull));
  return out;
}

bool trim(sql::Database& db, const char* sql) {
  sql::Statement trim(db, sql);
  trim.bind(1, kCallHistoryKept);
  trim.step();
  return trim.done();
}

bool appendStoreRow(sql::Database& db, const FinishedCall& call) {
  int64_t key = 0;
  {
    sql::Statement next(db, kNextKey);
    next.bind(1, kCallRecordEntity);
    if (!next.step()) return false;
    key = next.int64(0);
  }
  sql::Statement row(db, kInsertStoreRow);
  row.bind(1, key);
  row.bind(2, kCallRecordEntity);
  row.bind(3, call.answered ? 1 : 0);
  row.bind(4, call.video ? kCallTypeVideo : kCallTypeVoice);
  // 1: the caller withheld the number.
  row.bind(5, call.address.empty() ? 1 : 0);
  row.bind(6, call.originated ? 1 : 0);
  row.bind(7, call.read ? 1 : 0);
  row.bind(8, call.date - kReferenceDateOffset);
  row.bind(9, call.duration);
  // A withheld number is stored as an empty text, not NULL.
  row.bindText(10, call.address);
  row.bindText(11, uniqueId(call));
  row.bindText(12, call.video ? "com.apple.FaceTime" : "com.apple.Telephony");
  row.step();
  if (!row.done()) return false;
  sql::Statement update(db, kUpdateMaxKey);
  update.bind(1, key);
  update.bind(2, kCallRecordEntity);
  update.step();
  if (!update.done()) return false;
  if (db.changes() == 0) {
    sql::Statement insert(db, kInsertMaxKey);
    insert.bind(1, kCallRecordEntity);
    insert.bind(2, key);
    insert.step();
    if (!insert.done()) return false;
  }
  return trim(db, kTrimStore);
}

bool appendDbRow(sql::Database& db, const FinishedCall& call) {
  sql::Statement row(db, kInsertDbRow);
  row.bindText(1, call.address);
  row.bind(2, static_cast<int64_t>(std::floor(call.date)));
  row.bind(3, static_cast<int64_t>(std::llround(call.duration)));
  int flags = call.originated ? kCallFlagsOutgoing : kCallFlagsIncoming;
  if (call.video) flags |= kCallFlagVideo;
  row.bind(4, flags);
  row.bind(5, call.recordId);
  row.bind(6, call.read ? 1 : 0);
  row.bindText(7, call.address);
  row.step();
  return row.done() && trim(db, kTrimDb);
}

}  // namespace

Database callHistoryDatabase(std::string_view systemVersion) {
  std::string text(systemVersion);
  return std::strtod(text.c_str(), nullptr) >= 8.0 ? Database::kCallHistoryStore
                                                   : Database::kCallHistoryDb;
}

const char* callHistoryPath(Database which) {
  return which == Database::kCallHistoryStore ? kCallHistoryStorePath
                                              : kCallHistoryDbPath;
}

bool appendCallRecord(const std::string& file, Database which,
                      const FinishedCall& call, std::string* error,
                      int busyMs) {
  if (which != Database::kCallHistoryStore &&
      which != Database::kCallHistoryDb) {
    if (error) *error = "not a call-history database";
    return false;
  }
  std::error_code ec;
  if (!std::filesystem::exists(file, ec) &&
      !createDatabase(file, which, error)) {
    return false;
  }
  sql::Database db(file, sql::Database::Mode::kReadWrite, busyMs);
  if (!db.ok()) {
    if (error) *error = file + ": " + db.error();
    return false;
  }
  if (!db.exec("BEGIN IMMEDIATE")) {
    if (error) *error = file + ": " + db.error();
    return false;
  }
  const bool ok = which == Database::kCallHistoryStore
                      ? appendStoreRow(db, call)
                      : appendDbRow(db, call);
  if (!ok || !db.exec("COMMIT")) {
    if (error) *error = file + ": " + db.error();
    db.exec("ROLLBACK");
    return false;
  }
  return true;
}

}  // namespace zv::platform_schema
