// The UI model's own classes and selectors as typed messages (see
// platform/runtime/message.h): declared once, defined by ui_classes.cc, sent
// by hosts and hooks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"
#include "platform/ui/image.h"
#include "platform/ui/style_types.h"

namespace zv::ui::msg {

struct UIView {
  static constexpr std::string_view kName = "UIView";
  static constexpr rt::Message<rt::Id(int)> viewWithTag{kName, "viewWithTag:"};
  static constexpr rt::Message<void(rt::Id)> addSubview{kName, "addSubview:"};
  static constexpr rt::Message<void()> removeFromSuperview{
      kName, "removeFromSuperview"};
  static constexpr rt::Message<rt::Id()> superview{kName, "superview"};
  static constexpr rt::Message<bool()> isHidden{kName, "isHidden"};
  static constexpr rt::Message<void(bool)> setHidden{kName, "setHidden:"};
  static constexpr rt::Message<double()> alpha{kName, "alpha"};
  static constexpr rt::Message<void(double)> setAlpha{kName, "setAlpha:"};
  static constexpr rt::Message<int()> tag{kName, "tag"};
  static constexpr rt::Message<void(int)> setTag{kName, "setTag:"};
  static constexpr rt::Message<Rect()> frame{kName, "frame"};
  static constexpr rt::Message<void(Rect)> setFrame{kName, "setFrame:"};
  static constexpr rt::Message<void()> sizeToFit{kName, "sizeToFit"};
};

struct UILabel {
  static constexpr std::string_view kName = "UILabel";
  static constexpr rt::Message<std::string()> text{kName, "text"};
  static constexpr rt::Message<void(std::string)> setText{kName, "setText:"};
};

struct UIImageView {
  static constexpr std::string_view kName = "UIImageView";
  static constexpr rt::Message<void(ImagePtr)> setImage{kName, "setImage:"};
};

struct UIButton {
  static constexpr std::string_view kName = "UIButton";
  static constexpr rt::Message<void(ImagePtr, int)> setImageForState{
      kName, "setImage:forState:"};
  static constexpr rt::Message<void(int)> sendActionsForControlEvents{
      kName, "sendActionsForControlEvents:"};
};

struct UIScrollView {
  static constexpr std::string_view kName = "UIScrollView";
  static constexpr rt::Message<Point()> contentOffset{kName, "contentOffset"};
  static constexpr rt::Message<void(Point, bool)> setContentOffsetAnimated{
      kName, "setContentOffset:animated:"};
};

struct UITableView {
  static constexpr std::string_view kName = "UITableView";
  static constexpr rt::Message<void()> reloadData{kName, "reloadData"};
};

struct UIActionSheet {
  static constexpr std::string_view kName = "UIActionSheet";
  static constexpr rt::Message<void(rt::Id)> showInView{kName, "showInView:"};
  static constexpr rt::Message<void(int, bool)>
      dismissWithClickedButtonIndexAnimated{
          kName, "dismissWithClickedButtonIndex:animated:"};
};

struct UIAlertView {
  static constexpr std::string_view kName = "UIAlertView";
  static constexpr rt::Message<void()> show{kName, "show"};
};

struct UIViewController {
  static constexpr std::string_view kName = "UIViewController";
  // Initialisers: both answer the receiver.
  static constexpr rt::Message<rt::Id()> init{kName, "init"};
  static constexpr rt::Message<rt::Id(std::optional<std::string>, rt::Id)>
      initWithNibNameBundle{kName, "initWithNibName:bundle:"};
  static constexpr rt::Message<rt::Id()> view{kName, "view"};
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<void(bool)> viewWillDisappear{
      kName, "viewWillDisappear:"};
};

struct UINavigationController {
  static constexpr std::string_view kName = "UINavigationController";
  static constexpr rt::Message<void(rt::Id, bool)> pushViewControllerAnimated{
      kName, "pushViewController:animated:"};
  static constexpr rt::Message<rt::Id(bool)> popViewControllerAnimated{
      kName, "popViewControllerAnimated:"};
  static constexpr rt::Message<rt::Id()> topViewController{kName,
                                                           "topViewController"};
};

struct UITabBarController {
  static constexpr std::string_view kName = "UITabBarController";
  static constexpr rt::Message<int()> selectedIndex{kName, "selectedIndex"};
  static constexpr rt::Message<void(int)> setSelectedIndex{kName,
                                                           "setSelectedIndex:"};
};

struct UIApplication {
  static constexpr std::string_view kName = "UIApplication";
  static constexpr rt::Message<rt::Id()> sharedApplication{
      kName, "sharedApplication", true};
  static constexpr rt::Message<bool(std::string)> openURL{kName, "openURL:"};
};

}  // namespace zv::ui::msg
