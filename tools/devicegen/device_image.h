// Builds a complete device root for tests, benchmarks and demonstrations:
// the platform's address-book, picture and call-history databases (in the
// platform's own layouts, see platform/db/platform_schema.h) filled with
// generated contacts and calls (device_image_people.h), the installed data
// under /Library/Zorvel/ (reading table, area database, placeholder avatar) and
// the settings file.
//
// Deterministic: the same options give the same rows and, SQLite writing the
// same pages for the same statements, byte-identical database files. The
// databases are written in one transaction each with prepared statements,
// so 100,000 contacts take seconds. Files it writes are replaced; anything
// else under the root is left alone.
#pragma once

#include <cstdint>
#include <string>

#include "devicegen/device_image_people.h"

namespace zv {

struct DeviceImageOptions {
  int contacts = 300;
  int calls = 200;
  uint64_t seed = 1;
  // Host paths of data to install; empty leaves that item out. The table is
  // installed as /Library/Zorvel/Table/PinYin.txt, the area database as
  // /Library/Zorvel/Area/<areaName>.
  std::string tableFile;
  std::string areaFile;
  std::string areaName = "China";
  // Copied to /var/mobile/Library/Preferences/zorvel.plist; when empty a
  // small settings file is written instead (enabled, MyInfo = record 1, the
  // owner's card).
  std::string settingsFile;
};

struct DeviceImageSummary {
  int contacts = 0;
  int phoneNumbers = 0;
  int pictures = 0;
  int calls = 0;
  int missedCalls = 0;
};

// Writes the device under the host folder `root` (created if missing).
// Throws std::runtime_error with a one-line message on any failure
// (negative counts, unreadable source files, SQLite errors).
DeviceImageSummary createDeviceImage(const std::string& root,
                                     const DeviceImageOptions& options);

// The database writers, for callers that bring their own people.
void writeAddressBook(const std::string& file, const DevicePeople& people,
                      uint64_t seed);
// Returns the number of contacts that got a picture.
int writeAddressBookImages(const std::string& file, const DevicePeople& people);
void writeCallHistoryStore(const std::string& file, const DevicePeople& people,
                           uint64_t seed);
void writeCallHistoryDb(const std::string& file, const DevicePeople& people);
// The Messages data under `root`: the messages database, address-book groups
// (into the address book already written) and the check-mark pictures
// (kCheckMarkSize pixels square, drawn for scale 2).
inline constexpr int kCheckMarkSize = 44;
void writeMessagesData(const std::string& root, const DevicePeople& people);

}  // namespace zv
