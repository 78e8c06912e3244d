// View controllers of the UI model: UIViewController (a lazily made root
// view and the appear / disappear notifications), UINavigationController
// (a stack) and UITabBarController (tabs with a selected index). Switching
// tabs or pushing and popping sends viewWillAppear: / viewWillDisappear: as
// runtime messages, so replaced implementations see them.
#pragma once

#include <vector>

#include "platform/ui/view.h"

namespace zv::ui {

class UIViewController : public rt::Object {
 public:
  static constexpr const char* kClassName = "UIViewController";
  explicit UIViewController(rt::Class* isa) : rt::Object(isa) {}

  // The root view, made by loadView() on first use.
  std::shared_ptr<UIView> view();
  bool isViewLoaded() const { return view_ != nullptr; }
  void setView(std::shared_ptr<UIView> v) { view_ = std::move(v); }
  std::string title;

 protected:
  virtual std::shared_ptr<UIView> loadView();

 private:
  std::shared_ptr<UIView> view_;
};

// Sends viewWillAppear: / viewWillDisappear: through the runtime.
void sendWillAppear(const std::shared_ptr<UIViewController>& vc, bool animated);
void sendWillDisappear(const std::shared_ptr<UIViewController>& vc, bool animated);

class UINavigationController : public UIViewController {
 public:
  static constexpr const char* kClassName = "UINavigationController";
  explicit UINavigationController(rt::Class* isa) : UIViewController(isa) {}

  void pushViewController(const std::shared_ptr<UIViewController>& vc, bool animated);
  std::shared_ptr<UIViewController> popViewControllerAnimated(bool animated);
  std::shared_ptr<UIViewController> topViewController() const;
  const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return stack_; }

 private:
  std::vector<std::shared_ptr<UIViewController>> stack_;
};

class UITabBarController : public UIViewController {
 public:
  static constexpr const char* kClassName = "UITabBarController";
  explicit UITabBarController(rt::Class* isa) : UIViewController(isa) {}

  void setViewControllers(std::vector<std::shared_ptr<UIViewController>> vcs);
  const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return tabs_; }
  int selectedIndex() const { return selected_; }
  // Selects a tab: the old one hears viewWillDisappear:, the new one
  // viewWillAppear:. An index out of range is ignored.
  void setSelectedIndex(int index);
  std::shared_ptr<UIViewController> selectedViewController() const;

 private:
  std::vector<std::shared_ptr<UIViewController>> tabs_;
  int selected_ = 0;
};

}  // namespace zv::ui
