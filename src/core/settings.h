// The settings store. All user settings live in one property list,
// "/var/mobile/Library/Preferences/zorvel.plist", written by the settings
// pane and only read here. Every settings object of a process reads the same
// shared dictionary; the registry of singletons is reloaded 3.0 s after the
// last "ZVSettingsChanged" notification (one reload per object per burst).
//
// Keys are declared once, in X-macro tables (see settings_keys.h), which
// generate the fields, the read-only accessors, loadSettings and the key
// descriptions that `zorvel settings` prints. String settings keep their
// object across reloads: a caller holding the reference sees the new text.
//
// The registry and the shared dictionary live in the process context, so
// each (simulated) host process has its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings_keys.h"
#include "platform/value.h"

namespace zv {

// One key of a settings class, for listing: its name, type name ("boolean",
// "integer", "float", "string"), the default and the effective value as
// values, and whether the effective value came from the file.
struct SettingInfo {
  std::string key;
  std::string type;
  Value defaultValue;
  Value value;
  bool fromFile = false;
};

namespace settings_internal {

// What an accessor returns for a field of type T: strings by reference (the
// same object across reloads), everything else by value.
template <typename T>
struct AccessorOf {
  using type = T;
};
template <>
struct AccessorOf<std::string> {
  using type = const std::string&;
};
template <typename T>
using Accessor = typename AccessorOf<T>::type;

// Reads one key into its field with the value's own conversion, or the
// default when the key is missing. Strings replace the field's contents.
void read(const Dict& dict, std::string_view key, bool& field, bool def);
void read(const Dict& dict, std::string_view key, int32_t& field, int32_t def);
void read(const Dict& dict, std::string_view key, float& field, float def);
void read(const Dict& dict, std::string_view key, std::string& field,
          std::string_view def);

// The listing entry of one key.
SettingInfo describe(const Dict& dict, std::string_view key, bool value,
                     bool def);
SettingInfo describe(const Dict& dict, std::string_view key, int32_t value,
                     int32_t def);
SettingInfo describe(const Dict& dict, std::string_view key, float value,
                     float def);
SettingInfo describe(const Dict& dict, std::string_view key,
                     const std::string& value, std::string_view def);

}  // namespace settings_internal

// Expansions of the key tables inside a class body or a member function.
#define ZV_SETTINGS_ACCESSOR(type, name, def) \
  ::zv::settings_internal::Accessor<type> name() const { return name##_; }
#define ZV_SETTINGS_FIELD(type, name, def) type name##_ = def;
#define ZV_SETTINGS_LOAD(type, name, def) \
  ::zv::settings_internal::read(settings(), #name, name##_, def);
#define ZV_SETTINGS_DESCRIBE(type, name, def) \
  out.push_back(                              \
      ::zv::settings_internal::describe(settings(), #name, name##_, def));

class ZVSettings {
 public:
  // init: makes a T (ZVSettings or a subclass), creates the registry and
  // subscribes to "ZVSettingsChanged" on the first object of the process,
  // then loadFile and the most derived loadSettings. Not registered; the
  // classes' sharedInstance() registers their singleton.
  template <typename T>
  static std::shared_ptr<T> make() {
    std::shared_ptr<T> object(new T());
    object->init();
    return object;
  }
  // A loaded T that stays out of the change machinery: no registry, no
  // subscription. For one-shot readers such as listings, which must not
  // leave a listener behind on the device.
  template <typename T>
  static std::shared_ptr<T> makeUnobserved() {
    std::shared_ptr<T> object(new T());
    object->reloadSettings();
    return object;
  }
  virtual ~ZVSettings();
  ZVSettings(const ZVSettings&) = delete;
  ZVSettings& operator=(const ZVSettings&) = delete;

  // The registry of singletons reloaded on change; nullptr is ignored, and
  // so is an object that is already registered.
  static void addSharedInstance(std::shared_ptr<ZVSettings> settings);
  static void removeSharedInstance(const ZVSettings* settings);
  static std::vector<std::shared_ptr<ZVSettings>> sharedInstances();

  // Refreshes the process's shared dictionary from the file (emptied first;
  // a missing or unreadable file leaves it empty).
  void loadFile();
  // Copies keys from the shared dictionary into the fields; each class reads
  // its superclass's keys first.
  virtual void loadSettings();
  void reloadSettings() {
    loadFile();
    loadSettings();
  }

  // The class name ("ZVGeneralSettings", ...) and its keys in declaration
  // order, superclass keys first.
  virtual const char* className() const { return "ZVSettings"; }
  virtual std::vector<SettingInfo> describe() const;

  ZV_BASE_SETTINGS_KEYS(ZV_SETTINGS_ACCESSOR)
  // The process's shared dictionary as last loaded.
  const Dict& settings() const;

  // The "ZVSettingsChanged" callback: schedules reloadSettings on every
  // registered object 3.0 s from now, cancelling pending ones.
  static void ZVSettingsChanged();

  // Where the settings file lives on the device.
  static constexpr const char* kPath =
      "/var/mobile/Library/Preferences/zorvel.plist";
  // The notification the settings pane posts, and the reload delay after it.
  static constexpr const char* kChangedNotification = "ZVSettingsChanged";
  static constexpr double kReloadDelay = 3.0;

 protected:
  ZVSettings() = default;
  void init();

 private:
  // The process's shared dictionary; shared so that an object outliving its
  // process context never reads freed memory.
  std::shared_ptr<Dict> settings_;
  ZV_BASE_SETTINGS_KEYS(ZV_SETTINGS_FIELD)
};

// Reads one key of any property-list file, afresh on every call; null when
// the file is missing, does not parse as a dictionary or lacks the key.
Value objectForKey(std::string_view key, std::string_view devicePath);
// Sets one key of a property-list file (other keys kept, file created when
// missing or unparsable) and writes it back atomically; false when it could
// not be written (the file is then as it was).
bool setObject(const Value& value, std::string_view key,
               std::string_view devicePath);

}  // namespace zv
