// The address-book-changed flag: set in memory at once by the platform's
// change signal and by "ZVT9Changed", stored in zorvel.keypad.plist 1.0 s
// after the last of a burst so that other processes re-encode too, and
// cleared only by loadAddressBook.
#include "core/settings.h"
#include "search/searcher.h"

namespace zv {

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

void ZVSearcher::setBoolSettingsForKey(std::string_view key, bool enable) {
  setObject(Value(enable), key, kKeypadFlagsPath);
}

}  // namespace zv
