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

// --- The in-call screen (systems before 8.0) --------------------------------
// The Phone app's own screen for outgoing and active calls: the controller
// hears every call-status change (its argument is the call) and keeps its
// LCD view in the instance variable "_lcd"; the LCD shows the call's status
// line (label).

struct InCallController {
  static constexpr std::string_view kName = "InCallController";
  static constexpr rt::Message<void(rt::Id)> callStatusChanged{
      kName, "_callStatusChanged:"};
  static constexpr rt::IvarName<rt::Id> lcd{kName, "_lcd"};
};

struct InCallLCDView {
  static constexpr std::string_view kName = "InCallLCDView";
  static constexpr rt::Message<std::string()> label{kName, "label"};
  static constexpr rt::Message<void(std::string, bool)> setLabelAnimate{
      kName, "setLabel:animate:"};
  static constexpr rt::Message<bool()> shouldCenterText{kName,
                                                        "shouldCenterText"};
};

}  // namespace zv::sdk

// ---------------------------------------------------------------------------
// The Recents tab (Recents and Contacts lists). From 8.0 the calls are
// CHRecentCall objects, before RecentCall objects; both are listed by the
// same view controller, cell and manager classes.
// ---------------------------------------------------------------------------

#include <map>

#include "platform/ui/index_path.h"
#include "platform/value.h"

namespace zv::sdk {

struct PHRecentsViewController {
  static constexpr std::string_view kName = "PHRecentsViewController";
  static constexpr rt::Message<rt::Id(rt::Id, ui::IndexPath)>
      tableViewCellForRowAtIndexPath{kName, "tableView:cellForRowAtIndexPath:"};
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(rt::Id)> clearButtonTapped{
      kName, "_clearButtonTapped:"};
  static constexpr rt::Message<void(rt::Id, int64_t, ui::IndexPath)>
      tableViewCommitEditingStyleForRowAtIndexPath{
          kName, "tableView:commitEditingStyle:forRowAtIndexPath:"};
  static constexpr rt::Message<rt::Id()> table{kName, "table"};
  static constexpr rt::Message<rt::Id()> recentsManager{kName,
                                                        "recentsManager"};
};

struct PHRecentsCell {
  static constexpr std::string_view kName = "PHRecentsCell";
  static constexpr rt::Message<rt::Id()> call{kName, "call"};
  // The cell's labels and icon by name: "Name", "Label", "CallTypeIcon",
  // and "Count" before 8.0.
  static constexpr rt::Message<std::map<std::string, rt::Id>()> allViews{
      kName, "allViews"};
  // Calls grouped in the row (8.0 on).
  static constexpr rt::Message<int64_t()> count{kName, "count"};
  static constexpr rt::Message<bool()> isEditing{kName, "isEditing"};
  static constexpr rt::Message<void()> layoutSubviews{kName, "layoutSubviews"};
};

struct PHRecentsManager {
  static constexpr std::string_view kName = "PHRecentsManager";
  static constexpr rt::Message<void()> deleteAllCalls{kName, "deleteAllCalls"};
  static constexpr rt::Message<void(rt::Id)> deleteCall{kName, "deleteCall:"};
  static constexpr rt::Message<void()> callHistorySignificantChangeNotification{
      kName, "callHistorySignificantChangeNotification"};
};

// A call of the Recents list from 8.0 on.
struct CHRecentCall {
  static constexpr std::string_view kName = "CHRecentCall";
  // An array of dictionaries, one per grouped call, each with its date
  // under "kCHCallOccurrenceDateKey".
  static constexpr rt::Message<Value()> callOccurrences{kName,
                                                        "callOccurrences"};
  static constexpr rt::Message<Value()> date{kName, "date"};
  static constexpr rt::Message<std::string()> callerId{kName, "callerId"};
  // The contact's record id as a number, or null for a stranger.
  static constexpr rt::Message<Value()> addressBookRecordId{
      kName, "addressBookRecordId"};
  static constexpr rt::Message<rt::Id()> phoneBookManager{kName,
                                                          "phoneBookManager"};
};

// What a CHRecentCall's phoneBookManager answers for it.
struct PHPhoneBookManager {
  static constexpr std::string_view kName = "PHPhoneBookManager";
  // The caller's address-book record (an ABRecord), or nil.
  static constexpr rt::Message<rt::Id()> getABRecordRef{kName,
                                                        "getABRecordRef"};
};

// A call of the Recents list before 8.0.
struct RecentCall {
  static constexpr std::string_view kName = "RecentCall";
  // Dictionaries with the date under "RecentCallDate".
  static constexpr rt::Message<Value()> callOccurrences{kName,
                                                        "callOccurrences"};
  static constexpr rt::Message<Value()> date{kName, "date"};
  static constexpr rt::Message<std::string()> destination{kName, "destination"};
  // The contact's record id, -1 for a stranger.
  static constexpr rt::Message<int32_t()> uid{kName, "uid"};
  static constexpr rt::Message<rt::Id()> addressBookRecord{kName,
                                                           "addressBookRecord"};
};

}  // namespace zv::sdk
