// ZVCallHistory: the per-process store kept beside the platform's call
// history. It records how long each missed call rang (in
// "zorvel.missed.plist", keyed by the call's date as text: "%f" of ZDATE on
// system 8.0 and later, "%.0lf" of `date` below) and restores calls that
// the platform deleted from a backup table, so that Recents can list more
// calls than the platform keeps.
//
// The platform database is chosen by the system version every time it is
// opened, and each operation opens and closes its own connection. On 8.x
// the backup lives in ZVZCALLRECORD inside CallHistory.storedata and is
// handled here with SQL; on 7.x it lives in call_history.db's `deleted`
// table and is handled by the zvtool helper through the platform's
// system(). Filling the backup is zvtool's business (its triggers).
//
// Processes share the ring-duration file: a save is a locked
// read-modify-write (see ring_duration_file.h), and 2.0 s after the last
// save "ZVCallHistoryChanged" goes out so that other processes drop their
// copy. Failures end an operation with the neutral result (0 or nothing).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/value.h"

namespace zv {

class ZVCallHistory : public std::enable_shared_from_this<ZVCallHistory> {
 public:
  static constexpr const char* kRingDurationPath =
      "/var/mobile/Library/Preferences/zorvel.missed.plist";
  static constexpr const char* kChangedNotification = "ZVCallHistoryChanged";
  // Backup work happens only from this Recents length on.
  static constexpr int kSyncLimitMinimum = 101;

  static std::shared_ptr<ZVCallHistory> sharedInstance();
  ZVCallHistory() = default;

  // Subscribes ZVCallHistoryChanged to the system-wide notification, once
  // per process.
  static void regisiterChangedCallback();

  // Loads the file when not loaded (then drops expired entries); a missing
  // or corrupt file gives an empty dictionary.
  void loadRingDurations();
  void unloadRingDurations() { _callHistoryRingtime.reset(); }
  bool ringDurationsLoaded() const { return _callHistoryRingtime.has_value(); }

  // Ring seconds recorded for the call of this date (the platform's own
  // date unit), 0 when none.
  int64_t getRingDuration(double date);
  // Records `seconds` for the newest call if it was never connected, has no
  // duration yet and began when this ringing began (a newest call from
  // before then means the ringing call's own record is not written yet);
  // then notifies other processes 2.0 s later. Never waits on the main
  // thread: a locked history records nothing, a locked ring-duration file
  // is written from a background thread.
  void saveLastRingDuration(int64_t seconds);
  // Posts "ZVCallHistoryChanged" system-wide.
  void historyChanged();
  // Drops entries for calls older than the oldest call in the database.
  void deleteExpiredRingDuration();

  // Restores at most limit - 100 of the newest backed-up calls that are
  // older than every call left, then empties the backup. Returns the number
  // of backed-up rows found (0 for a limit below 101).
  int64_t syncHistory(int limit);
  // Deletes the backed-up call of this date (0: nothing).
  void deleteSyncHistory(double date);
  void deleteAllSyncHistory();

  // The key of a call date in the ring-duration file.
  static std::string ringDurationKey(double date);

 private:
  std::optional<Dict> _callHistoryRingtime;
};

// The notification callback: unloadRingDurations on the singleton,
// swallowing any exception.
void ZVCallHistoryChanged();

}  // namespace zv
