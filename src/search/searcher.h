// ZVSearcher: the dial-pad search engine of one host process.
//
// It keeps every phone number of every contact as a ZVPerson with its name
// encoded into keypad strings (from the address-book database, or from its
// own cache file "/Library/Zorvel/persons" when the address book has not
// changed), the distinct recently called numbers (newest first) and the
// priority list (exact typed number -> display name). search() ranks the
// persons that contain a typed key into nine classes; the highlight helpers
// give the part of a row's name or number to mark.
//
// A per-process singleton (sharedInstance). It observes "ZVT9Changed" and
// the platform's address-book change signal; the changed flag lives in
// memory and in "AddressBookChanged" of zorvel.keypad.plist (stored 1.0 s
// after a burst of changes) so that other processes reload too. Every
// database or file failure leaves the list concerned empty; nothing is
// reported. Main thread only.
#pragma once

#include <time.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/highlight_range.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "platform/value.h"
#include "search/number_index.h"
#include "search/person.h"
#include "search/t9_table.h"

namespace zv {

class ZVSearcher : public std::enable_shared_from_this<ZVSearcher> {
 public:
  using PersonRef = std::shared_ptr<ZVPerson>;
  using PersonList = std::vector<PersonRef>;

  // Device paths of the system's own files (the platform's databases are in
  // platform/db/platform_schema.h).
  static constexpr char kCachePath[] = "/Library/Zorvel/persons";
  static constexpr char kPriorityPath[] =
      "/var/mobile/Library/Preferences/zorvel.priority.plist";
  static constexpr char kDefaultPriorityPath[] =
      "/Library/Zorvel/Default/zorvel.priority.plist";
  static constexpr char kKeypadFlagsPath[] =
      "/var/mobile/Library/Preferences/zorvel.keypad.plist";
  static constexpr char kTableDir[] = "/Library/Zorvel/Table/";
  static constexpr char kPlistTableDir[] = "/Library/Zorvel/T9/";
  static constexpr char kUserTablePath[] =
      "/var/mobile/Library/Preferences/zorvel.t9.plist";
  static constexpr char kT9ChangedNotification[] = "ZVT9Changed";
  static constexpr char kChangedKey[] = "AddressBookChanged";
  static constexpr double kChangedStoreDelay = 1.0;

  static constexpr int kClasses = 9;
  static constexpr size_t kClassCapacity = 2000;
  static constexpr size_t kOverflowCapacity = 5000;

  // The process's searcher: created, loaded (loadData) and subscribed to
  // "ZVT9Changed" on first use.
  static std::shared_ptr<ZVSearcher> sharedInstance();
  // A searcher set up exactly as sharedInstance's but not registered in the
  // process (benchmarks and tools that want several).
  static std::shared_ptr<ZVSearcher> create();
  ~ZVSearcher();
  ZVSearcher(const ZVSearcher&) = delete;
  ZVSearcher& operator=(const ZVSearcher&) = delete;

  // --- Loading (searcher.cc, searcher_load.cc) ---------------------------
  // loadAddressBook, loadCallHistory, loadPriority, callocSearchs,
  // regisiterAddressBookChangeCallback.
  void loadData();
  // The cache when allowed and non-empty, else the database; clears the
  // changed flag (memory and file).
  void loadAddressBook();
  // Reads and encodes every contact number, then writes the cache.
  void loadAddressBookDb();
  // Reads the cache file; an unopenable file leaves the persons untouched.
  void loadAddressBookCache();
  void cacheAddressBook();
  void updateAddressBookDict();
  void loadCallHistory();
  void loadPriority();
  void unloadPriority();

  // --- Reading table (searcher.cc) ----------------------------------------
  // Builds _t9hash from DialerT9Database and the user overlay.
  void loadT9();
  void unloadT9();
  const T9Table* t9hash() const { return t9hash_.get(); }

  // --- Change tracking (searcher_changes.cc) -------------------------------
  void regisiterAddressBookChangeCallback();
  void unregisiterAddressBookChangeCallback();
  // Marks the address book changed now; stores the flag 1.0 s after the
  // last of a burst of calls.
  void setAddressBookChanged();
  void saveAddressBookChanged();
  bool isAddressBookChanged() const;
  // True when the cache file is older than the address-book database (or
  // the database is gone): a change made while nobody watched.
  bool isCacheStale() const;
  bool addressBookChanged() const { return addressBookChanged_; }
  void setAddressBookChanged(bool changed) { addressBookChanged_ = changed; }
  static bool getBoolSettingsForKey(std::string_view key);
  // False when the file could not be written (it then keeps its value).
  static bool setBoolSettingsForKey(std::string_view key, bool enable);

  // --- Search (searcher_search.cc) -----------------------------------------
  // Runs a search for `key` and returns the number of results.
  size_t search(std::string_view key);
  // Tests every person of `list` against the key and files the matches.
  void search(const PersonList& list, const char* key, size_t length);
  const PersonList& results() const { return results_; }
  size_t resultsCount() const { return results_.size(); }
  void clearSearch();
  void callocSearchs();
  void freeSearchs();

  // --- Highlight (searcher_highlight.cc) -----------------------------------
  // Range in the display name (UTF-16 units) that the key matched.
  static ZVRange getHighlightNameRange(std::string_view name,
                                       std::string_view inputNumber,
                                       const ZVPerson* person);
  // Range in the number string (bytes) that the key matched.
  static ZVRange getHighlightNumberRange(std::string_view number,
                                         std::string_view inputNumber);
  // Maps a range of space-free positions / of words onto the display name.
  static ZVRange getShiftSpaceNameRange(ZVRange range, std::string_view name);
  static ZVRange getShiftSpaceEnglishNameRange(ZVRange range,
                                               std::string_view name);

  // --- State ---------------------------------------------------------------
  const PersonList& persons() const { return persons_; }
  const PersonList& callHistory() const { return callHistory_; }
  // The person of persons() whose number is `number` (the last of them
  // when several share it), or null.
  PersonRef personForNumber(std::string_view number) const;
  const std::optional<Dict>& priorityDict() const { return priorityDict_; }
  const std::string& lastKey() const { return lastKey_; }
  const ZVPhoneSettings& settings() const { return *settings_; }

 private:
  ZVSearcher();
  void init();
  // Whether to put the last name first when composing display names.
  bool lastNameFirst() const;
  bool isNewPlatform() const;
  // Last change of the address-book database (its -wal file included), or
  // nullopt when there is none.
  std::optional<timespec> addressBookStamp() const;
  void file(int cls, const PersonRef* person);

  platform::Platform& platform_;
  std::shared_ptr<ZVPhoneSettings> settings_;
  PersonList persons_;
  NumberIndex personsDict_;  // over persons_
  PersonList callHistory_;
  std::optional<Dict> priorityDict_;
  bool addressBookChanged_ = false;
  std::unique_ptr<T9Table> t9hash_;

  PersonList results_;
  std::string lastKey_;
  // The nine ranking classes: references into the lists being searched.
  std::array<std::vector<const PersonRef*>, kClasses> cache_searchs_;
  std::array<uint32_t, kClasses> cache_searchs_count_{};
  bool searchs_allocated_ = false;

  // Subscriptions (0 = none).
  platform::ObserverToken t9Observer_ = 0;
  platform::ObserverToken address_book_observer_ = 0;
};

}  // namespace zv
