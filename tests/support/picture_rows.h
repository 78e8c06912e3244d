// Contact pictures for tests: rows of the platform's address-book picture
// database under a device root (the database is made when missing), as raw
// bytes or as a one-colour PNG.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/ui/image.h"

namespace zv::testing {

// Stores `data` as record `recordId`'s picture at `format`, replacing a row
// already there.
inline void addPictureRow(const std::string& root, int recordId, int format,
                          const std::string& data) {
  const std::string file = root + platform_schema::kAddressBookImagesPath;
  ASSERT_TRUE(platform_schema::createDatabase(
      file, platform_schema::Database::kAddressBookImages));
  sql::Database db(file, sql::Database::Mode::kReadWrite);
  sql::Statement insert(db,
                        "INSERT OR REPLACE INTO ABThumbnailImage "
                        "(record_id, format, data) VALUES (?, ?, ?)");
  insert.bind(1, recordId);
  insert.bind(2, format);
  insert.bindBlob(3, data);
  insert.step();
  EXPECT_TRUE(insert.done()) << db.error();
}

// A `w` x `h` pixel PNG of one colour as record `recordId`'s picture.
inline void addColourPicture(const std::string& root, int recordId,
                             ui::Pixel colour, int format = 0, int w = 80,
                             int h = 80) {
  addPictureRow(root, recordId, format,
                ui::Image::filled(w, h, 1, colour).encodePng());
}

}  // namespace zv::testing
