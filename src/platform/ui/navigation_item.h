// UIBarButtonItem and UINavigationItem of the UI model: the buttons and the
// title a view controller shows in its navigation bar. A bar button item has
// a title, a style and one action (its target and selector); press() is a
// finger tap on it. A navigation item holds the title and the left and right
// buttons, each slot empty or one item.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/runtime/object.h"

namespace zv::ui {

enum class BarButtonItemStyle { Plain, Bordered, Done };

class UIBarButtonItem : public rt::Object {
 public:
  static constexpr const char* kClassName = "UIBarButtonItem";
  explicit UIBarButtonItem(rt::Class* isa) : rt::Object(isa) {}
  // initWithTitle:style:target:action:
  static std::shared_ptr<UIBarButtonItem> make(
      std::string title, BarButtonItemStyle style,
      std::function<void(const rt::Id& sender)> action);

  std::string title;
  BarButtonItemStyle style = BarButtonItemStyle::Plain;
  bool enabled = true;
  std::function<void(const rt::Id& sender)> action;

  // A tap: runs the action when the item is enabled and has one.
  bool press();
};

class UINavigationItem : public rt::Object {
 public:
  static constexpr const char* kClassName = "UINavigationItem";
  explicit UINavigationItem(rt::Class* isa) : rt::Object(isa) {}

  std::string title;
  std::shared_ptr<UIBarButtonItem> leftBarButtonItem;
  std::shared_ptr<UIBarButtonItem> rightBarButtonItem;
};

}  // namespace zv::ui
