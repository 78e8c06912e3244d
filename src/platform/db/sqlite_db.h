// Scoped SQLite handles, the one way the project talks to SQLite: a
// connection that is closed and a statement that is finalised on every path,
// whatever the caller returns early on or throws. Header-only, so that the
// zvtool helper and the device generator can use it without linking the
// search library.
//
// Failures never throw: a connection that did not open, or a statement that
// did not prepare, reports ok() false, and every later call on it is a
// harmless no-op that yields the neutral value (false, 0, empty).
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace zv::sql {

class Database {
 public:
  // kCreate makes the file when it does not exist (the device generator).
  enum class Mode { kReadOnly, kReadWrite, kCreate };

  // Opens an existing database file (a host path); creates one only with
  // kCreate. The platform's own processes write these files too, so a
  // locked database is retried for up to `busyMs` (a second by default)
  // before a statement gives up; 0 gives up at once, for callers that must
  // not wait.
  explicit Database(const std::string& path, Mode mode = Mode::kReadOnly,
                    int busyMs = 1000) {
    const int flags = mode == Mode::kReadOnly ? SQLITE_OPEN_READONLY
                      : mode == Mode::kCreate
                          ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                          : SQLITE_OPEN_READWRITE;
    ok_ = sqlite3_open_v2(path.c_str(), &db_, flags | SQLITE_OPEN_NOMUTEX,
                          nullptr) == SQLITE_OK;
    if (ok_) sqlite3_busy_timeout(db_, busyMs);
  }
  ~Database() { sqlite3_close(db_); }  // also after a failed open
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  bool ok() const { return ok_; }
  sqlite3* handle() const { return ok_ ? db_ : nullptr; }
  // Runs statements that return no rows; false on any failure.
  bool exec(const char* sql) {
    return ok_ &&
           sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  std::string error() const {
    return db_ ? sqlite3_errmsg(db_) : "out of memory";
  }
  int64_t changes() const { return ok_ ? sqlite3_changes(db_) : 0; }
  // The rowid of the last row inserted on this connection.
  int64_t lastInsertId() const {
    return ok_ ? sqlite3_last_insert_rowid(db_) : 0;
  }

 private:
  sqlite3* db_ = nullptr;
  bool ok_ = false;
};

class Statement {
 public:
  Statement(const Database& db, std::string_view sql) {
    if (db.handle())
      sqlite3_prepare_v2(db.handle(), sql.data(), static_cast<int>(sql.size()),
                         &stmt_, nullptr);
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  Statement(Statement&& other) noexcept
      : stmt_(std::exchange(other.stmt_, nullptr)), last_(other.last_) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool ok() const { return stmt_ != nullptr; }

  // Parameters count from 1.
  bool bind(int index, int64_t value) {
    return stmt_ && sqlite3_bind_int64(stmt_, index, value) == SQLITE_OK;
  }
  bool bind(int index, int value) { return bind(index, int64_t{value}); }
  bool bind(int index, double value) {
    return stmt_ && sqlite3_bind_double(stmt_, index, value) == SQLITE_OK;
  }
  // Text is copied, so the argument need not outlive the statement.
  bool bindText(int index, std::string_view text) {
    return stmt_ && sqlite3_bind_text(stmt_, index, text.data(),
                                      static_cast<int>(text.size()),
                                      SQLITE_TRANSIENT) == SQLITE_OK;
  }
  bool bindNull(int index) {
    return stmt_ && sqlite3_bind_null(stmt_, index) == SQLITE_OK;
  }
  // The bytes are copied.
  bool bindBlob(int index, std::string_view bytes) {
    return stmt_ && sqlite3_bind_blob(stmt_, index, bytes.data(),
                                      static_cast<int>(bytes.size()),
                                      SQLITE_TRANSIENT) == SQLITE_OK;
  }
  // Makes the statement ready to run again with new parameters.
  void reset() {
    if (!stmt_) return;
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
    last_ = SQLITE_OK;
  }

  // True while a row comes back; false at the end and on failure (then
  // done() tells them apart).
  bool step() {
    if (!stmt_) return false;
    last_ = sqlite3_step(stmt_);
    return last_ == SQLITE_ROW;
  }
  // The last step() ran the statement to its end without error.
  bool done() const { return last_ == SQLITE_DONE; }

  // Columns count from 0, on the current row.
  int columnCount() const { return stmt_ ? sqlite3_column_count(stmt_) : 0; }
  bool isNull(int column) const {
    return !stmt_ || sqlite3_column_type(stmt_, column) == SQLITE_NULL;
  }
  int64_t int64(int column) const {
    return stmt_ ? sqlite3_column_int64(stmt_, column) : 0;
  }
  double real(int column) const {
    return stmt_ ? sqlite3_column_double(stmt_, column) : 0;
  }
  // The column as text; nullopt for NULL.
  std::optional<std::string> text(int column) const {
    if (isNull(column)) return std::nullopt;
    const auto* p = sqlite3_column_text(stmt_, column);
    const int n = sqlite3_column_bytes(stmt_, column);
    return std::string(p ? reinterpret_cast<const char*>(p) : "", p ? n : 0);
  }
  // The column as C text: up to its first NUL byte, empty for NULL; valid
  // until the next step.
  std::string_view cText(int column) const {
    const auto* p =
        stmt_
            ? reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column))
            : nullptr;
    return p ? std::string_view(p) : std::string_view();
  }
  // The column's bytes, valid until the next step; empty for NULL.
  std::string_view blob(int column) const {
    if (isNull(column)) return {};
    const void* p = sqlite3_column_blob(stmt_, column);
    const int n = sqlite3_column_bytes(stmt_, column);
    return p ? std::string_view(static_cast<const char*>(p), n)
             : std::string_view();
  }

 private:
  sqlite3_stmt* stmt_ = nullptr;
  int last_ = SQLITE_OK;
};

}  // namespace zv::sql
