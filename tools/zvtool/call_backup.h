// The call backup that zvtool keeps beside the platform's call table: a
// table of the same columns (`deleted` in call_history.db, ZVZCALLRECORD in
// CallHistory.storedata) that a trigger fills with the calls the platform
// trims from its call table when it records a new one (never the calls the
// user deletes), and from which calls are put back.
//
// Every change runs in one transaction: on any failure it is rolled back
// and the database is left as it was.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/db/sqlite_db.h"

namespace zv::zvtool {

// One platform database with its call table and backup table.
struct CallTables {
  const char* devicePath;  // below the device root
  const char* table;       // the platform's call table
  const char* backup;      // our copy of deleted rows
  const char* date;        // the call-date column
};

// call_history.db (system 7.x) and CallHistory.storedata (8.x).
extern const CallTables kLegacyCalls;
extern const CallTables kModernCalls;

class CallBackup {
 public:
  // Opens the database of `tables` under `root` for writing; nullopt with a
  // one-line `error` when the file is missing or cannot be opened.
  static std::optional<CallBackup> open(const std::string& root,
                                        const CallTables& tables,
                                        std::string& error);

  // Creates the backup table (the call table's columns, in order, with its
  // primary key) and the trigger that copies into it the calls the platform
  // is about to trim. Safe to run again.
  bool install(std::string& error);
  // Whether the backup table is there (install has run); when it is not,
  // `error` says so and what to run.
  bool hasBackup(std::string& error);
  // Rows in the backup table.
  int64_t backedUp();
  // Puts back up to `count` of the newest backed-up calls older than every
  // call still in the table, then empties the backup, even when the calls
  // could not go back (false then). `restored` gets the number put back.
  bool restore(int count, int64_t& restored, std::string& error);
  // Deletes the backed-up calls of this date; `removed` gets how many.
  bool remove(double date, int64_t& removed, std::string& error);
  // Empties the backup; `removed` gets how many calls it held.
  bool clear(int64_t& removed, std::string& error);

  CallBackup(CallBackup&&) = default;

 private:
  CallBackup(std::string path, const CallTables& tables);
  // Runs `change` between BEGIN IMMEDIATE and COMMIT, or rolls back.
  template <typename Change>
  bool transaction(std::string& error, Change&& change);
  bool run(const std::string& sql, std::string& error);

  std::string path_;
  const CallTables* tables_;
  std::unique_ptr<sql::Database> db_;
};

}  // namespace zv::zvtool
