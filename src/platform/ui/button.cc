#include "platform/ui/button.h"

#include "platform/ui/text_metrics.h"

namespace zv::ui {

void UIButton::setImage(ImagePtr image, int state) {
  images_[state] = std::move(image);
}

ImagePtr UIButton::image(int state) const {
  auto it = images_.find(state);
  if (it != images_.end() && it->second) return it->second;
  if (state != kStateNormal) return image(kStateNormal);
  return nullptr;
}

void UIButton::setTitle(std::string title, int state) {
  titles_[state] = std::move(title);
}

std::string UIButton::title(int state) const {
  auto it = titles_.find(state);
  if (it != titles_.end()) return it->second;
  if (state != kStateNormal) return title(kStateNormal);
  return "";
}

void UIButton::addTarget(int events, Action action) {
  targets_.emplace_back(events, std::move(action));
}

void UIButton::sendActionsForControlEvents(int events) {
  auto targets = targets_;
  rt::Id me = shared_from_this();
  for (auto& [mask, action] : targets)
    if (mask & events) action(me);
}

bool UIButton::touch() {
  if (!userInteractionEnabled() || !isVisible()) return false;
  sendActionsForControlEvents(kTouchDown);
  sendActionsForControlEvents(kTouchUpInside);
  return true;
}

bool UIButton::perform(Gesture g) {
  const bool handled = UIView::perform(g);
  if (g != Gesture::Tap) return handled;
  return touch() || handled;
}

void UIButton::sizeToFit() {
  Font f{"Helvetica", 15};
  std::string t = title();
  setSize(textWidth(t, f) + 12, lineHeight(f) + 12);
}

}  // namespace zv::ui
