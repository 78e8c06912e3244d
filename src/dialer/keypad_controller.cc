#include "dialer/keypad_controller.h"

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/device.h"
#include "core/number_utils.h"
#include "dialer/phone_controller.h"
#include "dialer/text_runs.h"
#include "platform/platform.h"
#include "platform/utf8.h"

namespace zv {
namespace {

std::string localized(const char* key) {
  return platform::current().localizedString(key, "Zorvel");
}

void popLastCharacter(std::string& s) {
  if (s.empty()) return;
  size_t i = s.size() - 1;
  while (i > 0 && (static_cast<unsigned char>(s[i]) & 0xC0) == 0x80) --i;
  s.resize(i);
}

}  // namespace

KeypadGeometry keypadGeometry() {
  const KeypadScreen screen = UIDevice::isPhone4screen()    ? k35InchScreen
                              : UIDevice::isPhone5screen()  ? k4InchScreen
                              : UIDevice::isPhone6screen()  ? k47InchScreen
                              : UIDevice::isPhone6pscreen() ? k55InchScreen
                                                            : kOtherScreen;
  KeypadGeometry g = kKeypadScreens[screen];
  if (UIDevice::OSVersion() < 7.1f) {
    g.pagerTop = kPre71PagerTop;
    g.listTop = UIDevice::isPhone4screen() ? kPre71ListTop35 : kPre71ListTop;
  }
  return g;
}

std::shared_ptr<ZVKeypadController> ZVKeypadController::sharedInstance() {
  return platform::Process::current().singleton<ZVKeypadController>(
      [] { return std::make_shared<ZVKeypadController>(); });
}

ZVKeypadController::ZVKeypadController()
    : _settings(ZVPhoneSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()),
      _noResultsPerson(std::make_shared<ZVPerson>()) {
  _noResults = {_noResultsPerson};
  _enable = ZVSearcher::getBoolSettingsForKey(kEnableSearchKey);
}

bool ZVKeypadController::capable(Capability c) {
  auto dialer = _dialer.lock();
  if (!dialer || !host_) return false;
  auto& cached = capabilities_[static_cast<int>(c)];
  if (!cached) {
    switch (c) {
      case Capability::AddContact:
        cached = host_->hasAddContactButton(dialer);
        break;
      case Capability::SetDisplay:
        cached = host_->canSetDisplay(dialer);
        break;
      case Capability::ReadDisplay:
        cached = host_->canReadDisplay(dialer);
        break;
    }
  }
  return *cached;
}

bool ZVKeypadController::viewsInstalled() {
  if (!_keypadViewInited) return false;
  // The host may have thrown its view away with our views in it; keys then
  // go to the host until the next appearance puts them back.
  auto dialer = _dialer.lock();
  auto view = dialer && host_ ? host_->view(dialer) : nullptr;
  if (!view || !_keypadView || view->viewWithTag(kKeypadViewTag) != _keypadView)
    _keypadViewInited = false;
  return _keypadViewInited;
}

// --- Keys ------------------------------------------------------------------

bool ZVKeypadController::handleKey(Key key, const rt::Id& pad,
                                   const std::string& text) {
  if (!viewsInstalled()) return false;
  (key == Key::Delete ? _deletePhonePad : _numberPhonePad) = pad;
  if (!_settings->EnableDialer()) {
    hideKeypadView();
    return false;
  }
  if (_enable) {
    phonePadDeleteAllDigit();
    if (key != Key::Append) popLastCharacter(_inputNumber);
    if (key != Key::Delete) _inputNumber += text;
    search(_inputNumber);
  } else {
    auto dialer = _dialer.lock();
    if (key == Key::Append)
      host_->appendString(dialer, pad, text);
    else if (key == Key::Replace)
      host_->replaceLastDigit(dialer, pad, text);
    else
      host_->deleteLastDigit(dialer, pad);
    areaAddToContacts();
  }
  hideListView();
  updateOnoffButton();
  return true;
}

bool ZVKeypadController::phonePadAppendString(const rt::Id& pad,
                                              const std::string& text) {
  return handleKey(Key::Append, pad, text);
}

bool ZVKeypadController::phonePadReplaceLastDigitWithString(
    const rt::Id& pad, const std::string& text) {
  return handleKey(Key::Replace, pad, text);
}

bool ZVKeypadController::phonePadDeleteLastDigit(const rt::Id& pad) {
  return handleKey(Key::Delete, pad, "");
}

bool ZVKeypadController::phonePadCallButtonPressed(const rt::Id& pad) {
  if (!viewsInstalled()) return false;
  _callPhonePad = pad;
  if (_settings->EnableDialer() && _enable && !_inputNumber.empty()) {
    _inputNumber.clear();
    phonePadSetString(_keypadView->getNumber());
    clearSearch();
  }
  hideKeypadView();
  if (_onoffButton) _onoffButton->setHidden(true);
  return false;
}

// --- Search ----------------------------------------------------------------

void ZVKeypadController::loadSearch() {
  if (_search) return;
  _search = ZVSearcher::sharedInstance();
  if (_keypadView) _keypadView->setSearcher(_search);
  if (_listView) _listView->setSearcher(_search);
}

void ZVKeypadController::search(const std::string& text) {
  loadSearch();
  _isResultsChanged = true;
  bool found = false;
  if (utf16Length(text) >= 2) found = _search->search(text) > 0;
  if (!found) _search->clearSearch();
  _keypadView->setHidden(false);
  _keypadView->setIndex(0);
  _keypadView->setInputNumber(_inputNumber);
  if (_search->resultsCount() > 0) {
    _keypadView->setPersons(_search->results());
  } else {
    _noResultsPerson->setPhoneNumberF(_inputNumber);
    _keypadView->setPersons(_noResults);
  }
  _keypadView->updateLCDViews();
}

void ZVKeypadController::clearSearch() {
  _isResultsChanged = true;
  if (_search) _search->clearSearch();
  if (_keypadView) _keypadView->clearLCDViews();
  updateOnoffButton();
}

// --- The host display ------------------------------------------------------

void ZVKeypadController::phonePadSetString(
    const std::optional<std::string>& text) {
  auto dialer = _dialer.lock();
  if (!dialer || !text) return;
  if (capable(Capability::SetDisplay)) {
    host_->setDisplayText(dialer, *text, true);
  } else {
    phonePadDeleteAllDigit();
    host_->appendString(dialer, _numberPhonePad.lock(), *text);
  }
}

void ZVKeypadController::phonePadDeleteAllDigit() {
  auto dialer = _dialer.lock();
  if (!dialer) return;
  if (capable(Capability::SetDisplay)) {
    host_->setDisplayText(dialer, "", false);
    return;
  }
  // Without a display setter the longest number we clear is 50 keys.
  auto pad = _deletePhonePad.lock();
  for (int i = 0; i < 50; ++i) host_->deleteLastDigit(dialer, pad);
}

void ZVKeypadController::phonePadCallNumber(
    const std::optional<std::string>& text) {
  auto dialer = _dialer.lock();
  if (!dialer || !text) return;
  phonePadSetString(text);
  host_->callButtonPressed(dialer, _callPhonePad.lock());
}

// --- The on/off switch -----------------------------------------------------

void ZVKeypadController::updateOnoffButton() {
  if (!_enable && capable(Capability::ReadDisplay))
    _inputNumber = host_->displayText(_dialer.lock());
  if (!_onoffButton) return;
  if (!_inputNumber.empty()) {
    _onoffButton->setUserInteractionEnabled(false);
    ui::UIView::animate(
        0.25, [this] { _onoffButton->setAlpha(0); },
        [this] {
          // onoffButtonAnimationDidStop: a button that takes no touches goes.
          if (!_onoffButton->userInteractionEnabled())
            _onoffButton->setHidden(true);
        });
  } else {
    _onoffButton->setUserInteractionEnabled(true);
    _onoffButton->setHidden(false);
    _onoffButton->setAlpha(1);
  }
  _onoffButton->setImage(_enable ? _onImage : _offImage, ui::kStateNormal);
  _onoffButton->setAccessibilityLabel(_enable ? "search on" : "search off");
}

void ZVKeypadController::onoffButtonPressed() {
  _enable = !_enable;
  if (_keypadView) _keypadView->setHidden(!_enable);
  updateOnoffButton();
  auto& platform = platform::current();
  platform.cancelPrevious(this, "setEnableSearch");
  std::weak_ptr<ZVKeypadController> weak = weak_from_this();
  platform.performAfterDelay(this, "setEnableSearch", kStoreSearchDelay,
                             [weak] {
                               if (auto me = weak.lock()) me->setEnableSearch();
                             });
}

void ZVKeypadController::setEnableSearch() {
  if (ZVSearcher::setBoolSettingsForKey(kEnableSearchKey, _enable)) return;
  // Not stored (a full disk, a read-only device): the button and the
  // keypad go back to what the file holds, so they never claim a state
  // that the next start would not have.
  _enable = ZVSearcher::getBoolSettingsForKey(kEnableSearchKey);
  if (_keypadView) _keypadView->setHidden(!_enable);
  updateOnoffButton();
}

// --- Pager and list --------------------------------------------------------

void ZVKeypadController::keypadListViewDidSelectRow(size_t row) {
  _keypadView->setIndex(row);
  _keypadView->updateLCDViews();
}

void ZVKeypadController::keypadViewListButtonPressed() {
  if (!_keypadView || !_listView) return;
  if (_keypadView->getCount() < 2) {
    hideListView();
    return;
  }
  if (_listView->isHidden()) {
    _listView->setHidden(false);
    const auto& persons = _keypadView->persons();
    _listView->setInputNumber(_inputNumber);
    _listView->setUpInputNumber(
        (persons.back()->priority() & ZVPerson::kTypedNumber) != 0);
    _listView->setPersons(persons);
    if (_isResultsChanged) {
      _listView->reloadDataAndScrollToTop();
      _isResultsChanged = false;
    } else {
      _listView->reloadData();
    }
  } else {
    hideListView();
  }
}

void ZVKeypadController::keypadViewDeleteButtonPressed() {
  phonePadDeleteLastDigit(_deletePhonePad.lock());
}

void ZVKeypadController::keypadViewDeleteButtonLongPress() {
  phonePadDeleteAllDigit();
  _inputNumber.clear();
  search(_inputNumber);
  hideListView();
  updateOnoffButton();
}

void ZVKeypadController::keypadViewAddButtonPressed() {
  keypadViewAddToContactsButtonPressed();
}

void ZVKeypadController::keypadViewAddToContactsButtonPressed() {
  auto dialer = _dialer.lock();
  if (_inputNumber.empty() || !dialer || !host_->canAddToContacts(dialer))
    return;
  rt::Id button = capable(Capability::AddContact)
                      ? host_->addContactButton(dialer)
                      : nullptr;
  hideKeypadView();
  phonePadSetString(_inputNumber);
  host_->addButtonClicked(dialer, button);
}

// --- The long-press menu ---------------------------------------------------

void ZVKeypadController::keypadViewMenuButtonLongPress() {
  if (menu_shown_) return;
  menu_shown_ = true;
  hideListView();
  const std::string n = _keypadView->getNumber().value_or("");
  const std::string& prefix = _settings->PrefixNumber();
  auto sheet = ui::make<ui::UIActionSheet>();
  if (!n.empty() && !prefix.empty()) {
    sheet->setTag(kMenuCopyPrefixMessage);
    sheet->addButtonWithTitle(localized("Copy"));
    sheet->addButtonWithTitle(prefix + " " + localized("Prefix Dial"));
    sheet->addButtonWithTitle(localized("Send Message"));
  } else if (!n.empty()) {
    sheet->setTag(kMenuCopyMessage);
    sheet->addButtonWithTitle(localized("Copy"));
    sheet->addButtonWithTitle(localized("Send Message"));
  } else {
    sheet->setTag(kMenuPasteReload);
    sheet->addButtonWithTitle(localized("Paste"));
    sheet->addButtonWithTitle(localized("Reload"));
  }
  sheet->setCancelButtonIndex(sheet->addButtonWithTitle(localized("Cancel")));
  std::weak_ptr<ZVKeypadController> weak = weak_from_this();
  sheet->delegate = [weak](ui::UIActionSheet& s, int index) {
    if (auto me = weak.lock()) me->actionSheetClickedButtonAtIndex(s, index);
  };
  auto dialer = _dialer.lock();
  sheet->showInView(dialer && host_ ? host_->view(dialer) : nullptr);
}

void ZVKeypadController::actionSheetClickedButtonAtIndex(
    ui::UIActionSheet& sheet, int index) {
  menu_shown_ = false;
  if (index == sheet.cancelButtonIndex()) return;
  switch (sheet.tag()) {
    case kMenuCopyPrefixMessage:
      if (index == 0) copyPasteAction();
      if (index == 1) prefixDialAction();
      if (index == 2) sendMessageAction();
      break;
    case kMenuCopyMessage:
      if (index == 0) copyPasteAction();
      if (index == 1) sendMessageAction();
      break;
    case kMenuPasteReload:
      if (index == 0) copyPasteAction();
      if (index == 1) reloadAction();
      break;
    default:
      break;
  }
}

void ZVKeypadController::copyPasteAction() {
  const std::string n = _keypadView->getNumber().value_or("");
  if (!n.empty()) {
    ui::UIPasteboard::setString(n);
    return;
  }
  const std::string pasted = keypadString(ui::UIPasteboard::string());
  if (pasted.empty()) return;
  _inputNumber.clear();
  phonePadAppendString(nullptr, pasted);
}

void ZVKeypadController::prefixDialAction() {
  const std::string n = _keypadView->getNumber().value_or("");
  auto phone = platform::Process::current().slot<ZVPhoneController>();
  if (n.empty() || !phone) return;
  // By hand: the exclusion rules do not apply.
  phonePadCallNumber(phone->addPrefixNumber(n));
}

void ZVKeypadController::sendMessageAction() {
  platform::current().openURL("sms:" + _keypadView->getNumber().value_or(""));
}

void ZVKeypadController::reloadAction() {
  if (!_search) {
    loadSearch();
    return;
  }
  _search->setAddressBookChanged(true);
  _search->loadData();
}

// --- Areas on the host's labels --------------------------------------------

std::optional<std::string> ZVKeypadController::displayArea() {
  auto dialer = _dialer.lock();
  return _area->getArea(host_->displayText(dialer), _settings->AreaNameKeypad(),
                        _settings->AreaTypeKeypad());
}

std::string ZVKeypadController::areaNameLabel(const std::string& label) {
  if (!_settings->EnableArea() || !_settings->AreaNameKeypad() ||
      _dialer.expired() || !capable(Capability::ReadDisplay))
    return label;
  auto area = displayArea();
  if (!area) return label;
  return appendArea(label, *area, AreaGap::kOne);
}

void ZVKeypadController::areaAddToContacts() {
  if (!_settings->EnableArea() || !_settings->AreaNameKeypad() ||
      _dialer.expired() || !capable(Capability::ReadDisplay) ||
      !capable(Capability::AddContact))
    return;
  auto label =
      host_->addToContactsLabel(host_->addContactButton(_dialer.lock()));
  if (!label) return;
  auto area = displayArea();
  if (!_addToContactsText) _addToContactsText = label->text();
  if (!area) {
    label->setText(*_addToContactsText);
  } else if (!labelEndsWithArea(label->text(), *area)) {
    label->setText(joinArea(*_addToContactsText, *area, AreaGap::kOne));
  }
}

// --- Installing and hiding the views ---------------------------------------

void ZVKeypadController::showKeypadView() {
  auto dialer = _dialer.lock();
  auto view = dialer && host_ ? host_->view(dialer) : nullptr;
  if (!view) return;
  if (_keypadView)
    _keypadViewInited = view->viewWithTag(kKeypadViewTag) == _keypadView;
  if (!_keypadViewInited) {
    _keypadViewInited = true;
    const KeypadGeometry g = keypadGeometry();
    const double width = view->frame().size.width;
    std::weak_ptr<ZVKeypadController> weak = weak_from_this();
    if (!_keypadView) {
      _keypadView =
          ZVKeypadView::make({{0, g.pagerTop}, {width, g.pagerHeight}});
      _keypadView->setTag(kKeypadViewTag);
      _keypadView->setDelegate(
          std::static_pointer_cast<ZVKeypadViewDelegate>(shared_from_this()));
      _keypadView->setSearcher(_search);
      _keypadView->setPersons(_noResults);
      std::optional<std::string> hostText;
      if (capable(Capability::AddContact))
        if (auto label =
                host_->addToContactsLabel(host_->addContactButton(dialer)))
          hostText = label->text();
      _keypadView->setAddToContactsText(
          hostText ? hostText : localized("Add To Contacts"));
    }
    if (!_listView) {
      _listView =
          ZVKeypadListView::make({{0, g.listTop}, {width, g.listHeight}});
      _listView->setHidden(true);
      _listView->setDelegate(std::static_pointer_cast<ZVKeypadListViewDelegate>(
          shared_from_this()));
      _listView->setSearcher(_search);
    }
    if (!_onoffButton) {
      _onoffButton = ui::make<ui::UIButton>();
      _onoffButton->setFrame(
          {{0, g.buttonTop}, {kOnOffButtonWidth, kOnOffButtonHeight}});
      _onoffButton->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
        if (auto me = weak.lock()) me->onoffButtonPressed();
      });
      auto& platform = platform::current();
      _onImage =
          ui::Image::fromFile(platform.path("/Library/Zorvel/on.png"), 2);
      _offImage =
          ui::Image::fromFile(platform.path("/Library/Zorvel/off.png"), 2);
    }
    view->addSubview(_keypadView);
    view->addSubview(_listView);
    view->addSubview(_onoffButton);
  }
  _keypadView->setHidden(!_enable);
  updateOnoffButton();
}

void ZVKeypadController::hideKeypadView() {
  if (_keypadView) _keypadView->setHidden(true);
  if (_onoffButton) _onoffButton->setHidden(true);
  hideListView();
}

void ZVKeypadController::hideListView() {
  if (!_listView) return;
  _listView->setHidden(true);
  _listView->setPersons({});
}

void ZVKeypadController::viewWillAppear(const rt::Id& dialer) {
  _dialer = dialer;
  loadSearch();
  if (_search->isAddressBookChanged()) _search->loadData();
  if (_settings->EnableDialer())
    showKeypadView();
  else
    hideKeypadView();
}

void ZVKeypadController::viewWillDisappear() { hideListView(); }

void ZVKeypadController::suspend() {
  if (!_settings->DialerAutoClearNumber() || !_enable || _inputNumber.empty())
    return;
  _inputNumber.clear();
  if (_onoffButton) _onoffButton->setAlpha(1);
  clearSearch();
  hideListView();
}

}  // namespace zv
