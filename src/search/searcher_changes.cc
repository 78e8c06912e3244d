// The address-book-changed flag: set in memory at once by the platform's
// change signal and by "ZVT9Changed", stored in zorvel.keypad.plist 1.0 s
// after the last of a burst so that other processes re-encode too, and
// cleared only by loadAddressBook.
#include <sys/stat.h>

#include <ctime>
#include <string>

#include "core/settings.h"
#include "platform/db/platform_schema.h"
#include "search/searcher.h"

namespace zv {

namespace {

// Modification time of a host file; nullopt when it is not there.
std::optional<timespec> modified(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return std::nullopt;
  return st.st_mtim;
}

bool later(const timespec& a, const timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

}  // namespace

std::optional<timespec> ZVSearcher::addressBookStamp() const {
  // SQLite in write-ahead mode leaves a committed change in the -wal file
  // until a checkpoint; the newer of the two dates the last change.
  const std::string db = platform_.path(platform_schema::kAddressBookPath);
  auto stamp = modified(db);
  if (!stamp) return std::nullopt;
  if (auto wal = modified(db + "-wal"); wal && later(*wal, *stamp)) stamp = wal;
  return stamp;
}

bool ZVSearcher::isCacheStale() const {
  // Changes made while no process watched the address book (another tool,
  // a restore, a device written anew) never raised the change signal: a
  // cache older than the database, or one left without a database, is
  // not trusted.
  auto cache = modified(platform_.path(kCachePath));
  if (!cache) return false;  // nothing to trust or distrust
  auto stamp = addressBookStamp();
  return !stamp || later(*stamp, *cache);
}

void ZVSearcher::regisiterAddressBookChangeCallback() {
  if (address_book_observer_) return;
  std::weak_ptr<ZVSearcher> weak = weak_from_this();
  address_book_observer_ = platform_.observe(
      platform::kAddressBookExternalChangeNotification, [weak] {
        if (auto self = weak.lock()) self->setAddressBookChanged();
      });
}

void ZVSearcher::unregisiterAddressBookChangeCallback() {
  if (!address_book_observer_) return;
  platform_.removeObserver(address_book_observer_);
  address_book_observer_ = 0;
}

void ZVSearcher::setAddressBookChanged() {
  addressBookChanged_ = true;
  platform_.cancelPrevious(this, "saveAddressBookChanged");
  std::weak_ptr<ZVSearcher> weak = weak_from_this();
  platform_.performAfterDelay(this, "saveAddressBookChanged",
                              kChangedStoreDelay, [weak] {
                                if (auto self = weak.lock())
                                  self->saveAddressBookChanged();
                              });
}

void ZVSearcher::saveAddressBookChanged() {
  setBoolSettingsForKey(kChangedKey, true);
}

bool ZVSearcher::isAddressBookChanged() const {
  return addressBookChanged_ || getBoolSettingsForKey(kChangedKey);
}

bool ZVSearcher::getBoolSettingsForKey(std::string_view key) {
  return objectForKey(key, kKeypadFlagsPath).boolValue();
}

bool ZVSearcher::setBoolSettingsForKey(std::string_view key, bool enable) {
  return setObject(Value(enable), key, kKeypadFlagsPath);
}

}  // namespace zv
