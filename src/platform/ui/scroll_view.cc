#include "platform/ui/scroll_view.h"

#include <algorithm>
#include <cmath>

namespace zv::ui {
namespace {

double settle(double value, double page, double limit, bool paging) {
  if (paging && page > 0) value = std::round(value / page) * page;
  return std::clamp(value, 0.0, std::max(0.0, limit));
}

}  // namespace

bool UIScrollView::drag(double dx, double dy) {
  if (!scroll_enabled_ || !userInteractionEnabled()) return false;
  if (willBeginDragging) willBeginDragging(*this);
  const Size& page = frame().size;
  offset_.x = settle(offset_.x + dx, page.width,
                     content_size_.width - page.width, paging_);
  offset_.y = settle(offset_.y + dy, page.height,
                     content_size_.height - page.height, paging_);
  if (didEndDecelerating) didEndDecelerating(*this);
  return true;
}

}  // namespace zv::ui
