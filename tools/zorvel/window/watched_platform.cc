#include "tools/zorvel/window/watched_platform.h"

namespace zv::window {

void WatchedPlatform::showAlert(std::shared_ptr<platform::Alert> alert) {
  if (!alert) return;
  // One alert at a time, as on the phone; the window draws it over the app.
  alert_ = std::move(alert);
  changed_();
}

void WatchedPlatform::pressAlertButton(int index) {
  auto alert = std::move(alert_);
  alert_.reset();
  if (alert && alert->onButton) alert->onButton(*alert, index);
  changed_();
}

}  // namespace zv::window
