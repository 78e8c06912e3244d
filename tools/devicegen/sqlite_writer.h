// One SQLite database the device generator writes, on the project's scoped
// wrapper (platform/db/sqlite_db.h): opened fresh (any old file removed) or
// as it is, then filled in one transaction with no journal, since a
// half-written image is thrown away. Every failure throws
// std::runtime_error naming the file and SQLite's message.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/db/sqlite_db.h"

namespace zv {

class SqliteWriter {
 public:
  enum class Open { kFresh, kExisting };

  SqliteWriter(const std::string& file, Open how)
      : file_(file),
        db_(prepareFile(file, how), how == Open::kFresh
                                        ? sql::Database::Mode::kCreate
                                        : sql::Database::Mode::kReadWrite) {
    if (!db_.ok()) fail();
    exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN");
  }
  SqliteWriter(const SqliteWriter&) = delete;
  SqliteWriter& operator=(const SqliteWriter&) = delete;

  sqlite3* handle() const { return db_.handle(); }
  const std::string& file() const { return file_; }

  void exec(const char* sql) {
    if (!db_.exec(sql)) fail();
  }
  sql::Statement prepare(std::string_view sql) {
    sql::Statement statement(db_, sql);
    if (!statement.ok()) fail();
    return statement;
  }
  // Runs a statement whose parameters are bound, then readies it for the
  // next row.
  void run(sql::Statement& statement) {
    statement.step();
    if (!statement.done()) fail();
    statement.reset();
  }
  int64_t lastId() const { return db_.lastInsertId(); }
  void commit() { exec("COMMIT"); }

  [[noreturn]] void fail() const {
    throw std::runtime_error(file_ + ": " + db_.error());
  }

 private:
  static const std::string& prepareFile(const std::string& file, Open how) {
    if (how == Open::kFresh) {
      std::filesystem::remove(file);
      std::filesystem::remove(file + "-journal");
    }
    return file;
  }

  std::string file_;
  sql::Database db_;
};

// Binds text, or NULL for an empty string (the platform leaves unset fields
// NULL).
inline void bindTextOrNull(sql::Statement& s, int i, const std::string& text) {
  if (text.empty())
    s.bindNull(i);
  else
    s.bindText(i, text);
}

}  // namespace zv
