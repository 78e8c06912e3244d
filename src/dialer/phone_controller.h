// ZVPhoneController: automatic prefix dialling in the Phone app. The
// dialling hooks hand it every number the app is about to dial (a "tel:"
// URL or the app's own dial operation) and dial what it returns: the
// configured PrefixNumber put in front of numbers outside the user's own
// area, unless the number's area or digits are excluded (PrefixExcludeArea)
// or the number is on the exclude list ("zorvel.exclude.plist"), and only
// in the Phone app tabs the user chose. Settings are read afresh on every
// call, so switching prefixing off takes effect at once.
//
// A per-process singleton; main thread only. Every failure leaves the
// number or URL as it was.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/settings_catalogue.h"
#include "platform/runtime/object.h"
#include "platform/value.h"

namespace zv {

class ZVAreaLoader;
class ZVAddressBook;

class ZVPhoneController {
 public:
  static constexpr const char* kExcludePath =
      "/var/mobile/Library/Preferences/zorvel.exclude.plist";
  static constexpr const char* kDefaultExcludePath =
      "/Library/Zorvel/Default/zorvel.exclude.plist";
  // The type text the China area database gives fixed lines.
  static constexpr const char* kFixedLineType = "固话";

  // The host's tab on screen (0 favourites, 1 recents, 2 contacts, 3 keypad,
  // 4 and beyond voicemail and others), or nothing when the app cannot
  // tell. Supplied by the dialling hooks, which know the host's selectors.
  using TabQuery = std::function<std::optional<int>(const rt::Id& app)>;

  static std::shared_ptr<ZVPhoneController> sharedInstance();
  ZVPhoneController();

  void setTabQuery(TabQuery query) { tab_query_ = std::move(query); }

  // A "tel:" URL with the prefix put before its number (its query dropped),
  // or `url` unchanged.
  std::string openURL(const std::string& url, const rt::Id& app);
  // The prefixed number, or `number` unchanged.
  std::string dialPhoneNumber(const std::string& number, const rt::Id& app);
  // Whether automatic prefixing applies in the app's current tab.
  bool isInAutoPrefixDialView(const rt::Id& app);
  // The prefix rules (switch, prefix, already prefixed, unknown area, own
  // area, excluded areas and digits, exclude list).
  bool needsPrefixDial(const std::string& number);
  // The prefix and the number; with a China database a "+86" number loses
  // its country code and a fixed line gets its trunk "0" back.
  std::string addPrefixNumber(const std::string& number);
  // (Re)loads the exclude list: the user's file, else the shipped default.
  void loadExclude();
  const std::optional<Dict>& exclude() const { return _exclude; }

 private:
  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::optional<Dict> _exclude;
  TabQuery tab_query_;
};

}  // namespace zv
