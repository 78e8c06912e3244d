// The single door from the system to its host platform, modelled on
// LevelDB's Env. Two implementations: sim/ (deterministic, virtual clock,
// several simulated processes sharing one notification centre and one device
// root, every side effect recorded in order) and linux/ (real clock, GLib
// main loop, notifications that cross real processes, syslog).
//
// Reach it with zv::platform::current() (the platform of the current process
// context). Everything runs on the process's main run loop: delayed calls,
// notification callbacks and dispatchMain blocks are delivered there.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process.h"
#include "platform/telephony/telephony.h"
#include "platform/value.h"

namespace zv::platform {

struct Size {
  double width = 0, height = 0;
  bool operator==(const Size&) const = default;
};

// What the platform tells about the device and the host process.
struct DeviceFacts {
  std::string systemName = "iPhone OS";
  std::string systemVersion = "8.1";
  std::string model = "iPhone";             // UIDevice model
  std::string hardwareModel = "iPhone7,2";  // sysctl "hw.machine"
  Size screenPoints{375, 667};
  Size screenPixels{750, 1334};
  double screenScale = 2;
  std::string bundleIdentifier;  // of the host process
  std::string locale = "en_US";  // the user's region format
  std::string language = "en";   // for localised strings
  // The user's contact name order, as ABPersonGetCompositeNameFormatForRecord
  // answers it with no record: true for last name first.
  bool nameOrderLastFirst = false;
  // The user's text size (Settings > Display & Brightness > Text Size) in
  // steps from the default: negative smaller, positive larger. Lists set
  // their fonts from it.
  int textSizeStep = 0;
};

// The address book's external-change signal. Whoever saves a change to the
// address-book database (the Contacts app, a sync) posts it system-wide;
// ABAddressBookRegisterExternalChangeCallback stands on observing it.
inline constexpr char kAddressBookExternalChangeNotification[] =
    "ABAddressBookExternalChangeNotification";

// A modal alert as the platform shows it. Button indices: the cancel button
// is 0 when there is one, the other buttons follow in order.
struct Alert {
  std::string title;
  std::string message;
  std::string cancelButton;  // empty: none
  std::vector<std::string> otherButtons;
  // The alert view's tag, telling apart the alerts one delegate shows.
  int tag = 0;
  // An alert with a plain text-input field: what the user typed into it,
  // read by the delegate when a button is pressed.
  bool textInput = false;
  std::string inputText;
  // Called with the pressed button's index (the alert's delegate).
  std::function<void(const Alert&, int buttonIndex)> onButton;
  int cancelButtonIndex() const { return cancelButton.empty() ? -1 : 0; }
  std::vector<std::string> buttons() const;
};

using ObserverToken = uint64_t;

// Where a notification travels: system-wide (Darwin notify centre, crosses
// processes) or inside the posting process only (NSNotificationCenter).
enum class Scope { System, Process };

class Platform {
 public:
  virtual ~Platform() = default;

  // --- Files -------------------------------------------------------------
  // Maps an absolute device path ("/var/mobile/Library/...") under the
  // device root.
  virtual std::string path(std::string_view absolute) const = 0;
  virtual std::string root() const = 0;

  // --- Clock and run loop ------------------------------------------------
  // Seconds since 1970-01-01 UTC (virtual in the simulated platform).
  virtual double now() const = 0;
  // performSelector:withObject:afterDelay: — runs call on the main run loop
  // after delay seconds.
  virtual void performAfterDelay(const void* target, std::string_view selector,
                                 double delay, std::function<void()> call) = 0;
  // cancelPreviousPerformRequestsWithTarget:selector:object:
  virtual void cancelPrevious(const void* target,
                              std::string_view selector) = 0;
  // dispatch_async to the main queue / to a global background queue.
  virtual void dispatchMain(std::function<void()> block) = 0;
  virtual void dispatchBackground(std::function<void()> block) = 0;

  // --- Notifications -----------------------------------------------------
  virtual ObserverToken observe(std::string_view name,
                                std::function<void()> callback,
                                Scope scope = Scope::System) = 0;
  virtual void removeObserver(ObserverToken token) = 0;
  virtual void post(std::string_view name, Scope scope = Scope::System) = 0;

  // --- Device facts ------------------------------------------------------
  virtual const DeviceFacts& device() const = 0;

  // --- Localised strings -------------------------------------------------
  // The host bundle's string table `table`; the key itself when absent.
  virtual std::string localizedString(
      std::string_view key, std::string_view table = "Zorvel") const = 0;

  // --- Side effects ------------------------------------------------------
  virtual void log(std::string_view line) = 0;
  // AudioServicesPlaySystemSound.
  virtual void playSystemSound(uint32_t soundId) = 0;
  // AudioServicesPlaySystemSoundWithVibration with its pattern dictionary.
  virtual void playVibration(uint32_t soundId, const Dict& pattern) = 0;
  // AudioServicesCreateSystemSoundID with the file URL of a device path:
  // the new sound id, or nullopt (the platform's non-zero result) when the
  // file is not there. AudioServicesDisposeSystemSoundID releases an id.
  virtual std::optional<uint32_t> createSystemSound(
      std::string_view devicePath) = 0;
  virtual void disposeSystemSound(uint32_t soundId) = 0;
  // A notification banner as the springboard presents a bulletin (see
  // ui/bulletin.h, which reads the bulletin's texts through the runtime).
  virtual void showBanner(std::string_view sectionID,
                          std::string_view title) = 0;
  // The carrier name the status bar now shows.
  virtual void showCarrierName(std::string_view name) = 0;
  virtual std::string pasteboard() const = 0;
  virtual void setPasteboard(std::string_view text) = 0;
  // [UIApplication openURL:]; true when something handled it.
  virtual bool openURL(std::string_view url) = 0;
  // Shows a modal alert (UIAlertView show).
  virtual void showAlert(std::shared_ptr<Alert> alert) = 0;
  // The C library's system(); returns its status.
  virtual int system(const std::string& command) = 0;

  // --- Telephony ---------------------------------------------------------
  // The device's telephony service (calls, hang-up, cellular data).
  virtual Telephony& telephony() = 0;
};

// Reads / writes a property-list dictionary at a device path (mapped with
// path()). readDictionary gives nullopt for a missing or unparsable file.
std::optional<Dict> readDictionary(std::string_view devicePath);
bool writeDictionary(std::string_view devicePath, const Dict& dict);

// Runs `command` with its leading absolute program path mapped under `root`
// and ZORVEL_ROOT set to root; returns system()'s status. Both platforms
// implement system() with it, so "/Library/Zorvel/zvtool -c" runs the
// device's own copy of the tool.
int runDeviceCommand(const std::string& root, const std::string& command);
// The shell command line runDeviceCommand() runs, for callers that collect
// the program's output themselves.
std::string deviceCommandLine(const std::string& root,
                              const std::string& command);

}  // namespace zv::platform
