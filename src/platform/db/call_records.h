// Writing a finished call into the platform's call-history database, as the
// platform's telephony does when a call ends: one row in ZCALLRECORD of
// CallHistory.storedata on system 8.0 and later, one row in `call` of
// call_history.db before 8.0, with the columns a real row carries. The new
// row is the newest (a primary key above any the table ever gave), so "the
// newest call" queries see it at once, and the platform then keeps only its
// kCallHistoryKept newest calls (by date), deleting the older ones.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/db/platform_schema.h"

namespace zv::platform_schema {

// How many calls the platform's call history keeps.
inline constexpr int kCallHistoryKept = 100;

struct FinishedCall {
  std::string address;  // the remote number; empty when it was withheld
  double date = 0;      // seconds since 1970 when the call began
  double duration = 0;  // seconds connected; 0 when never connected
  bool originated = false;
  bool answered = false;
  bool read = true;  // false for a missed call nobody has looked at
  bool video = false;
  int64_t recordId = -1;  // the caller's address-book record, -1 none
  uint64_t serial = 0;    // makes the row's unique id unique on the device
};

// The call-history database of a system version: the store from 8.0 on,
// the older database below it (versions compare as numbers, "7.1.2" is 7.1).
Database callHistoryDatabase(std::string_view systemVersion);
// The device path of kCallHistoryStore or kCallHistoryDb.
const char* callHistoryPath(Database which);

// Appends `call` to the database file at the host path `file`, of the
// layout `which` (kCallHistoryStore or kCallHistoryDb), creating the file
// and its tables when missing. One transaction: on failure nothing is
// written, false is returned and `error` (when given) says why. A database
// another process has locked is waited for up to `busyMs`.
bool appendCallRecord(const std::string& file, Database which,
                      const FinishedCall& call, std::string* error = nullptr,
                      int busyMs = 1000);

}  // namespace zv::platform_schema
