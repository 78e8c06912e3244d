#include "area/area_loader.h"

#include "area/area_file.h"
#include "area/area_format.h"
#include "core/number_utils.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "platform/utf8.h"

namespace zv {

ZVAreaLoader::ZVAreaLoader() : _settings(ZVGeneralSettings::sharedInstance()) {}

ZVAreaLoader::~ZVAreaLoader() { zvarea_unload(_area); }

std::shared_ptr<ZVAreaLoader> ZVAreaLoader::sharedInstance() {
  return platform::Process::current().singleton<ZVAreaLoader>([] {
    std::shared_ptr<ZVAreaLoader> loader(new ZVAreaLoader());
    platform::current().observe("ZVAreaChanged", &ZVAreaLoader::ZVAreaChanged);
    return loader;
  });
}

void ZVAreaLoader::ZVAreaChanged() {
  if (auto& loader = platform::Process::current().slot<ZVAreaLoader>())
    loader->unloadData();
}

void ZVAreaLoader::loadData() {
  if (_loaded) return;
  _loaded = true;
  if (!_area) {
    std::string path = databasePath();
    if (!path.empty()) _area = zvarea_load(path.c_str(), kCacheLimit);
  }
  if (!_customArea) {
    _customArea = platform::readDictionary(kCustomAreaPath);
    if (_customArea) {
      // Every key is tried as a pattern, in the dictionary's order: the
      // test meant to keep plain numbers out never rejects one.
      _matchArea.emplace();
      for (const auto& entry : *_customArea) _matchArea->push_back(entry.first);
    }
  }
}

std::string ZVAreaLoader::databasePath() const {
  if (!database_file_.empty()) return database_file_;
  if (_settings->AreaDatabase().empty()) return "";
  return platform::current().path(kAreaFolder + _settings->AreaDatabase());
}

bool ZVAreaLoader::databaseIntact() const { return zvarea_intact(_area); }

void ZVAreaLoader::unloadData() {
  zvarea_unload(_area);
  _area = nullptr;
  _customArea.reset();
  _matchArea.reset();
  _loaded = false;
}

std::optional<std::string> ZVAreaLoader::customArea(const std::string& k,
                                                    bool& decided) const {
  decided = false;
  if (!_customArea) return std::nullopt;
  for (size_t len = k.size(); len >= 1; --len) {
    auto it = _customArea->find(std::string_view(k).substr(0, len));
    if (it != _customArea->end() && it->second.string() &&
        !it->second.string()->empty()) {
      decided = true;
      return *it->second.string();
    }
  }
  if (_matchArea) {
    size_t index = indexOfPhoneNumber(*_matchArea, k);
    if (index != kNotFound && index < _matchArea->size()) {
      auto it = _customArea->find((*_matchArea)[index]);
      if (it != _customArea->end() && it->second.string()) {
        decided = true;
        return *it->second.string();
      }
    }
  }
  return std::nullopt;
}

std::optional<std::string> ZVAreaLoader::getArea(std::string_view number,
                                                 bool withName, bool withType,
                                                 bool withAlone) {
  if ((!withName && !withType) || number.empty()) return std::nullopt;
  std::string k = keypadString(number);
  const std::string& prefix = _settings->PrefixNumber();
  if (!prefix.empty() && k.starts_with(prefix)) k.erase(0, prefix.size());
  if (k.empty()) return std::nullopt;
  if (!_loaded) loadData();

  if (k == _lastNumber && !_lastArea.empty() && withName == _lastWithName &&
      withType == _lastWithType && withAlone == _lastWithAlone)
    return _lastArea;
  _lastNumber = k;
  _lastArea.clear();
  _lastWithName = withName;
  _lastWithType = withType;
  _lastWithAlone = withAlone;

  bool decided = false;
  std::optional<std::string> answer = customArea(k, decided);
  if (!decided) {
    if (!_area) return std::nullopt;
    int flags = (withName ? areafmt::kWantName : 0) |
                (withType ? areafmt::kWantType : 0) |
                (withAlone ? areafmt::kWantAlone : 0);
    const char* text = zvarea_get(_area, k.c_str(), flags);
    // A database text cut inside a character (or made of stale bytes) does
    // not convert to a string.
    if (!text || !isValidUtf8(text)) return std::nullopt;
    answer = text;
  }
  if (!answer || answer->empty()) return std::nullopt;
  _lastArea = *answer;
  return answer;
}

std::optional<std::string> ZVAreaLoader::getArea(std::string_view number,
                                                 bool withName, bool withType) {
  return getArea(number, withName, withType, _settings->AreaAlone());
}

}  // namespace zv
