#include "platform/ui/view_controller.h"

#include "platform/ui/messages.h"

namespace zv::ui {

std::shared_ptr<UIView> UIViewController::view() {
  if (!view_) view_ = loadView();
  return view_;
}

std::shared_ptr<UIView> UIViewController::loadView() {
  return ui::make<UIView>();
}

std::shared_ptr<UINavigationItem> UIViewController::navigationItem() {
  if (!navigation_item_) {
    navigation_item_ = ui::make<UINavigationItem>();
    navigation_item_->title = title;
  }
  return navigation_item_;
}

void UIViewController::presentViewController(
    const std::shared_ptr<UIViewController>& vc, bool animated) {
  if (!vc || presented_) return;
  presented_ = vc;
  vc->presenting_ =
      std::static_pointer_cast<UIViewController>(shared_from_this());
  sendWillAppear(vc, animated);
  // A presented navigation controller shows its top controller.
  if (auto nav = std::dynamic_pointer_cast<UINavigationController>(vc))
    sendWillAppear(nav->topViewController(), animated);
}

std::shared_ptr<UIViewController> UIViewController::presentingViewController()
    const {
  if (auto p = presenting_.lock()) return p;
  if (auto nav = navigation_.lock()) return nav->presentingViewController();
  return nullptr;
}

void UIViewController::dismissViewControllerAnimated(bool animated) {
  if (!presented_) {
    if (auto p = presentingViewController())
      p->dismissViewControllerAnimated(animated);
    return;
  }
  auto gone = std::move(presented_);
  presented_.reset();
  gone->presenting_.reset();
  sendWillDisappear(gone, animated);
}

void sendWillAppear(const std::shared_ptr<UIViewController>& vc,
                    bool animated) {
  rt::trySend(vc, msg::UIViewController::viewWillAppear, animated);
}

void sendWillDisappear(const std::shared_ptr<UIViewController>& vc,
                       bool animated) {
  rt::trySend(vc, msg::UIViewController::viewWillDisappear, animated);
}

std::shared_ptr<UINavigationController> UINavigationController::make(
    const std::shared_ptr<UIViewController>& root) {
  auto nav = ui::make<UINavigationController>();
  if (root) {
    root->navigation_ = nav;
    nav->stack_.push_back(root);
  }
  return nav;
}

void UINavigationController::pushViewController(
    const std::shared_ptr<UIViewController>& vc, bool animated) {
  if (!vc) return;
  sendWillDisappear(topViewController(), animated);
  vc->navigation_ =
      std::static_pointer_cast<UINavigationController>(shared_from_this());
  stack_.push_back(vc);
  sendWillAppear(vc, animated);
}

std::shared_ptr<UIViewController>
UINavigationController::popViewControllerAnimated(bool animated) {
  if (stack_.size() < 2) return nullptr;
  auto top = stack_.back();
  sendWillDisappear(top, animated);
  stack_.pop_back();
  top->navigation_.reset();
  sendWillAppear(stack_.back(), animated);
  return top;
}

std::shared_ptr<UIViewController> UINavigationController::topViewController()
    const {
  return stack_.empty() ? nullptr : stack_.back();
}

void UITabBarController::setViewControllers(
    std::vector<std::shared_ptr<UIViewController>> vcs) {
  tabs_ = std::move(vcs);
  selected_ = 0;
}

void UITabBarController::setSelectedIndex(int index) {
  if (index < 0 || index >= static_cast<int>(tabs_.size())) return;
  if (index == selected_) return;
  sendWillDisappear(selectedViewController(), false);
  selected_ = index;
  sendWillAppear(selectedViewController(), false);
}

std::shared_ptr<UIViewController> UITabBarController::selectedViewController()
    const {
  if (selected_ < 0 || selected_ >= static_cast<int>(tabs_.size()))
    return nullptr;
  return tabs_[static_cast<size_t>(selected_)];
}

}  // namespace zv::ui
