// UIWindow of the UI model: the view tree a process shows on the screen.
// Given its root view controller it holds, bottom to top, what a person
// sees: the view of the controller on top (the presented one, else the top
// of a navigation stack, else the selected tab), given the screen less the
// bars when the host left it without a frame, the navigation bar and the
// tab bar around it, the status bar, and the open alert or the presented
// action sheet over a dimmed screen. layoutSubviews() rebuilds that from
// the controllers' state and lays every view out, so drawing the window
// (platform/render) and hit testing it see the same tree.
#pragma once

#include <functional>
#include <memory>

#include "platform/platform.h"
#include "platform/ui/bars.h"
#include "platform/ui/sheets.h"
#include "platform/ui/view_controller.h"

namespace zv::ui {

// An open alert of the platform (platform::Alert) as a view: its panel
// drawn over a dimmed screen, its buttons real buttons (side by side when
// there are two, else one under the other) that call `press` with their
// index; the panel takes every other touch.
class UIAlertPanel : public UIView {
 public:
  static constexpr const char* kClassName = "_UIAlertControllerView";
  explicit UIAlertPanel(rt::Class* isa) : UIView(isa) {}
  std::shared_ptr<platform::Alert> alert;
  std::function<void(int buttonIndex)> press;
  void layoutSubviews() override;
  void draw(Canvas& canvas) const override;
};

class UIWindow : public UIView {
 public:
  static constexpr const char* kClassName = "UIWindow";
  explicit UIWindow(rt::Class* isa) : UIView(isa) {}
  // A window covering the device's screen.
  static std::shared_ptr<UIWindow> makeForScreen(Size points);

  const std::shared_ptr<UIViewController>& rootViewController() const {
    return root_;
  }
  void setRootViewController(std::shared_ptr<UIViewController> vc) {
    root_ = std::move(vc);
  }
  // Views the host shows above its controllers (the springboard's panels),
  // below the status bar.
  std::vector<std::shared_ptr<UIView>> overlays;
  // The platform's open alert, if any, and what presses its buttons (the
  // platform's own press: the alert closes, then its delegate runs).
  std::shared_ptr<platform::Alert> alert;
  std::function<void(int buttonIndex)> pressAlertButton;

  const std::shared_ptr<UIStatusBar>& statusBar();
  // The bars shown now (null when there is none).
  const std::shared_ptr<UINavigationBar>& navigationBar() const {
    return navigation_bar_;
  }
  const std::shared_ptr<UITabBar>& tabBar() const { return tab_bar_; }

  void layoutSubviews() override;

 private:
  void show(const std::shared_ptr<UIViewController>& vc, const Rect& area);
  std::shared_ptr<UIViewController> root_;
  std::shared_ptr<UIStatusBar> status_bar_;
  std::shared_ptr<UINavigationBar> navigation_bar_;
  std::shared_ptr<UITabBar> tab_bar_;
};

}  // namespace zv::ui
