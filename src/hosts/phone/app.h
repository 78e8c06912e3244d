// The simulated Phone application ("com.apple.mobilephone") on the host
// kit: the application object with its tab bar (favourites, recents,
// contacts, keypad, voicemail), its own handling of "tel:" URLs and of the
// dial operation, and entering the background. It opens on the keypad
// (hosts/phone/keypad.h); the other screens live in files of their own
// beside it.
//
//   auto& phone = hosts::launchSimulated(world, hosts::phoneHost(), facts,
//                                        ZorvelInitializer);
#pragma once

#include <string>
#include <vector>

#include "hosts/kit/host_kit.h"
#include "hosts/phone/keypad.h"
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
};

}  // namespace zv::hosts
