// The settings classes the features read: ZVGeneralSettings (the general
// switches) and its four per-host subclasses. Each has a lazily created,
// registered per-process singleton (sharedInstance), one const accessor per
// key named exactly as the key, and reloads 3.0 s after "ZVSettingsChanged".
// The keys, types and defaults are the tables of settings_keys.h; each
// subclass reads the general keys first, then its own in table order.
#pragma once

#include <memory>
#include <vector>

#include "core/settings.h"

namespace zv {

class ZVGeneralSettings : public ZVSettings {
 public:
  static std::shared_ptr<ZVGeneralSettings> sharedInstance();

  ZV_GENERAL_SETTINGS_KEYS(ZV_SETTINGS_ACCESSOR)
  // Nothing in this library sets it; it always reads false.
  bool isSettingsChanged() const { return isSettingsChanged_; }

  void loadSettings() override;
  const char* className() const override { return "ZVGeneralSettings"; }
  std::vector<SettingInfo> describe() const override;

 protected:
  ZVGeneralSettings() = default;
  friend class ZVSettings;

 private:
  ZV_GENERAL_SETTINGS_KEYS(ZV_SETTINGS_FIELD)
  bool isSettingsChanged_ = false;
};

// One feature class: the general keys plus the table `KEYS`.
#define ZV_FEATURE_SETTINGS_CLASS(Class, KEYS)                \
  class Class : public ZVGeneralSettings {                    \
   public:                                                    \
    static std::shared_ptr<Class> sharedInstance();           \
    KEYS(ZV_SETTINGS_ACCESSOR)                                \
    void loadSettings() override;                             \
    const char* className() const override { return #Class; } \
    std::vector<SettingInfo> describe() const override;       \
                                                              \
   protected:                                                 \
    Class() = default;                                        \
    friend class ZVSettings;                                  \
                                                              \
   private:                                                   \
    KEYS(ZV_SETTINGS_FIELD)                                   \
  };

// The Phone application.
ZV_FEATURE_SETTINGS_CLASS(ZVPhoneSettings, ZV_PHONE_SETTINGS_KEYS)
// The Messages application.
ZV_FEATURE_SETTINGS_CLASS(ZVSMSSettings, ZV_SMS_SETTINGS_KEYS)
// SpringBoard and the in-call service.
ZV_FEATURE_SETTINGS_CLASS(ZVIncomingCallSettings,
                          ZV_INCOMING_CALL_SETTINGS_KEYS)
// SpringBoard's Control Centre.
ZV_FEATURE_SETTINGS_CLASS(ZVControlCenterSettings,
                          ZV_CONTROL_CENTER_SETTINGS_KEYS)

#undef ZV_FEATURE_SETTINGS_CLASS

// A fresh, loaded object of every settings class with keys, in catalogue
// order (general first), for listing; none of them is registered or
// subscribed to change notifications.
std::vector<std::shared_ptr<ZVSettings>> makeSettingsCatalogue();

}  // namespace zv
