#include "messages/select_contacts_view_controller.h"

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"

namespace zv {
namespace {

std::string localized(const char* key) {
  return platform::current().localizedString(key);
}

// The runtime class, with viewWillAppear: reaching the C++ method so that a
// navigation push shows the current count in the title.
rt::Class* checklistClass() {
  if (rt::Class* c =
          rt::getClass(ZVSMSSelectContactsViewController::kClassName))
    return c;
  ui::uiClass("UITableViewController");
  rt::Class* c = rt::registerClass(
      ZVSMSSelectContactsViewController::kClassName, "UITableViewController");
  rt::addMethod<void(bool)>(c, "viewWillAppear:", [](const rt::Id& s, bool a) {
    ui::self<ZVSMSSelectContactsViewController>(s).viewWillAppear(a);
  });
  return c;
}

}  // namespace

ZVSMSSelectContactsViewController::ZVSMSSelectContactsViewController(
    rt::Class* isa)
    : ui::UITableViewController(isa),
      _settings(ZVSMSSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()) {}

std::shared_ptr<ZVSMSSelectContactsViewController>
ZVSMSSelectContactsViewController::initWithList(
    std::vector<Entry> list, const SMSNumberSelection& selected) {
  auto vc = ui::makeAs<ZVSMSSelectContactsViewController>(checklistClass());
  vc->setStyle(ui::TableViewStyle::Plain);
  vc->_list = std::move(list);
  vc->selects_ = selected;
  auto& platform = platform::current();
  vc->_checkedImage = ui::Image::fromFile(platform.path(kCheckedImagePath), 2);
  vc->_notcheckedImage =
      ui::Image::fromFile(platform.path(kNotCheckedImagePath), 2);
  std::weak_ptr<ZVSMSSelectContactsViewController> weak = vc;
  vc->navigationItem()->rightBarButtonItem = ui::UIBarButtonItem::make(
      localized("Done"), ui::BarButtonItemStyle::Done, [weak](const rt::Id&) {
        if (auto me = weak.lock()) me->doneButtonPressed();
      });
  return vc;
}

void ZVSMSSelectContactsViewController::viewWillAppear(bool) {
  updateTitle();
  tableView()->reloadData();
}

void ZVSMSSelectContactsViewController::updateTitle() {
  title = titleName + " (" + std::to_string(selects_.size()) + "/" +
          std::to_string(kMaxSelects) + ")";
  navigationItem()->title = title;
}

void ZVSMSSelectContactsViewController::doneButtonPressed() {
  if (auto d = delegate.lock()) d->ZVSMSSelectContactsViewControllerDone(*this);
}

size_t ZVSMSSelectContactsViewController::numberOfRowsInSection(
    ui::UITableView&, size_t) {
  return _list.size();
}

std::string ZVSMSSelectContactsViewController::detailText(const Entry& entry) {
  std::string detail;
  if (entry.size() > 2 && !entry[2].empty()) detail = entry[2];
  const bool named = entry.size() > 1 && !entry[1].empty();
  if (named) detail += (detail.empty() ? "" : " ") + entry[0];
  if (_settings->EnableArea()) {
    auto area = _area->getArea(entry[0], _settings->AreaNameContacts(),
                               _settings->AreaTypeContacts());
    if (area) detail = appendArea(detail, *area, AreaGap::kOne);
  }
  return detail;
}

std::shared_ptr<ui::UITableViewCell>
ZVSMSSelectContactsViewController::cellForRowAtIndexPath(ui::UITableView& table,
                                                         ui::IndexPath path) {
  auto cell = table.dequeueReusableCellWithIdentifier(kCellIdentifier);
  if (!cell)
    cell = ui::UITableViewCell::make(ui::CellStyle::Subtitle, kCellIdentifier);
  if (path.row >= _list.size()) return cell;
  const Entry& entry = _list[path.row];
  if (entry.empty()) return cell;
  const bool named = entry.size() > 1 && !entry[1].empty();
  cell->textLabel()->setText(named ? entry[1] : entry[0]);
  cell->detailTextLabel()->setText(detailText(entry));
  cell->imageView()->setImage(selects_.contains(entry[0]) ? _checkedImage
                                                          : _notcheckedImage);
  return cell;
}

void ZVSMSSelectContactsViewController::didSelectRowAtIndexPath(
    ui::UITableView&, ui::IndexPath path) {
  deselectRowAtIndexPath(path, true);
  if (path.row >= _list.size() || _list[path.row].empty()) return;
  const std::string& key = _list[path.row][0];
  auto cell = visibleCell(path);
  if (selects_.contains(key)) {
    if (cell) cell->imageView()->setImage(_notcheckedImage);
    selects_.remove(key);
  } else if (selects_.size() < kMaxSelects) {
    if (cell) cell->imageView()->setImage(_checkedImage);
    selects_.add(key);
  }
  updateTitle();
}

}  // namespace zv
