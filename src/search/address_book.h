// ZVAddressBook: the per-process address-book service. Given a contact's
// record id it answers the extra facts shown on call screens (organisation,
// department, job title, nickname, birthday, note), the display text of a
// phone label, and the contact's picture at a size.
//
// Pictures come from the platform's thumbnail database or from a platform
// person record, are scaled (aspect fill, scale 2) and kept in a cache keyed
// "%d_%f_%f" (record id, width, height in points). The cache is capped at
// 500 pictures: the 500th distinct picture finds it emptied, in one step
// (no least-recently-used order), so it then holds that picture alone.
// Reserved ids: -1 no contact (keys the placeholder picture), -2 a
// call-history number without contact, -3 the user's own picture.
//
// Threads: pictures may be asked for from any thread. The cache is guarded
// by its own lock, held only around the dictionary operations (never while
// reading a database or scaling); the once-loaded pictures and labels are
// guarded by a second lock. Failures give null, never an error.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/platform.h"
#include "platform/ui/image.h"

namespace zv {

class ZVGeneralSettings;

// What the service needs of a platform person record (ABRecordRef).
class ABPersonRecord {
 public:
  virtual ~ABPersonRecord() = default;
  virtual int32_t recordId() const = 0;   // ABRecordGetRecordID
  virtual bool hasImageData() const = 0;  // ABPersonHasImageData
  virtual std::string copyImageData(int format) const = 0;  // ...WithFormat
};

class ZVAddressBook {
 public:
  // Bits of getAddressBookInfo's mask, in the order the facts are joined.
  enum InfoMask : int {
    kOrganization = 1,
    kDepartment = 2,
    kJobTitle = 4,
    kNickname = 8,
    kBirthday = 16,
    kNote = 32,
  };

  static constexpr int32_t kNoContact = -1;
  static constexpr int32_t kMyAvatarId = -3;
  static constexpr size_t kAvatarCacheLimit = 500;
  static constexpr int kAvatarScale = 2;
  static constexpr const char* kNullAvatarPath = "/Library/Zorvel/avatar.png";

  // The process's service, created on first use.
  static std::shared_ptr<ZVAddressBook> sharedInstance();
  ZVAddressBook();

  // The non-empty facts selected by `mask`, joined with "\n" in bit order;
  // the birthday in the long date style of the device's locale. Null for
  // id -1, mask 0, no such contact, nothing to show or a database failure.
  std::optional<std::string> getAddressBookInfo(int32_t recordId, int mask);

  // (Re)reads the label table: label id -> localised text.
  void loadPhoneTypeLables();
  // The text of a label id (loaded on first use); null for -1 or unknown.
  std::optional<std::string> getPhoneTypeLabel(int32_t labelId);

  static std::string getAvatarKey(int32_t recordId, platform::Size size);
  // The cached picture; for ids -3..-1 with nothing cached, the placeholder
  // at that size.
  ui::ImagePtr getCahcedAvatar(int32_t recordId, platform::Size size);
  // Scales `avatar` to `size` and caches it; returns the scaled picture.
  ui::ImagePtr setCacheAvatar(int32_t recordId, const ui::ImagePtr& avatar,
                              platform::Size size);
  // Drops the contact's pictures at the list sizes 36, 40, 44 and 50.
  void removeCachedAvatar(int32_t recordId);

  // The unscaled picture from the thumbnail database (first non-empty one in
  // ascending format), decoded at scale 2; null when there is none.
  ui::ImagePtr getAvatar(int32_t recordId);
  ui::ImagePtr getAvatar(int32_t recordId, platform::Size size);
  ui::ImagePtr getAvatar(int32_t recordId, platform::Size size, bool canNull);
  // The general form: with `person` its record id and image data are used.
  // With canNull the placeholder stands in for a missing picture (and is
  // cached under the contact's key); without it, null.
  ui::ImagePtr getAvatar(int32_t recordId, const ABPersonRecord* person,
                         platform::Size size, bool canNull);

  // The picture of the card named by the MyInfo setting, loaded once.
  ui::ImagePtr getMyAvatar();
  ui::ImagePtr getMyAvatarWithSize(platform::Size size);
  // The placeholder; an empty image when its file is missing.
  ui::ImagePtr getNullAvatar();
  ui::ImagePtr getNullAvatarWithsize(platform::Size size);

  // Number of cached pictures.
  size_t cachedAvatarCount() const;

 private:
  static bool isSpecial(int32_t recordId) {
    return recordId >= -3 && recordId <= -1;
  }
  // The cache entry alone, without the placeholder fallback.
  ui::ImagePtr cached(int32_t recordId, platform::Size size) const;
  // Stores under the key of (recordId, size); a null image only applies the
  // cap.
  void store(int32_t recordId, platform::Size size, const ui::ImagePtr& image);

  std::shared_ptr<ZVGeneralSettings> _settings;

  std::mutex _loadLock;  // the fields loaded once
  ui::ImagePtr _nullAvatar;
  bool _nullAvatarLoaded = false;
  ui::ImagePtr _myAvatar;
  bool _myAvatarLoaded = false;
  bool _noMyAvatar = false;
  std::optional<std::map<int64_t, std::string>> _phoneTypeLabels;

  mutable std::mutex _avatarLock;
  std::unordered_map<std::string, ui::ImagePtr> _avatarCache;
};

}  // namespace zv
