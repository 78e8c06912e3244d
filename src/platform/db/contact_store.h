// Contacts that live in another address book (Evolution Data Server, a
// vCard file) kept in the device's own address-book databases, so that
// search, blocking and caller information read them like any contact.
//
// Each contact carries an external identifier, stored in
// ABPerson.ExternalIdentifier: storing a contact whose identifier is
// already there updates that record in place (its record id, which
// settings such as MyInfo and the call history point at, stays); a new one
// gets a new record. Records without an external identifier (made on the
// device itself) are never touched. Everything is written in one
// transaction per database, so readers see the old book or the new one.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform_schema {

struct ExternalContact {
  std::string externalId;       // "eds:<book>/<uid>", "vcard:<uid>"
  std::string modificationTag;  // the source's revision, "" when unknown
  int kind = 0;                 // 0 person, 1 organization
  std::string first, last, middle, prefix, suffix;
  std::string organization, department, jobTitle, nickname, note;
  std::optional<double> birthday;  // seconds since 2001-01-01 UTC
  struct Labelled {
    std::string label;  // as the platform stores it ("_$!<Mobile>!$_")
    std::string value;
  };
  std::vector<Labelled> phones, emails;
  std::string photo;  // encoded picture (JPEG, PNG), "" for none
};

struct StoreSummary {
  int added = 0, updated = 0, removed = 0, unchanged = 0;
};

// Stores `contacts` into the device under the host folder `root`; then
// removes every stored external record that `mayRemove` accepts and that
// `contacts` did not name (none when it is empty). The databases are
// created when missing. Throws std::runtime_error with one line.
StoreSummary storeContacts(
    const std::string& root, const std::vector<ExternalContact>& contacts,
    const std::function<bool(const std::string& externalId)>& mayRemove = {});

}  // namespace zv::platform_schema
