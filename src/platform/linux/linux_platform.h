// The real platform for programs on Linux: the real clock, a GLib main loop
// as the main run loop, system-wide notifications that cross real processes
// (each observing process listens on a datagram socket in a folder under the
// device root; posting sends the name to every socket there), syslog for the
// system log, and the device facts of a default phone (overridable through
// settings of the command line).
//
// The address book's external-change signal is delivered to this
// process's observers when the address-book database changes on disk
// (watched while anyone observes it), besides posts from other processes.
//
// The device root is --root (setRoot) or else $ZORVEL_ROOT or else the
// program's default (setDefaultRoot, the bundled sample device for zorvel).
// The host's bundle identifier is $ZORVEL_BUNDLE_ID, else "com.zorvel.cli";
// deviceFacts() changes it and the other facts.
//
// The telephony is that of a computer without a modem until a program sets
// another (setTelephony: ModemManager's, linux/modem_telephony.h). Sounds,
// vibrations and banners are lines on stderr unless a program takes them
// (onSystemSound, onVibration, onBanner: a desktop service plays and shows
// them its own way, feedbackd for sounds and vibration).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/platform.h"

namespace zv::platform {

class LinuxPlatform : public Platform {
 public:
  // The one instance of the program.
  static LinuxPlatform& instance();

  // Root chosen on the command line; wins over $ZORVEL_ROOT.
  void setRoot(std::string root);
  // Root used when neither --root nor $ZORVEL_ROOT is given.
  void setDefaultRoot(std::string root);
  DeviceFacts& deviceFacts() { return facts_; }
  // Set before any process asks for telephony (call objects, hang-ups).
  void setTelephony(std::unique_ptr<Telephony> telephony);
  void onSystemSound(std::function<void(uint32_t soundId)> handler);
  // Vibrations with a pattern (playVibration) go here when taken.
  void onVibration(
      std::function<void(uint32_t soundId, const Dict& pattern)> handler);
  // The host path of a sound made by createSystemSound, "" for another id.
  std::string soundFile(uint32_t soundId) const;
  void onBanner(
      std::function<void(std::string_view sectionID, std::string_view title)>
          handler);

  // Runs the main loop until quit(), or for `seconds` of real time; the
  // current process counts as launched from then on.
  void run();
  void runFor(double seconds);
  void quit();
  // Stops listening for notifications and watching files, removing what
  // that left in the device folder; run at exit.
  void shutdown();

  // Quiet time after the last write of a burst before the address book's
  // change signal is delivered.
  static constexpr double kAddressBookSettle = 0.2;

  std::string path(std::string_view absolute) const override;
  std::string root() const override;
  double now() const override;
  void performAfterDelay(const void* target, std::string_view selector,
                         double delay, std::function<void()> call) override;
  void cancelPrevious(const void* target, std::string_view selector) override;
  void dispatchMain(std::function<void()> block) override;
  void dispatchBackground(std::function<void()> block) override;
  ObserverToken observe(std::string_view name, std::function<void()> callback,
                        Scope scope) override;
  void removeObserver(ObserverToken token) override;
  void post(std::string_view name, Scope scope) override;
  const DeviceFacts& device() const override { return facts_; }
  std::string localizedString(std::string_view key,
                              std::string_view table) const override;
  void log(std::string_view line) override;
  void playSystemSound(uint32_t soundId) override;
  void playVibration(uint32_t soundId, const Dict& pattern) override;
  std::optional<uint32_t> createSystemSound(
      std::string_view devicePath) override;
  void disposeSystemSound(uint32_t soundId) override;
  void showBanner(std::string_view sectionID, std::string_view title) override;
  void showCarrierName(std::string_view name) override;
  std::string pasteboard() const override;
  void setPasteboard(std::string_view text) override;
  bool openURL(std::string_view url) override;
  void showAlert(std::shared_ptr<Alert> alert) override;
  int system(const std::string& command) override;
  Telephony& telephony() override;

  LinuxPlatform();
  ~LinuxPlatform() override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
  DeviceFacts facts_;
};

}  // namespace zv::platform
