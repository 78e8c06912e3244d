// The platform the window's Phone process runs on: the Linux platform (real
// clock, GLib main loop, real notifications and telephony), watched. Views
// change only when host code runs, and on this platform host code runs only
// from the person's input or from the platform's own call-backs (delayed
// calls, blocks sent to the main loop, notifications); each of those is
// followed by `changed`, so the window repaints exactly when the views may
// have changed. It also keeps what the system would draw over the app: the
// alert on screen and the carrier name.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/linux_platform.h"

namespace zv::window {

class WatchedPlatform final : public platform::Platform {
 public:
  WatchedPlatform(platform::LinuxPlatform& real, std::function<void()> changed)
      : real_(real), changed_(std::move(changed)) {}

  // The alert on screen, if any; pressing one of its buttons (by index)
  // closes it and runs its handler.
  std::shared_ptr<platform::Alert> openAlert() const { return alert_; }
  void pressAlertButton(int index);
  const std::string& carrier() const { return carrier_; }

  std::string path(std::string_view absolute) const override {
    return real_.path(absolute);
  }
  std::string root() const override { return real_.root(); }
  double now() const override { return real_.now(); }
  void performAfterDelay(const void* target, std::string_view selector,
                         double delay, std::function<void()> call) override {
    real_.performAfterDelay(target, selector, delay, watched(std::move(call)));
  }
  void cancelPrevious(const void* target, std::string_view selector) override {
    real_.cancelPrevious(target, selector);
  }
  void dispatchMain(std::function<void()> block) override {
    real_.dispatchMain(watched(std::move(block)));
  }
  void dispatchBackground(std::function<void()> block) override {
    real_.dispatchBackground(std::move(block));
  }
  platform::ObserverToken observe(std::string_view name,
                                  std::function<void()> callback,
                                  platform::Scope scope) override {
    return real_.observe(name, watched(std::move(callback)), scope);
  }
  void removeObserver(platform::ObserverToken token) override {
    real_.removeObserver(token);
  }
  void post(std::string_view name, platform::Scope scope) override {
    real_.post(name, scope);
  }
  const platform::DeviceFacts& device() const override {
    return real_.device();
  }
  std::string localizedString(std::string_view key,
                              std::string_view table) const override {
    return real_.localizedString(key, table);
  }
  void log(std::string_view line) override { real_.log(line); }
  void playSystemSound(uint32_t id) override { real_.playSystemSound(id); }
  void playVibration(uint32_t id, const Dict& pattern) override {
    real_.playVibration(id, pattern);
  }
  std::optional<uint32_t> createSystemSound(std::string_view path) override {
    return real_.createSystemSound(path);
  }
  void disposeSystemSound(uint32_t id) override {
    real_.disposeSystemSound(id);
  }
  void showBanner(std::string_view section, std::string_view title) override {
    real_.showBanner(section, title);
  }
  void showCarrierName(std::string_view name) override {
    carrier_ = name;
    real_.showCarrierName(name);
  }
  std::string pasteboard() const override { return real_.pasteboard(); }
  void setPasteboard(std::string_view text) override {
    real_.setPasteboard(text);
  }
  bool openURL(std::string_view url) override { return real_.openURL(url); }
  void showAlert(std::shared_ptr<platform::Alert> alert) override;
  int system(const std::string& command) override {
    return real_.system(command);
  }
  platform::Telephony& telephony() override { return real_.telephony(); }

 private:
  std::function<void()> watched(std::function<void()> work) {
    return [work = std::move(work), changed = changed_] {
      work();
      changed();
    };
  }

  platform::LinuxPlatform& real_;
  std::function<void()> changed_;
  std::shared_ptr<platform::Alert> alert_;
  std::string carrier_ = "Carrier";
};

}  // namespace zv::window
