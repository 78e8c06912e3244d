// The four platform databases of a generated device image.
#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <tuple>

#include "devicegen/device_image.h"
#include "devicegen/device_image_pictures.h"
#include "devicegen/device_image_random.h"
#include "devicegen/sqlite_writer.h"
#include "platform/db/platform_schema.h"

namespace zv {
namespace {

namespace ps = platform_schema;

// A fresh database file with the platform's schema.
class Writer : public SqliteWriter {
 public:
  Writer(const std::string& file, ps::Database schema)
      : SqliteWriter(file, Open::kFresh) {
    std::string error;
    if (!ps::createSchema(handle(), schema, &error))
      throw std::runtime_error(file + ": " + error);
  }
};

// Binds text, or NULL for an empty string (the platform leaves unset
// fields NULL).
void bindText(sqlite3_stmt* s, int i, const std::string& text) {
  if (text.empty()) {
    sqlite3_bind_null(s, i);
  } else {
    bindExactText(s, i, text);
  }
}

void bindLabel(sqlite3_stmt* s, int i, int label) {
  if (label == 0) {
    sqlite3_bind_null(s, i);
  } else {
    sqlite3_bind_int(s, i, label);
  }
}

std::string uuid(DeviceRandom& random) {
  uint64_t a = random.next(), b = random.next();
  char out[40];
  std::snprintf(out, sizeof out, "%08X-%04X-%04X-%04X-%012llX",
                static_cast<unsigned>(a >> 32),
                static_cast<unsigned>((a >> 16) & 0xFFFF),
                static_cast<unsigned>(0x4000 | (a & 0x0FFF)),
                static_cast<unsigned>(0x8000 | ((b >> 48) & 0x3FFF)),
                static_cast<unsigned long long>(b & 0xFFFFFFFFFFFFull));
  return out;
}

}  // namespace

void writeAddressBook(const std::string& file, const DevicePeople& people,
                      uint64_t seed) {
  Writer w(file, ps::Database::kAddressBook);
  DeviceRandom random(seed ^ 0xA0D7E55B00C0FFEEull);
  sqlite3_stmt* label =
      w.prepare("INSERT INTO ABMultiValueLabel (ROWID, value) VALUES (?, ?)");
  for (size_t i = 0; i < people.labels.size(); ++i) {
    sqlite3_bind_int64(label, 1, static_cast<int64_t>(i + 1));
    bindText(label, 2, people.labels[i]);
    w.run(label);
  }
  sqlite3_stmt* person = w.prepare(
      "INSERT INTO ABPerson (ROWID, First, Last, Middle, Organization, "
      "Department, Note, Kind, Birthday, JobTitle, Nickname, CreationDate, "
      "ModificationDate, StoreID, guid) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?)");
  sqlite3_stmt* value = w.prepare(
      "INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, "
      "value, guid) VALUES (?, ?, ?, ?, ?, ?, ?)");
  int64_t uid = 0;
  for (const DeviceContact& c : people.contacts) {
    sqlite3_bind_int64(person, 1, c.recordId);
    bindText(person, 2, c.first);
    bindText(person, 3, c.last);
    bindText(person, 4, c.middle);
    bindText(person, 5, c.organization);
    bindText(person, 6, c.department);
    bindText(person, 7, c.note);
    sqlite3_bind_int(person, 8, c.kind);
    bindText(person, 9, c.birthday ? std::to_string(*c.birthday) : "");
    bindText(person, 10, c.jobTitle);
    bindText(person, 11, c.nickname);
    sqlite3_bind_int64(person, 12, c.created);
    sqlite3_bind_int64(person, 13, c.created);
    bindText(person, 14, uuid(random) + ":ABPerson");
    w.run(person);

    int identifier = 0;
    auto addValue = [&](int property, int labelId, const std::string& text) {
      sqlite3_bind_int64(value, 1, ++uid);
      sqlite3_bind_int64(value, 2, c.recordId);
      sqlite3_bind_int(value, 3, property);
      sqlite3_bind_int(value, 4, identifier++);
      bindLabel(value, 5, labelId);
      bindText(value, 6, text);
      bindText(value, 7, uuid(random));
      w.run(value);
    };
    for (const DevicePhone& p : c.phones)
      addValue(ps::kPhoneProperty, p.label, p.text);
    for (const DeviceEmail& e : c.emails)
      addValue(ps::kEmailProperty, e.label, e.address);
  }
  w.commit();
}

int writeAddressBookImages(const std::string& file,
                           const DevicePeople& people) {
  Writer w(file, ps::Database::kAddressBookImages);
  sqlite3_stmt* thumb = w.prepare(
      "INSERT INTO ABThumbnailImage (record_id, format, derived_from_format, "
      "data, crop_x, crop_y, crop_width, crop_height) "
      "VALUES (?, ?, NULL, ?, 0, 0, ?, ?)");
  // Pictures repeat (initial, colour, encoding); encode each once.
  std::map<std::tuple<char, uint32_t, bool>, std::string> encoded;
  int pictures = 0;
  for (const DeviceContact& c : people.contacts) {
    if (c.picture == DevicePicture::kNone) continue;
    bool jpeg = c.picture == DevicePicture::kJpeg;
    auto key = std::make_tuple(c.initial, c.colour, jpeg);
    auto it = encoded.find(key);
    if (it == encoded.end())
      it = encoded
               .emplace(key,
                        device_pictures::thumbnail(c.initial, c.colour, jpeg))
               .first;
    const std::string& data = it->second;
    int format = ps::kThumbnailFormat;
    auto addRow = [&](const void* bytes, int size) {
      sqlite3_bind_int64(thumb, 1, c.recordId);
      sqlite3_bind_int(thumb, 2, format++);
      sqlite3_bind_blob(thumb, 3, bytes, size, SQLITE_STATIC);
      sqlite3_bind_int(thumb, 4, device_pictures::kThumbnailSize);
      sqlite3_bind_int(thumb, 5, device_pictures::kThumbnailSize);
      w.run(thumb);
    };
    if (c.emptyThumbnailRow) addRow("", 0);
    addRow(data.data(), static_cast<int>(data.size()));
    ++pictures;
  }
  w.commit();
  return pictures;
}

void writeCallHistoryStore(const std::string& file, const DevicePeople& people,
                           uint64_t seed) {
  Writer w(file, ps::Database::kCallHistoryStore);
  DeviceRandom random(seed ^ 0xCA11CA11CA11CA11ull);
  // Core Data bookkeeping: the entity and its highest primary key.
  constexpr int kCallRecordEntity = ps::kCallRecordEntity;
  sqlite3_stmt* key = w.prepare(
      "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME, Z_SUPER, Z_MAX) "
      "VALUES (?, 'CallRecord', 0, ?)");
  sqlite3_bind_int(key, 1, kCallRecordEntity);
  sqlite3_bind_int64(key, 2, static_cast<int64_t>(people.calls.size()));
  w.run(key);
  sqlite3_stmt* meta = w.prepare(
      "INSERT INTO Z_METADATA (Z_VERSION, Z_UUID, Z_PLIST) VALUES (1, ?, "
      "NULL)");
  bindText(meta, 1, uuid(random));
  w.run(meta);

  sqlite3_stmt* call = w.prepare(
      "INSERT INTO ZCALLRECORD (Z_PK, Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, "
      "ZDISCONNECTED_CAUSE, ZFACE_TIME_DATA, ZNUMBER_AVAILABILITY, "
      "ZORIGINATED, ZREAD, ZDATE, ZDURATION, ZADDRESS, ZDEVICE_ID, "
      "ZISO_COUNTRY_CODE, ZNAME, ZUNIQUE_ID, ZSERVICE_PROVIDER) "
      "VALUES (?, ?, 1, ?, ?, 0, NULL, ?, ?, ?, ?, ?, ?, NULL, 'cn', NULL, ?, "
      "'com.apple.Telephony')");
  int64_t pk = 0;
  for (const DeviceCall& c : people.calls) {
    sqlite3_bind_int64(call, 1, ++pk);
    sqlite3_bind_int(call, 2, kCallRecordEntity);
    sqlite3_bind_int(call, 3, c.answered ? 1 : 0);
    sqlite3_bind_int(call, 4, ps::kCallTypeVoice);
    // 1: the caller withheld the number.
    sqlite3_bind_int(call, 5, c.address.empty() ? 1 : 0);
    sqlite3_bind_int(call, 6, c.originated ? 1 : 0);
    sqlite3_bind_int(call, 7, c.read ? 1 : 0);
    sqlite3_bind_double(call, 8, c.date);
    sqlite3_bind_double(call, 9, c.duration);
    // A withheld number is stored as an empty text, not NULL.
    bindExactText(call, 10, c.address);
    bindText(call, 11, uuid(random));
    w.run(call);
  }
  w.commit();
}

void writeCallHistoryDb(const std::string& file, const DevicePeople& people) {
  Writer w(file, ps::Database::kCallHistoryDb);
  sqlite3_stmt* call = w.prepare(
      "INSERT INTO call (ROWID, address, date, duration, flags, id, name, "
      "country_code, network_code, read, assisted, face_time_data, "
      "originalAddress) "
      "VALUES (?, ?, ?, ?, ?, ?, NULL, '460', '00', ?, 0, NULL, ?)");
  int64_t rowid = 0;
  for (const DeviceCall& c : people.calls) {
    sqlite3_bind_int64(call, 1, ++rowid);
    bindExactText(call, 2, c.address);
    sqlite3_bind_int64(
        call, 3,
        static_cast<int64_t>(std::floor(c.date + ps::kReferenceDateOffset)));
    sqlite3_bind_int(call, 4, c.duration);
    sqlite3_bind_int(
        call, 5,
        c.originated ? ps::kCallFlagsOutgoing : ps::kCallFlagsIncoming);
    sqlite3_bind_int64(call, 6, c.recordId);
    sqlite3_bind_int(call, 7, c.read ? 1 : 0);
    bindExactText(call, 8, c.address);
    w.run(call);
  }
  w.commit();
}

}  // namespace zv
