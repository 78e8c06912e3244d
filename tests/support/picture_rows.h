// Contact pictures for tests: rows of the platform's address-book picture
// database under a device root (the database is made when missing), as raw
// bytes or as a one-colour PNG.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "platform/db/platform_schema.h"
#include "platform/ui/image.h"

namespace zv::testing {

// Stores `data` as record `recordId`'s picture at `format`, replacing a row
// already there.
inline void addPictureRow(const std::string& root, int recordId, int format,
                          const std::string& data) {
  const std::string file = root + platform_schema::kAddressBookImagesPath;
  ASSERT_TRUE(platform_schema::createDatabase(
      file, platform_schema::Database::kAddressBookImages));
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(db,
                     "INSERT OR REPLACE INTO ABThumbnailImage "
                     "(record_id, format, data) VALUES (?, ?, ?)",
                     -1, &insert, nullptr);
  sqlite3_bind_int(insert, 1, recordId);
  sqlite3_bind_int(insert, 2, format);
  sqlite3_bind_blob(insert, 3, data.data(), static_cast<int>(data.size()),
                    SQLITE_TRANSIENT);
  EXPECT_EQ(sqlite3_step(insert), SQLITE_DONE);
  sqlite3_finalize(insert);
  sqlite3_close(db);
}

// A `w` x `h` pixel PNG of one colour as record `recordId`'s picture.
inline void addColourPicture(const std::string& root, int recordId,
                             ui::Pixel colour, int format = 0, int w = 80,
                             int h = 80) {
  addPictureRow(root, recordId, format,
                ui::Image::filled(w, h, 1, colour).encodePng());
}

}  // namespace zv::testing
