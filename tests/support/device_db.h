// SQLite helpers for tests that prepare and inspect device databases: run
// statements, read one column of a query's rows.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zv::testing {

// Runs statements on an existing database file (a host path).
inline void execSql(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr),
            SQLITE_OK)
      << path;
  char* error = nullptr;
  EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
      << (error ? error : "") << " in " << sql;
  sqlite3_free(error);
  sqlite3_close(db);
}

// The first column of every row of `sql`, as T (double or int64_t).
template <typename T>
std::vector<T> columnValues(const std::string& path, const std::string& sql) {
  std::vector<T> values;
  sqlite3* db = nullptr;
  sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* query = nullptr;
  sqlite3_prepare_v2(db, sql.c_str(), -1, &query, nullptr);
  while (sqlite3_step(query) == SQLITE_ROW) {
    if constexpr (std::is_floating_point_v<T>)
      values.push_back(sqlite3_column_double(query, 0));
    else
      values.push_back(sqlite3_column_int64(query, 0));
  }
  sqlite3_finalize(query);
  sqlite3_close(db);
  return values;
}

}  // namespace zv::testing
