#include "platform/db/platform_schema.h"

#include <filesystem>
#include <system_error>

#include "platform/db/sqlite_db.h"

namespace zv::platform_schema {
namespace {

constexpr char kAddressBookSql[] = R"sql(
CREATE TABLE IF NOT EXISTS ABPerson (
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
  First TEXT, Last TEXT, Middle TEXT,
  FirstPhonetic TEXT, MiddlePhonetic TEXT, LastPhonetic TEXT,
  Organization TEXT, Department TEXT, Note TEXT, Kind INTEGER,
  Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT,
  FirstSort TEXT, LastSort TEXT,
  CreationDate INTEGER, ModificationDate INTEGER,
  CompositeNameFallback TEXT, ExternalIdentifier TEXT,
  ExternalModificationTag TEXT, ExternalUUID TEXT, StoreID INTEGER,
  DisplayName TEXT, ExternalRepresentation BLOB,
  FirstSortSection TEXT, LastSortSection TEXT,
  FirstSortLanguageIndex INTEGER DEFAULT 2147483647,
  LastSortLanguageIndex INTEGER DEFAULT 2147483647,
  PersonLink INTEGER DEFAULT -1, ImageURI TEXT,
  IsPreferredName INTEGER DEFAULT 1, guid TEXT, PhonemeData TEXT);
CREATE TABLE IF NOT EXISTS ABMultiValue (
  UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER,
  identifier INTEGER, label INTEGER, value TEXT, guid TEXT);
CREATE INDEX IF NOT EXISTS ABMultiValueRecordIDIndex
  ON ABMultiValue(record_id);
CREATE TABLE IF NOT EXISTS ABMultiValueLabel (value TEXT, UNIQUE(value));
CREATE TABLE IF NOT EXISTS ABMultiValueEntryKey (value TEXT, UNIQUE(value));
CREATE TABLE IF NOT EXISTS ABMultiValueEntry (
  parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));
CREATE TABLE IF NOT EXISTS ABGroup (
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT,
  StoreID INTEGER, ExternalModificationTag TEXT, ExternalRepresentation BLOB,
  ExternalUUID TEXT, guid TEXT);
CREATE TABLE IF NOT EXISTS ABGroupMembers (
  UID INTEGER PRIMARY KEY, group_id INTEGER, member_type INTEGER,
  member_id INTEGER, UNIQUE(group_id, member_type, member_id));
CREATE TABLE IF NOT EXISTS _SqliteDatabaseProperties (
  key TEXT, value TEXT, UNIQUE(key));
)sql";

constexpr char kAddressBookImagesSql[] = R"sql(
CREATE TABLE IF NOT EXISTS ABThumbnailImage (
  record_id INTEGER, format INTEGER, derived_from_format INTEGER,
  data BLOB, crop_x INTEGER, crop_y INTEGER, crop_width INTEGER,
  crop_height INTEGER, UNIQUE(record_id, format));
CREATE TABLE IF NOT EXISTS ABFullSizeImage (
  record_id INTEGER, crop_x INTEGER, crop_y INTEGER, crop_width INTEGER,
  crop_height INTEGER, data BLOB, UNIQUE(record_id));
CREATE TABLE IF NOT EXISTS _SqliteDatabaseProperties (
  key TEXT, value TEXT, UNIQUE(key));
)sql";

// ZCALLRECORD's columns in the store's order. Backup copies must keep this
// order because rows move between the tables with SELECT *.
constexpr char kCallRecordColumns[] = R"sql((
  Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER,
  ZANSWERED INTEGER, ZCALLTYPE INTEGER, ZDISCONNECTED_CAUSE INTEGER,
  ZFACE_TIME_DATA INTEGER, ZNUMBER_AVAILABILITY INTEGER,
  ZORIGINATED INTEGER, ZREAD INTEGER, ZDATE TIMESTAMP, ZDURATION FLOAT,
  ZADDRESS VARCHAR, ZDEVICE_ID VARCHAR, ZISO_COUNTRY_CODE VARCHAR,
  ZNAME VARCHAR, ZUNIQUE_ID VARCHAR, ZSERVICE_PROVIDER VARCHAR))sql";

constexpr char kCallHistoryStoreExtraSql[] = R"sql(
CREATE INDEX IF NOT EXISTS ZCALLRECORD_ZDATE_INDEX ON ZCALLRECORD (ZDATE);
CREATE TABLE IF NOT EXISTS Z_PRIMARYKEY (
  Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
CREATE TABLE IF NOT EXISTS Z_METADATA (
  Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB);
)sql";

constexpr char kCallColumns[] = R"sql((
  ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER,
  duration INTEGER, flags INTEGER, id INTEGER, name TEXT,
  country_code TEXT, network_code TEXT, read INTEGER, assisted INTEGER,
  face_time_data BLOB, originalAddress TEXT))sql";

constexpr char kCallHistoryDbExtraSql[] = R"sql(
CREATE INDEX IF NOT EXISTS date_index ON call(date);
CREATE TABLE IF NOT EXISTS _SqliteDatabaseProperties (
  key TEXT, value TEXT, UNIQUE(key));
)sql";

std::string createTable(std::string_view table, std::string_view columns) {
  std::string sql = "CREATE TABLE IF NOT EXISTS ";
  sql += table;
  sql += ' ';
  sql += columns;
  sql += ";\n";
  return sql;
}

}  // namespace

std::string callRecordTableSql(std::string_view table) {
  return createTable(table, kCallRecordColumns);
}

std::string callTableSql(std::string_view table) {
  return createTable(table, kCallColumns);
}

std::string schemaSql(Database which) {
  switch (which) {
    case Database::kAddressBook:
      return kAddressBookSql;
    case Database::kAddressBookImages:
      return kAddressBookImagesSql;
    case Database::kCallHistoryStore:
      return callRecordTableSql("ZCALLRECORD") + kCallHistoryStoreExtraSql;
    case Database::kCallHistoryDb:
      return callTableSql("call") + kCallHistoryDbExtraSql;
  }
  return {};
}

bool createSchema(sqlite3* db, Database which, std::string* error) {
  char* message = nullptr;
  if (sqlite3_exec(db, schemaSql(which).c_str(), nullptr, nullptr, &message) ==
      SQLITE_OK) {
    return true;
  }
  if (error) *error = message ? message : sqlite3_errmsg(db);
  sqlite3_free(message);
  return false;
}

bool createDatabase(const std::string& file, Database which,
                    std::string* error) {
  std::error_code ec;
  std::filesystem::path parent = std::filesystem::path(file).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent, ec);
  if (ec) {
    if (error) *error = parent.string() + ": " + ec.message();
    return false;
  }
  sql::Database db(file, sql::Database::Mode::kCreate);
  if (!db.ok()) {
    if (error) *error = file + ": " + db.error();
    return false;
  }
  std::string message;
  const bool ok = createSchema(db.handle(), which, &message);
  if (!ok && error) *error = file + ": " + message;
  return ok;
}

}  // namespace zv::platform_schema
