// ZVAreaLoader: the one place that answers "what is the area of this
// number". It owns the open area database ("/Library/Zorvel/Area/<name>",
// name from the AreaDatabase setting), the user's overrides
// ("/var/mobile/Library/Preferences/zorvel.area.plist": number, prefix or
// pattern -> area text) and a one-entry cache of the last answer.
//
// Numbers are reduced to their keypad form and lose a leading PrefixNumber;
// overrides answer before the database (longest prefix first, then the keys
// as patterns through indexOfPhoneNumber). Both sources open lazily on the
// first query and close on "ZVAreaChanged"; the cache survives that, so the
// same query right after it still gives the earlier answer. Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/value.h"

namespace zv {

struct ZVAreaFile;
class ZVGeneralSettings;

class ZVAreaLoader {
 public:
  static constexpr const char* kAreaFolder = "/Library/Zorvel/Area/";
  static constexpr const char* kCustomAreaPath =
      "/var/mobile/Library/Preferences/zorvel.area.plist";
  static constexpr unsigned kCacheLimit = 10240;

  // The process's loader; the first call subscribes ZVAreaChanged to the
  // system-wide notification "ZVAreaChanged".
  static std::shared_ptr<ZVAreaLoader> sharedInstance();
  // Notification callback: unloadData on the process's loader, if any.
  static void ZVAreaChanged();

  ~ZVAreaLoader();
  ZVAreaLoader(const ZVAreaLoader&) = delete;
  ZVAreaLoader& operator=(const ZVAreaLoader&) = delete;

  // Opens the database and reads the overrides, unless already loaded.
  void loadData();
  // Closes the database and forgets the overrides (the cache is kept).
  void unloadData();

  // The area text of `number` (any punctuation): the location when
  // withName, the line type when withType (after the location, joined with
  // the database's separator), service-number records when withAlone.
  // nullopt when there is none; never an empty string.
  std::optional<std::string> getArea(std::string_view number, bool withName,
                                     bool withType, bool withAlone);
  // As above, withAlone from the AreaAlone setting.
  std::optional<std::string> getArea(std::string_view number, bool withName,
                                     bool withType);

  // Tools only: open this host file instead of the AreaDatabase setting's
  // file from the next loadData on ("" restores the setting).
  void setDatabaseFile(std::string hostPath) {
    database_file_ = std::move(hostPath);
  }
  bool loaded() const { return _loaded; }
  bool hasDatabase() const { return _area != nullptr; }
  // The open database is whole (see zvarea_intact).
  bool databaseIntact() const;
  // Host path of the database loadData opens ("" when none is set).
  std::string databasePath() const;

 private:
  ZVAreaLoader();
  std::optional<std::string> customArea(const std::string& number,
                                        bool& decided) const;

  std::shared_ptr<ZVGeneralSettings> _settings;
  ZVAreaFile* _area = nullptr;
  std::optional<Dict> _customArea;
  std::optional<std::vector<std::string>> _matchArea;
  bool _loaded = false;
  std::string _lastArea;
  std::string _lastNumber;
  bool _lastWithName = false, _lastWithType = false, _lastWithAlone = false;
  std::string database_file_;
};

}  // namespace zv
