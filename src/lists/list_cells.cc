#include "lists/list_cells.h"

#include <cmath>

#include "platform/platform.h"

namespace zv::lists {

std::optional<std::string> joinedLabel(std::string_view label,
                                       std::string_view addition, int blanks) {
  if (label.ends_with(addition)) return std::nullopt;
  std::string out(label);
  out.append(static_cast<size_t>(blanks), ' ');
  out.append(addition);
  return out;
}

std::string withLeadingBlanks(std::string_view text, int count) {
  const std::string blanks(static_cast<size_t>(count), ' ');
  if (text.starts_with(blanks)) return std::string(text);
  return blanks + std::string(text);
}

bool sameSize(double a, double b) { return std::fabs(a - b) < 0.01; }

int avatarTag(int32_t recordId) {
  return static_cast<int>(static_cast<uint32_t>(recordId) | 0x80000000u);
}

void loadAvatarLater(const std::shared_ptr<ui::UIImageView>& view, int tag,
                     std::function<ui::ImagePtr()> load) {
  platform::Platform& platform = platform::current();
  std::weak_ptr<ui::UIImageView> weak = view;
  platform.dispatchBackground([weak, tag, load = std::move(load), &platform] {
    ui::ImagePtr picture = load();
    if (!picture) return;
    platform.dispatchMain([weak, tag, picture] {
      auto shown = weak.lock();
      if (shown && shown->tag() == tag) shown->setImage(picture);
    });
  });
}

}  // namespace zv::lists
