// The four platform databases of a generated device image.
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

void bindLabel(sql::Statement& s, int i, int label) {
  if (label == 0)
    s.bindNull(i);
  else
    s.bind(i, label);
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
  sql::Statement label =
      w.prepare("INSERT INTO ABMultiValueLabel (ROWID, value) VALUES (?, ?)");
  for (size_t i = 0; i < people.labels.size(); ++i) {
    label.bind(1, static_cast<int64_t>(i + 1));
    bindTextOrNull(label, 2, people.labels[i]);
    w.run(label);
  }
  sql::Statement person = w.prepare(
      "INSERT INTO ABPerson (ROWID, First, Last, Middle, Organization, "
      "Department, Note, Kind, Birthday, JobTitle, Nickname, CreationDate, "
      "ModificationDate, StoreID, guid) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?)");
  sql::Statement value = w.prepare(
      "INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, "
      "value, guid) VALUES (?, ?, ?, ?, ?, ?, ?)");
  int64_t uid = 0;
  for (const DeviceContact& c : people.contacts) {
    person.bind(1, c.recordId);
    bindTextOrNull(person, 2, c.first);
    bindTextOrNull(person, 3, c.last);
    bindTextOrNull(person, 4, c.middle);
    bindTextOrNull(person, 5, c.organization);
    bindTextOrNull(person, 6, c.department);
    bindTextOrNull(person, 7, c.note);
    person.bind(8, c.kind);
    bindTextOrNull(person, 9, c.birthday ? std::to_string(*c.birthday) : "");
    bindTextOrNull(person, 10, c.jobTitle);
    bindTextOrNull(person, 11, c.nickname);
    person.bind(12, c.created);
    person.bind(13, c.created);
    bindTextOrNull(person, 14, uuid(random) + ":ABPerson");
    w.run(person);

    int identifier = 0;
    auto addValue = [&](int property, int labelId, const std::string& text) {
      value.bind(1, ++uid);
      value.bind(2, c.recordId);
      value.bind(3, property);
      value.bind(4, identifier++);
      bindLabel(value, 5, labelId);
      bindTextOrNull(value, 6, text);
      bindTextOrNull(value, 7, uuid(random));
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
  sql::Statement thumb = w.prepare(
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
    auto addRow = [&](std::string_view bytes) {
      thumb.bind(1, c.recordId);
      thumb.bind(2, format++);
      thumb.bindBlob(3, bytes);
      thumb.bind(4, device_pictures::kThumbnailSize);
      thumb.bind(5, device_pictures::kThumbnailSize);
      w.run(thumb);
    };
    if (c.emptyThumbnailRow) addRow("");
    addRow(data);
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
  sql::Statement key = w.prepare(
      "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME, Z_SUPER, Z_MAX) "
      "VALUES (?, 'CallRecord', 0, ?)");
  key.bind(1, kCallRecordEntity);
  key.bind(2, static_cast<int64_t>(people.calls.size()));
  w.run(key);
  sql::Statement meta = w.prepare(
      "INSERT INTO Z_METADATA (Z_VERSION, Z_UUID, Z_PLIST) VALUES (1, ?, "
      "NULL)");
  bindTextOrNull(meta, 1, uuid(random));
  w.run(meta);

  sql::Statement call = w.prepare(
      "INSERT INTO ZCALLRECORD (Z_PK, Z_ENT, Z_OPT, ZANSWERED, ZCALLTYPE, "
      "ZDISCONNECTED_CAUSE, ZFACE_TIME_DATA, ZNUMBER_AVAILABILITY, "
      "ZORIGINATED, ZREAD, ZDATE, ZDURATION, ZADDRESS, ZDEVICE_ID, "
      "ZISO_COUNTRY_CODE, ZNAME, ZUNIQUE_ID, ZSERVICE_PROVIDER) "
      "VALUES (?, ?, 1, ?, ?, 0, NULL, ?, ?, ?, ?, ?, ?, NULL, 'cn', NULL, ?, "
      "'com.apple.Telephony')");
  int64_t pk = 0;
  for (const DeviceCall& c : people.calls) {
    call.bind(1, ++pk);
    call.bind(2, kCallRecordEntity);
    call.bind(3, c.answered ? 1 : 0);
    call.bind(4, ps::kCallTypeVoice);
    // 1: the caller withheld the number.
    call.bind(5, c.address.empty() ? 1 : 0);
    call.bind(6, c.originated ? 1 : 0);
    call.bind(7, c.read ? 1 : 0);
    call.bind(8, c.date);
    // The store keeps the duration as a real number.
    call.bind(9, static_cast<double>(c.duration));
    // A withheld number is stored as an empty text, not NULL.
    call.bindText(10, c.address);
    bindTextOrNull(call, 11, uuid(random));
    w.run(call);
  }
  w.commit();
}

void writeCallHistoryDb(const std::string& file, const DevicePeople& people) {
  Writer w(file, ps::Database::kCallHistoryDb);
  sql::Statement call = w.prepare(
      "INSERT INTO call (ROWID, address, date, duration, flags, id, name, "
      "country_code, network_code, read, assisted, face_time_data, "
      "originalAddress) "
      "VALUES (?, ?, ?, ?, ?, ?, NULL, '460', '00', ?, 0, NULL, ?)");
  int64_t rowid = 0;
  for (const DeviceCall& c : people.calls) {
    call.bind(1, ++rowid);
    call.bindText(2, c.address);
    call.bind(
        3, static_cast<int64_t>(std::floor(c.date + ps::kReferenceDateOffset)));
    call.bind(4, c.duration);
    call.bind(5, static_cast<int>(c.originated ? ps::kCallFlagsOutgoing
                                               : ps::kCallFlagsIncoming));
    call.bind(6, c.recordId);
    call.bind(7, c.read ? 1 : 0);
    call.bindText(8, c.address);
    w.run(call);
  }
  w.commit();
}

}  // namespace zv
