// The address book as the recipient-group screen reads it (the platform's
// ABAddressBookCreateWithOptions handle): the number of people, the groups
// in the address book's order with their members, and the phone numbers of
// a set of people as checklist entries.
//
// create() opens the device's address-book database and keeps it open for
// the handle's life; it gives null when the database cannot be read, which
// the screen treats as having no address-book access.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/db/sqlite_db.h"

namespace zv {

class ABAddressBookHandle {
 public:
  struct Group {
    std::string name;              // "" when the group has none
    std::vector<int32_t> members;  // person record ids, in member order
  };

  static std::unique_ptr<ABAddressBookHandle> create();
  explicit ABAddressBookHandle(const std::string& hostPath);

  int personCount() const;
  std::vector<Group> groups() const;
  // Every person, in record order.
  std::vector<int32_t> allPeople() const;
  // One entry per phone number of each person, in the given order: the
  // number, the person's composite name, the localised phone label.
  std::vector<std::vector<std::string>> phoneEntries(
      const std::vector<int32_t>& people) const;

 private:
  sql::Database db_;
};

}  // namespace zv
