// ZVKeypadListView: the drop-down list of every keypad search result, one
// 50-point row per result with the name and number (the typed key
// highlighted, ZVLabel), a type text ("Call" for the typed-number and
// priority rows, "unknown" without a phone label, else the label) with the
// area, and the contact's round avatar. With upInputNumber set the last
// result (the typed-number row the searcher appends) is listed first.
// Avatars that are not cached yet are loaded on a background queue and set
// on the main queue only if the cell still shows the same contact.
#pragma once

#include <memory>
#include <string>

#include "dialer/zv_label.h"
#include "platform/ui/table_view.h"
#include "search/searcher.h"

namespace zv {

class ZVAreaLoader;
class ZVAddressBook;

class ZVKeypadListViewDelegate {
 public:
  virtual ~ZVKeypadListViewDelegate() = default;
  virtual void keypadListViewDidSelectRow(size_t index) = 0;
};

// One row: name and number labels, the type label as accessory view.
class ZVKeypadListCell : public ui::UITableViewCell {
 public:
  static constexpr const char* kClassName = "ZVKeypadListCell";
  explicit ZVKeypadListCell(rt::Class* isa) : ui::UITableViewCell(isa) {}
  static std::shared_ptr<ZVKeypadListCell> make();
  std::shared_ptr<ZVLabel> nameLabel, numberLabel;
  std::shared_ptr<ui::UILabel> typeLabel;
};

class ZVKeypadListView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "ZVKeypadListView";
  static constexpr const char* kCellIdentifier = "NameCell";
  static constexpr double kRowHeight = 50;
  static constexpr double kAvatarSize = 40;
  explicit ZVKeypadListView(rt::Class* isa) : ui::UIView(isa) {}
  static std::shared_ptr<ZVKeypadListView> make(const ui::Rect& frame);

  void setDelegate(std::weak_ptr<ZVKeypadListViewDelegate> d) {
    _delegate = std::move(d);
  }
  void setSearcher(std::shared_ptr<ZVSearcher> s) { _search = std::move(s); }
  void setPersons(ZVSearcher::PersonList persons) {
    _persons = std::move(persons);
  }
  const ZVSearcher::PersonList& persons() const { return _persons; }
  void setInputNumber(std::string n) { _inputNumber = std::move(n); }
  void setUpInputNumber(bool up) { _upInputNumber = up; }
  bool upInputNumber() const { return _upInputNumber; }

  void reloadData();
  void reloadDataAndScrollToTop();
  // The result shown on a row.
  size_t getCellIndex(size_t row) const;

  const std::shared_ptr<ui::UITableView>& tableView() const {
    return _tableView;
  }

 private:
  void build();
  std::shared_ptr<ui::UITableViewCell> cellForRow(ui::UITableView& table,
                                                  size_t row);
  void setAvatar(ZVKeypadListCell& cell, int32_t recordId);

  std::weak_ptr<ZVKeypadListViewDelegate> _delegate;
  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ZVSearcher> _search;
  std::shared_ptr<ui::UITableView> _tableView;
  ZVSearcher::PersonList _persons;
  std::string _inputNumber;
  bool _upInputNumber = false;
};

}  // namespace zv
