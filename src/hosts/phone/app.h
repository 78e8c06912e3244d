// The simulated Phone application ("com.apple.mobilephone") on the host
// kit: the application object with its tab bar (favourites, recents,
// contacts, keypad, voicemail), its own handling of "tel:" URLs and of the
// dial operation, and entering the background. It opens on the keypad
// (hosts/phone/keypad.h); the other screens live in files of their own
// beside it (hosts/phone/recents.h, the in-call screen hosts/phone/incall.h)
// and, for the Contacts tab, in the contacts screens the Contacts app
// shares (hosts/contacts/).
//
//   auto& phone = hosts::launchSimulated(world, hosts::phoneHost(), facts,
//                                        ZorvelInitializer);
#pragma once

#include <string>
#include <vector>

#include "hosts/contacts/members.h"
#include "hosts/kit/host_kit.h"
#include "hosts/phone/incall.h"
#include "hosts/phone/keypad.h"
#include "hosts/phone/recents.h"
#include "platform/ui/application.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

// The Phone host: its classes (with the keypad variant given) and its
// application.
HostDefinition phoneHost(const PhoneHostOptions& options = {});

class PhoneApplication : public ui::UIApplication {
 public:
  static constexpr const char* kClassName = "PhoneApplication";
  explicit PhoneApplication(rt::Class* isa) : ui::UIApplication(isa) {}

  enum Tab { kFavorites, kRecents, kContacts, kKeypad, kVoicemail };
  static const char* tabName(int tab);

  // The running Phone app of the current process, or null.
  static std::shared_ptr<PhoneApplication> shared();

  std::shared_ptr<ui::UITabBarController> tabBar;
  std::shared_ptr<DialerController> dialer;
  std::shared_ptr<RecentsViewController> recents;
  // The Contacts tab: the shared contacts list, cards pushed on it.
  std::shared_ptr<ui::UINavigationController> contacts;
  // The in-call screen (systems before 8.0; later systems show calls in the
  // in-call service), following the device's calls from launch on.
  std::shared_ptr<InCallController> inCall;
  bool inBackground = false;

  struct Dial {
    std::string number, uid;
    int service = 0;
    bool dialAssist = false, wasAlreadyAssisted = false;
  };
  std::vector<Dial> dialled;
  // URLs the app handed on to other apps (not tel:).
  std::vector<std::string> openedURLs;

  // User actions.
  void selectTab(int tab);
  void enterBackground();

  // Builds the tabs; the keypad tab appears.
  void didFinishLaunching() override;

 protected:
  // The in-call screen while it is up, else the tabs.
  void prepareWindow(ui::UIWindow& window) override;
};

}  // namespace zv::hosts
