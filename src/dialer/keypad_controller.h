// ZVKeypadController: the dial-pad search on the Phone app's keypad. While
// search is on, typed keys go into the controller's own input instead of the
// host's display, every change runs the T9 search and the pager laid over
// the display shows the best match (with a list of all results a tap away);
// the call and add-to-contacts buttons copy the chosen number into the host
// display first. While search is off the host types as usual and the typed
// number's area is appended to the host's add-to-contacts and name labels.
// A small on/off button, visible only while nothing is typed, switches
// search; the choice is stored as EnableSearch 3.0 s after the last press.
// A long press on the pager opens a menu: copy, paste, prefix dial, send
// message, reload.
//
// The host keypad is reached only through KeypadHost (supplied by the
// keypad hooks). A per-process singleton; main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "dialer/keypad_geometry.h"
#include "dialer/keypad_host.h"
#include "dialer/keypad_list_view.h"
#include "dialer/keypad_view.h"
#include "platform/ui/sheets.h"
#include "search/searcher.h"

namespace zv {

class ZVAreaLoader;

class ZVKeypadController
    : public ZVKeypadViewDelegate,
      public ZVKeypadListViewDelegate,
      public std::enable_shared_from_this<ZVKeypadController> {
 public:
  static constexpr int kKeypadViewTag = 10086;
  static constexpr int kMenuCopyPrefixMessage = 1001;
  static constexpr int kMenuCopyMessage = 1002;
  static constexpr int kMenuPasteReload = 1003;
  static constexpr const char* kEnableSearchKey = "EnableSearch";
  static constexpr double kStoreSearchDelay = 3.0;

  static std::shared_ptr<ZVKeypadController> sharedInstance();
  ZVKeypadController();

  void setHost(std::shared_ptr<KeypadHost> host) { host_ = std::move(host); }

  // --- Called by the hooks --------------------------------------------------
  void viewWillAppear(const rt::Id& dialer);
  void viewWillDisappear();
  // Each answers true when it consumed the key (the host must not type it).
  bool phonePadAppendString(const rt::Id& pad, const std::string& text);
  bool phonePadReplaceLastDigitWithString(const rt::Id& pad,
                                          const std::string& text);
  bool phonePadDeleteLastDigit(const rt::Id& pad);
  // Never consumes: the host then dials what its display holds.
  bool phonePadCallButtonPressed(const rt::Id& pad);
  // The host's name-label text with the typed number's area.
  std::string areaNameLabel(const std::string& label);
  // The app went to the background.
  void suspend();

  // --- User actions on the system's own views ------------------------------
  void onoffButtonPressed();
  void keypadViewAddButtonPressed() override;
  void keypadViewDeleteButtonPressed() override;
  void keypadViewDeleteButtonLongPress() override;
  void keypadViewListButtonPressed() override;
  void keypadViewMenuButtonLongPress() override;
  void keypadViewAddToContactsButtonPressed();
  void keypadListViewDidSelectRow(size_t row) override;
  void actionSheetClickedButtonAtIndex(ui::UIActionSheet& sheet, int index);

  void copyPasteAction();
  void prefixDialAction();
  void sendMessageAction();
  void reloadAction();

  // --- State, for the views' owners and for inspection ---------------------
  bool isSearchEnabled() const { return _enable; }
  const std::string& inputNumber() const { return _inputNumber; }
  const std::shared_ptr<ZVKeypadView>& keypadView() const {
    return _keypadView;
  }
  const std::shared_ptr<ZVKeypadListView>& listView() const {
    return _listView;
  }
  const std::shared_ptr<ui::UIButton>& onoffButton() const {
    return _onoffButton;
  }
  bool isMenuShown() const { return menu_shown_; }

 private:
  enum class Key { Append, Replace, Delete };
  enum class Capability { AddContact, SetDisplay, ReadDisplay };
  bool handleKey(Key key, const rt::Id& pad, const std::string& text);
  bool viewsInstalled();
  bool capable(Capability c);
  void search(const std::string& text);
  void clearSearch();
  void loadSearch();
  void phonePadSetString(const std::optional<std::string>& text);
  void phonePadDeleteAllDigit();
  void phonePadCallNumber(const std::optional<std::string>& text);
  void updateOnoffButton();
  void setEnableSearch();
  void areaAddToContacts();
  void showKeypadView();
  void hideKeypadView();
  void hideListView();
  std::optional<std::string> displayArea();

  std::shared_ptr<KeypadHost> host_;
  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVSearcher> _search;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVKeypadView> _keypadView;
  std::shared_ptr<ZVKeypadListView> _listView;
  rt::WeakId _dialer;
  ZVSearcher::PersonList _noResults;
  std::shared_ptr<ZVPerson> _noResultsPerson;
  bool _isResultsChanged = false;
  rt::WeakId _callPhonePad, _deletePhonePad, _numberPhonePad;
  bool _enable = false;
  bool _keypadViewInited = false;
  std::shared_ptr<ui::UIButton> _onoffButton;
  ui::ImagePtr _onImage, _offImage;
  std::string _inputNumber;
  std::optional<std::string> _addToContactsText;
  // Process-wide: one long-press menu at a time, and the host capability
  // answers, unknown until first asked with a dialer, then fixed.
  bool menu_shown_ = false;
  std::optional<bool> capabilities_[3];
};

}  // namespace zv
