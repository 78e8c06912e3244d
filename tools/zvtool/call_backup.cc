#include "call_backup.h"

#include <filesystem>
#include <memory>
#include <vector>

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
    const std::string table = tables_->table, backup = tables_->backup;
    // BEFORE DELETE: the row is still there to be copied whole with SELECT
    // *, which keeps the column order that restoring relies on. A row that
    // was backed up before (deleted, restored, deleted again) replaces its
    // older copy.
    return run("CREATE TABLE IF NOT EXISTS " + backup + " (" + definition + ")",
               error) &&
           run("CREATE TRIGGER IF NOT EXISTS zvtool_backup_" + table +
                   " BEFORE DELETE ON " + table + " BEGIN DELETE FROM " +
                   backup + " WHERE " + key + " = OLD." + key +
                   "; INSERT INTO " + backup + " SELECT * FROM " + table +
                   " WHERE " + key + " = OLD." + key + "; END",
               error);
  });
}

bool CallBackup::restore(int count, std::string& error) {
  return transaction(error, [&] {
    const std::string table = tables_->table, backup = tables_->backup,
                      date = tables_->date;
    sql::Statement insert(*db_, "INSERT INTO " + table + " SELECT * FROM " +
                                    backup + " WHERE " + date + " < (SELECT " +
                                    date + " FROM " + table + " ORDER BY " +
                                    date + " ASC LIMIT 1) ORDER BY " + date +
                                    " DESC LIMIT ?");
    insert.bind(1, count);
    insert.step();
    if (!insert.done()) {
      error = path_ + ": " + db_->error();
      return false;
    }
    return run("DELETE FROM " + backup, error);
  });
}

bool CallBackup::remove(double date, std::string& error) {
  return transaction(error, [&] {
    sql::Statement remove(*db_, "DELETE FROM " + std::string(tables_->backup) +
                                    " WHERE " + tables_->date + " = ?");
    remove.bind(1, date);
    remove.step();
    if (remove.done()) return true;
    error = path_ + ": " + db_->error();
    return false;
  });
}

bool CallBackup::clear(std::string& error) {
  return transaction(error, [&] {
    return run("DELETE FROM " + std::string(tables_->backup), error);
  });
}

}  // namespace zv::zvtool
