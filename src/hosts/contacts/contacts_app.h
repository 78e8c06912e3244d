// The simulated Contacts application ("com.apple.MobileAddressBook") on the
// host kit: the contacts list in a navigation controller, a contact's card
// pushed on a tap.
//
//   auto& contacts = hosts::launchSimulated(world, hosts::contactsHost(),
//                                           facts, ZorvelInitializer);
#pragma once

#include "hosts/contacts/members.h"
#include "hosts/kit/host_kit.h"

namespace zv::hosts {

HostDefinition contactsHost();

class ContactsApplication : public ui::UIApplication {
 public:
  static constexpr const char* kClassName = "ABApplication";
  explicit ContactsApplication(rt::Class* isa) : ui::UIApplication(isa) {}
  static std::shared_ptr<ContactsApplication> shared();

  std::shared_ptr<ui::UINavigationController> navigation;
  std::shared_ptr<MembersViewController> list() const;

  void didFinishLaunching() override;

 protected:
  // The navigation stack (and what it presents).
  void prepareWindow(ui::UIWindow& window) override {
    window.setRootViewController(navigation);
  }
};

}  // namespace zv::hosts
