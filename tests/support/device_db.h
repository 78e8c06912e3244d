// SQLite helpers for tests that prepare and inspect device databases: run
// statements, read one column of a query's rows.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/db/sqlite_db.h"

namespace zv::testing {

// Runs statements on an existing database file (a host path).
inline void execSql(const std::string& path, const std::string& sql) {
  sql::Database db(path, sql::Database::Mode::kReadWrite);
  ASSERT_TRUE(db.ok()) << path;
  EXPECT_TRUE(db.exec(sql.c_str())) << db.error() << " in " << sql;
}

// The first column of every row of `sql`, as T (double or int64_t).
template <typename T>
std::vector<T> columnValues(const std::string& path, const std::string& sql) {
  std::vector<T> values;
  sql::Database db(path);
  sql::Statement query(db, sql);
  while (query.step()) {
    if constexpr (std::is_floating_point_v<T>)
      values.push_back(query.real(0));
    else
      values.push_back(query.int64(0));
  }
  return values;
}

}  // namespace zv::testing
