// Contacts for device roots in tests, made with the device generator: one
// mobile number each, written as the platform's address book (and, when
// asked, its pictures) under a device root, replacing what was there.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "devicegen/device_image.h"
#include "platform/db/platform_schema.h"

namespace zv::testing {

// A person with one number under the first label ("_$!<Mobile>!$_").
inline DeviceContact deviceContact(int64_t id, std::string first,
                                   std::string last, std::string number) {
  DeviceContact c;
  c.recordId = id;
  c.first = std::move(first);
  c.last = std::move(last);
  c.phones.push_back({number, number, 1});
  return c;
}

// Writes `contacts` as the address book under `root`; gives back the people
// it wrote.
inline DevicePeople writeDevicePeople(const std::string& root,
                                      std::vector<DeviceContact> contacts,
                                      bool pictures = false) {
  DevicePeople people;
  people.labels = {"_$!<Mobile>!$_"};
  people.contacts = std::move(contacts);
  const std::string book = root + platform_schema::kAddressBookPath;
  std::filesystem::create_directories(
      std::filesystem::path(book).parent_path());
  std::filesystem::remove(book);
  writeAddressBook(book, people, 1);
  if (pictures)
    writeAddressBookImages(root + platform_schema::kAddressBookImagesPath,
                           people);
  return people;
}

}  // namespace zv::testing
