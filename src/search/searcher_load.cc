// Choosing between the cache and the address-book database, and reading and
// encoding the contacts from the database.
#include <string>

#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "search/person_arena.h"
#include "search/searcher.h"
#include "search/searcher_encode.h"

namespace zv {

namespace {

constexpr char kContactsQuery[] =
    "SELECT ABMultiValue.record_id,ABPerson.First,ABPerson.Last,"
    "ABPerson.Organization,ABMultiValue.Value,ABMultiValue.label FROM "
    "ABPerson,ABMultiValue WHERE ABPerson.ROWID=ABMultiValue.record_id AND "
    "property=3 ORDER BY ABMultiValue.record_id DESC";

// A text column as the C API hands it out: up to its first NUL byte, empty
// for NULL.
std::string_view cText(sqlite3_stmt* stmt, int column) {
  const auto* p =
      reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
  return p ? std::string_view(p) : std::string_view();
}

}  // namespace

void ZVSearcher::loadAddressBook() {
  if (settings_->DialerEnableCache() && !isAddressBookChanged()) {
    loadAddressBookCache();
    if (!persons_.empty()) {
      addressBookChanged_ = false;
      setBoolSettingsForKey(kChangedKey, false);
      return;
    }
  }
  loadAddressBookDb();
  addressBookChanged_ = false;
  setBoolSettingsForKey(kChangedKey, false);
}

void ZVSearcher::loadAddressBookDb() {
  persons_.clear();
  {
    sql::Database db(platform_.path(platform_schema::kAddressBookPath));
    if (db.ok()) {
      loadT9();
      const bool lastFirst = lastNameFirst();
      const bool company = settings_->DialerCompany();
      EncodedName encoded;
      PersonArena arena;
      sqlite3_stmt* stmt = nullptr;
      if (sqlite3_prepare_v2(db.handle(), kContactsQuery, -1, &stmt, nullptr) ==
          SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW) {
          if (sqlite3_column_type(stmt, 0) == SQLITE_NULL) continue;
          auto person = arena.make();
          person->setRecordId(sqlite3_column_int(stmt, 0));
          std::string organization;
          const bool hasOrganization =
              company && sqlite3_column_type(stmt, 3) != SQLITE_NULL;
          if (hasOrganization) organization = cText(stmt, 3);
          std::string name = composeDisplayName(
              cText(stmt, 1), cText(stmt, 2),
              hasOrganization ? &organization : nullptr, lastFirst);
          const bool hasNumber = sqlite3_column_type(stmt, 4) != SQLITE_NULL;
          // A label column holding text converts as its leading integer.
          if (sqlite3_column_type(stmt, 5) != SQLITE_NULL)
            person->setPhoneType(sqlite3_column_int(stmt, 5));
          encodeName(name, t9hash_.get(), encoded);
          person->setTexts(hasNumber ? cText(stmt, 4) : std::string_view(),
                           encoded.jianPin, encoded.english, encoded.pinYin,
                           encoded.first, name, hasNumber);
          person->setNameLength(encoded.nameLength);
          persons_.push_back(std::move(person));
        }
      }
      sqlite3_finalize(stmt);
      unloadT9();
    }
  }
  cacheAddressBook();
  updateAddressBookDict();
}

void ZVSearcher::updateAddressBookDict() { personsDict_.build(persons_); }

ZVSearcher::PersonRef ZVSearcher::personForNumber(
    std::string_view number) const {
  const PersonRef* found = personsDict_.find(persons_, number);
  return found ? *found : nullptr;
}

}  // namespace zv
