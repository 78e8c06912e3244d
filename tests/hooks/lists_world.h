// A device for the Recents and Contacts end-to-end tests: the China area
// database, three contacts (two with pictures), call histories of both
// generations with their backup tables, on the shared harness (hosts
// started with the extension loaded).
#pragma once

#include <memory>
#include <string>

#include "hooks/modules.h"
#include "hosts/contacts/contacts_app.h"
#include "hosts/phone/app.h"
#include "platform/db/platform_schema.h"
#include "platform/sim/device_presets.h"
#include "support/call_rows.h"
#include "support/device_db.h"
#include "support/picture_rows.h"
#include "support/world.h"

namespace zv::testing {

namespace schema = platform_schema;

inline constexpr ui::Pixel kRed{255, 0, 0, 255};
inline constexpr ui::Pixel kBlue{0, 0, 255, 255};
inline constexpr ui::Pixel kGrey{128, 128, 128, 255};

// Record 1 李雷 (Beijing mobile, picture), 2 Han Meimei (Shanghai fixed
// line, no picture), 3 Wang Wu (Shanghai mobile, picture).
inline constexpr char kLiLei[] = "13001000000";
inline constexpr char kHanMeimei[] = "02112345678";
inline constexpr char kWangWu[] = "13002100000";
inline constexpr char kStranger[] = "13001001234";  // Beijing, no contact

class ListsWorld : public World {
 protected:
  ListsWorld() {
    installChinaDatabase();
    const std::string book = root_ + schema::kAddressBookPath;
    schema::createDatabase(book, schema::Database::kAddressBook);
    execSql(book,
            "INSERT INTO ABPerson (ROWID, First, Last) VALUES (1, '雷', '李'),"
            "(2, 'Meimei', 'Han'), (3, 'Wu', 'Wang');"
            "INSERT INTO ABMultiValueLabel (ROWID, value) VALUES "
            "(1, '_$!<Mobile>!$_'), (2, '_$!<Home>!$_');"
            "INSERT INTO ABMultiValue (UID, record_id, property, identifier, "
            "label, value) VALUES (1, 1, 3, 0, 1, '130 0100 0000'),"
            "(2, 2, 3, 0, 2, '021-12345678'), (3, 3, 3, 0, 1, '13002100000')");
    testing::addColourPicture(root_, 1, kRed);
    testing::addColourPicture(root_, 3, kBlue);
    writeDeviceFile("/Library/Zorvel/avatar.png",
                    ui::Image::filled(60, 60, 1, kGrey).encodePng());
    schema::createDatabase(root_ + schema::kCallHistoryStorePath,
                           schema::Database::kCallHistoryStore);
    schema::createDatabase(root_ + schema::kCallHistoryDbPath,
                           schema::Database::kCallHistoryDb);
    execSql(root_ + schema::kCallHistoryStorePath,
            schema::callRecordTableSql("ZVZCALLRECORD"));
    execSql(root_ + schema::kCallHistoryDbPath,
            schema::callTableSql("deleted"));
  }

  void modernCall(int pk, double date, const std::string& number,
                  double duration = 0, bool outgoing = false,
                  const char* table = "ZCALLRECORD") {
    insertModernCall(root_, pk, date, number, duration, outgoing, table);
  }
  void legacyCall(int rowid, int64_t date, const std::string& number,
                  int duration = 0, int contact = -1) {
    insertLegacyCall(root_, rowid, date, number, duration, 4,
                     std::to_string(contact));
  }
  std::vector<double> modernDates(const char* table) {
    return columnValues<double>(
        root_ + schema::kCallHistoryStorePath,
        std::string("SELECT ZDATE FROM ") + table + " ORDER BY ZDATE");
  }
};

}  // namespace zv::testing
