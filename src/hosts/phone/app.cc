#include "hosts/phone/app.h"

#include <cstdlib>

#include "hosts/contacts/card.h"
#include "hostsdk/phone.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/messages.h"

namespace zv::hosts {
namespace {

using ui::self;
using App = sdk::PhoneApplication;

// "tel:NUMBER" or "tel://NUMBER" with any "?..." dropped; nullopt for
// another scheme.
std::optional<std::string> telNumber(const std::string& url) {
  std::string number;
  if (url.rfind("tel://", 0) == 0)
    number = url.substr(6);
  else if (url.rfind("tel:", 0) == 0)
    number = url.substr(4);
  else
    return std::nullopt;
  if (auto q = number.find('?'); q != std::string::npos) number.resize(q);
  return number;
}

void registerApplication() {
  rt::registerClass<PhoneApplication>(App::kName, "UIApplication");
  rt::define(App::currentViewController, [](const rt::Id& s) {
    return rt::Id(self<PhoneApplication>(s).tabBar);
  });
  // The Phone app dials tel: URLs itself and hands other schemes on.
  rt::define(App::openURL, [](const rt::Id& s, std::string url) {
    auto& a = self<PhoneApplication>(s);
    auto number = telNumber(url);
    if (!number) {
      a.openedURLs.push_back(url);
      return platform::current().openURL(url);
    }
    if (number->empty()) return false;
    a.dialled.push_back({*number, "", 0, false, false});
    return true;
  });
  rt::define(App::dialPhoneNumber, [](const rt::Id& s, std::string number,
                                      std::string uid, int service, bool assist,
                                      bool assisted) {
    self<PhoneApplication>(s).dialled.push_back(
        {std::move(number), std::move(uid), service, assist, assisted});
  });
  rt::define(App::applicationDidEnterBackground, [](const rt::Id& s, rt::Id) {
    self<PhoneApplication>(s).inBackground = true;
  });
}

}  // namespace

HostDefinition phoneHost(const PhoneHostOptions& options) {
  return HostDefinition{"com.apple.mobilephone",
                        [options] {
                          registerKeypadClasses(options);
                          registerRecentsClasses();
                          registerContactsClasses();
                          registerInCallClasses();
                          registerApplication();
                        },
                        [] {
                          return std::static_pointer_cast<ui::UIApplication>(
                              std::dynamic_pointer_cast<PhoneApplication>(
                                  rt::alloc(rt::getClass(App::kName))));
                        }};
}

const char* PhoneApplication::tabName(int tab) {
  static const char* names[] = {"favorites", "recents", "contacts", "keypad",
                                "voicemail"};
  return tab >= 0 && tab < 5 ? names[tab] : "";
}

std::shared_ptr<PhoneApplication> PhoneApplication::shared() {
  return ui::sharedApplication<PhoneApplication>();
}

void PhoneApplication::didFinishLaunching() {
  tabBar = ui::make<ui::UITabBarController>();
  dialer = std::dynamic_pointer_cast<DialerController>(
      rt::alloc(rt::getClass(sdk::DialerController::kName)));
  recents = RecentsViewController::make();
  contacts = makeContactsNavigation();
  std::vector<std::shared_ptr<ui::UIViewController>> tabs;
  for (int i = 0; i < 5; ++i) {
    if (i == kKeypad) {
      tabs.push_back(dialer);
    } else if (i == kRecents) {
      tabs.push_back(recents);
    } else if (i == kContacts) {
      tabs.push_back(contacts);
    } else {
      auto nav = ui::make<ui::UINavigationController>();
      nav->title = tabName(i);
      tabs.push_back(nav);
    }
  }
  // Each tab is named (and drawn in the tab bar) by its kind.
  for (int i = 0; i < 5; ++i)
    if (tabs[i]->title.empty()) tabs[i]->title = tabName(i);
  tabBar->setViewControllers(tabs);
  // The app opens on the keypad.
  selectTab(kKeypad);
  if (std::strtod(platform::current().device().systemVersion.c_str(), nullptr) <
      8.0)
    inCall = InCallController::start();
}

void PhoneApplication::prepareWindow(ui::UIWindow& window) {
  if (inCall && inCall->isShown())
    window.setRootViewController(inCall);
  else
    window.setRootViewController(tabBar);
}

void PhoneApplication::selectTab(int tab) {
  rt::send(tabBar, ui::msg::UITabBarController::setSelectedIndex, tab);
}

void PhoneApplication::enterBackground() {
  rt::send(shared_from_this(), App::applicationDidEnterBackground,
           shared_from_this());
}

}  // namespace zv::hosts
