#include "search/call_history.h"

#include <cstdio>
#include <vector>

#include "core/device.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "search/ring_duration_file.h"

namespace zv {
namespace {

// The statements of one platform generation.
struct CallHistorySql {
  const char* database;
  const char* newestCall;
  const char* oldestCallDate;
  const char* backupCount;
};

constexpr CallHistorySql kModern{
    platform_schema::kCallHistoryStorePath,
    "SELECT ZDURATION,ZREAD,ZDATE FROM ZCALLRECORD ORDER BY Z_PK DESC LIMIT 1",
    "SELECT ZDATE FROM ZCALLRECORD ORDER BY ZDATE ASC LIMIT 1",
    "SELECT COUNT(*) FROM ZVZCALLRECORD",
};
constexpr CallHistorySql kLegacy{
    platform_schema::kCallHistoryDbPath,
    "SELECT duration,flags,date FROM call ORDER BY ROWID DESC LIMIT 1",
    "SELECT date FROM call ORDER BY date ASC LIMIT 1",
    "SELECT COUNT(*) FROM deleted",
};

constexpr char kRestore[] =
    "INSERT INTO ZCALLRECORD SELECT * FROM ZVZCALLRECORD WHERE ZDATE < "
    "(SELECT ZDATE FROM ZCALLRECORD ORDER BY ZDATE ASC LIMIT 1) ORDER BY "
    "ZDATE DESC LIMIT ?";
constexpr char kEmptyBackup[] = "DELETE FROM ZVZCALLRECORD";
constexpr char kDeleteOne[] = "DELETE FROM ZVZCALLRECORD WHERE ZDATE = ?";

bool isModern() { return UIDevice::OSVersion() >= 8.0f; }
const CallHistorySql& statements() { return isModern() ? kModern : kLegacy; }

sql::Database openCallHistory(
    sql::Database::Mode mode = sql::Database::Mode::kReadOnly,
    int busyMs = 1000) {
  return sql::Database(platform::current().path(statements().database), mode,
                       busyMs);
}

// How much earlier than its ring began a call may have begun (its screen
// comes up a moment after the call appears).
constexpr double kRingStartSlack = 5.0;

// Whether the call of this date (the platform's unit) can be the one that
// rang `seconds` until now: an older newest call means the ringing call's
// own record is not written yet, and its seconds are not another call's.
bool rangUntilNow(double date, int64_t seconds) {
  const double began =
      isModern() ? date + platform_schema::kReferenceDateOffset : date;
  return began >= platform::current().now() - double(seconds) - kRingStartSlack;
}

// After a save: this process's copy is stale, and other processes hear of it
// 2.0 s after the last save.
void ringDurationSaved(ZVCallHistory& history) {
  history.unloadRingDurations();
  platform::Platform& platform = platform::current();
  platform.cancelPrevious(&history, "historyChanged");
  platform.performAfterDelay(&history, "historyChanged", 2.0,
                             [weak = history.weak_from_this()] {
                               if (auto self = weak.lock())
                                 self->historyChanged();
                             });
}

// What a store came to: a written duration is announced; one that could
// not be written is logged (the ring goes unrecorded, and the screens show
// what the file holds).
void ringDurationStored(ZVCallHistory& history,
                        ring_duration_file::Stored stored,
                        const std::string& path) {
  if (stored == ring_duration_file::Stored::kWritten)
    ringDurationSaved(history);
  else if (stored == ring_duration_file::Stored::kNotWritten)
    platform::current().log("ring duration not written: " + path);
}

std::string ringDurationPath() {
  return platform::current().path(ZVCallHistory::kRingDurationPath);
}

// Runs the 7.x helper tool; its exit status carries no meaning here.
void runTool(const std::string& arguments) {
  platform::current().system("/Library/Zorvel/zvtool " + arguments);
}

// Marks that this process observes the change notification.
struct ChangedObserver {
  platform::ObserverToken token = 0;
};

}  // namespace

std::shared_ptr<ZVCallHistory> ZVCallHistory::sharedInstance() {
  return platform::Process::current().singleton<ZVCallHistory>(
      [] { return std::make_shared<ZVCallHistory>(); });
}

void ZVCallHistory::regisiterChangedCallback() {
  platform::Process::current().singleton<ChangedObserver>([] {
    auto observer = std::make_shared<ChangedObserver>();
    observer->token = platform::current().observe(
        kChangedNotification, [] { ZVCallHistoryChanged(); },
        platform::Scope::System);
    return observer;
  });
}

std::string ZVCallHistory::ringDurationKey(double date) {
  char key[64];
  std::snprintf(key, sizeof key, isModern() ? "%f" : "%.0lf", date);
  return key;
}

void ZVCallHistory::loadRingDurations() {
  if (_callHistoryRingtime) return;
  _callHistoryRingtime = platform::readDictionary(kRingDurationPath);
  if (_callHistoryRingtime)
    deleteExpiredRingDuration();
  else
    _callHistoryRingtime.emplace();
}

int64_t ZVCallHistory::getRingDuration(double date) {
  if (date == 0) return 0;
  loadRingDurations();
  if (!_callHistoryRingtime) return 0;
  auto it = _callHistoryRingtime->find(ringDurationKey(date));
  return it == _callHistoryRingtime->end() ? 0 : it->second.longLongValue();
}

void ZVCallHistory::saveLastRingDuration(int64_t seconds) {
  std::string key;
  {
    // Runs as a call ends, on the thread that decides on the next one: a
    // history another process has locked is not waited for.
    sql::Database db = openCallHistory(sql::Database::Mode::kReadOnly, 0);
    sql::Statement newest(db, statements().newestCall);
    // Only a call that was never connected has a ring time. The read flag
    // (or the flags column) does not matter: a missed call may already
    // have been seen by the time the ringing ends.
    if (newest.step() && newest.real(0) == 0) {
      const double date = newest.real(2);
      if (date > 0 && rangUntilNow(date, seconds) && getRingDuration(date) == 0)
        key = ringDurationKey(date);
    }
  }
  if (key.empty()) return;
  const std::string path = ringDurationPath();
  const auto stored = ring_duration_file::storeFirstNow(path, key, seconds);
  if (stored != ring_duration_file::Stored::kBusy)
    return ringDurationStored(*this, stored, path);
  // Another process holds the file: the store waits for it off the main
  // thread and reports back there.
  platform::Platform& platform = platform::current();
  platform.dispatchBackground(
      [&platform, path, key, seconds, weak = weak_from_this()] {
        const auto stored = ring_duration_file::storeFirst(path, key, seconds);
        platform.dispatchMain([weak, stored, path] {
          if (auto self = weak.lock()) ringDurationStored(*self, stored, path);
        });
      });
}

void ZVCallHistory::historyChanged() {
  platform::current().post(kChangedNotification, platform::Scope::System);
}

void ZVCallHistory::deleteExpiredRingDuration() {
  if (!_callHistoryRingtime) return;
  int64_t oldest = 0;
  {
    sql::Database db = openCallHistory();
    sql::Statement query(db, statements().oldestCallDate);
    if (query.step()) oldest = query.int64(0);
  }
  // Keys that do not read as a number give 0 and stay.
  std::vector<std::string> expired;
  for (const auto& [key, seconds] : *_callHistoryRingtime) {
    const int64_t date = Value(key).longLongValue();
    if (date >= 1 && date < oldest) expired.push_back(key);
  }
  if (expired.empty()) return;
  for (const std::string& key : expired) _callHistoryRingtime->erase(key);
  ring_duration_file::remove(ringDurationPath(), expired);
}

int64_t ZVCallHistory::syncHistory(int limit) {
  if (limit < kSyncLimitMinimum) return 0;
  int64_t count = 0;
  {
    sql::Database db = openCallHistory();
    if (!db.ok()) return 0;
    sql::Statement query(db, statements().backupCount);
    if (query.step()) count = query.int64(0);
  }
  if (count < 1) return count;
  const int restore = limit - 100;
  if (!isModern()) {
    runTool("-s " + std::to_string(restore));
    return count;
  }
  sql::Database db = openCallHistory(sql::Database::Mode::kReadWrite);
  {
    sql::Statement insert(db, kRestore);
    insert.bind(1, restore);
    insert.step();
  }
  // The backup is emptied whether or not the restore went through: a row
  // that cannot go back (a clash with a call already there) would otherwise
  // be tried again, and Recents reloaded, every time the list appears.
  sql::Statement empty(db, kEmptyBackup);
  empty.step();
  return count;
}

void ZVCallHistory::deleteSyncHistory(double date) {
  if (date == 0) return;
  if (!isModern()) {
    char arguments[64];
    std::snprintf(arguments, sizeof arguments, "-d %.0lf", date);
    runTool(arguments);
    return;
  }
  sql::Database db = openCallHistory(sql::Database::Mode::kReadWrite);
  sql::Statement remove(db, kDeleteOne);
  remove.bind(1, date);
  remove.step();
}

void ZVCallHistory::deleteAllSyncHistory() {
  if (!isModern()) {
    runTool("-c");
    return;
  }
  sql::Database db = openCallHistory(sql::Database::Mode::kReadWrite);
  sql::Statement empty(db, kEmptyBackup);
  empty.step();
}

void ZVCallHistoryChanged() {
  try {
    ZVCallHistory::sharedInstance()->unloadRingDurations();
  } catch (...) {
  }
}

}  // namespace zv
