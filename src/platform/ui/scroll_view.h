// UIScrollView of the UI model: content size, content offset and paging.
// A user's drag is simulated by drag(): the delegate hears the drag begin,
// the offset moves (snapped to whole pages when paging is on, and kept
// inside the content), and the delegate hears the deceleration end.
#pragma once

#include "platform/ui/view.h"

namespace zv::ui {

class UIScrollView : public UIView {
 public:
  static constexpr const char* kClassName = "UIScrollView";
  explicit UIScrollView(rt::Class* isa) : UIView(isa) {}

  const Size& contentSize() const { return content_size_; }
  void setContentSize(Size s) { content_size_ = s; }
  const Point& contentOffset() const { return offset_; }
  void setContentOffset(Point p) { offset_ = p; }
  // Subviews sit in the content, which is shifted by the offset.
  Point childPoint(const UIView& child, Point point) const override {
    return UIView::childPoint(child,
                              {point.x + offset_.x, point.y + offset_.y});
  }
  bool isPagingEnabled() const { return paging_; }
  void setPagingEnabled(bool on) { paging_ = on; }
  bool isScrollEnabled() const { return scroll_enabled_; }
  void setScrollEnabled(bool on) { scroll_enabled_ = on; }

  // Delegate callbacks (scrollViewWillBeginDragging:,
  // scrollViewDidEndDecelerating:).
  std::function<void(UIScrollView&)> willBeginDragging;
  std::function<void(UIScrollView&)> didEndDecelerating;

  // A finger drags the content by (dx, dy) points (positive dx shows what
  // lies to the right). Does nothing when scrolling is off or the view takes
  // no touches.
  bool drag(double dx, double dy = 0);

 private:
  Size content_size_;
  Point offset_;
  bool paging_ = false;
  bool scroll_enabled_ = true;
};

}  // namespace zv::ui
