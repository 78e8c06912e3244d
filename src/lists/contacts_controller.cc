#include "lists/contacts_controller.h"

#include <algorithm>

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "lists/list_cells.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

constexpr double kAvatarLeft = 8;
// Cards set the area two blanks after the label; the lists use one.

}  // namespace

std::shared_ptr<ZVContactsController> ZVContactsController::sharedInstance() {
  return platform::Process::current().singleton<ZVContactsController>(
      [] { return std::make_shared<ZVContactsController>(); });
}

ZVContactsController::ZVContactsController()
    : _settings(ZVPhoneSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()),
      _addressbook(ZVAddressBook::sharedInstance()) {}

bool ZVContactsController::smallScreen() {
  return UIDevice::isPhone4screen() || UIDevice::isPhone5screen();
}

int ZVContactsController::nameBlanks(double size) {
  using lists::sameSize;
  if (sameSize(size, 15.5)) return 11;
  if (sameSize(size, 14)) return 12;
  if (sameSize(size, 13)) return 13;
  if (sameSize(size, 18.5) || sameSize(size, 20)) return 9;
  if (sameSize(size, 21.5)) return 8;
  return 10;
}

void ZVContactsController::areaCell(const rt::Id& cell) {
  if (!host_ || !_settings->EnableArea() || !_settings->AreaNameContacts())
    return;
  auto label = host_->labelLabel(cell);
  auto value = host_->valueLabel(cell);
  if (!label || !value) return;
  auto area = _area->getArea(value->text(), _settings->AreaNameContacts(),
                             _settings->AreaTypeContacts());
  if (!area) return;
  if (_settings->AreaReplaceTextContacts()) {
    label->setText(*area);
    return;
  }
  if (label->text().empty()) return;
  const std::string joined = appendArea(label->text(), *area, AreaGap::kTwo);
  if (joined != label->text()) label->setText(joined);
}

void ZVContactsController::viewWillAppear(const rt::Id& viewController) {
  if (!host_ || !_settings->EnableAvatar() || !smallScreen()) return;
  auto id = host_->contactRecordId(viewController);
  if (id && *id != ZVAddressBook::kNoContact)
    _addressbook->removeCachedAvatar(*id);
}

void ZVContactsController::avatarTableView(const rt::Id& tableView) {
  if (!host_ || !_settings->EnableAvatar() || !_settings->AvatarContacts())
    return;
  const float version = UIDevice::OSVersion();
  if (version >= 7.1f && version < 8.0f)
    host_->setSeparatorStyle(tableView, kSingleLineSeparator);
}

void ZVContactsController::avatarCell(const rt::Id& cell) {
  if (!host_ || !_settings->EnableAvatar() || !_settings->AvatarContacts() ||
      !smallScreen() || !host_->hasPerson(cell))
    return;
  auto table = std::dynamic_pointer_cast<ui::UITableViewCell>(cell);
  if (!table) return;
  const float version = UIDevice::OSVersion();
  if (version < 7.1f) {
    auto name = host_->nameLabel(cell);
    if (host_->contactNameView(cell) && name && !name->text().empty())
      name->setText(lists::withLeadingBlanks(name->text(),
                                             nameBlanks(name->font().size)));
  } else if (version < 8.0f) {
    table->textLabel()->setText(host_->personName(cell).value_or(" "));
    if (auto nameView = host_->contactNameView(cell)) nameView->setHidden(true);
  }
  setAvatar(cell, *table);
}

void ZVContactsController::setAvatar(const rt::Id& cell,
                                     ui::UITableViewCell& table) {
  auto record = host_->personRecord(cell);
  const int32_t id = record ? record->recordId() : ZVAddressBook::kNoContact;
  const bool picture =
      record && id != ZVAddressBook::kNoContact && record->hasImageData();
  const int tag = avatarViewTag(id);
  auto image = lists::roundAvatarView(table, kAvatarLeft, kAvatarSide, tag);
  image->setScale(kAvatarScale);
  ui::EdgeInsets inset = table.separatorInset();
  inset.left = kSeparatorInset;
  table.setSeparatorInset(inset);
  lists::showAvatar(image, tag, _addressbook, std::move(record),
                    {kAvatarSide, kAvatarSide}, picture);
}

}  // namespace zv
