// The springboard's Control Centre classes and selectors
// ("com.apple.springboard"), each declared once with its signature, for
// both system generations, and the targets of the Control Centre's own
// buttons (the springboard UI controller, the lock button, Bluetooth).
// The simulated springboard defines them; the Control Centre hooks replace
// and send them.
//
// Below 8.0 the Control Centre's sections own their buttons (quick-launch
// buttons in instance variables, settings buttons by identifier); from 8.0
// on every button is driven by a module (a shortcut or a setting) that
// answers its glyph, name and state.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"
#include "platform/ui/image.h"

namespace zv::sdk {

// A round Control Centre button (both generations): glyph images for the
// normal, source and selected looks, a selected state and an identifier.
struct SBControlCenterButton {
  static constexpr std::string_view kName = "SBControlCenterButton";
  static constexpr rt::Message<std::string()> identifier{kName, "identifier"};
  static constexpr rt::Message<void(std::string)> setIdentifier{
      kName, "setIdentifier:"};
  static constexpr rt::Message<ui::ImagePtr()> glyphImage{kName, "glyphImage"};
  static constexpr rt::Message<void(ui::ImagePtr)> setGlyphImage{
      kName, "setGlyphImage:"};
  static constexpr rt::Message<ui::ImagePtr()> sourceGlyphImage{
      kName, "sourceGlyphImage"};
  static constexpr rt::Message<void(ui::ImagePtr)> setSourceGlyphImage{
      kName, "setSourceGlyphImage:"};
  static constexpr rt::Message<ui::ImagePtr()> selectedGlyphImage{
      kName, "selectedGlyphImage"};
  static constexpr rt::Message<void(ui::ImagePtr)> setSelectedGlyphImage{
      kName, "setSelectedGlyphImage:"};
  static constexpr rt::Message<bool()> isSelected{kName, "isSelected"};
  static constexpr rt::Message<void(bool)> setSelected{kName, "setSelected:"};
};

// The Control Centre itself (both generations).
struct SBControlCenterViewController {
  static constexpr std::string_view kName = "SBControlCenterViewController";
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(bool)> viewWillDisappear{
      kName, "viewWillDisappear:"};
};

// --- Below 8.0 ---------------------------------------------------------------

struct SBCCQuickLaunchSectionController {
  static constexpr std::string_view kName = "SBCCQuickLaunchSectionController";
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(rt::Id)> buttonTapped{kName,
                                                          "buttonTapped:"};
  static constexpr rt::IvarName<rt::Id> clockButton{kName, "_clockButton"};
  static constexpr rt::IvarName<rt::Id> calculatorButton{kName,
                                                         "_calculatorButton"};
  static constexpr rt::IvarName<rt::Id> cameraButton{kName, "_cameraButton"};
  // The flashlight button, which no setting replaces.
  static constexpr rt::IvarName<rt::Id> torchButton{kName, "_torchButton"};
};

struct SBCCSettingsSectionController {
  static constexpr std::string_view kName = "SBCCSettingsSectionController";
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(rt::Id)> buttonTapped{kName,
                                                          "buttonTapped:"};
  using ButtonsByID = std::map<std::string, rt::Id>;
  static constexpr rt::IvarName<ButtonsByID> buttonsByID{kName, "_buttonsByID"};
};

// --- 8.0 and later -----------------------------------------------------------

// One quick-launch shortcut ("com.apple.mobiletimer", "com.apple.calculator",
// "com.apple.camera", "com.apple.flashlight"); its button is tapped through
// it.
struct SBCCShortcutButtonController {
  static constexpr std::string_view kName = "SBCCShortcutButtonController";
  static constexpr rt::Message<std::string()> identifier{kName, "identifier"};
  static constexpr rt::Message<ui::ImagePtr(int64_t)> glyphImageForState{
      kName, "glyphImageForState:"};
  static constexpr rt::Message<void(rt::Id)> buttonTapped{kName,
                                                          "buttonTapped:"};
};

// The settings section's Bluetooth module ("bluetooth").
struct SBCCBluetoothSetting {
  static constexpr std::string_view kName = "SBCCBluetoothSetting";
  static constexpr rt::Message<std::string()> identifier{kName, "identifier"};
  static constexpr rt::Message<ui::ImagePtr(int64_t)> glyphImageForState{
      kName, "glyphImageForState:"};
  static constexpr rt::Message<std::string()> displayName{kName, "displayName"};
  static constexpr rt::Message<void()> updateState{kName, "_updateState"};
  static constexpr rt::Message<void()> toggleState{kName, "_toggleState"};
  static constexpr rt::Message<void()> activate{kName, "activate"};
  static constexpr rt::Message<void()> deactivate{kName, "deactivate"};
  static constexpr rt::Message<bool()> isEnabled{kName, "isEnabled"};
  static constexpr rt::Message<void(bool)> setEnabled{kName, "setEnabled:"};
};

// --- What the buttons act on -------------------------------------------------

struct SBUIController {
  static constexpr std::string_view kName = "SBUIController";
  static constexpr rt::Message<rt::Id()> sharedInstance{kName, "sharedInstance",
                                                        true};
  // A Home-button press; the out flag (may be null) tells whether a display
  // was suspended.
  static constexpr rt::Message<bool(bool, bool*)>
      handleButtonEventToSuspendDisplays{
          kName, "_handleButtonEventToSuspendDisplays:displayWasSuspendedOut:"};
  static constexpr rt::Message<void()> toggleSwitcher{kName, "_toggleSwitcher"};
};

// The springboard's application object: the lock button.
struct SpringBoard {
  static constexpr std::string_view kName = "SpringBoard";
  static constexpr rt::Message<void(rt::Id, int64_t)> lockButtonUpFromSource8{
      kName, "_lockButtonUp:fromSource:"};
  static constexpr rt::Message<void(int64_t)> lockButtonUpFromSource{
      kName, "_lockButtonUpFromSource:"};
};

// The Bluetooth radio.
struct BluetoothManager {
  static constexpr std::string_view kName = "BluetoothManager";
  static constexpr rt::Message<rt::Id()> sharedInstance{kName, "sharedInstance",
                                                        true};
  static constexpr rt::Message<bool()> powered{kName, "powered"};
  static constexpr rt::Message<bool(bool)> setPowered{kName, "setPowered:"};
};

}  // namespace zv::sdk
