// ZVKeypadView: the result pager laid over the host keypad's display. It
// shows one search result at a time on the middle of three pages
// (previous, current, next), is swiped left and right through the results
// (the pages are rotated, not rebuilt), and carries the add-to-contacts and
// delete buttons and the paging arrows. Each page shows the result's number
// (formatted when DialerFormatPhoneNubmer is on) and a label made of the
// contact name, phone label and area, with the typed key highlighted, and
// "(k/n)" when there are several results. User actions go to its delegate,
// the keypad controller.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "dialer/keypad_lcd_view.h"
#include "platform/ui/button.h"
#include "platform/ui/scroll_view.h"
#include "search/searcher.h"

namespace zv {

class ZVAreaLoader;
class ZVAddressBook;

class ZVKeypadViewDelegate {
 public:
  virtual ~ZVKeypadViewDelegate() = default;
  virtual void keypadViewAddButtonPressed() = 0;
  virtual void keypadViewDeleteButtonPressed() = 0;
  virtual void keypadViewDeleteButtonLongPress() = 0;
  virtual void keypadViewListButtonPressed() = 0;
  virtual void keypadViewMenuButtonLongPress() = 0;
};

class ZVKeypadView : public ui::UIView, public ZVKeypadLCDViewDelegate {
 public:
  static constexpr const char* kClassName = "ZVKeypadView";
  explicit ZVKeypadView(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<ZVKeypadView> make(const ui::Rect& frame);

  void setDelegate(std::weak_ptr<ZVKeypadViewDelegate> d) {
    _delegate = std::move(d);
  }
  void setSearcher(std::shared_ptr<ZVSearcher> s) { _search = std::move(s); }
  void setPersons(ZVSearcher::PersonList persons) {
    _persons = std::move(persons);
  }
  const ZVSearcher::PersonList& persons() const { return _persons; }
  void setIndex(size_t i) { _index = i; }
  size_t index() const { return _index; }
  void setInputNumber(std::string n) { _inputNumber = std::move(n); }
  void setAddToContactsText(std::optional<std::string> t) {
    _addToContactsText = std::move(t);
  }
  const std::optional<std::string>& addToContactsText() const {
    return _addToContactsText;
  }

  void updateLCDViews();
  void clearLCDViews();
  void updateButtons();

  size_t getCount() const { return _persons.size(); }
  // The current result's number; nothing when there are no results.
  std::optional<std::string> getNumber() const;
  size_t getPrevIndex() const;
  size_t getCurIndex() const;
  size_t getNextIndex() const;
  ZVSearcher::PersonRef getPrevPerson() const;
  ZVSearcher::PersonRef getCurPerson() const;
  ZVSearcher::PersonRef getNextPerson() const;
  std::string getFormattedLabel(const ZVPerson& person);
  std::string getFormattedNumber(const std::string& number) const;
  // The typed number itself rather than a contact: record id -1 without the
  // priority-list bit.
  static bool isAddToContactsPerson(const ZVPerson& person);

  // The pages in their current order (previous, current, next).
  const std::array<std::shared_ptr<ZVKeypadLCDView>, 3>& lcdViews() const {
    return _lcdViews;
  }
  const std::shared_ptr<ui::UIScrollView>& scrollView() const {
    return _lcdScrollView;
  }
  const std::shared_ptr<ui::UIButton>& addButton() const { return _addButton; }
  const std::shared_ptr<ui::UIButton>& deleteButton() const {
    return _deleteButton;
  }
  const std::shared_ptr<ui::UIImageView>& leftArrow() const {
    return _leftImageView;
  }
  const std::shared_ptr<ui::UIImageView>& rightArrow() const {
    return _rightImageView;
  }

  // ZVKeypadLCDViewDelegate
  void keypadLCDViewPressed() override;
  void keypadLCDViewLongPress() override;

 private:
  void build();
  void updateLCDview(ZVKeypadLCDView& page, size_t index);
  void scrollViewWillBeginDragging();
  void scrollViewDidEndDecelerating();
  void showDeleteButtonAlpha();
  void layoutPages();

  std::weak_ptr<ZVKeypadViewDelegate> _delegate;
  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ZVSearcher> _search;
  std::array<std::shared_ptr<ZVKeypadLCDView>, 3> _lcdViews;
  std::shared_ptr<ui::UIScrollView> _lcdScrollView;
  std::shared_ptr<ui::UIButton> _addButton, _deleteButton;
  std::shared_ptr<ui::UIImageView> _leftImageView, _rightImageView;
  ZVSearcher::PersonList _persons;
  std::string _inputNumber;
  std::optional<std::string> _addToContactsText;
  size_t _index = 0;
};

}  // namespace zv
