#include "core/settings_catalogue.h"

#include "platform/process.h"

namespace zv {
namespace {

// The process's singleton of T: made with init on first use and registered
// for reloads.
template <typename T>
std::shared_ptr<T> sharedSettings() {
  return platform::Process::current().singleton<T>([] {
    auto settings = ZVSettings::make<T>();
    ZVSettings::addSharedInstance(settings);
    return settings;
  });
}

}  // namespace

// loadSettings and describe() of a class: the superclass's keys first, then
// the class's own table.
#define ZV_DEFINE_SETTINGS_CLASS(Class, Base, KEYS)  \
  std::shared_ptr<Class> Class::sharedInstance() {   \
    return sharedSettings<Class>();                  \
  }                                                  \
  void Class::loadSettings() {                       \
    Base::loadSettings();                            \
    KEYS(ZV_SETTINGS_LOAD)                           \
  }                                                  \
  std::vector<SettingInfo> Class::describe() const { \
    std::vector<SettingInfo> out = Base::describe(); \
    KEYS(ZV_SETTINGS_DESCRIBE)                       \
    return out;                                      \
  }

ZV_DEFINE_SETTINGS_CLASS(ZVGeneralSettings, ZVSettings,
                         ZV_GENERAL_SETTINGS_KEYS)
ZV_DEFINE_SETTINGS_CLASS(ZVPhoneSettings, ZVGeneralSettings,
                         ZV_PHONE_SETTINGS_KEYS)
ZV_DEFINE_SETTINGS_CLASS(ZVSMSSettings, ZVGeneralSettings, ZV_SMS_SETTINGS_KEYS)
ZV_DEFINE_SETTINGS_CLASS(ZVIncomingCallSettings, ZVGeneralSettings,
                         ZV_INCOMING_CALL_SETTINGS_KEYS)
ZV_DEFINE_SETTINGS_CLASS(ZVControlCenterSettings, ZVGeneralSettings,
                         ZV_CONTROL_CENTER_SETTINGS_KEYS)

#undef ZV_DEFINE_SETTINGS_CLASS

std::vector<std::shared_ptr<ZVSettings>> makeSettingsCatalogue() {
  return {ZVSettings::makeUnobserved<ZVGeneralSettings>(),
          ZVSettings::makeUnobserved<ZVPhoneSettings>(),
          ZVSettings::makeUnobserved<ZVSMSSettings>(),
          ZVSettings::makeUnobserved<ZVIncomingCallSettings>(),
          ZVSettings::makeUnobserved<ZVControlCenterSettings>()};
}

}  // namespace zv
