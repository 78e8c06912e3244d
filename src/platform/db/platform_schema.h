// The phone platform's own SQLite databases, which the search engine reads,
// the telephony writes call records into and the call-history tools change:
// their device paths (defined here once), table layouts and the
// few fixed values stored in them (multi-value property numbers, label keys,
// the reference date of the platform's timestamps).
//
// The layouts are the platform's, trimmed to the columns that matter here
// plus the bookkeeping columns that a real database carries beside them, so
// that the queries this system runs on a phone run unchanged on a device root
// built from these schemas. createSchema() makes the tables in an open
// connection (IF NOT EXISTS, so it is safe on a database that has them);
// createDatabase() creates or opens a file and does the same.
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace zv::platform_schema {

// Device paths (below the device root).
inline constexpr char kAddressBookPath[] =
    "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";
inline constexpr char kAddressBookImagesPath[] =
    "/var/mobile/Library/AddressBook/AddressBookImages.sqlitedb";
// System version 8.0 and later (a Core Data store).
inline constexpr char kCallHistoryStorePath[] =
    "/var/mobile/Library/CallHistoryDB/CallHistory.storedata";
// System versions before 8.0.
inline constexpr char kCallHistoryDbPath[] =
    "/var/wireless/Library/CallHistory/call_history.db";

// ABMultiValue.property values.
inline constexpr int kPhoneProperty = 3;
inline constexpr int kEmailProperty = 4;

// Label keys the platform stores in ABMultiValueLabel.value for its built-in
// labels; user-made labels are stored as typed.
inline constexpr char kLabelMobile[] = "_$!<Mobile>!$_";
inline constexpr char kLabelIPhone[] = "iPhone";
inline constexpr char kLabelHome[] = "_$!<Home>!$_";
inline constexpr char kLabelWork[] = "_$!<Work>!$_";
inline constexpr char kLabelMain[] = "_$!<Main>!$_";
inline constexpr char kLabelHomeFax[] = "_$!<HomeFAX>!$_";
inline constexpr char kLabelWorkFax[] = "_$!<WorkFAX>!$_";
inline constexpr char kLabelOtherFax[] = "_$!<OtherFAX>!$_";
inline constexpr char kLabelPager[] = "_$!<Pager>!$_";
inline constexpr char kLabelOther[] = "_$!<Other>!$_";

// ABThumbnailImage.format: the small thumbnail the lists use. Larger
// formats sort after it.
inline constexpr int kThumbnailFormat = 0;

// The platform's timestamps (ABPerson.Birthday, ZCALLRECORD.ZDATE) count
// seconds from 2001-01-01 00:00 UTC; call_history.db's `date` counts from
// 1970. Unix time = reference time + kReferenceDateOffset.
inline constexpr double kReferenceDateOffset = 978307200.0;

// call_history.db `flags`: bit 0 set for an outgoing call; 4 marks a voice
// call.
inline constexpr int kCallFlagsIncoming = 4;
inline constexpr int kCallFlagsOutgoing = 5;
// call_history.db `flags` bit of a video (FaceTime) call.
inline constexpr int kCallFlagVideo = 16;
// ZCALLRECORD.ZCALLTYPE of an ordinary voice call and of a video call.
inline constexpr int kCallTypeVoice = 1;
inline constexpr int kCallTypeVideo = 8;
// The Core Data entity number of ZCALLRECORD (its Z_ENT and its row in
// Z_PRIMARYKEY).
inline constexpr int kCallRecordEntity = 1;

enum class Database {
  kAddressBook,        // ABPerson, ABMultiValue, ABMultiValueLabel, ...
  kAddressBookImages,  // ABThumbnailImage, ABFullSizeImage
  kCallHistoryStore,   // ZCALLRECORD and the Core Data bookkeeping tables
  kCallHistoryDb,      // call
};

// The CREATE statements of one database, separated by ";".
//
// AddressBook.sqlitedb:
//   ABPerson(ROWID, First, Last, Middle, ..., Organization, Department, Note,
//            Kind, Birthday, JobTitle, Nickname, ...). Birthday is TEXT with
//            decimal seconds since 2001 (read it with sqlite3_column_double).
//   ABMultiValue(UID, record_id, property, identifier, label, value, guid):
//            label is the ROWID of an ABMultiValueLabel row or NULL.
//   ABMultiValueLabel(value), keyed by its implicit ROWID.
// AddressBookImages.sqlitedb:
//   ABThumbnailImage(record_id, format, derived_from_format, data, crop_*),
//   ABFullSizeImage(record_id, crop_*, data).
// CallHistory.storedata:
//   ZCALLRECORD(Z_PK, Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, ...,
//               ZORIGINATED, ZREAD, ZDATE REAL, ZDURATION REAL, ZADDRESS,
//               ZDEVICE_ID, ZISO_COUNTRY_CODE, ZNAME, ZUNIQUE_ID, ...),
//   Z_PRIMARYKEY, Z_METADATA.
// call_history.db:
//   call(ROWID, address, date, duration, flags, id, name, country_code,
//        network_code, read, assisted, face_time_data, originalAddress):
//        date in unix seconds, id the contact's record id or -1.
std::string schemaSql(Database which);

// The CREATE statement of a table with ZCALLRECORD's columns in the same
// order (what `INSERT INTO ZCALLRECORD SELECT * FROM <table>` needs), and the
// same for call_history.db's `call`. Used for the backup tables ZVZCALLRECORD
// and `deleted`.
std::string callRecordTableSql(std::string_view table);
std::string callTableSql(std::string_view table);

// Runs schemaSql(which) in `db`. On failure returns false and, when `error`
// is given, sets it to SQLite's message.
bool createSchema(sqlite3* db, Database which, std::string* error = nullptr);

// Creates (or opens) the database file at the host path `file`, creating
// missing parent directories, and makes its tables. Returns false with a
// message in `error` on failure.
bool createDatabase(const std::string& file, Database which,
                    std::string* error = nullptr);

}  // namespace zv::platform_schema
