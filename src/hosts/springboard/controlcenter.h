// The simulated springboard's Control Centre, as the platform shows it
// without any extension, in the generation of the process's system version:
//
// below 8.0   SBControlCenterViewController with two sections:
//             SBCCQuickLaunchSectionController (torch, clock, calculator,
//             camera buttons in "_torchButton", "_clockButton", ...; a tap
//             opens the app or switches the torch) and
//             SBCCSettingsSectionController (airplane, Wi-Fi, Bluetooth
//             toggles in "_buttonsByID"; a tap flips the radio; on
//             appearance each toggle shows its radio's state).
// 8.0 and on  the same view controller with modules: one
//             SBCCShortcutButtonController per quick-launch button (its
//             glyph asked with glyphImageForState:, a tap goes to its
//             buttonTapped:) and the settings modules, of which
//             SBCCBluetoothSetting (glyph, displayName, _updateState,
//             _toggleState, activate when the Control Centre appears,
//             deactivate when it goes, isEnabled / setEnabled:).
//
// What the buttons act on: SBUIController (+sharedInstance, the Home press
// and the app switcher), BluetoothManager (+sharedInstance, powered), and
// the application object's lock button (see controlcenter_app.h). Every
// effect is recorded in order in the process's ControlCenterEffects.
//
// Everything the host does to itself goes through runtime messages, so a
// replaced method sees it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/button.h"
#include "platform/ui/image.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

// Registers the Control Centre classes and their targets in the current
// process, for its system version.
void registerControlCenterClasses();

// The host's own glyph of a button ("torch", "clock", "calculator",
// "camera", "airplane", "wifi", "bluetooth"); the same image object every
// time in a process, so that it can be recognised.
ui::ImagePtr hostGlyph(const std::string& name);

// What the Control Centre's buttons did, in order: "home", "switcher:shown",
// "switcher:hidden", "lock", "launch:<bundle id>", "torch:on|off",
// "bluetooth:on|off", "wifi:on|off", "airplane:on|off".
struct ControlCenterEffects {
  std::vector<std::string> effects;
  static ControlCenterEffects& current();
  static void record(std::string effect) {
    current().effects.push_back(std::move(effect));
  }
};

// The system generation of the current process: 8.0 and later.
bool controlCenterIsModular();

class ControlCenterButton : public ui::UIButton {
 public:
  static constexpr const char* kClassName = "SBControlCenterButton";
  explicit ControlCenterButton(rt::Class* isa) : ui::UIButton(isa) {}
  // The name it is known by ("clock", "bluetooth", ...) and the identifier
  // the platform gives it (a settings toggle's "bluetooth", a shortcut's
  // application).
  std::string name;
  std::string identifier;
  ui::ImagePtr glyph, sourceGlyph, selectedGlyph;
  bool selected = false;
  // The title the toggle shows (a setting module's name); "" for none.
  std::string title;
  // A disc, white when selected, with its glyph: the host's own artwork
  // drawn by name, any other image as it is (dark on the white disc).
  void draw(ui::Canvas& canvas) const override;
};

// A row of buttons, evenly spaced (a section's view).
class ControlCenterRow : public ui::UIView {
 public:
  static constexpr const char* kClassName = "SBControlCenterSectionView";
  explicit ControlCenterRow(rt::Class* isa) : ui::UIView(isa) {}
  void layoutSubviews() override;
};

// The panel over the bottom of the screen: the settings row above the
// quick-launch row.
class ControlCenterPanel : public ui::UIView {
 public:
  static constexpr const char* kClassName = "SBControlCenterContentView";
  explicit ControlCenterPanel(rt::Class* isa) : ui::UIView(isa) {}
  std::weak_ptr<ui::UIView> settingsRow, quickLaunchRow;
  void layoutSubviews() override;
};

// 8.x: one quick-launch shortcut.
class ShortcutModule : public rt::Object {
 public:
  static constexpr const char* kClassName = "SBCCShortcutButtonController";
  explicit ShortcutModule(rt::Class* isa) : rt::Object(isa) {}
  std::string identifier;
  std::shared_ptr<ControlCenterButton> button;
};

// 8.x: the Bluetooth setting module.
class BluetoothSettingModule : public rt::Object {
 public:
  static constexpr const char* kClassName = "SBCCBluetoothSetting";
  explicit BluetoothSettingModule(rt::Class* isa) : rt::Object(isa) {}
  bool enabled = false;
  bool active = false;
  std::shared_ptr<ControlCenterButton> button;
};

class QuickLaunchSection : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "SBCCQuickLaunchSectionController";
  explicit QuickLaunchSection(rt::Class* isa) : ui::UIViewController(isa) {}
  // Left to right: torch, clock, calculator, camera.
  std::vector<std::shared_ptr<ControlCenterButton>> buttons;
  std::vector<std::shared_ptr<ShortcutModule>> modules;  // 8.x

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

class SettingsSection : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "SBCCSettingsSectionController";
  explicit SettingsSection(rt::Class* isa) : ui::UIViewController(isa) {}
  // Left to right: airplane, Wi-Fi, Bluetooth.
  std::vector<std::shared_ptr<ControlCenterButton>> buttons;
  std::shared_ptr<BluetoothSettingModule> bluetooth;  // 8.x

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

class ControlCenterViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "SBControlCenterViewController";
  explicit ControlCenterViewController(rt::Class* isa)
      : ui::UIViewController(isa) {}

  // A new Control Centre with its sections (and modules on 8.x).
  static std::shared_ptr<ControlCenterViewController> make();

  std::shared_ptr<QuickLaunchSection> quickLaunch;
  std::shared_ptr<SettingsSection> settings;
  bool presented = false;

  // User actions: swipe up (viewWillAppear:), swipe down
  // (viewWillDisappear:); each does nothing when already so.
  void present();
  void dismiss();
  // The button with that identifier ("torch", "clock", "calculator",
  // "camera", "airplane", "wifi", "bluetooth"), or null.
  std::shared_ptr<ControlCenterButton> button(const std::string& name) const;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

// The springboard UI controller: Home presses and the app switcher.
class SpringBoardUIController : public rt::Object {
 public:
  static constexpr const char* kClassName = "SBUIController";
  explicit SpringBoardUIController(rt::Class* isa) : rt::Object(isa) {}
  int homePresses = 0;
  bool switcherShown = false;
};

// The Bluetooth radio (and, beside it, the Wi-Fi and airplane switches and
// the torch, which the Control Centre's other buttons flip).
class BluetoothRadio : public rt::Object {
 public:
  static constexpr const char* kClassName = "BluetoothManager";
  explicit BluetoothRadio(rt::Class* isa) : rt::Object(isa) {}
  bool powered = false;
};

struct ControlCenterRadios {
  bool wifi = true, airplane = false, torch = false;
  static ControlCenterRadios& current();
};

}  // namespace zv::hosts
