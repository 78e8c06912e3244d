#include "hosts/contacts/contact_store.h"

#include <algorithm>
#include <map>

#include "platform/db/contact_lookup.h"
#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"

namespace zv::hosts {
namespace {

constexpr char kPersons[] =
    "SELECT ROWID, First, Last, Organization FROM ABPerson";
constexpr char kPhones[] =
    "SELECT m.record_id, l.value, m.value FROM ABMultiValue m LEFT JOIN "
    "ABMultiValueLabel l ON l.ROWID = m.label WHERE m.property = ? "
    "ORDER BY m.record_id, m.identifier, m.UID";
constexpr char kPictures[] =
    "SELECT DISTINCT record_id FROM ABThumbnailImage WHERE length(data) > 0";
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

std::vector<Contact> loadContacts() {
  const bool lastFirst = platform::current().device().nameOrderLastFirst;
  std::map<int32_t, Contact> byId;
  sql::Database book(path(platform_schema::kAddressBookPath));
  {
    sql::Statement persons(book, kPersons);
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
    sql::Statement phones(book, kPhones);
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
    sql::Statement pictures(images, kPictures);
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

std::optional<Contact> loadContact(int32_t recordId) {
  for (Contact& c : loadContacts())
    if (c.recordId == recordId) return std::move(c);
  return std::nullopt;
}

std::string contactImageData(int32_t recordId) {
  sql::Database images(path(platform_schema::kAddressBookImagesPath));
  sql::Statement picture(images, kPicture);
  picture.bind(1, recordId);
  if (!picture.step()) return "";
  return std::string(picture.blob(0));
}

}  // namespace zv::hosts
