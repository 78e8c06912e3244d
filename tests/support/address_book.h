// A small address book with exact names for suites that need particular
// contacts rather than a generated crowd: every number is filed under
// label 1, "_$!<Mobile>!$_". Needs the device generator library.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "devicegen/device_image.h"
#include "platform/db/platform_schema.h"

namespace zv::testing {

// A contact with one mobile number, typed as it is dialled.
inline DeviceContact mobileContact(int64_t id, std::string first,
                                   std::string last, std::string number) {
  DeviceContact c;
  c.recordId = id;
  c.first = std::move(first);
  c.last = std::move(last);
  c.phones = {{number, number, 1}};
  return c;
}

// Writes `contacts` as the address book of the device root `root`.
inline void writeMobileBook(const std::string& root,
                            std::vector<DeviceContact> contacts) {
  DevicePeople people;
  people.labels = {"_$!<Mobile>!$_"};
  people.contacts = std::move(contacts);
  const std::string book = root + platform_schema::kAddressBookPath;
  std::filesystem::create_directories(
      std::filesystem::path(book).parent_path());
  writeAddressBook(book, people, 1);
}

}  // namespace zv::testing
