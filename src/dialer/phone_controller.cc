#include "dialer/phone_controller.h"

#include <filesystem>

#include "area/area_loader.h"
#include "core/number_utils.h"
#include "platform/platform.h"
#include "search/address_book.h"

namespace zv {
namespace {

bool startsWith(std::string_view s, std::string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

bool deviceFileExists(const char* devicePath) {
  std::error_code ec;
  return std::filesystem::exists(platform::current().path(devicePath), ec);
}

}  // namespace

std::shared_ptr<ZVPhoneController> ZVPhoneController::sharedInstance() {
  return platform::Process::current().singleton<ZVPhoneController>(
      [] { return std::make_shared<ZVPhoneController>(); });
}

ZVPhoneController::ZVPhoneController()
    : _settings(ZVPhoneSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()),
      _addressbook(ZVAddressBook::sharedInstance()) {}

std::string ZVPhoneController::openURL(const std::string& url,
                                       const rt::Id& app) {
  if (!_settings->EnablePrefix()) return url;
  if (!isInAutoPrefixDialView(app)) return url;
  if (url.empty() || !startsWith(url, "tel:")) return url;
  const bool slashes = startsWith(url, "tel://");
  const std::string scheme = slashes ? "tel://" : "tel:";
  std::string number = url.substr(scheme.size());
  // The query goes for good: the prefixed URL is rebuilt without it.
  if (auto q = number.find('?'); q != std::string::npos) number.resize(q);
  if (!needsPrefixDial(number)) return url;
  return scheme + addPrefixNumber(number);
}

std::string ZVPhoneController::dialPhoneNumber(const std::string& number,
                                               const rt::Id& app) {
  if (!_settings->EnablePrefix() || !isInAutoPrefixDialView(app) ||
      !needsPrefixDial(number))
    return number;
  return addPrefixNumber(number);
}

bool ZVPhoneController::isInAutoPrefixDialView(const rt::Id& app) {
  const ZVPhoneSettings& s = *_settings;
  if (s.PrefixFavorites() && s.PrefixCallHistory() && s.PrefixContacts() &&
      s.PrefixKeypad())
    return true;
  std::optional<int> tab = tab_query_ ? tab_query_(app) : std::nullopt;
  if (!tab) return false;
  switch (*tab) {
    case 0:
      return s.PrefixFavorites();
    case 1:
      return s.PrefixCallHistory();
    case 2:
      return s.PrefixContacts();
    case 3:
      return s.PrefixKeypad();
    default:
      return false;
  }
}

bool ZVPhoneController::needsPrefixDial(const std::string& number) {
  const ZVPhoneSettings& s = *_settings;
  if (!s.EnablePrefix()) return false;
  const std::string& prefix = s.PrefixNumber();
  if (prefix.empty()) return false;
  const std::string k = keypadString(number);
  if (startsWith(k, prefix)) return false;
  auto area = _area->getArea(k, true, false, false);
  if (!area) return false;
  if (!s.PrefixLocalAreaCode().empty()) {
    auto local = _area->getArea(s.PrefixLocalAreaCode(), true, false, false);
    if (local && *local == *area) return false;
  }
  std::string_view excluded = s.PrefixExcludeArea();
  while (!excluded.empty()) {
    size_t blank = excluded.find(' ');
    std::string_view token = excluded.substr(0, blank);
    excluded = blank == std::string_view::npos ? std::string_view()
                                               : excluded.substr(blank + 1);
    if (token.empty()) continue;
    if (area->find(token) != std::string::npos) return false;
    if (startsWith(k, token)) return false;
  }
  if (!_exclude) loadExclude();
  if (!_exclude) return true;
  return _exclude->find(k) == _exclude->end();
}

std::string ZVPhoneController::addPrefixNumber(const std::string& number) {
  const std::string& prefix = _settings->PrefixNumber();
  if (!startsWith(_settings->AreaDatabase(), "China")) return prefix + number;
  const std::string k = keypadString(number);
  if (!startsWith(k, "+86")) return prefix + k;
  const std::string rest = k.substr(3);
  auto type = _area->getArea(k, false, true, false);
  if (type && *type == kFixedLineType && !startsWith(rest, "0"))
    return prefix + "0" + rest;
  return prefix + rest;
}

void ZVPhoneController::loadExclude() {
  _exclude.reset();
  if (deviceFileExists(kExcludePath))
    _exclude = platform::readDictionary(kExcludePath);
  else if (deviceFileExists(kDefaultExcludePath))
    _exclude = platform::readDictionary(kDefaultExcludePath);
}

}  // namespace zv
