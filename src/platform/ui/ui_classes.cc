// Registration of the UI classes and their runtime methods in one process.
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/application.h"
#include "platform/ui/button.h"
#include "platform/ui/label.h"
#include "platform/ui/messages.h"
#include "platform/ui/navigation_item.h"
#include "platform/ui/sheets.h"
#include "platform/ui/table_view.h"
#include "platform/ui/table_view_controller.h"
#include "platform/ui/text_view.h"
#include "platform/ui/view_controller.h"
#include "platform/ui/window.h"

namespace zv::ui {
namespace {

// alloc() of a UI class makes its C++ type.
template <typename T>
rt::Class* typed(rt::Class* cls) {
  cls->setFactory([](rt::Class* c) -> rt::Id { return rt::create<T>(c); });
  return cls;
}

void registerView(rt::Runtime& rt) {
  typed<UIView>(rt.registerClass("UIView"));
  rt::define(msg::UIView::viewWithTag, [](const rt::Id& s, int tag) {
    return rt::Id(self<UIView>(s).viewWithTag(tag));
  });
  rt::define(msg::UIView::addSubview, [](const rt::Id& s, rt::Id v) {
    self<UIView>(s).addSubview(std::dynamic_pointer_cast<UIView>(v));
  });
  rt::define(msg::UIView::removeFromSuperview,
             [](const rt::Id& s) { self<UIView>(s).removeFromSuperview(); });
  rt::define(msg::UIView::superview, [](const rt::Id& s) {
    return rt::Id(self<UIView>(s).superview());
  });
  rt::define(msg::UIView::isHidden,
             [](const rt::Id& s) { return self<UIView>(s).isHidden(); });
  rt::define(msg::UIView::setHidden,
             [](const rt::Id& s, bool h) { self<UIView>(s).setHidden(h); });
  rt::define(msg::UIView::alpha,
             [](const rt::Id& s) { return self<UIView>(s).alpha(); });
  rt::define(msg::UIView::setAlpha,
             [](const rt::Id& s, double a) { self<UIView>(s).setAlpha(a); });
  rt::define(msg::UIView::tag,
             [](const rt::Id& s) { return self<UIView>(s).tag(); });
  rt::define(msg::UIView::setTag,
             [](const rt::Id& s, int t) { self<UIView>(s).setTag(t); });
  rt::define(msg::UIView::frame,
             [](const rt::Id& s) { return self<UIView>(s).frame(); });
  rt::define(msg::UIView::setFrame,
             [](const rt::Id& s, Rect r) { self<UIView>(s).setFrame(r); });
  rt::define(msg::UIView::sizeToFit,
             [](const rt::Id& s) { self<UIView>(s).sizeToFit(); });
}

void registerControls(rt::Runtime& rt) {
  typed<UILabel>(rt.registerClass("UILabel", "UIView"));
  rt::define(msg::UILabel::text,
             [](const rt::Id& s) { return self<UILabel>(s).text(); });
  rt::define(msg::UILabel::setText, [](const rt::Id& s, std::string t) {
    self<UILabel>(s).setText(std::move(t));
  });
  typed<UITextView>(rt.registerClass("UITextView", "UIView"));
  typed<UIImageView>(rt.registerClass("UIImageView", "UIView"));
  rt::define(msg::UIImageView::setImage, [](const rt::Id& s, ImagePtr i) {
    self<UIImageView>(s).setImage(std::move(i));
  });
  typed<UIButton>(rt.registerClass("UIButton", "UIView"));
  rt::define(msg::UIButton::setImageForState,
             [](const rt::Id& s, ImagePtr i, int state) {
               self<UIButton>(s).setImage(std::move(i), state);
             });
  rt::define(msg::UIButton::sendActionsForControlEvents,
             [](const rt::Id& s, int events) {
               self<UIButton>(s).sendActionsForControlEvents(events);
             });
  typed<UIScrollView>(rt.registerClass("UIScrollView", "UIView"));
  rt::define(msg::UIScrollView::contentOffset, [](const rt::Id& s) {
    return self<UIScrollView>(s).contentOffset();
  });
  rt::define(msg::UIScrollView::setContentOffsetAnimated,
             [](const rt::Id& s, Point p, bool) {
               self<UIScrollView>(s).setContentOffset(p);
             });
  typed<UITableView>(rt.registerClass("UITableView", "UIScrollView"));
  rt::define(msg::UITableView::reloadData,
             [](const rt::Id& s) { self<UITableView>(s).reloadData(); });
  typed<UITableViewCell>(rt.registerClass("UITableViewCell", "UIView"));
  typed<UIWindow>(rt.registerClass(UIWindow::kClassName, "UIView"));
  typed<UIStatusBar>(rt.registerClass(UIStatusBar::kClassName, "UIView"));
  typed<UINavigationBar>(
      rt.registerClass(UINavigationBar::kClassName, "UIView"));
  typed<UITabBar>(rt.registerClass(UITabBar::kClassName, "UIView"));
  typed<UITabBarButton>(
      rt.registerClass(UITabBarButton::kClassName, "UIButton"));
  typed<UIAlertPanel>(rt.registerClass(UIAlertPanel::kClassName, "UIView"));
}

void registerSheets(rt::Runtime& rt) {
  typed<UIActionSheet>(rt.registerClass("UIActionSheet", "UIView"));
  rt::define(msg::UIActionSheet::showInView, [](const rt::Id& s, rt::Id v) {
    self<UIActionSheet>(s).showInView(std::dynamic_pointer_cast<UIView>(v));
  });
  rt::define(msg::UIActionSheet::dismissWithClickedButtonIndexAnimated,
             [](const rt::Id& s, int index, bool) {
               self<UIActionSheet>(s).dismissWithClickedButtonIndex(index);
             });
  typed<UIAlertView>(rt.registerClass("UIAlertView", "UIView"));
  rt::define(msg::UIAlertView::show,
             [](const rt::Id& s) { self<UIAlertView>(s).show(); });
}

void registerControllers(rt::Runtime& rt) {
  typed<UIViewController>(rt.registerClass("UIViewController"));
  rt::define(msg::UIViewController::init, [](const rt::Id& s) { return s; });
  rt::define(
      msg::UIViewController::initWithNibNameBundle,
      [](const rt::Id& s, std::optional<std::string>, rt::Id) { return s; });
  rt::define(msg::UIViewController::view, [](const rt::Id& s) {
    return rt::Id(self<UIViewController>(s).view());
  });
  rt::define(msg::UIViewController::viewWillAppear, [](const rt::Id&, bool) {});
  rt::define(msg::UIViewController::viewWillDisappear,
             [](const rt::Id&, bool) {});
  typed<UINavigationController>(
      rt.registerClass("UINavigationController", "UIViewController"));
  rt::define(msg::UINavigationController::pushViewControllerAnimated,
             [](const rt::Id& s, rt::Id v, bool animated) {
               self<UINavigationController>(s).pushViewController(
                   std::dynamic_pointer_cast<UIViewController>(v), animated);
             });
  rt::define(
      msg::UINavigationController::popViewControllerAnimated,
      [](const rt::Id& s, bool animated) {
        return rt::Id(self<UINavigationController>(s).popViewControllerAnimated(
            animated));
      });
  rt::define(
      msg::UINavigationController::topViewController, [](const rt::Id& s) {
        return rt::Id(self<UINavigationController>(s).topViewController());
      });
  typed<UITableViewController>(
      rt.registerClass("UITableViewController", "UIViewController"));
  // A table controller shows its rows afresh as it appears.
  rt::addMethod<void(bool)>(
      rt.getClass("UITableViewController"),
      "viewWillAppear:", [](const rt::Id& s, bool) {
        self<UITableViewController>(s).tableView()->reloadData();
      });
  typed<UIBarButtonItem>(rt.registerClass("UIBarButtonItem"));
  typed<UINavigationItem>(rt.registerClass("UINavigationItem"));
  typed<UITabBarController>(
      rt.registerClass("UITabBarController", "UIViewController"));
  rt::define(msg::UITabBarController::selectedIndex, [](const rt::Id& s) {
    return self<UITabBarController>(s).selectedIndex();
  });
  rt::define(msg::UITabBarController::setSelectedIndex,
             [](const rt::Id& s, int i) {
               self<UITabBarController>(s).setSelectedIndex(i);
             });
}

void registerApplication(rt::Runtime& rt) {
  typed<UIApplication>(rt.registerClass("UIApplication"));
  rt::define(msg::UIApplication::sharedApplication,
             [](const rt::Id&) { return rt::Id(UIApplication::shared()); });
  rt::define(msg::UIApplication::openURL, [](const rt::Id&, std::string url) {
    return platform::current().openURL(url);
  });
}

}  // namespace

void registerClasses(rt::Runtime& runtime) {
  if (runtime.getClass("UIView")) return;
  registerView(runtime);
  registerControls(runtime);
  registerSheets(runtime);
  registerControllers(runtime);
  registerApplication(runtime);
}

rt::Class* uiClass(const char* name) {
  rt::Runtime& runtime = platform::Process::current().runtime();
  registerClasses(runtime);
  rt::Class* cls = runtime.getClass(name);
  if (!cls)
    throw rt::Exception("NSInternalInconsistencyException",
                        std::string("no UI class ") + name);
  return cls;
}

}  // namespace zv::ui
