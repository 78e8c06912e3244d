// ZVControlCenterController: the springboard Control Centre's replacement
// buttons. Each of the four ControlCenter... settings switches one
// replacement on, and only with the value 1 (any other value leaves the
// host's button alone):
//   ControlCenterHome          clock quick-launch button  -> Home button
//   ControlCenterMultitasking  calculator button          -> app switcher
//   ControlCenterLockScreen    camera button              -> lock button
//   ControlCenterCellularData  Bluetooth toggle           -> cellular data
//
// Below system 8.0 the controller restyles the host's quick-launch and
// settings buttons when their sections appear and takes over their taps;
// from 8.0 on the host asks its shortcut and Bluetooth modules for glyph,
// name and state, and the controller answers for the replaced ones. Every
// "decide" method answers nil/nullopt/false to let the host go on as usual.
//
// The eight glyph images are read once, on first need, from
// "/Library/Zorvel/" and kept; a missing or unreadable file gives no image.
// The host is reached only through ControlCenterHost. A per-process
// singleton; main thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "controlcenter/control_center_host.h"
#include "core/settings_catalogue.h"
#include "platform/runtime/object.h"
#include "platform/ui/image.h"

namespace zv {

class ZVControlCenterController
    : public std::enable_shared_from_this<ZVControlCenterController> {
 public:
  // Identifiers of the 8.x shortcut modules that can be replaced, and of
  // the Bluetooth setting.
  static constexpr const char* kClockIdentifier = "com.apple.mobiletimer";
  static constexpr const char* kCalculatorIdentifier = "com.apple.calculator";
  static constexpr const char* kCameraIdentifier = "com.apple.camera";
  static constexpr const char* kBluetoothIdentifier = "bluetooth";
  // The 7.x quick-launch section's buttons and the settings section's map.
  static constexpr const char* kClockButton = "_clockButton";
  static constexpr const char* kCalculatorButton = "_calculatorButton";
  static constexpr const char* kCameraButton = "_cameraButton";
  // Source of the lock-button press.
  static constexpr int kLockSource = 1;
  // Delay of the state update on every appearance after the first.
  static constexpr double kUpdateStateDelay = 0.1;

  static std::shared_ptr<ZVControlCenterController> sharedInstance();
  ZVControlCenterController();

  void setHost(std::shared_ptr<ControlCenterHost> host) {
    host_ = std::move(host);
  }

  // --- Below 8.0 -----------------------------------------------------------
  // After the quick-launch section appeared: restyle its replaced buttons.
  void updateCCQuickLaunch(const rt::Id& section);
  // After the settings section appeared: restyle its Bluetooth button as the
  // cellular toggle, selected exactly when cellular data is on.
  void updateCCSettings(const rt::Id& section);
  // A tap on a quick-launch button; true when it ran a replacement.
  bool actionCCQuickLaunch(const rt::Id& section, const rt::Id& button);
  // A tap on a settings button; true when it toggled cellular data.
  bool actionCCSettings(const rt::Id& section, const rt::Id& button);

  // --- 8.0 and later: shortcut modules -------------------------------------
  // The replacement's normal image for every state; nil: the host's own.
  ui::ImagePtr glyphImage(const rt::Id& module, int64_t state);
  // A tap on a shortcut button; true when it ran a replacement.
  bool actionCCShortcut(const rt::Id& module, const rt::Id& button);

  // --- 8.0 and later: the Bluetooth setting as cellular toggle -------------
  ui::ImagePtr bluetoothGlyphImage(const rt::Id& module, int64_t state);
  std::optional<std::string> bluetoothDisplayName(const rt::Id& module);
  // Sets the module's state from cellular data; nil uses the module last
  // seen.
  bool bluetoothUpdateState(const rt::Id& module);
  // Flips cellular data and the module's state; sets `enabled` (the
  // caller's output flag) to true when it did.
  bool bluetoothToggleState(const rt::Id& module, bool& enabled);
  bool bluetoothActivate(const rt::Id& module);
  bool bluetoothDeactivate(const rt::Id& module);
  // After the Control Centre view appeared: update the toggle at once the
  // first time, 0.1 s later every other time.
  void bluetoothViewWillAppear();

  // --- Actions --------------------------------------------------------------
  void home();
  void multitasking();
  void lockScreen();
  bool cellularDataIsEnabled();
  void cellularDataSetIsEnable(bool enabled);

  // The module the cellular toggle last saw (not owned); nil when none.
  rt::Id cellularDataSettingModule() const {
    return _cellularDataSettingModule.lock();
  }
  bool cellularDataStatusIsInited() const {
    return _cellularDataStatusIsInited;
  }

  // The image files of the Home pair on this device: "home_*" on the
  // 3.5-inch screen and on the iPhone 5, "home5s_*" everywhere else.
  static std::string homeNormalImagePath();
  static std::string homeSelectedImagePath();

 private:
  enum Shortcut { kHome, kMultitasking, kLockScreen, kShortcutCount };
  struct Pair {
    ui::ImagePtr* normal;
    ui::ImagePtr* selected;
  };

  // Whether the setting of a replacement holds exactly 1.
  bool isOn(Shortcut s) const;
  bool cellularIsOn() const;
  // The 8.x shortcut an identifier stands for, when it is switched on.
  std::optional<Shortcut> shortcutFor(const std::string& identifier) const;
  void run(Shortcut s);
  Pair images(Shortcut s);
  void loadImages();

  std::shared_ptr<ZVControlCenterSettings> _settings;
  std::shared_ptr<ControlCenterHost> host_;
  bool images_loaded_ = false;
  ui::ImagePtr _homeNormalImage, _homeSelectedImage;
  ui::ImagePtr _switcherNormalImage, _switcherSelectedImage;
  ui::ImagePtr _lockNormalImage, _lockSelectedImage;
  ui::ImagePtr _cellularNormalImage, _cellularSelectedImage;
  rt::WeakId _cellularDataSettingModule;
  bool _cellularDataStatusIsInited = false;
};

}  // namespace zv
