// UIApplication of the UI model: the one application object of a host
// process. A host's own application class derives from it (in the runtime
// and in C++); the host kit makes it the running application when the host
// finishes launching.
//
//   +sharedApplication   the running application of the current process, or
//                        nil before launch
//   -openURL:            hands a URL to the platform (it records it and
//                        answers whether something handled it); host
//                        subclasses replace it for the schemes they serve
#pragma once

#include <memory>
#include <string>

#include "platform/runtime/object.h"
#include "platform/ui/window.h"

namespace zv::ui {

class UIApplication : public rt::Object {
 public:
  static constexpr const char* kClassName = "UIApplication";
  explicit UIApplication(rt::Class* isa) : rt::Object(isa) {}

  // The running application of the current process, or null.
  static std::shared_ptr<UIApplication> shared();
  // Makes `app` the running application of the current process.
  static void setShared(std::shared_ptr<UIApplication> app);

  // Sends openURL: through the runtime, so a replaced implementation (a
  // host's own or a hook) sees it.
  bool openURL(const std::string& url);

  // Called once the application is the running one: the host shows its
  // first screen here.
  virtual void didFinishLaunching() {}

  // The window the application shows, made on first use at the device's
  // screen size; prepareWindow() sets it up from the application's state
  // and the window is laid out, ready to draw or to hit test.
  std::shared_ptr<UIWindow> keyWindow();

 protected:
  // Sets the window's root controller, background and overlays from what
  // the application shows now; an application without one shows nothing.
  virtual void prepareWindow(UIWindow& window) { (void)window; }

 private:
  std::shared_ptr<UIWindow> window_;
};

// The running application as the host's C++ type, or null when there is
// none or it is of another type.
template <typename T>
std::shared_ptr<T> sharedApplication() {
  return std::dynamic_pointer_cast<T>(UIApplication::shared());
}

}  // namespace zv::ui
