#include "platform/ui/application.h"

#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/messages.h"

namespace zv::ui {
namespace {

struct RunningApplication {
  std::shared_ptr<UIApplication> app;
};

}  // namespace

std::shared_ptr<UIApplication> UIApplication::shared() {
  auto& running = platform::Process::current().slot<RunningApplication>();
  return running ? running->app : nullptr;
}

void UIApplication::setShared(std::shared_ptr<UIApplication> app) {
  platform::Process::current().slot<RunningApplication>() =
      std::make_shared<RunningApplication>(RunningApplication{std::move(app)});
}

bool UIApplication::openURL(const std::string& url) {
  return rt::send(shared_from_this(), msg::UIApplication::openURL, url);
}

std::shared_ptr<UIWindow> UIApplication::keyWindow() {
  if (!window_)
    window_ =
        UIWindow::makeForScreen(platform::current().device().screenPoints);
  window_->overlays.clear();
  prepareWindow(*window_);
  window_->layoutIfNeeded();
  return window_;
}

}  // namespace zv::ui
