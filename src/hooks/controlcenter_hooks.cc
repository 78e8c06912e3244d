// zvcontrolcenter_init: the springboard Control Centre's replacement
// buttons. The host's button, module and section methods ask
// ZVControlCenterController first; it reaches the springboard through
// RuntimeControlCenterHost, which sends the host's own selectors and the
// platform's cellular-data switch.
#include "controlcenter/control_center_controller.h"
#include "core/device.h"
#include "core/hook.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/telephony/core_telephony.h"
#include "platform/ui/application.h"

namespace zv {
namespace {

using Button = sdk::SBControlCenterButton;
using Settings = sdk::SBCCSettingsSectionController;
using Bluetooth = sdk::SBCCBluetoothSetting;

class RuntimeControlCenterHost : public ControlCenterHost {
 public:
  void pressHomeButton() override {
    rt::trySend(uiController(),
                sdk::SBUIController::handleButtonEventToSuspendDisplays, true,
                static_cast<bool*>(nullptr));
  }
  void toggleSwitcher() override {
    rt::trySend(uiController(), sdk::SBUIController::toggleSwitcher);
  }
  void lockButtonUp(int source) override {
    rt::trySend(application(), sdk::SpringBoard::lockButtonUpFromSource8,
                rt::Id(), source);
  }
  void lockButtonUpFromSource(int source) override {
    rt::trySend(application(), sdk::SpringBoard::lockButtonUpFromSource,
                source);
  }
  bool cellularDataPlanIsEnabled() override {
    return platform::CTCellularDataPlanGetIsEnabled();
  }
  void setCellularDataPlanEnabled(bool enabled) override {
    platform::CTCellularDataPlanSetIsEnabled(enabled);
  }
  rt::Id objectIvar(const rt::Id& object, std::string_view name) override {
    return rt::getIvar<rt::Id>(object, name).value_or(nullptr);
  }
  rt::Id settingsButton(const rt::Id& section,
                        std::string_view identifier) override {
    auto buttons = rt::ivar(section, Settings::buttonsByID);
    if (!buttons) return nullptr;
    auto it = buttons->find(std::string(identifier));
    return it == buttons->end() ? nullptr : it->second;
  }
  bool isControlCenterButton(const rt::Id& object) override {
    rt::Class* button = rt::getClass(Button::kName);
    return object && button && object->isa()->isSubclassOf(button);
  }
  std::string identifier(const rt::Id& object) override {
    return rt::trySend<std::string>(object, "identifier");
  }
  void setGlyphImages(const rt::Id& button, ui::ImagePtr normal,
                      ui::ImagePtr source, ui::ImagePtr selected) override {
    rt::trySend(button, Button::setGlyphImage, std::move(normal));
    rt::trySend(button, Button::setSourceGlyphImage, std::move(source));
    rt::trySend(button, Button::setSelectedGlyphImage, std::move(selected));
  }
  void setSelected(const rt::Id& button, bool selected) override {
    rt::trySend(button, Button::setSelected, selected);
  }
  bool isEnabled(const rt::Id& module) override {
    return rt::trySend(module, Bluetooth::isEnabled);
  }
  void setEnabled(const rt::Id& module, bool enabled) override {
    rt::trySend(module, Bluetooth::setEnabled, enabled);
  }

 private:
  static rt::Id uiController() {
    rt::Class* cls = rt::getClass(sdk::SBUIController::kName);
    if (!cls) return nullptr;
    return rt::trySend(rt::classObject(cls),
                       sdk::SBUIController::sharedInstance);
  }
  static rt::Id application() { return ui::UIApplication::shared(); }
};

}  // namespace

void zvcontrolcenter_init() {
  runStartup("zvcontrolcenter_init", [] {
    auto s = ZVControlCenterSettings::sharedInstance();
    if (!s) return;
    if (!s->ControlCenterHome() && !s->ControlCenterMultitasking() &&
        !s->ControlCenterLockScreen() && !s->ControlCenterCellularData())
      return;
    auto c = ZVControlCenterController::sharedInstance();
    if (!c) return;
    c->setHost(std::make_shared<RuntimeControlCenterHost>());
    const auto k = GuardKind::Log;
    using namespace hook;
    using Id = const rt::Id&;
    using Image = ui::ImagePtr;
    using Shortcut = sdk::SBCCShortcutButtonController;
    using QuickLaunch = sdk::SBCCQuickLaunchSectionController;
    // clang-format off
    if (UIDevice::OSVersion() >= 8.0f) {
      systemDecides(k, Shortcut::glyphImageForState, [c](Id self, Image& r, int64_t state) { return (r = c->glyphImage(self, state)) != nullptr; });
      systemDecides(k, Shortcut::buttonTapped, [c](Id self, rt::Id button) { return c->actionCCShortcut(self, button); });
      systemDecides(k, Bluetooth::glyphImageForState, [c](Id self, Image& r, int64_t state) { return (r = c->bluetoothGlyphImage(self, state)) != nullptr; });
      systemDecides(k, Bluetooth::displayName, [c](Id self, std::string& r) { auto n = c->bluetoothDisplayName(self); if (n) r = *n; return n.has_value(); });
      systemDecides(k, Bluetooth::updateState, [c](Id self) { return c->bluetoothUpdateState(self); });
      systemDecides(k, Bluetooth::toggleState, [c](Id self) { bool enabled = false; return c->bluetoothToggleState(self, enabled); });
      systemDecides(k, Bluetooth::activate, [c](Id self) { return c->bluetoothActivate(self); });
      systemDecides(k, Bluetooth::deactivate, [c](Id self) { return c->bluetoothDeactivate(self); });
      hostFirst(k, sdk::SBControlCenterViewController::viewWillAppear, [c](Id, bool) { c->bluetoothViewWillAppear(); });
    } else {
      hostFirst(k, QuickLaunch::viewWillAppear, [c](Id self, bool) { c->updateCCQuickLaunch(self); });
      hostFirst(k, Settings::viewWillAppear, [c](Id self, bool) { c->updateCCSettings(self); });
      systemDecides(k, QuickLaunch::buttonTapped, [c](Id self, rt::Id button) { return c->actionCCQuickLaunch(self, button); });
      systemDecides(k, Settings::buttonTapped, [c](Id self, rt::Id button) { return c->actionCCSettings(self, button); });
    }
    // clang-format on
  });
}

}  // namespace zv
