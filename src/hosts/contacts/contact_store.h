// The contacts as the platform's address book hands them to its list and
// card screens: each person's record id, name parts, composite name (in the
// user's name order), phone numbers with their stored labels, and whether a
// picture is stored. Read from AddressBook.sqlitedb and
// AddressBookImages.sqlitedb under the current platform's device root; a
// missing database reads as an empty address book.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/db/contact_lookup.h"

namespace zv::hosts {

struct ContactPhone {
  std::string label;  // as stored: a built-in key ("_$!<Mobile>!$_") or text
  std::string value;
};

struct Contact {
  int32_t recordId = -1;
  std::string first, last, organization;
  // First and last name in the user's order; the organisation when both
  // are empty.
  std::string name;
  std::vector<ContactPhone> phones;
  bool hasImage = false;
};

// The composite name: two parts in the user's order, separated by a blank;
// a name written in ideographs reads family name first, as one word.
std::string compositeName(const std::string& first, const std::string& last,
                          const std::string& organization, bool lastFirst);

// Every person, sorted by composite name (persons without any name last).
std::vector<Contact> loadContacts();
// The persons holding one of `numbers` (the platform's rule below), in the
// same order: what a short list of numbers needs, read without reading
// every person.
std::vector<Contact> loadContactsOwning(
    const std::vector<std::string>& numbers);
std::optional<Contact> loadContact(int32_t recordId);
// The text a stored label shows (ABAddressBookCopyLocalizedLabel).
std::string labelText(const std::string& storedLabel);

// The contact one of whose phone numbers is a number (the platform's rule,
// platform/db/contact_lookup.h), with that phone's index: the first such
// phone in list order. The numbers are indexed once, so a lookup costs the
// same however long the list is. `contacts` must outlive this.
struct NumberOwner {
  Contact contact;
  size_t phone = 0;
};
class NumberOwners {
 public:
  explicit NumberOwners(const std::vector<Contact>& contacts);
  std::optional<NumberOwner> find(const std::string& number) const;

 private:
  const std::vector<Contact>& contacts_;
  std::vector<std::pair<size_t, size_t>> phones_;  // contact, phone
  platform_schema::SameNumberIndex index_;
};

// The stored thumbnail bytes (the smallest format), "" when none.
std::string contactImageData(int32_t recordId);

}  // namespace zv::hosts
