// The avatar half of ZVRecentsController: blanks that move a row's texts
// right, the call-type icon moved after the name, and the round picture.
#include <algorithm>
#include <cstdio>

#include "core/device.h"
#include "core/settings_catalogue.h"
#include "lists/list_cells.h"
#include "lists/recents_controller.h"
#include "platform/ui/text_metrics.h"
#include "search/address_book.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

// Past this x the icon leaves the name line.
constexpr double kIconLimit = 200;
constexpr double kIconGap = 8;
constexpr double kLabelLineStart = 40;
constexpr double kIconFallbackX = 205;
// The icon sits lower on 8.x, whose rows are taller.
constexpr double kModernIconDrop = 4;
constexpr double kAvatarLeft = 15;

std::shared_ptr<ui::UILabel> labelView(RecentsHost& host, const rt::Id& cell,
                                       const char* key) {
  return std::dynamic_pointer_cast<ui::UILabel>(host.cellView(cell, key));
}

// The count beside a grouped row's name, with the font it is set in.
std::pair<std::string, ui::Font> countText(RecentsHost& host,
                                           const rt::Id& cell,
                                           const ui::Font& nameFont) {
  if (UIDevice::OSVersion() >= 8.0f) {
    const int64_t count = host.count(cell);
    if (count < 2) return {};
    char text[32];
    std::snprintf(text, sizeof text, "(%d)", static_cast<int>(count));
    return {text, nameFont};
  }
  auto label = labelView(host, cell, "Count");
  if (!label || label->text().empty()) return {};
  return {label->text(), label->font()};
}

}  // namespace

int ZVRecentsController::nameBlanks(double size) {
  using lists::sameSize;
  if (sameSize(size, 17) || sameSize(size, 15.5)) return 7;
  if (sameSize(size, 14)) return 8;
  if (sameSize(size, 13)) return 9;
  if (sameSize(size, 21.5) || sameSize(size, 20) || sameSize(size, 18.5))
    return 6;
  return 7;
}

int ZVRecentsController::labelBlanks(double size) {
  using lists::sameSize;
  if (sameSize(size, 12) || sameSize(size, 11)) return 10;
  if (sameSize(size, 15) || sameSize(size, 14) || sameSize(size, 13)) return 8;
  return 10;
}

void ZVRecentsController::avatarCell(const rt::Id& cell) {
  if (!host_ || !_settings->EnableAvatar() || !_settings->AvatarCallHistory())
    return;
  auto table = std::dynamic_pointer_cast<ui::UITableViewCell>(cell);
  if (!table) return;
  auto name = labelView(*host_, cell, "Name");
  auto label = labelView(*host_, cell, "Label");
  if (name)
    name->setText(
        lists::withLeadingBlanks(name->text(), nameBlanks(name->font().size)));
  if (label)
    label->setText(lists::withLeadingBlanks(label->text(),
                                            labelBlanks(label->font().size)));
  placeCallTypeIcon(cell, *table, name.get(), label.get());
  setAvatar(cell, *table);
}

void ZVRecentsController::placeCallTypeIcon(const rt::Id& cell,
                                            ui::UITableViewCell& table,
                                            ui::UILabel* name,
                                            ui::UILabel* label) {
  auto hostIcon = host_->cellView(cell, "CallTypeIcon");
  if (!hostIcon) return;
  // The host's icon would sit under the avatar.
  hostIcon->setAlpha(0);
  hostIcon->setHidden(true);
  if (!name) return;
  const auto& content = table.contentView();
  auto icon = std::dynamic_pointer_cast<ui::UIImageView>(
      content->viewWithTag(kCallTypeIconTag));
  if (!icon) {
    icon = ui::make<ui::UIImageView>();
    icon->setTag(kCallTypeIconTag);
    content->addSubview(icon);
  }
  if (auto image = std::dynamic_pointer_cast<ui::UIImageView>(hostIcon))
    icon->setImage(image->image());

  const ui::Rect& nameFrame = name->frame();
  double x =
      nameFrame.origin.x + ui::textWidth(name->text(), name->font()) + kIconGap;
  auto [count, countFont] = countText(*host_, cell, name->font());
  if (!count.empty()) x += ui::textWidth(count, countFont) + kIconGap;
  // Centred on the line it sits on.
  double y = nameFrame.origin.y +
             (ui::lineHeight(name->font()) - kCallTypeIconSide) / 2;
  if (x > kIconLimit) {
    const double labelWidth =
        label ? ui::textWidth(label->text(), label->font()) : 0;
    x = kLabelLineStart + labelWidth + kIconGap;
    if (x > kIconLimit) x = kIconFallbackX;
    if (label)
      y = label->frame().origin.y +
          (ui::lineHeight(label->font()) - kCallTypeIconSide) / 2;
  }
  if (UIDevice::OSVersion() >= 8.0f) y += kModernIconDrop;
  icon->setFrame({{x, y}, {kCallTypeIconSide, kCallTypeIconSide}});
  icon->setHidden(false);
  icon->setAlpha(1);
}

void ZVRecentsController::setAvatar(const rt::Id& cell,
                                    ui::UITableViewCell& table) {
  rt::Id call = host_->call(cell);
  std::shared_ptr<const ABPersonRecord> record;
  if (call)
    record = UIDevice::OSVersion() >= 8.0f ? host_->phoneBookRecord(call)
                                           : host_->addressBookRecord(call);
  const int32_t id = record ? record->recordId() : ZVAddressBook::kNoContact;
  const int tag = avatarViewTag(id);
  auto image = lists::roundAvatarView(table, kAvatarLeft, kAvatarSide, tag);
  const bool picture = record && record->hasImageData();
  lists::showAvatar(image, tag, _addressbook, std::move(record),
                    {kAvatarSide, kAvatarSide}, picture);
}

}  // namespace zv
