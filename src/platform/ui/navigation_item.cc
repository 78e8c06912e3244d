#include "platform/ui/navigation_item.h"

#include "platform/ui/view.h"

namespace zv::ui {

std::shared_ptr<UIBarButtonItem> UIBarButtonItem::make(
    std::string title, BarButtonItemStyle style,
    std::function<void(const rt::Id& sender)> action) {
  auto item = ui::make<UIBarButtonItem>();
  item->title = std::move(title);
  item->style = style;
  item->action = std::move(action);
  return item;
}

bool UIBarButtonItem::press() {
  if (!enabled || !action) return false;
  auto keep = shared_from_this();
  action(keep);
  return true;
}

}  // namespace zv::ui
