#include "lists/list_cells.h"

#include <algorithm>
#include <cmath>

#include "search/avatar_loader.h"

namespace zv::lists {

std::string withLeadingBlanks(std::string_view text, int count) {
  const std::string blanks(static_cast<size_t>(count), ' ');
  if (text.starts_with(blanks)) return std::string(text);
  return blanks + std::string(text);
}

bool sameSize(double a, double b) { return std::fabs(a - b) < 0.01; }

std::shared_ptr<ui::UIImageView> roundAvatarView(ui::UITableViewCell& table,
                                                 double left, double side,
                                                 int tag) {
  auto image = table.imageView();
  image->setFrame(
      {{left, std::max(0.0, (table.frame().size.height - side) / 2)},
       {side, side}});
  image->setCornerRadius(side / 2);
  image->setClipsToBounds(true);
  image->setHidden(false);
  image->setTag(tag);
  return image;
}

void showAvatar(const std::shared_ptr<ui::UIImageView>& image, int tag,
                const std::shared_ptr<ZVAddressBook>& book,
                std::shared_ptr<const ABPersonRecord> record,
                platform::Size size, bool picture) {
  ui::ImagePtr cached =
      picture ? book->getCahcedAvatar(record->recordId(), size) : nullptr;
  image->setImage(cached ? cached : book->getNullAvatarWithsize(size));
  if (!picture || cached) return;
  loadAvatarInBackground(image, tag, [book, record = std::move(record), size] {
    return book->getAvatar(record->recordId(), record.get(), size, true);
  });
}

}  // namespace zv::lists
