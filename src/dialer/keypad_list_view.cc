#include "dialer/keypad_list_view.h"

#include <algorithm>

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/number_utils.h"
#include "dialer/keypad_lcd_view.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

const ui::Font kNameFont{".HelveticaNeueInterface-Bold", 16};
const ui::Font kNumberFont{".HelveticaNeueInterface-Regular", 15};
const ui::Font kTypeFont{".HelveticaNeueInterface-Regular", 14};
const ui::Color kBlack{0, 0, 0, 1};
const ui::Color kGrey{0.5, 0.5, 0.5, 1};
constexpr double kTypeMaxWidth = 100;

}  // namespace

std::shared_ptr<ZVKeypadListCell> ZVKeypadListCell::make() {
  auto cell = ui::makeAs<ZVKeypadListCell>(
      dialerViewClass(kClassName, "UITableViewCell"));
  cell->setUp(ui::CellStyle::Subtitle, ZVKeypadListView::kCellIdentifier);
  cell->nameLabel = ZVLabel::make();
  cell->nameLabel->font = kNameFont;
  cell->numberLabel = ZVLabel::make();
  cell->numberLabel->font = kNumberFont;
  cell->numberLabel->textColor = kBlack;
  cell->contentView()->addSubview(cell->nameLabel);
  cell->contentView()->addSubview(cell->numberLabel);
  cell->typeLabel = ui::make<ui::UILabel>();
  cell->typeLabel->setFont(kTypeFont);
  cell->typeLabel->setTextColor(kGrey);
  cell->typeLabel->setTextAlignment(ui::TextAlignment::Right);
  cell->setAccessoryView(cell->typeLabel);
  return cell;
}

std::shared_ptr<ZVKeypadListView> ZVKeypadListView::make(
    const ui::Rect& frame) {
  auto v = ui::makeAs<ZVKeypadListView>(dialerViewClass(kClassName));
  v->setFrame(frame);
  v->build();
  return v;
}

void ZVKeypadListView::build() {
  _settings = ZVPhoneSettings::sharedInstance();
  _area = ZVAreaLoader::sharedInstance();
  _addressbook = ZVAddressBook::sharedInstance();
  // The list covers the keypad under it.
  setBackgroundColor(ui::Color{1, 1, 1, 1});
  setClipsToBounds(true);
  _tableView = ui::make<ui::UITableView>();
  _tableView->setFrame({{0, 0}, frame().size});
  std::weak_ptr<ZVKeypadListView> weak =
      std::static_pointer_cast<ZVKeypadListView>(shared_from_this());
  _tableView->numberOfRows = [weak] {
    auto me = weak.lock();
    return me ? me->_persons.size() : 0;
  };
  _tableView->heightForRow = [](size_t) { return kRowHeight; };
  _tableView->cellForRow = [weak](ui::UITableView& t, size_t row) {
    auto me = weak.lock();
    return me ? me->cellForRow(t, row) : nullptr;
  };
  _tableView->didSelectRow = [weak](ui::UITableView&, size_t row) {
    auto me = weak.lock();
    if (!me) return;
    if (auto d = me->_delegate.lock())
      d->keypadListViewDidSelectRow(me->getCellIndex(row));
  };
  addSubview(_tableView);
}

size_t ZVKeypadListView::getCellIndex(size_t row) const {
  if (!_upInputNumber) return row;
  if (row == 0) return _persons.empty() ? 0 : _persons.size() - 1;
  return row - 1;
}

void ZVKeypadListView::reloadData() { _tableView->reloadData(); }

void ZVKeypadListView::reloadDataAndScrollToTop() {
  _tableView->scrollToTop();
  _tableView->reloadData();
}

std::shared_ptr<ui::UITableViewCell> ZVKeypadListView::cellForRow(
    ui::UITableView& table, size_t row) {
  auto cell = std::dynamic_pointer_cast<ZVKeypadListCell>(
      table.dequeueReusableCellWithIdentifier(kCellIdentifier));
  if (!cell) cell = ZVKeypadListCell::make();
  const size_t index = getCellIndex(row);
  if (index >= _persons.size()) return cell;
  const ZVPerson& p = *_persons[index];
  const ZVPhoneSettings& s = *_settings;
  const auto highlight = highlightColorForCode(s.DialerListHighlightColor());
  const double width = frame().size.width;
  const bool avatars = s.EnableAvatar() && s.AvatarKeypadList();
  const double textX = avatars ? 60 : 15;

  auto& name = *cell->nameLabel;
  name.text = p.getNameFull();
  name.highlightColor = highlight;
  name.highlightRange =
      _search ? ZVSearcher::getHighlightNameRange(name.text, _inputNumber, &p)
              : ZVRange{};
  name.textSize = width - textX - kTypeMaxWidth - 20;
  name.updateLabel();
  name.setOrigin(textX, 5);

  auto& number = *cell->numberLabel;
  number.text = s.DialerFormatPhoneNubmer()
                    ? formattedStringValue(p.getPhoneNumber())
                    : p.getPhoneNumber();
  number.highlightColor = highlight;
  number.highlightRange =
      ZVSearcher::getHighlightNumberRange(number.text, _inputNumber);
  number.textSize = name.textSize;
  number.updateLabel();
  number.setOrigin(textX, name.text.empty() ? 14 : 27);

  std::string type;
  if (p.priority() & (ZVPerson::kTypedNumber | ZVPerson::kPriorityList))
    type = platform::current().localizedString("Call", "Zorvel");
  else if (p.phoneType() == -1)
    type = platform::current().localizedString("unknown", "Zorvel");
  else
    type = _addressbook->getPhoneTypeLabel(p.phoneType()).value_or("");
  if (s.EnableArea() && s.AreaNameKeypadList()) {
    if (auto area = _area->getArea(p.getPhoneNumber(), s.AreaNameKeypadList(),
                                   s.AreaTypeKeypadList())) {
      type = type.empty() ? *area : joinArea(type, *area, AreaGap::kOne);
    }
  }
  cell->typeLabel->setText(type);
  cell->typeLabel->sizeToFit();
  const auto& t = cell->typeLabel->frame().size;
  cell->typeLabel->setFrame({{width - 10 - std::min(t.width, kTypeMaxWidth),
                              (kRowHeight - t.height) / 2},
                             {std::min(t.width, kTypeMaxWidth), t.height}});

  auto image = cell->imageView();
  image->setHidden(!avatars);
  if (avatars) setAvatar(*cell, p.recordId());
  return cell;
}

void ZVKeypadListView::setAvatar(ZVKeypadListCell& cell, int32_t recordId) {
  const platform::Size size{kAvatarSize, kAvatarSize};
  auto image = cell.imageView();
  image->setFrame({{12, (kRowHeight - kAvatarSize) / 2}, size});
  image->setCornerRadius(kAvatarSize / 2);
  image->setClipsToBounds(true);
  image->setTag(recordId);
  ui::ImagePtr cached = _addressbook->getCahcedAvatar(recordId, size);
  if (cached) {
    image->setImage(cached);
    return;
  }
  image->setImage(_addressbook->getNullAvatarWithsize(size));
  loadAvatarInBackground(image, recordId, _addressbook, recordId, size);
}

}  // namespace zv
