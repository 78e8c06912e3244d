// One SQLite database the device generator writes: opened fresh (any old
// file removed) or as it is, then filled in one transaction with no journal,
// since a half-written image is thrown away. Every failure throws
// std::runtime_error naming the file and SQLite's message. Statements made
// by prepare() live as long as the writer.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zv {

class SqliteWriter {
 public:
  enum class Open { kFresh, kExisting };

  SqliteWriter(const std::string& file, Open how)
      : file_(file), db_(nullptr, &sqlite3_close) {
    const bool fresh = how == Open::kFresh;
    if (fresh) {
      std::filesystem::remove(file);
      std::filesystem::remove(file + "-journal");
    }
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(
        file.c_str(), &db,
        SQLITE_OPEN_READWRITE | (fresh ? SQLITE_OPEN_CREATE : 0), nullptr);
    db_.reset(db);
    if (rc != SQLITE_OK) fail();
    exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN");
  }
  ~SqliteWriter() {
    for (sqlite3_stmt* s : statements_) sqlite3_finalize(s);
  }
  SqliteWriter(const SqliteWriter&) = delete;
  SqliteWriter& operator=(const SqliteWriter&) = delete;

  sqlite3* handle() const { return db_.get(); }
  const std::string& file() const { return file_; }

  void exec(const char* sql) {
    if (sqlite3_exec(db_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
      fail();
  }
  sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db_.get(), sql, -1, &s, nullptr) != SQLITE_OK)
      fail();
    statements_.push_back(s);
    return s;
  }
  // Steps a statement whose parameters are bound, then resets it.
  void run(sqlite3_stmt* s) {
    if (sqlite3_step(s) != SQLITE_DONE) fail();
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
  }
  int64_t lastId() const { return sqlite3_last_insert_rowid(db_.get()); }
  void commit() { exec("COMMIT"); }

  [[noreturn]] void fail() const {
    throw std::runtime_error(file_ + ": " +
                             (db_ ? sqlite3_errmsg(db_.get()) : "cannot open"));
  }

 private:
  std::string file_;
  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> db_;
  std::vector<sqlite3_stmt*> statements_;
};

// Binds text as it is, the empty string included.
inline void bindExactText(sqlite3_stmt* s, int i, const std::string& text) {
  sqlite3_bind_text(s, i, text.data(), static_cast<int>(text.size()),
                    SQLITE_TRANSIENT);
}

}  // namespace zv
