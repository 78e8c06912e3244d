#include "hosts/phone/recent_calls.h"

#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"

namespace zv::hosts {
namespace {

struct Layout {
  const char* path;
  const char* select;
  const char* deleteOne;
  const char* deleteAll;
};

// Rows: key, number, date, duration, outgoing, contact (7.x only).
constexpr Layout kModern{
    platform_schema::kCallHistoryStorePath,
    "SELECT Z_PK, ZADDRESS, ZDATE, ZDURATION, ZORIGINATED, -1 FROM "
    "ZCALLRECORD ORDER BY ZDATE DESC, Z_PK DESC",
    "DELETE FROM ZCALLRECORD WHERE Z_PK = ?",
    "DELETE FROM ZCALLRECORD",
};
constexpr Layout kLegacy{
    platform_schema::kCallHistoryDbPath,
    "SELECT ROWID, address, date, duration, flags & 1, id FROM call "
    "ORDER BY date DESC, ROWID DESC",
    "DELETE FROM call WHERE ROWID = ?",
    "DELETE FROM call",
};

const Layout& layout(bool modern) { return modern ? kModern : kLegacy; }

std::string devicePath(bool modern) {
  return platform::current().path(layout(modern).path);
}

CallKind kindOf(bool outgoing, double duration) {
  if (outgoing) return CallKind::Dialled;
  return duration > 0 ? CallKind::Received : CallKind::Missed;
}

}  // namespace

std::vector<RecentCall> loadRecentCalls(bool modern) {
  std::vector<RecentCall> calls;
  sql::Database db(devicePath(modern));
  sql::Statement query(db, layout(modern).select);
  while (query.step()) {
    const std::string number = query.text(1).value_or("");
    const double duration = query.real(3);
    const CallKind kind = kindOf(query.int64(4) != 0, duration);
    // call_history.db counts from 1970; the app works in the platform's
    // reference-date seconds either way.
    const double date =
        modern ? query.real(2)
               : query.real(2) - platform_schema::kReferenceDateOffset;
    if (calls.empty() || calls.back().number != number ||
        calls.back().kind != kind) {
      RecentCall call;
      call.number = number;
      call.kind = kind;
      if (!modern && !query.isNull(5))
        call.contactId = static_cast<int32_t>(query.int64(5));
      calls.push_back(std::move(call));
    }
    RecentCall& row = calls.back();
    row.rows.push_back(query.int64(0));
    row.dates.push_back(date);
    row.durations.push_back(duration);
  }
  return calls;
}

bool deleteRecentCall(const RecentCall& call, bool modern) {
  sql::Database db(devicePath(modern), sql::Database::Mode::kReadWrite);
  if (!db.exec("BEGIN IMMEDIATE")) return false;
  for (int64_t key : call.rows) {
    sql::Statement remove(db, layout(modern).deleteOne);
    remove.bind(1, key);
    remove.step();
    if (!remove.done()) {
      db.exec("ROLLBACK");
      return false;
    }
  }
  return db.exec("COMMIT");
}

bool deleteAllRecentCalls(bool modern) {
  sql::Database db(devicePath(modern), sql::Database::Mode::kReadWrite);
  return db.exec(layout(modern).deleteAll);
}

}  // namespace zv::hosts
