#include "messages/sms_controller.h"

#include "area/area_loader.h"
#include "core/device.h"
#include "core/guard.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

const ui::Font kAreaFont{".HelveticaNeueInterface-Regular", 14};
const ui::Color kAreaColor{0.5, 0.5, 0.5, 1};
const ui::Color kClear{0, 0, 0, 0};
constexpr double kAvatarColumn = 70;

platform::Size square(double side) { return {side, side}; }

std::shared_ptr<ui::UILabel> areaLabelOf(const ui::UITableViewCell& cell) {
  if (!cell.contentView()) return nullptr;
  return std::dynamic_pointer_cast<ui::UILabel>(
      cell.contentView()->viewWithTag(ZVSMSController::kAreaLabelTag));
}

}  // namespace

std::shared_ptr<ZVSMSController> ZVSMSController::sharedInstance() {
  return platform::Process::current().singleton<ZVSMSController>(
      [] { return std::make_shared<ZVSMSController>(); });
}

ZVSMSController::ZVSMSController()
    : _settings(ZVSMSSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()),
      _addressbook(ZVAddressBook::sharedInstance()) {}

bool ZVSMSController::areaOn() const {
  return _settings->EnableArea() && _settings->AreaNameSMS();
}

bool ZVSMSController::smallScreen() {
  return UIDevice::isPhone4screen() || UIDevice::isPhone5screen();
}

bool ZVSMSController::modernComposer() { return UIDevice::OSVersion() >= 8.0f; }

void ZVSMSController::areaCell(const rt::Id& cell, const rt::Id& conversation) {
  if (!areaOn() || !host_) return;
  auto listCell = host_->listCell(cell);
  if (!listCell || !listCell->contentView()) return;
  auto label = areaLabelOf(*listCell);
  if (!label) {
    label = ui::make<ui::UILabel>();
    label->setTag(kAreaLabelTag);
    label->setFont(kAreaFont);
    label->setTextColor(kAreaColor);
    label->setBackgroundColor(kClear);
    label->setUserInteractionEnabled(false);
    listCell->contentView()->addSubview(label);
  }
  if (_settings->AreaOnlyStrangers() && host_->recipientRecord(conversation)) {
    label->setText("");
    return;
  }
  auto area =
      _area->getArea(host_->recipientAddress(conversation),
                     _settings->AreaNameSMS(), _settings->AreaTypeSMS());
  label->setText(area.value_or(""));
}

void ZVSMSController::areaLayoutCell(const rt::Id& cell) {
  if (!areaOn() || !host_) return;
  auto listCell = host_->listCell(cell);
  if (!listCell) return;
  auto label = areaLabelOf(*listCell);
  if (!label || label->text().empty()) return;
  auto from = host_->fromLabel(cell);
  if (!from) return;
  from->sizeToFit();
  label->sizeToFit();
  const ui::Rect f = from->frame();
  const double x = f.origin.x + f.size.width + 6;
  double width = label->frame().size.width;
  if (auto date = host_->dateLabel(cell)) {
    const double room = date->frame().origin.x - x;
    width = room < 0 ? 0 : std::min(width, room);
  }
  label->setFrame({{x, f.origin.y}, {width, f.size.height}});
}

void ZVSMSController::avatarCell(const rt::Id& cell,
                                 const rt::Id& conversation) {
  if (!_settings->EnableAvatar() || !_settings->AvatarSMS() || !host_ ||
      !smallScreen())
    return;
  auto listCell = host_->listCell(cell);
  if (!listCell || !listCell->imageView()) return;
  auto record = host_->recipientRecord(conversation);
  const int32_t id = record ? record->recordId() : ZVAddressBook::kNoContact;
  const bool hasImage = id >= 0 && record->hasImageData();
  const platform::Size size = square(kListAvatarSize);
  ui::ImagePtr picture;
  if (hasImage) picture = _addressbook->getCahcedAvatar(id, size);
  const bool fetch = hasImage && !picture;
  if (!picture) picture = _addressbook->getNullAvatarWithsize(size);
  auto imageView = listCell->imageView();
  imageView->setImage(picture);
  imageView->setTag(avatarViewTag(id));
  imageView->setClipsToBounds(true);
  imageView->setCornerRadius(kListAvatarSize / 2);
  imageView->setScale(0.8);
  if (auto unread = host_->unreadIndicator(cell)) {
    bool hasUnread = host_->hasUnreadMessages(conversation);
    if (!modernComposer())
      hasUnread = hasUnread || host_->hasUnreadiMessages(conversation);
    unread->setTag(hasUnread ? 1 : 0);
  }
  if (!fetch) return;
  loadAvatarInBackground(imageView, avatarViewTag(id), _addressbook, id, size);
}

void ZVSMSController::avatarLayoutCell(const rt::Id& cell) {
  if (!_settings->EnableAvatar() || !_settings->AvatarSMS() || !host_ ||
      !smallScreen())
    return;
  auto listCell = host_->listCell(cell);
  if (!listCell) return;
  if (auto summary = host_->summaryLabel(cell)) {
    ui::Rect f = summary->frame();
    if (f.origin.x < kAvatarColumn) {
      f.origin.x = kAvatarColumn;
      if (f.origin.y <= 20) f.origin.y += 10;
      f.size.width -= 50;
      summary->setFrame(f);
    }
  }
  auto unread = host_->unreadIndicator(cell);
  const bool editing = host_->isEditing(cell);
  auto from = host_->fromLabel(cell);
  if (from) {
    ui::Rect f = from->frame();
    if (f.origin.x < kAvatarColumn) {
      if (unread && unread->tag() != 0 && !editing) {
        f.origin.x = 90;
        f.size.width -= 70;
      } else {
        f.origin.x = kAvatarColumn;
        f.size.width -= 50;
      }
      from->setFrame(f);
    }
  }
  if (unread && from) {
    ui::Rect u = unread->frame();
    if (!modernComposer()) u.size = {12, 12};
    const ui::Rect f = from->frame();
    u.origin = {kAvatarColumn,
                f.origin.y + (f.size.height - u.size.height) / 2};
    unread->setFrame(u);
  }
  ui::EdgeInsets inset = listCell->separatorInset();
  inset.left = editing ? 108 : kAvatarColumn;
  listCell->setSeparatorInset(inset);
}

void ZVSMSController::avatarChat(const rt::Id& transcript, const rt::Id& cell) {
  if (!_settings->EnableAvatar() || !_settings->AvatarSMSChat() || !host_ ||
      !smallScreen())
    return;
  if (!host_->isMessageCell(cell) || host_->contactImage(cell)) return;
  const platform::Size size = square(kChatAvatarSize);
  ui::ImagePtr picture;
  if (host_->orientation(cell) != 0) {
    picture = _addressbook->getMyAvatarWithSize(size);
  } else {
    const int32_t id = host_->transcriptRecordId(transcript);
    if (id == ZVAddressBook::kNoContact) return;
    picture = _addressbook->getAvatar(id, size, false);
  }
  if (!picture) return;
  host_->setWantsContactImageLayout(cell, true);
  host_->setContactImage(cell, picture);
  if (auto view = host_->contactImageView(cell)) {
    view->setClipsToBounds(true);
    view->setCornerRadius(kChatAvatarSize / 2);
  }
}

void ZVSMSController::groupButton(const rt::Id& transcript) {
  _transcript = transcript;
  if (!_settings->SMSSelectGroup() || !host_ ||
      !host_->isNewRecipient(transcript))
    return;
  auto item = host_->navigationItem(transcript);
  if (!item || item->leftBarButtonItem) return;
  std::weak_ptr<ZVSMSController> weak = weak_from_this();
  item->leftBarButtonItem = ui::UIBarButtonItem::make(
      platform::current().localizedString("Group"),
      ui::BarButtonItemStyle::Plain, [weak](const rt::Id& sender) {
        auto me = weak.lock();
        // A button added before a failure stays; it then does nothing.
        if (!me || !zvenabled()) return;
        guarded(GuardKind::Alert, sender.get(),
                "groupAction:", [&] { me->groupAction(sender); });
      });
}

rt::Id ZVSMSController::toField() const {
  auto transcript = _transcript.lock();
  if (!transcript || !host_) return nullptr;
  return host_->toField(transcript, modernComposer());
}

void ZVSMSController::groupAction(const rt::Id&) {
  auto transcript = _transcript.lock();
  if (!transcript || !host_) return;
  rt::Id field = toField();
  std::vector<SMSRecipient> recipients;
  if (field) recipients = host_->recipients(field);
  auto group =
      ZVSMSGroupViewController::initWithRecipients(std::move(recipients));
  group->title = platform::current().localizedString("Group");
  group->navigationItem()->title = group->title;
  group->delegate = weak_from_this();
  auto nav = ui::UINavigationController::make(group);
  if (auto presenter = host_->presentingController(transcript))
    presenter->presentViewController(nav, true);
}

void ZVSMSController::ZVSMSGroupViewControllerDone(
    ZVSMSGroupViewController& group) {
  rt::Id field = toField();
  if (!field) return;
  host_->removeAllRecipients(field, modernComposer());
  for (const auto& number : group.selects.numbers())
    host_->addAddress(field, number);
}

}  // namespace zv
