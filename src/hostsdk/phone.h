// The Phone application's classes and selectors ("com.apple.mobilephone"),
// each declared once with its signature. The simulated Phone host defines
// them; the dialler hooks replace and send them.
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/message.h"

namespace zv::sdk {

struct PhoneApplication {
  static constexpr std::string_view kName = "PhoneApplication";
  static constexpr rt::Message<bool(std::string)> openURL{kName, "openURL:"};
  static constexpr rt::Message<void(std::string, std::string, int, bool, bool)>
      dialPhoneNumber{
          kName,
          "dialPhoneNumber:forUID:service:dialAssist:wasAlreadyAssisted:"};
  static constexpr rt::Message<void(rt::Id)> applicationDidEnterBackground{
      kName, "applicationDidEnterBackground:"};
  // The tab bar controller (selectedIndex counts favourites, recents,
  // contacts, keypad, voicemail).
  static constexpr rt::Message<rt::Id()> currentViewController{
      kName, "currentViewController"};
};

// The keypad tab's view controller.
struct DialerController {
  static constexpr std::string_view kName = "DialerController";
  static constexpr rt::Message<rt::Id()> dialerView{kName, "dialerView"};
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(bool)> viewWillDisappear{
      kName, "viewWillDisappear:"};
  static constexpr rt::Message<void(rt::Id, std::string)> phonePadAppendString{
      kName, "phonePad:appendString:"};
  static constexpr rt::Message<void(rt::Id, std::string)>
      phonePadReplaceLastDigitWithString{
          kName, "phonePad:replaceLastDigitWithString:"};
  static constexpr rt::Message<void(rt::Id)> phonePadDeleteLastDigit{
      kName, "phonePadDeleteLastDigit:"};
  static constexpr rt::Message<void(rt::Id)> callButtonPressed{
      kName, "_callButtonPressed:"};
  static constexpr rt::Message<void(rt::Id)> addButtonClicked{
      kName, "_addButtonClicked:"};
};

struct PHHandsetDialerView {
  static constexpr std::string_view kName = "PHHandsetDialerView";
  static constexpr rt::Message<rt::Id()> lcdView{kName, "lcdView"};
  static constexpr rt::Message<rt::Id()> addContactButton{kName,
                                                          "addContactButton"};
};

struct PHHandsetDialerLCDView {
  static constexpr std::string_view kName = "PHHandsetDialerLCDView";
  static constexpr rt::Message<std::string()> text{kName, "text"};
  static constexpr rt::Message<void(std::string, bool)> setTextNeedsFormat{
      kName, "setText:needsFormat:"};
};

struct PHHandsetDialerNameLabelView {
  static constexpr std::string_view kName = "PHHandsetDialerNameLabelView";
  static constexpr rt::Message<void(std::string, std::string, bool)>
      showNameLabelAnimated{kName, "showName:label:animated:"};
};

struct PHAddContactButton {
  static constexpr std::string_view kName = "PHAddContactButton";
  static constexpr rt::Message<rt::Id()> addToContactsLabel{
      kName, "addToContactsLabel"};
};

struct TPDialerPhonePad {
  static constexpr std::string_view kName = "TPDialerPhonePad";
};

}  // namespace zv::sdk
