// Choosing between the cache and the address-book database, and reading and
// encoding the contacts from the database.
#include <fcntl.h>
#include <sys/stat.h>

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

}  // namespace

void ZVSearcher::loadAddressBook() {
  if (settings_->DialerEnableCache() && !isAddressBookChanged() &&
      !isCacheStale()) {
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
  // The database's date as it was before reading: the cache gets it, so
  // that a change made while we read still finds the cache older.
  const auto stamp = addressBookStamp();
  {
    sql::Database db(platform_.path(platform_schema::kAddressBookPath));
    if (db.ok()) {
      loadT9();
      const bool lastFirst = lastNameFirst();
      const bool company = settings_->DialerCompany();
      EncodedName encoded;
      PersonArena arena;
      sql::Statement rows(db, kContactsQuery);
      while (rows.step()) {
        if (rows.isNull(0)) continue;
        auto person = arena.make();
        person->setRecordId(static_cast<int>(rows.int64(0)));
        std::string organization;
        const bool hasOrganization = company && !rows.isNull(3);
        if (hasOrganization) organization = rows.cText(3);
        std::string name = composeDisplayName(
            rows.cText(1), rows.cText(2),
            hasOrganization ? &organization : nullptr, lastFirst);
        const bool hasNumber = !rows.isNull(4);
        // A label column holding text converts as its leading integer.
        if (!rows.isNull(5))
          person->setPhoneType(static_cast<int>(rows.int64(5)));
        encodeName(name, t9hash_.get(), encoded);
        person->setTexts(hasNumber ? rows.cText(4) : std::string_view(),
                         encoded.jianPin, encoded.english, encoded.pinYin,
                         encoded.first, name, hasNumber);
        person->setNameLength(encoded.nameLength);
        persons_.push_back(std::move(person));
      }
      unloadT9();
    }
  }
  cacheAddressBook();
  if (stamp) {
    const timespec times[2] = {{0, UTIME_OMIT}, *stamp};
    ::utimensat(AT_FDCWD, platform_.path(kCachePath).c_str(), times, 0);
  }
  updateAddressBookDict();
}

void ZVSearcher::updateAddressBookDict() { personsDict_.build(persons_); }

ZVSearcher::PersonRef ZVSearcher::personForNumber(
    std::string_view number) const {
  const PersonRef* found = personsDict_.find(persons_, number);
  return found ? *found : nullptr;
}

}  // namespace zv
