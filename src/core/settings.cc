#include "core/settings.h"

#include <algorithm>

#include "platform/platform.h"
#include "platform/process.h"

namespace zv {
namespace {

// Per-process state, kept in the process context (each simulated host
// process has its own registry and dictionary).
struct SharedSettingsDict {
  std::shared_ptr<Dict> dict = std::make_shared<Dict>();
};

struct SettingsRegistry {
  std::vector<std::shared_ptr<ZVSettings>> objects;
};

// The registry of the current process; the first call of the process also
// subscribes the change callback, so that happens exactly once.
SettingsRegistry& registry() {
  auto& slot = platform::Process::current().slot<SettingsRegistry>();
  if (!slot) {
    slot = std::make_shared<SettingsRegistry>();
    platform::current().observe(ZVSettings::kChangedNotification,
                                [] { ZVSettings::ZVSettingsChanged(); });
  }
  return *slot;
}

std::shared_ptr<Dict> sharedDict() {
  return platform::Process::current()
      .singleton<SharedSettingsDict>(
          [] { return std::make_shared<SharedSettingsDict>(); })
      ->dict;
}

const Value* find(const Dict& dict, std::string_view key) {
  auto it = dict.find(key);
  return it == dict.end() ? nullptr : &it->second;
}

SettingInfo info(const Dict& dict, std::string_view key, const char* type,
                 Value value, Value def) {
  return SettingInfo{std::string(key), type, std::move(def), std::move(value),
                     find(dict, key) != nullptr};
}

}  // namespace

namespace settings_internal {

void read(const Dict& dict, std::string_view key, bool& field, bool def) {
  const Value* v = find(dict, key);
  field = v ? v->boolValue() : def;
}

void read(const Dict& dict, std::string_view key, int32_t& field, int32_t def) {
  const Value* v = find(dict, key);
  field = v ? v->intValue() : def;
}

void read(const Dict& dict, std::string_view key, float& field, float def) {
  const Value* v = find(dict, key);
  field = v ? v->floatValue() : def;
}

void read(const Dict& dict, std::string_view key, std::string& field,
          std::string_view def) {
  // assign() keeps the object: a caller holding a reference sees the text.
  const Value* v = find(dict, key);
  if (v)
    field.assign(v->stringValue());
  else
    field.assign(def);
}

SettingInfo describe(const Dict& dict, std::string_view key, bool value,
                     bool def) {
  return info(dict, key, "boolean", value, def);
}

SettingInfo describe(const Dict& dict, std::string_view key, int32_t value,
                     int32_t def) {
  return info(dict, key, "integer", Value(int{value}), Value(int{def}));
}

SettingInfo describe(const Dict& dict, std::string_view key, float value,
                     float def) {
  return info(dict, key, "float", Value(double{value}), Value(double{def}));
}

SettingInfo describe(const Dict& dict, std::string_view key,
                     const std::string& value, std::string_view def) {
  return info(dict, key, "string", value, def);
}

}  // namespace settings_internal

ZVSettings::~ZVSettings() = default;

void ZVSettings::init() {
  registry();
  loadFile();
  loadSettings();
}

void ZVSettings::addSharedInstance(std::shared_ptr<ZVSettings> settings) {
  if (!settings) return;
  auto& objects = registry().objects;
  if (std::find(objects.begin(), objects.end(), settings) == objects.end())
    objects.push_back(std::move(settings));
}

void ZVSettings::removeSharedInstance(const ZVSettings* settings) {
  if (!settings) return;
  std::erase_if(registry().objects,
                [&](const auto& object) { return object.get() == settings; });
}

std::vector<std::shared_ptr<ZVSettings>> ZVSettings::sharedInstances() {
  return registry().objects;
}

void ZVSettings::loadFile() {
  settings_ = sharedDict();
  settings_->clear();
  if (auto file = platform::readDictionary(kPath))
    *settings_ = std::move(*file);
}

void ZVSettings::loadSettings(){ZV_BASE_SETTINGS_KEYS(ZV_SETTINGS_LOAD)}

std::vector<SettingInfo> ZVSettings::describe() const {
  std::vector<SettingInfo> out;
  ZV_BASE_SETTINGS_KEYS(ZV_SETTINGS_DESCRIBE)
  return out;
}

const Dict& ZVSettings::settings() const {
  static const Dict kEmpty;
  return settings_ ? *settings_ : kEmpty;
}

void ZVSettings::ZVSettingsChanged() {
  try {
    auto& platform = platform::current();
    // Cancel-then-schedule per object: a burst of notifications leaves one
    // reload per object, kReloadDelay after the last of them.
    for (const auto& object : registry().objects) {
      platform.cancelPrevious(object.get(), "reloadSettings");
      std::weak_ptr<ZVSettings> weak = object;
      platform.performAfterDelay(object.get(), "reloadSettings", kReloadDelay,
                                 [weak] {
                                   if (auto settings = weak.lock())
                                     settings->reloadSettings();
                                 });
    }
  } catch (...) {
    // A failure while scheduling only loses this round of reloads.
  }
}

Value objectForKey(std::string_view key, std::string_view devicePath) {
  auto dict = platform::readDictionary(devicePath);
  if (!dict) return Value();
  const Value* v = find(*dict, key);
  return v ? *v : Value();
}

bool setObject(const Value& value, std::string_view key,
               std::string_view devicePath) {
  Dict dict = platform::readDictionary(devicePath).value_or(Dict{});
  dict.insert_or_assign(std::string(key), value);
  return platform::writeDictionary(devicePath, dict);
}

}  // namespace zv
