#include "platform/ui/view.h"

#include <algorithm>

namespace zv::ui {

bool UIView::isVisible() const {
  for (const UIView* v = this; v; v = v->superview_.lock().get()) {
    if (v->hidden_ || v->alpha_ <= 0.01) return false;
  }
  return true;
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
  insertSubview(view, subviews_.size());
}

void UIView::insertSubview(const std::shared_ptr<UIView>& view, size_t index) {
  if (!view || view.get() == this) return;
  view->removeFromSuperview();
  index = std::min(index, subviews_.size());
  subviews_.insert(subviews_.begin() + static_cast<ptrdiff_t>(index), view);
  view->superview_ = sharedView();
}

void UIView::removeFromSuperview() {
  auto parent = superview_.lock();
  superview_.reset();
  if (!parent) return;
  std::erase_if(parent->subviews_, [this](const std::shared_ptr<UIView>& v) {
    return v.get() == this;
  });
}

void UIView::bringSubviewToFront(const std::shared_ptr<UIView>& view) {
  auto it = std::find(subviews_.begin(), subviews_.end(), view);
  if (it == subviews_.end()) return;
  subviews_.erase(it);
  subviews_.push_back(view);
}

std::shared_ptr<UIView> UIView::viewWithTag(int tag) {
  if (tag_ == tag) return sharedView();
  for (const auto& child : subviews_)
    if (auto found = child->viewWithTag(tag)) return found;
  return nullptr;
}

std::shared_ptr<UIView> UIView::hitTest(Point point) {
  if (hidden_ || alpha_ <= 0.01 || !interaction_) return nullptr;
  if (point.x < 0 || point.y < 0 || point.x >= frame_.size.width ||
      point.y >= frame_.size.height)
    return nullptr;
  // Copy: the list may change while a caller acts on the result.
  auto children = subviews_;
  for (auto it = children.rbegin(); it != children.rend(); ++it)
    if (auto hit = (*it)->hitTest(childPoint(**it, point))) return hit;
  return sharedView();
}

Point UIView::childPoint(const UIView& child, Point point) const {
  const Rect& f = child.frame_;
  double s = child.scale_ > 0 ? child.scale_ : 1;
  double cx = f.size.width / 2, cy = f.size.height / 2;
  return {cx + (point.x - f.origin.x - cx) / s,
          cy + (point.y - f.origin.y - cy) / s};
}

void UIView::layoutIfNeeded() {
  layoutSubviews();
  auto children = subviews_;
  for (const auto& child : children) child->layoutIfNeeded();
}

void UIView::onGesture(Gesture g, GestureHandler handler) {
  gestures_.emplace_back(g, std::move(handler));
}

bool UIView::perform(Gesture g) {
  if (!interaction_) return false;
  bool handled = false;
  // Copy: a handler may add or remove handlers of this view.
  auto handlers = gestures_;
  for (auto& [kind, handler] : handlers) {
    if (kind != g) continue;
    handler(*this);
    handled = true;
  }
  return handled;
}

void UIView::animate(double, const std::function<void()>& changes,
                     const std::function<void()>& completion) {
  if (changes) changes();
  if (completion) completion();
}

}  // namespace zv::ui
