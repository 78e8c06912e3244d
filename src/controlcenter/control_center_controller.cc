#include "controlcenter/control_center_controller.h"

#include "core/device.h"
#include "platform/platform.h"
#include "platform/process.h"

namespace zv {
namespace {

constexpr const char* kSwitcherNormal = "/Library/Zorvel/switcher_normal.png";
constexpr const char* kSwitcherSelected =
    "/Library/Zorvel/switcher_selected.png";
constexpr const char* kLockNormal = "/Library/Zorvel/lock_normal.png";
constexpr const char* kLockSelected = "/Library/Zorvel/lock_selected.png";
constexpr const char* kCellularNormal = "/Library/Zorvel/cellular_normal.png";
constexpr const char* kCellularSelected =
    "/Library/Zorvel/cellular_selected.png";

// The older Home button (the 3.5-inch phones and the iPhone 5) has a square
// on it; later ones are a plain ring.
bool squareHomeButton() {
  return UIDevice::isPhone4screen() || UIDevice::isPhone5();
}

ui::ImagePtr loadImage(const std::string& devicePath) {
  auto& p = platform::current();
  return ui::Image::fromFile(p.path(devicePath), p.device().screenScale);
}

}  // namespace

std::shared_ptr<ZVControlCenterController>
ZVControlCenterController::sharedInstance() {
  return platform::Process::current().singleton<ZVControlCenterController>(
      [] { return std::make_shared<ZVControlCenterController>(); });
}

ZVControlCenterController::ZVControlCenterController()
    : _settings(ZVControlCenterSettings::sharedInstance()) {}

std::string ZVControlCenterController::homeNormalImagePath() {
  return squareHomeButton() ? "/Library/Zorvel/home_normal.png"
                            : "/Library/Zorvel/home5s_normal.png";
}

std::string ZVControlCenterController::homeSelectedImagePath() {
  return squareHomeButton() ? "/Library/Zorvel/home_selected.png"
                            : "/Library/Zorvel/home5s_selected.png";
}

bool ZVControlCenterController::isOn(Shortcut s) const {
  if (!_settings) return false;
  switch (s) {
    case kHome:
      return _settings->ControlCenterHome() == 1;
    case kMultitasking:
      return _settings->ControlCenterMultitasking() == 1;
    case kLockScreen:
      return _settings->ControlCenterLockScreen() == 1;
    default:
      return false;
  }
}

bool ZVControlCenterController::cellularIsOn() const {
  return _settings && _settings->ControlCenterCellularData() == 1;
}

std::optional<ZVControlCenterController::Shortcut>
ZVControlCenterController::shortcutFor(const std::string& identifier) const {
  static constexpr const char* kIdentifiers[kShortcutCount] = {
      kClockIdentifier, kCalculatorIdentifier, kCameraIdentifier};
  for (int s = 0; s < kShortcutCount; ++s) {
    auto shortcut = static_cast<Shortcut>(s);
    if (isOn(shortcut) && identifier == kIdentifiers[s]) return shortcut;
  }
  return std::nullopt;
}

void ZVControlCenterController::loadImages() {
  if (images_loaded_) return;
  images_loaded_ = true;
  _homeNormalImage = loadImage(homeNormalImagePath());
  _homeSelectedImage = loadImage(homeSelectedImagePath());
  _switcherNormalImage = loadImage(kSwitcherNormal);
  _switcherSelectedImage = loadImage(kSwitcherSelected);
  _lockNormalImage = loadImage(kLockNormal);
  _lockSelectedImage = loadImage(kLockSelected);
  _cellularNormalImage = loadImage(kCellularNormal);
  _cellularSelectedImage = loadImage(kCellularSelected);
}

ZVControlCenterController::Pair ZVControlCenterController::images(Shortcut s) {
  loadImages();
  switch (s) {
    case kHome:
      return {&_homeNormalImage, &_homeSelectedImage};
    case kMultitasking:
      return {&_switcherNormalImage, &_switcherSelectedImage};
    default:
      return {&_lockNormalImage, &_lockSelectedImage};
  }
}

void ZVControlCenterController::run(Shortcut s) {
  switch (s) {
    case kHome:
      home();
      break;
    case kMultitasking:
      multitasking();
      break;
    default:
      lockScreen();
      break;
  }
}

// --- Below 8.0 ---------------------------------------------------------------

void ZVControlCenterController::updateCCQuickLaunch(const rt::Id& section) {
  if (!host_ || !section) return;
  static constexpr const char* kButtons[kShortcutCount] = {
      kClockButton, kCalculatorButton, kCameraButton};
  for (int s = 0; s < kShortcutCount; ++s) {
    auto shortcut = static_cast<Shortcut>(s);
    if (!isOn(shortcut)) continue;
    rt::Id button = host_->objectIvar(section, kButtons[s]);
    if (!button) continue;
    Pair pair = images(shortcut);
    host_->setGlyphImages(button, *pair.normal, *pair.normal, *pair.selected);
    host_->setSelected(button, false);
  }
}

void ZVControlCenterController::updateCCSettings(const rt::Id& section) {
  if (!host_ || !section || !cellularIsOn()) return;
  rt::Id button = host_->settingsButton(section, kBluetoothIdentifier);
  if (!button) return;
  loadImages();
  host_->setGlyphImages(button, _cellularNormalImage, _cellularNormalImage,
                        _cellularSelectedImage);
  host_->setSelected(button, cellularDataIsEnabled());
}

bool ZVControlCenterController::actionCCQuickLaunch(const rt::Id& section,
                                                    const rt::Id& button) {
  if (!host_ || !section) return false;
  if (!isOn(kHome) && !isOn(kMultitasking) && !isOn(kLockScreen)) return false;
  if (!button || !host_->isControlCenterButton(button)) return false;
  static constexpr const char* kButtons[kShortcutCount] = {
      kClockButton, kCalculatorButton, kCameraButton};
  for (int s = 0; s < kShortcutCount; ++s) {
    auto shortcut = static_cast<Shortcut>(s);
    if (!isOn(shortcut)) continue;
    if (host_->objectIvar(section, kButtons[s]) != button) continue;
    host_->setSelected(button, false);
    run(shortcut);
    return true;
  }
  return false;
}

bool ZVControlCenterController::actionCCSettings(const rt::Id& section,
                                                 const rt::Id& button) {
  if (!host_ || !cellularIsOn()) return false;
  if (!button || !host_->isControlCenterButton(button)) return false;
  if (host_->identifier(button) != kBluetoothIdentifier) return false;
  bool enabled = !cellularDataIsEnabled();
  cellularDataSetIsEnable(enabled);
  host_->setSelected(button, enabled);
  return true;
}

// --- 8.0 and later -----------------------------------------------------------

ui::ImagePtr ZVControlCenterController::glyphImage(const rt::Id& module,
                                                   int64_t state) {
  if (!host_ || !module) return nullptr;
  auto shortcut = shortcutFor(host_->identifier(module));
  if (!shortcut) return nullptr;
  return *images(*shortcut).normal;
}

bool ZVControlCenterController::actionCCShortcut(const rt::Id& module,
                                                 const rt::Id& button) {
  if (!host_ || !module) return false;
  if (!button || !host_->isControlCenterButton(button)) return false;
  auto shortcut = shortcutFor(host_->identifier(module));
  if (!shortcut) return false;
  host_->setSelected(button, false);
  run(*shortcut);
  return true;
}

ui::ImagePtr ZVControlCenterController::bluetoothGlyphImage(
    const rt::Id& module, int64_t state) {
  if (!host_ || !module || !cellularIsOn()) return nullptr;
  if (host_->identifier(module) != kBluetoothIdentifier) return nullptr;
  loadImages();
  return _cellularNormalImage;
}

std::optional<std::string> ZVControlCenterController::bluetoothDisplayName(
    const rt::Id& module) {
  if (!cellularIsOn()) return std::nullopt;
  return platform::current().localizedString("Cellular", "Zorvel");
}

bool ZVControlCenterController::bluetoothUpdateState(const rt::Id& module) {
  if (!cellularIsOn()) return false;
  rt::Id m = module;
  if (m) {
    _cellularDataSettingModule = m;
  } else {
    m = _cellularDataSettingModule.lock();
    if (!m) return true;
  }
  if (host_) host_->setEnabled(m, cellularDataIsEnabled());
  return true;
}

bool ZVControlCenterController::bluetoothToggleState(const rt::Id& module,
                                                     bool& enabled) {
  if (!cellularIsOn() || !host_ || !module) return false;
  _cellularDataSettingModule = module;
  bool next = !host_->isEnabled(module);
  cellularDataSetIsEnable(next);
  host_->setEnabled(module, next);
  enabled = true;
  return true;
}

bool ZVControlCenterController::bluetoothActivate(const rt::Id& module) {
  if (!cellularIsOn()) return false;
  _cellularDataSettingModule = module;
  return true;
}

bool ZVControlCenterController::bluetoothDeactivate(const rt::Id& module) {
  if (!cellularIsOn()) return false;
  _cellularDataSettingModule.reset();
  return true;
}

void ZVControlCenterController::bluetoothViewWillAppear() {
  if (!_cellularDataStatusIsInited) {
    bluetoothUpdateState(nullptr);
    _cellularDataStatusIsInited = true;
    return;
  }
  std::weak_ptr<ZVControlCenterController> weak = weak_from_this();
  platform::current().performAfterDelay(
      this, "bluetoothUpdateState:", kUpdateStateDelay, [weak] {
        if (auto self = weak.lock()) self->bluetoothUpdateState(nullptr);
      });
}

// --- Actions -----------------------------------------------------------------

void ZVControlCenterController::home() {
  if (host_) host_->pressHomeButton();
}

void ZVControlCenterController::multitasking() {
  if (host_) host_->toggleSwitcher();
}

void ZVControlCenterController::lockScreen() {
  if (!host_) return;
  if (UIDevice::OSVersion() >= 8.0f) {
    host_->lockButtonUp(kLockSource);
  } else {
    host_->lockButtonUpFromSource(kLockSource);
  }
}

bool ZVControlCenterController::cellularDataIsEnabled() {
  return host_ && host_->cellularDataPlanIsEnabled();
}

void ZVControlCenterController::cellularDataSetIsEnable(bool enabled) {
  if (host_) host_->setCellularDataPlanEnabled(enabled);
}

}  // namespace zv
