#include "hosts/contacts/contact_store.h"

#include <algorithm>
#include <map>
#include <set>

#include "platform/db/contact_lookup.h"
#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"

namespace zv::hosts {
namespace {

constexpr char kPersons[] =
    "SELECT ROWID, First, Last, Organization FROM ABPerson WHERE 1";
constexpr char kPhones[] =
    "SELECT m.record_id, l.value, m.value FROM ABMultiValue m LEFT JOIN "
    "ABMultiValueLabel l ON l.ROWID = m.label WHERE m.property = ?";
constexpr char kPhonesOrder[] = " ORDER BY m.record_id, m.identifier, m.UID";
constexpr char kPictures[] =
    "SELECT DISTINCT record_id FROM ABThumbnailImage WHERE length(data) > 0";
constexpr char kPhoneValues[] =
    "SELECT record_id, value FROM ABMultiValue WHERE property = ? AND "
    "value IS NOT NULL";
constexpr char kPicture[] =
    "SELECT data FROM ABThumbnailImage WHERE record_id = ? AND "
    "length(data) > 0 ORDER BY format ASC LIMIT 1";

bool ideographic(const std::string& s) {
  return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0x80;
  });
}

std::string path(const char* devicePath) {
  return platform::current().path(devicePath);
}

}  // namespace

std::string labelText(const std::string& stored) {
  return copyLocalizedLabel(stored);
}

NumberOwners::NumberOwners(const std::vector<Contact>& contacts)
    : contacts_(contacts) {
  for (size_t c = 0; c < contacts.size(); ++c)
    for (size_t p = 0; p < contacts[c].phones.size(); ++p) {
      index_.add(contacts[c].phones[p].value, phones_.size());
      phones_.emplace_back(c, p);
    }
}

std::optional<NumberOwner> NumberOwners::find(const std::string& number) const {
  auto at = index_.first(number);
  if (!at) return std::nullopt;
  return NumberOwner{contacts_[phones_[*at].first], phones_[*at].second};
}

std::string compositeName(const std::string& first, const std::string& last,
                          const std::string& organization, bool lastFirst) {
  // A name written in ideographs reads family name first, as one word.
  const bool chinese = ideographic(first) && ideographic(last);
  const std::string& a = lastFirst || chinese ? last : first;
  const std::string& b = lastFirst || chinese ? first : last;
  if (a.empty() && b.empty()) return organization;
  if (a.empty() || b.empty()) return a + b;
  return a + (chinese ? "" : " ") + b;
}

namespace {

// " AND <column> IN (...)" for the persons of `only`; nothing for everyone.
std::string restrictTo(const char* column, const std::set<int32_t>* only) {
  if (!only) return "";
  std::string sql = std::string(" AND ") + column + " IN (";
  for (int32_t id : *only) sql += std::to_string(id) + ",";
  sql.back() = ')';
  return sql;
}

// Every person, or only those of `only` (read through the tables' record
// indexes), sorted as the list shows them.
std::vector<Contact> load(const std::set<int32_t>* only) {
  if (only && only->empty()) return {};
  const bool lastFirst = platform::current().device().nameOrderLastFirst;
  std::map<int32_t, Contact> byId;
  sql::Database book(path(platform_schema::kAddressBookPath));
  {
    sql::Statement persons(book, kPersons + restrictTo("ROWID", only));
    while (persons.step()) {
      Contact c;
      c.recordId = static_cast<int32_t>(persons.int64(0));
      c.first = persons.text(1).value_or("");
      c.last = persons.text(2).value_or("");
      c.organization = persons.text(3).value_or("");
      c.name = compositeName(c.first, c.last, c.organization, lastFirst);
      byId[c.recordId] = std::move(c);
    }
  }
  {
    sql::Statement phones(
        book, kPhones + restrictTo("m.record_id", only) + kPhonesOrder);
    phones.bind(1, platform_schema::kPhoneProperty);
    while (phones.step()) {
      auto it = byId.find(static_cast<int32_t>(phones.int64(0)));
      if (it == byId.end()) continue;
      it->second.phones.push_back(
          {phones.text(1).value_or(""), phones.text(2).value_or("")});
    }
  }
  {
    sql::Database images(path(platform_schema::kAddressBookImagesPath));
    sql::Statement pictures(images, kPictures + restrictTo("record_id", only));
    while (pictures.step()) {
      auto it = byId.find(static_cast<int32_t>(pictures.int64(0)));
      if (it != byId.end()) it->second.hasImage = true;
    }
  }
  std::vector<Contact> out;
  for (auto& [id, c] : byId) out.push_back(std::move(c));
  std::stable_sort(out.begin(), out.end(),
                   [](const Contact& a, const Contact& b) {
                     if (a.name.empty() != b.name.empty())
                       return b.name.empty();
                     return a.name < b.name;
                   });
  return out;
}

}  // namespace

std::vector<Contact> loadContacts() { return load(nullptr); }

std::vector<Contact> loadContactsOwning(
    const std::vector<std::string>& numbers) {
  // The few numbers are indexed, each stored number is looked up in them:
  // one pass over the phone column instead of every person read and sorted.
  platform_schema::SameNumberIndex wanted;
  for (size_t i = 0; i < numbers.size(); ++i) wanted.add(numbers[i], i);
  std::set<int32_t> owners;
  {
    sql::Database book(path(platform_schema::kAddressBookPath));
    sql::Statement phones(book, kPhoneValues);
    phones.bind(1, platform_schema::kPhoneProperty);
    while (phones.step())
      if (wanted.first(phones.text(1).value_or("")))
        owners.insert(static_cast<int32_t>(phones.int64(0)));
  }
  return load(&owners);
}

std::optional<Contact> loadContact(int32_t recordId) {
  const std::set<int32_t> one{recordId};
  auto found = load(&one);
  if (found.empty()) return std::nullopt;
  return std::move(found.front());
}

std::string contactImageData(int32_t recordId) {
  sql::Database images(path(platform_schema::kAddressBookImagesPath));
  sql::Statement picture(images, kPicture);
  picture.bind(1, recordId);
  if (!picture.step()) return "";
  return std::string(picture.blob(0));
}

}  // namespace zv::hosts
