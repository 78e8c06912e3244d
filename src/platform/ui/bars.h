// The system's bars as views that draw themselves: the status bar (signal,
// carrier name, time, battery; light over dark screens), the navigation bar
// (title, and the left and right items as buttons: a back button pops the
// stack) and the tab bar (one button per tab, each with its glyph and
// title, the selected one tinted; a tap selects the tab). UIWindow
// (platform/ui/window.h) places them around the controllers' views.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/button.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::ui {

class UIStatusBar : public UIView {
 public:
  static constexpr const char* kClassName = "UIStatusBar";
  static constexpr double kHeight = 20;
  explicit UIStatusBar(rt::Class* isa) : UIView(isa) {
    setUserInteractionEnabled(false);
  }
  std::string carrier = "Carrier";
  std::string time = "9:41";
  // White content, for dark screens.
  bool lightContent = false;
  void draw(Canvas& canvas) const override;
};

class UINavigationBar : public UIView {
 public:
  static constexpr const char* kClassName = "UINavigationBar";
  static constexpr double kHeight = 64;  // with the status bar under it
  explicit UINavigationBar(rt::Class* isa) : UIView(isa) {}
  // Shows `top` of `nav`: its title, its bar items, or "< Back" when it is
  // not the root and has no left item.
  void show(const std::shared_ptr<UINavigationController>& nav,
            const std::shared_ptr<UIViewController>& top);
  const std::shared_ptr<UILabel>& titleLabel() const { return title_; }
  const std::shared_ptr<UIButton>& leftButton() const { return left_; }
  const std::shared_ptr<UIButton>& rightButton() const { return right_; }
  void layoutSubviews() override;
  void draw(Canvas& canvas) const override;

 private:
  std::shared_ptr<UILabel> title_;
  std::shared_ptr<UIButton> left_, right_;
};

// One tab: its glyph above its title.
class UITabBarButton : public UIButton {
 public:
  static constexpr const char* kClassName = "UITabBarButton";
  explicit UITabBarButton(rt::Class* isa) : UIButton(isa) {}
  std::string name;  // the glyph drawn: "favorites", "recents", ...
  bool selected = false;
  void draw(Canvas& canvas) const override;
};

class UITabBar : public UIView {
 public:
  static constexpr const char* kClassName = "UITabBar";
  static constexpr double kHeight = 49;
  explicit UITabBar(rt::Class* isa) : UIView(isa) {}
  // One button per tab of `tabs`, titled with the tabs' titles.
  void show(const std::shared_ptr<UITabBarController>& tabs);
  const std::vector<std::shared_ptr<UITabBarButton>>& buttons() const {
    return buttons_;
  }
  void layoutSubviews() override;
  void draw(Canvas& canvas) const override;

 private:
  std::vector<std::shared_ptr<UITabBarButton>> buttons_;
};

}  // namespace zv::ui
