// Registration of the UI classes and their runtime methods in one process.
#include "platform/process.h"
#include "platform/ui/button.h"
#include "platform/ui/label.h"
#include "platform/ui/sheets.h"
#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"

namespace zv::ui {
namespace {

void registerView(rt::Runtime& rt) {
  rt::Class* c = rt.registerClass("UIView");
  rt::addMethod<rt::Id(int)>(c, "viewWithTag:", [](const rt::Id& s, int tag) {
    return rt::Id(self<UIView>(s).viewWithTag(tag));
  });
  rt::addMethod<void(rt::Id)>(c, "addSubview:", [](const rt::Id& s, rt::Id v) {
    self<UIView>(s).addSubview(std::dynamic_pointer_cast<UIView>(v));
  });
  rt::addMethod<void()>(c, "removeFromSuperview", [](const rt::Id& s) {
    self<UIView>(s).removeFromSuperview();
  });
  rt::addMethod<rt::Id()>(c, "superview", [](const rt::Id& s) {
    return rt::Id(self<UIView>(s).superview());
  });
  rt::addMethod<bool()>(c, "isHidden", [](const rt::Id& s) {
    return self<UIView>(s).isHidden();
  });
  rt::addMethod<void(bool)>(c, "setHidden:", [](const rt::Id& s, bool h) {
    self<UIView>(s).setHidden(h);
  });
  rt::addMethod<double()>(
      c, "alpha", [](const rt::Id& s) { return self<UIView>(s).alpha(); });
  rt::addMethod<void(double)>(c, "setAlpha:", [](const rt::Id& s, double a) {
    self<UIView>(s).setAlpha(a);
  });
  rt::addMethod<int()>(c, "tag",
                       [](const rt::Id& s) { return self<UIView>(s).tag(); });
  rt::addMethod<void(int)>(
      c, "setTag:", [](const rt::Id& s, int t) { self<UIView>(s).setTag(t); });
  rt::addMethod<Rect()>(
      c, "frame", [](const rt::Id& s) { return self<UIView>(s).frame(); });
  rt::addMethod<void(Rect)>(c, "setFrame:", [](const rt::Id& s, Rect r) {
    self<UIView>(s).setFrame(r);
  });
  rt::addMethod<void()>(c, "sizeToFit",
                        [](const rt::Id& s) { self<UIView>(s).sizeToFit(); });
}

void registerControls(rt::Runtime& rt) {
  rt::Class* label = rt.registerClass("UILabel", "UIView");
  rt::addMethod<std::string()>(
      label, "text", [](const rt::Id& s) { return self<UILabel>(s).text(); });
  rt::addMethod<void(std::string)>(
      label, "setText:", [](const rt::Id& s, std::string t) {
        self<UILabel>(s).setText(std::move(t));
      });
  rt::Class* image = rt.registerClass("UIImageView", "UIView");
  rt::addMethod<void(ImagePtr)>(image,
                                "setImage:", [](const rt::Id& s, ImagePtr i) {
                                  self<UIImageView>(s).setImage(std::move(i));
                                });
  rt::Class* button = rt.registerClass("UIButton", "UIView");
  rt::addMethod<void(ImagePtr, int)>(
      button, "setImage:forState:", [](const rt::Id& s, ImagePtr i, int state) {
        self<UIButton>(s).setImage(std::move(i), state);
      });
  rt::addMethod<void(int)>(
      button, "sendActionsForControlEvents:", [](const rt::Id& s, int events) {
        self<UIButton>(s).sendActionsForControlEvents(events);
      });
  rt::Class* scroll = rt.registerClass("UIScrollView", "UIView");
  rt::addMethod<Point()>(scroll, "contentOffset", [](const rt::Id& s) {
    return self<UIScrollView>(s).contentOffset();
  });
  rt::addMethod<void(Point, bool)>(
      scroll, "setContentOffset:animated:", [](const rt::Id& s, Point p, bool) {
        self<UIScrollView>(s).setContentOffset(p);
      });
  rt::Class* table = rt.registerClass("UITableView", "UIScrollView");
  rt::addMethod<void()>(table, "reloadData", [](const rt::Id& s) {
    self<UITableView>(s).reloadData();
  });
  rt.registerClass("UITableViewCell", "UIView");
}

void registerSheets(rt::Runtime& rt) {
  rt::Class* sheet = rt.registerClass("UIActionSheet", "UIView");
  rt::addMethod<void(rt::Id)>(
      sheet, "showInView:", [](const rt::Id& s, rt::Id v) {
        self<UIActionSheet>(s).showInView(std::dynamic_pointer_cast<UIView>(v));
      });
  rt::addMethod<void(int, bool)>(
      sheet, "dismissWithClickedButtonIndex:animated:",
      [](const rt::Id& s, int index, bool) {
        self<UIActionSheet>(s).dismissWithClickedButtonIndex(index);
      });
  rt::Class* alert = rt.registerClass("UIAlertView", "UIView");
  rt::addMethod<void()>(alert, "show",
                        [](const rt::Id& s) { self<UIAlertView>(s).show(); });
}

void registerControllers(rt::Runtime& rt) {
  rt::Class* vc = rt.registerClass("UIViewController");
  rt::addMethod<rt::Id()>(vc, "view", [](const rt::Id& s) {
    return rt::Id(self<UIViewController>(s).view());
  });
  rt::addMethod<void(bool)>(vc, "viewWillAppear:", [](const rt::Id&, bool) {});
  rt::addMethod<void(bool)>(vc,
                            "viewWillDisappear:", [](const rt::Id&, bool) {});
  rt::Class* nav =
      rt.registerClass("UINavigationController", "UIViewController");
  rt::addMethod<void(rt::Id, bool)>(
      nav, "pushViewController:animated:",
      [](const rt::Id& s, rt::Id v, bool animated) {
        self<UINavigationController>(s).pushViewController(
            std::dynamic_pointer_cast<UIViewController>(v), animated);
      });
  rt::addMethod<rt::Id(bool)>(
      nav, "popViewControllerAnimated:", [](const rt::Id& s, bool animated) {
        return rt::Id(self<UINavigationController>(s).popViewControllerAnimated(
            animated));
      });
  rt::addMethod<rt::Id()>(nav, "topViewController", [](const rt::Id& s) {
    return rt::Id(self<UINavigationController>(s).topViewController());
  });
  rt.registerClass("UITableViewController", "UIViewController");
  rt.registerClass("UIBarButtonItem");
  rt.registerClass("UINavigationItem");
  rt::Class* tabs = rt.registerClass("UITabBarController", "UIViewController");
  rt::addMethod<int()>(tabs, "selectedIndex", [](const rt::Id& s) {
    return self<UITabBarController>(s).selectedIndex();
  });
  rt::addMethod<void(int)>(tabs,
                           "setSelectedIndex:", [](const rt::Id& s, int i) {
                             self<UITabBarController>(s).setSelectedIndex(i);
                           });
}

}  // namespace

void registerClasses(rt::Runtime& runtime) {
  if (runtime.getClass("UIView")) return;
  registerView(runtime);
  registerControls(runtime);
  registerSheets(runtime);
  registerControllers(runtime);
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
