// The picture half of ZVAddressBook: the cache, the thumbnail database, the
// placeholder and the user's own picture.
#include <cstdio>

#include "core/settings_catalogue.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "search/address_book.h"

namespace zv {
namespace {

constexpr char kPictureQuery[] =
    "SELECT data FROM ABThumbnailImage WHERE record_id = ? ORDER BY format ASC";

// The square sizes at which the lists show pictures.
constexpr double kListSizes[] = {36, 40, 44, 50};

}  // namespace

std::string ZVAddressBook::getAvatarKey(int32_t recordId, platform::Size size) {
  char key[128];
  std::snprintf(key, sizeof key, "%d_%f_%f", recordId, size.width, size.height);
  return key;
}

ui::ImagePtr ZVAddressBook::cached(int32_t recordId,
                                   platform::Size size) const {
  const std::string key = getAvatarKey(recordId, size);
  std::lock_guard lock(_avatarLock);
  auto it = _avatarCache.find(key);
  return it == _avatarCache.end() ? nullptr : it->second;
}

void ZVAddressBook::store(int32_t recordId, platform::Size size,
                          const ui::ImagePtr& image) {
  const std::string key = getAvatarKey(recordId, size);
  std::lock_guard lock(_avatarLock);
  // No eviction order: a full cache is simply started again. The picture
  // that fills it to the cap finds it emptied.
  if (!_avatarCache.contains(key) &&
      _avatarCache.size() + 1 >= kAvatarCacheLimit)
    _avatarCache.clear();
  if (image) _avatarCache[key] = image;
}

size_t ZVAddressBook::cachedAvatarCount() const {
  std::lock_guard lock(_avatarLock);
  return _avatarCache.size();
}

ui::ImagePtr ZVAddressBook::getCahcedAvatar(int32_t recordId,
                                            platform::Size size) {
  ui::ImagePtr image = cached(recordId, size);
  if (!image && isSpecial(recordId)) return getNullAvatarWithsize(size);
  return image;
}

ui::ImagePtr ZVAddressBook::setCacheAvatar(int32_t recordId,
                                           const ui::ImagePtr& avatar,
                                           platform::Size size) {
  if (!avatar) return nullptr;
  ui::ImagePtr scaled = avatar->scaleToSize(size, kAvatarScale);
  store(recordId, size, scaled);
  return scaled;
}

void ZVAddressBook::removeCachedAvatar(int32_t recordId) {
  std::lock_guard lock(_avatarLock);
  for (double side : kListSizes)
    _avatarCache.erase(getAvatarKey(recordId, {side, side}));
}

ui::ImagePtr ZVAddressBook::getAvatar(int32_t recordId) {
  if (recordId == kNoContact) return nullptr;
  sql::Database db(
      platform::current().path(platform_schema::kAddressBookImagesPath));
  sql::Statement query(db, kPictureQuery);
  query.bind(1, recordId);
  while (query.step()) {
    std::string_view data = query.blob(0);
    if (!data.empty()) return ui::Image::decode(data, kAvatarScale);
  }
  return nullptr;
}

ui::ImagePtr ZVAddressBook::getAvatar(int32_t recordId, platform::Size size) {
  return getAvatar(recordId, nullptr, size, true);
}

ui::ImagePtr ZVAddressBook::getAvatar(int32_t recordId, platform::Size size,
                                      bool canNull) {
  return getAvatar(recordId, nullptr, size, canNull);
}

ui::ImagePtr ZVAddressBook::getAvatar(int32_t recordId,
                                      const ABPersonRecord* person,
                                      platform::Size size, bool canNull) {
  if (person) recordId = person->recordId();
  if (isSpecial(recordId) && !canNull) return nullptr;
  // For the reserved ids this already gives the placeholder.
  if (ui::ImagePtr image = getCahcedAvatar(recordId, size)) return image;
  if (!person) {
    if (ui::ImagePtr picture = getAvatar(recordId))
      return setCacheAvatar(recordId, picture, size);
  } else if (person->hasImageData()) {
    ui::ImagePtr picture = ui::Image::decode(
        person->copyImageData(platform_schema::kThumbnailFormat), kAvatarScale);
    if (picture) return setCacheAvatar(recordId, picture, size);
  }
  if (!canNull) return nullptr;
  // Keep the placeholder under the contact's own key too, so that a contact
  // without picture costs one database lookup, not one per cell.
  ui::ImagePtr placeholder = getNullAvatarWithsize(size);
  store(recordId, size, placeholder);
  return placeholder;
}

ui::ImagePtr ZVAddressBook::getMyAvatar() {
  std::lock_guard lock(_loadLock);
  if (!_myAvatarLoaded) {
    _myAvatar = getAvatar(_settings->MyInfo());
    _myAvatarLoaded = true;
  }
  return _myAvatar;
}

ui::ImagePtr ZVAddressBook::getMyAvatarWithSize(platform::Size size) {
  {
    std::lock_guard lock(_loadLock);
    if (_noMyAvatar) return nullptr;
  }
  if (ui::ImagePtr image = cached(kMyAvatarId, size)) return image;
  if (ui::ImagePtr mine = getMyAvatar())
    return setCacheAvatar(kMyAvatarId, mine, size);
  std::lock_guard lock(_loadLock);
  _noMyAvatar = true;
  return nullptr;
}

ui::ImagePtr ZVAddressBook::getNullAvatar() {
  std::lock_guard lock(_loadLock);
  if (!_nullAvatarLoaded) {
    _nullAvatar =
        ui::Image::fromFile(platform::current().path(kNullAvatarPath), 1);
    if (!_nullAvatar) _nullAvatar = std::make_shared<const ui::Image>();
    _nullAvatarLoaded = true;
  }
  return _nullAvatar;
}

ui::ImagePtr ZVAddressBook::getNullAvatarWithsize(platform::Size size) {
  if (ui::ImagePtr image = cached(kNoContact, size)) return image;
  return setCacheAvatar(kNoContact, getNullAvatar(), size);
}

}  // namespace zv
