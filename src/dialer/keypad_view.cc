#include "dialer/keypad_view.h"

#include <algorithm>
#include <cstdio>

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/number_utils.h"
#include "platform/platform.h"
#include "search/address_book.h"

namespace zv {
namespace {

constexpr double kButtonSize = 40;

ui::ImagePtr installedImage(const char* devicePath) {
  return ui::Image::fromFile(platform::current().path(devicePath), 2);
}

std::shared_ptr<ui::UIImageView> arrow(const char* devicePath) {
  auto v = ui::make<ui::UIImageView>();
  v->setImage(installedImage(devicePath));
  v->setHidden(true);
  return v;
}

}  // namespace

std::shared_ptr<ZVKeypadView> ZVKeypadView::make(const ui::Rect& frame) {
  auto v = ui::makeAs<ZVKeypadView>(dialerViewClass(kClassName));
  v->setFrame(frame);
  v->build();
  return v;
}

void ZVKeypadView::build() {
  _settings = ZVPhoneSettings::sharedInstance();
  _area = ZVAreaLoader::sharedInstance();
  _addressbook = ZVAddressBook::sharedInstance();
  const double w = frame().size.width, h = frame().size.height;
  auto weak = std::weak_ptr<ZVKeypadView>(
      std::static_pointer_cast<ZVKeypadView>(shared_from_this()));

  _lcdScrollView = ui::make<ui::UIScrollView>();
  _lcdScrollView->setFrame({{0, 0}, {w, h}});
  _lcdScrollView->setContentSize({w * 3, h});
  _lcdScrollView->setPagingEnabled(true);
  _lcdScrollView->willBeginDragging = [weak](ui::UIScrollView&) {
    if (auto me = weak.lock()) me->scrollViewWillBeginDragging();
  };
  _lcdScrollView->didEndDecelerating = [weak](ui::UIScrollView&) {
    if (auto me = weak.lock()) me->scrollViewDidEndDecelerating();
  };
  addSubview(_lcdScrollView);
  for (auto& page : _lcdViews) {
    page = ZVKeypadLCDView::make({{0, 0}, {w, h}});
    page->setDelegate(std::weak_ptr<ZVKeypadLCDViewDelegate>(
        std::static_pointer_cast<ZVKeypadLCDViewDelegate>(weak.lock())));
    _lcdScrollView->addSubview(page);
  }
  layoutPages();

  _addButton = ui::make<ui::UIButton>();
  _addButton->setImage(installedImage("/Library/Zorvel/add.png"));
  _addButton->setAccessibilityLabel("add");
  _addButton->setFrame(
      {{10, (h - kButtonSize) / 2}, {kButtonSize, kButtonSize}});
  _addButton->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
    if (auto me = weak.lock())
      if (auto d = me->_delegate.lock()) d->keypadViewAddButtonPressed();
  });
  _deleteButton = ui::make<ui::UIButton>();
  _deleteButton->setImage(installedImage("/Library/Zorvel/delete.png"));
  _deleteButton->setAccessibilityLabel("delete");
  _deleteButton->setFrame({{w - 10 - kButtonSize, (h - kButtonSize) / 2},
                           {kButtonSize, kButtonSize}});
  _deleteButton->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
    if (auto me = weak.lock())
      if (auto d = me->_delegate.lock()) d->keypadViewDeleteButtonPressed();
  });
  _deleteButton->onGesture(ui::Gesture::LongPress, [weak](ui::UIView&) {
    if (auto me = weak.lock())
      if (auto d = me->_delegate.lock()) d->keypadViewDeleteButtonLongPress();
  });
  _leftImageView = arrow("/Library/Zorvel/left.png");
  _leftImageView->setFrame({{2, h / 2 - 8}, {8, 16}});
  _rightImageView = arrow("/Library/Zorvel/right.png");
  _rightImageView->setFrame({{w - 10, h / 2 - 8}, {8, 16}});
  for (auto v : std::initializer_list<std::shared_ptr<ui::UIView>>{
           _addButton, _deleteButton, _leftImageView, _rightImageView})
    addSubview(v);
  updateButtons();
}

void ZVKeypadView::layoutPages() {
  const double w = frame().size.width;
  for (size_t j = 0; j < 3; ++j)
    _lcdViews[j]->setOrigin(w * static_cast<double>(j), 0);
  _lcdScrollView->setContentOffset({w, 0});
}

size_t ZVKeypadView::getCurIndex() const {
  return _index < getCount() ? _index : 0;
}

size_t ZVKeypadView::getNextIndex() const {
  return _index + 1 < getCount() ? _index + 1 : 0;
}

size_t ZVKeypadView::getPrevIndex() const {
  const size_t n = getCount();
  if (_index == 0) return n == 0 ? 0 : n - 1;
  return _index - 1 < n ? _index - 1 : 0;
}

ZVSearcher::PersonRef ZVKeypadView::getPrevPerson() const {
  return _persons.empty() ? nullptr : _persons[getPrevIndex()];
}
ZVSearcher::PersonRef ZVKeypadView::getCurPerson() const {
  return _persons.empty() ? nullptr : _persons[getCurIndex()];
}
ZVSearcher::PersonRef ZVKeypadView::getNextPerson() const {
  return _persons.empty() ? nullptr : _persons[getNextIndex()];
}

std::optional<std::string> ZVKeypadView::getNumber() const {
  auto p = getCurPerson();
  if (!p) return std::nullopt;
  return p->getPhoneNumber();
}

bool ZVKeypadView::isAddToContactsPerson(const ZVPerson& person) {
  return person.recordId() == -1 &&
         (person.priority() & ZVPerson::kPriorityList) == 0;
}

std::string ZVKeypadView::getFormattedNumber(const std::string& number) const {
  return _settings->DialerFormatPhoneNubmer() ? formattedStringValue(number)
                                              : number;
}

std::string ZVKeypadView::getFormattedLabel(const ZVPerson& person) {
  std::string label;
  if (!isAddToContactsPerson(person)) {
    label = person.getNameFull();
    if (!_settings->AreaReplaceTextKeypad()) {
      if (auto type = _addressbook->getPhoneTypeLabel(person.phoneType())) {
        if (!label.empty()) label += ' ';
        label += *type;
      }
    }
  } else if (_addToContactsText && !_inputNumber.empty() && getCount() >= 2) {
    label = platform::current().localizedString("Call", "Zorvel");
  }
  if (_settings->EnableArea() && _settings->AreaNameKeypad()) {
    if (auto area =
            _area->getArea(person.getPhoneNumber(), _settings->AreaNameKeypad(),
                           _settings->AreaTypeKeypad())) {
      label = label.empty() ? *area : joinArea(label, *area, AreaGap::kOne);
    }
  }
  return label;
}

void ZVKeypadView::updateLCDview(ZVKeypadLCDView& page, size_t index) {
  const ZVPerson& p = *_persons[index];
  const size_t n = getCount();
  const std::string number = getFormattedNumber(p.getPhoneNumber());
  std::string name = getFormattedLabel(p);
  if (n > 1) {
    char counter[48];
    std::snprintf(counter, sizeof counter, " (%zu/%zu)", index + 1, n);
    name += counter;
  }
  page.setNumber(number);
  page.setName(name);
  page.setShowsHighlight(true);
  // The label starts with the contact's name, so a range found in the name
  // marks the same characters of the label.
  ZVRange nameRange = _search ? ZVSearcher::getHighlightNameRange(
                                    p.getNameFull(), _inputNumber, &p)
                              : ZVRange{};
  page.setHighlightNameRange(nameRange);
  page.setHighlightNumberRange(
      nameRange.length > 0
          ? ZVRange{}
          : ZVSearcher::getHighlightNumberRange(number, _inputNumber));
  page.setAvatar(_settings->EnableAvatar() && _settings->AvatarKeypad()
                     ? _addressbook->getAvatar(p.recordId(), {36, 36}, true)
                     : nullptr);
  page.setNumberHighlightColor(_settings->DialerNumberHighlightColor());
  page.setNameHighlightColor(_settings->DialerNameHighlightColor());
  page.setShowsAvatar(isAddToContactsPerson(p));
}

void ZVKeypadView::updateLCDViews() {
  const size_t n = getCount();
  const bool paging = n >= 2;
  _lcdScrollView->setScrollEnabled(paging);
  _leftImageView->setHidden(!paging);
  _rightImageView->setHidden(!paging);
  if (n == 0) {
    for (auto& page : _lcdViews) page->clearLCDView();
    updateButtons();
    return;
  }
  updateLCDview(*_lcdViews[0], getPrevIndex());
  updateLCDview(*_lcdViews[1], getCurIndex());
  updateLCDview(*_lcdViews[2], getNextIndex());
  for (auto& page : _lcdViews) page->updateLCDView();
  updateButtons();
}

void ZVKeypadView::clearLCDViews() {
  _persons.clear();
  for (auto& page : _lcdViews) page->clearLCDView();
  updateButtons();
}

void ZVKeypadView::updateButtons() {
  if (_inputNumber.empty()) {
    _addButton->setHidden(true);
    _deleteButton->setHidden(true);
    return;
  }
  _deleteButton->setHidden(false);
  auto cur = getCurPerson();
  _addButton->setHidden(!(cur && isAddToContactsPerson(*cur)));
}

void ZVKeypadView::keypadLCDViewPressed() {
  if (_inputNumber.empty()) return;
  if (auto d = _delegate.lock()) d->keypadViewListButtonPressed();
}

void ZVKeypadView::keypadLCDViewLongPress() {
  if (auto d = _delegate.lock()) d->keypadViewMenuButtonLongPress();
}

void ZVKeypadView::scrollViewWillBeginDragging() {
  for (auto v : std::initializer_list<std::shared_ptr<ui::UIView>>{
           _addButton, _deleteButton, _leftImageView, _rightImageView})
    v->setAlpha(0.01);
  auto& platform = platform::current();
  platform.cancelPrevious(this, "showDeleteButtonAlpha");
  std::weak_ptr<ZVKeypadView> weak =
      std::static_pointer_cast<ZVKeypadView>(shared_from_this());
  platform.performAfterDelay(this, "showDeleteButtonAlpha", 1.0, [weak] {
    if (auto me = weak.lock()) me->showDeleteButtonAlpha();
  });
}

void ZVKeypadView::showDeleteButtonAlpha() {
  for (auto v : std::initializer_list<std::shared_ptr<ui::UIView>>{
           _addButton, _deleteButton, _leftImageView, _rightImageView})
    v->setAlpha(1);
}

void ZVKeypadView::scrollViewDidEndDecelerating() {
  ui::UIView::animate(0.25, [this] { showDeleteButtonAlpha(); });
  const double x = _lcdScrollView->contentOffset().x;
  const double w = frame().size.width;
  const size_t n = getCount();
  if (x == 0) {
    std::rotate(_lcdViews.rbegin(), _lcdViews.rbegin() + 1, _lcdViews.rend());
    _index = _index == 0 ? (n == 0 ? 0 : n - 1) : _index - 1;
  } else if (x == 2 * w) {
    std::rotate(_lcdViews.begin(), _lcdViews.begin() + 1, _lcdViews.end());
    _index = _index + 1 >= n ? 0 : _index + 1;
  }
  layoutPages();
  updateLCDViews();
}

}  // namespace zv
