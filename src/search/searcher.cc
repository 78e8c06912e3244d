#include "search/searcher.h"

#include <string>

#include "core/device.h"
#include "platform/process.h"

namespace zv {

ZVSearcher::ZVSearcher()
    : platform_(platform::current()),
      settings_(ZVPhoneSettings::sharedInstance()) {}

ZVSearcher::~ZVSearcher() {
  unregisiterAddressBookChangeCallback();
  if (t9Observer_) platform_.removeObserver(t9Observer_);
  platform_.cancelPrevious(this, "saveAddressBookChanged");
}

std::shared_ptr<ZVSearcher> ZVSearcher::create() {
  std::shared_ptr<ZVSearcher> searcher(new ZVSearcher());
  searcher->init();
  return searcher;
}

std::shared_ptr<ZVSearcher> ZVSearcher::sharedInstance() {
  return platform::Process::current().singleton<ZVSearcher>(&create);
}

void ZVSearcher::init() {
  loadData();
  // A new reading table invalidates every encoded name (and the priority
  // list is re-read with the next load).
  std::weak_ptr<ZVSearcher> weak = weak_from_this();
  t9Observer_ = platform_.observe(kT9ChangedNotification, [weak] {
    try {
      if (auto self = weak.lock()) {
        self->setAddressBookChanged();
        self->unloadPriority();
      }
    } catch (...) {
    }
  });
}

void ZVSearcher::loadData() {
  loadAddressBook();
  loadCallHistory();
  loadPriority();
  callocSearchs();
  regisiterAddressBookChangeCallback();
}

bool ZVSearcher::isNewPlatform() const { return UIDevice::OSVersion() >= 8.0f; }

bool ZVSearcher::lastNameFirst() const {
  switch (settings_->DialerNameOrder()) {
    case 0:
      return platform_.device().nameOrderLastFirst;
    case 2:
      return true;
    default:
      return false;
  }
}

void ZVSearcher::loadT9() {
  if (!t9hash_) {
    const std::string& name = settings_->DialerT9Database();
    if (!name.empty()) {
      static constexpr std::string_view kPlist = ".plist";
      if (name.size() >= kPlist.size() &&
          name.compare(name.size() - kPlist.size(), kPlist.size(), kPlist) ==
              0) {
        loadT9plist(t9hash_, platform_.path(kPlistTableDir + name));
      } else {
        t9hash_ = loadT9file(platform_.path(kTableDir + name));
      }
    }
  }
  // The user's corrections always apply last.
  loadT9plist(t9hash_, platform_.path(kUserTablePath));
}

void ZVSearcher::unloadT9() { t9hash_.reset(); }

}  // namespace zv
