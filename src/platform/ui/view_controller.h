// View controllers of the UI model: UIViewController (a lazily made root
// view and the appear / disappear notifications), UINavigationController
// (a stack) and UITabBarController (tabs with a selected index). Switching
// tabs or pushing and popping sends viewWillAppear: / viewWillDisappear: as
// runtime messages, so replaced implementations see them.
//
// A view controller has a navigation item (its title and bar buttons, made
// on first use), knows the navigation controller whose stack holds it, and
// can present one controller modally; dismissing goes to the controller
// that presented, as on the platform.
#pragma once

#include <vector>

#include "platform/ui/navigation_item.h"
#include "platform/ui/view.h"

namespace zv::ui {

class UINavigationController;

class UIViewController : public rt::Object {
 public:
  static constexpr const char* kClassName = "UIViewController";
  explicit UIViewController(rt::Class* isa) : rt::Object(isa) {}

  // The root view, made by loadView() on first use.
  std::shared_ptr<UIView> view();
  bool isViewLoaded() const { return view_ != nullptr; }
  void setView(std::shared_ptr<UIView> v) { view_ = std::move(v); }
  std::string title;

  // The title and bar buttons shown while this controller is on top.
  std::shared_ptr<UINavigationItem> navigationItem();
  // The navigation controller whose stack holds this one, if any.
  std::shared_ptr<UINavigationController> navigationController() const {
    return navigation_.lock();
  }

  // Modal presentation: `vc` covers this controller until dismissed.
  void presentViewController(const std::shared_ptr<UIViewController>& vc,
                             bool animated);
  // Dismisses what this controller presented; without one, asks the
  // controller that presented this one (or its navigation controller).
  void dismissViewControllerAnimated(bool animated);
  std::shared_ptr<UIViewController> presentedViewController() const {
    return presented_;
  }
  std::shared_ptr<UIViewController> presentingViewController() const;

 protected:
  virtual std::shared_ptr<UIView> loadView();

 private:
  friend class UINavigationController;
  std::shared_ptr<UIView> view_;
  std::shared_ptr<UINavigationItem> navigation_item_;
  std::weak_ptr<UINavigationController> navigation_;
  std::shared_ptr<UIViewController> presented_;
  std::weak_ptr<UIViewController> presenting_;
};

// Sends viewWillAppear: / viewWillDisappear: through the runtime.
void sendWillAppear(const std::shared_ptr<UIViewController>& vc, bool animated);
void sendWillDisappear(const std::shared_ptr<UIViewController>& vc,
                       bool animated);

class UINavigationController : public UIViewController {
 public:
  // initWithRootViewController:
  static std::shared_ptr<UINavigationController> make(
      const std::shared_ptr<UIViewController>& root);

  static constexpr const char* kClassName = "UINavigationController";
  explicit UINavigationController(rt::Class* isa) : UIViewController(isa) {}

  void pushViewController(const std::shared_ptr<UIViewController>& vc,
                          bool animated);
  std::shared_ptr<UIViewController> popViewControllerAnimated(bool animated);
  std::shared_ptr<UIViewController> topViewController() const;
  const std::vector<std::shared_ptr<UIViewController>>& viewControllers()
      const {
    return stack_;
  }

 private:
  std::vector<std::shared_ptr<UIViewController>> stack_;
};

class UITabBarController : public UIViewController {
 public:
  static constexpr const char* kClassName = "UITabBarController";
  explicit UITabBarController(rt::Class* isa) : UIViewController(isa) {}

  void setViewControllers(std::vector<std::shared_ptr<UIViewController>> vcs);
  const std::vector<std::shared_ptr<UIViewController>>& viewControllers()
      const {
    return tabs_;
  }
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
