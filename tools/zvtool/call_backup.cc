#include "call_backup.h"

#include <filesystem>
#include <memory>
#include <vector>

#include "platform/db/call_records.h"
#include "platform/db/platform_schema.h"

namespace zv::zvtool {

const CallTables kLegacyCalls{platform_schema::kCallHistoryDbPath, "call",
                              "deleted", "date"};
const CallTables kModernCalls{platform_schema::kCallHistoryStorePath,
                              "ZCALLRECORD", "ZVZCALLRECORD", "ZDATE"};

namespace {

std::string quoted(const std::string& name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

struct Column {
  std::string name, type;
  bool primaryKey = false;
};

std::vector<Column> columnsOf(const sql::Database& db, const char* table) {
  std::vector<Column> columns;
  sql::Statement info(db, std::string("PRAGMA table_info(") + table + ")");
  while (info.step())
    columns.push_back({info.text(1).value_or(""), info.text(2).value_or(""),
                       info.int64(5) == 1});
  return columns;
}

}  // namespace

CallBackup::CallBackup(std::string path, const CallTables& tables)
    : path_(std::move(path)), tables_(&tables) {}

std::optional<CallBackup> CallBackup::open(const std::string& root,
                                           const CallTables& tables,
                                           std::string& error) {
  std::string path = root + tables.devicePath;
  if (!std::filesystem::is_regular_file(path)) {
    error = "no call history database at " + path;
    return std::nullopt;
  }
  CallBackup backup(path, tables);
  backup.db_ =
      std::make_unique<sql::Database>(path, sql::Database::Mode::kReadWrite);
  if (!backup.db_->ok()) {
    error = "cannot open " + path + ": " + backup.db_->error();
    return std::nullopt;
  }
  return backup;
}

bool CallBackup::run(const std::string& sql, std::string& error) {
  if (db_->exec(sql.c_str())) return true;
  error = path_ + ": " + db_->error();
  return false;
}

template <typename Change>
bool CallBackup::transaction(std::string& error, Change&& change) {
  if (!run("BEGIN IMMEDIATE", error)) return false;
  if (change() && run("COMMIT", error)) return true;
  db_->exec("ROLLBACK");
  return false;
}

bool CallBackup::install(std::string& error) {
  return transaction(error, [&] {
    std::vector<Column> columns = columnsOf(*db_, tables_->table);
    std::string key, definition;
    for (const Column& c : columns) {
      if (!definition.empty()) definition += ", ";
      definition += quoted(c.name) + " " + c.type;
      if (c.primaryKey) {
        definition += " PRIMARY KEY";
        key = quoted(c.name);
      }
    }
    if (columns.empty() || key.empty()) {
      error = path_ + ": no table " + tables_->table + " with a primary key";
      return false;
    }
    const std::string table = tables_->table, backup = tables_->backup,
                      date = quoted(tables_->date);
    // The platform keeps its newest calls only: recording a call, it drops
    // those beyond the newest kCallHistoryKept (by date, then key). The
    // backup takes exactly those, as the new call goes in and before they
    // are dropped, copied whole with SELECT * (the column order restoring
    // relies on). A call deleted by the user is never copied, so it cannot
    // come back; nor are restored calls, which are older than the newest.
    // Earlier installs copied every deleted row: that trigger goes.
    return run("CREATE TABLE IF NOT EXISTS " + backup + " (" + definition + ")",
               error) &&
           run("DROP TRIGGER IF EXISTS zvtool_backup_" + table, error) &&
           run("CREATE TRIGGER IF NOT EXISTS zvtool_trimmed_" + table +
                   " AFTER INSERT ON " + table + " WHEN NOT EXISTS (SELECT 1 " +
                   "FROM " + table + " WHERE " + date + " > NEW." + date +
                   ") BEGIN INSERT OR REPLACE INTO " + backup +
                   " SELECT * FROM " + table + " WHERE " + key +
                   " NOT IN (SELECT " + key + " FROM " + table + " ORDER BY " +
                   date + " DESC, " + key + " DESC LIMIT " +
                   std::to_string(platform_schema::kCallHistoryKept) + "); END",
               error);
  });
}

bool CallBackup::hasBackup(std::string& error) {
  sql::Statement find(*db_,
                      "SELECT 1 FROM sqlite_master WHERE type='table' AND "
                      "name='" +
                          std::string(tables_->backup) + "'");
  if (find.step()) return true;
  error = "no backup table in " + path_ + ": run zvtool --install";
  return false;
}

int64_t CallBackup::backedUp() {
  sql::Statement count(*db_,
                       "SELECT COUNT(*) FROM " + std::string(tables_->backup));
  return count.step() ? count.int64(0) : 0;
}

bool CallBackup::restore(int count, int64_t& restored, std::string& error) {
  bool put = false;
  const bool emptied = transaction(error, [&] {
    const std::string table = tables_->table, backup = tables_->backup,
                      date = tables_->date;
    sql::Statement insert(*db_, "INSERT INTO " + table + " SELECT * FROM " +
                                    backup + " WHERE " + date + " < (SELECT " +
                                    date + " FROM " + table + " ORDER BY " +
                                    date + " ASC LIMIT 1) ORDER BY " + date +
                                    " DESC LIMIT ?");
    insert.bind(1, count);
    insert.step();
    put = insert.done();
    if (!put) error = path_ + ": " + db_->error();
    restored = put ? db_->changes() : 0;
    // Emptied whether or not the calls went back: a row that cannot go back
    // would otherwise be tried again on every sync.
    return run("DELETE FROM " + backup, error);
  });
  return put && emptied;
}

bool CallBackup::remove(double date, int64_t& removed, std::string& error) {
  return transaction(error, [&] {
    sql::Statement remove(*db_, "DELETE FROM " + std::string(tables_->backup) +
                                    " WHERE " + tables_->date + " = ?");
    remove.bind(1, date);
    remove.step();
    removed = db_->changes();
    if (remove.done()) return true;
    error = path_ + ": " + db_->error();
    return false;
  });
}

bool CallBackup::clear(int64_t& removed, std::string& error) {
  return transaction(error, [&] {
    if (!run("DELETE FROM " + std::string(tables_->backup), error))
      return false;
    removed = db_->changes();
    return true;
  });
}

}  // namespace zv::zvtool
