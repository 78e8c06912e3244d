#include "hosts/contacts/contacts_app.h"

#include "hosts/contacts/card.h"
#include "platform/runtime/message.h"

namespace zv::hosts {

HostDefinition contactsHost() {
  return HostDefinition{
      "com.apple.MobileAddressBook",
      [] {
        registerContactsClasses();
        rt::registerClass<ContactsApplication>(ContactsApplication::kClassName,
                                               "UIApplication");
      },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<ContactsApplication>(
                rt::alloc(rt::getClass(ContactsApplication::kClassName))));
      }};
}

std::shared_ptr<ContactsApplication> ContactsApplication::shared() {
  return ui::sharedApplication<ContactsApplication>();
}

std::shared_ptr<MembersViewController> ContactsApplication::list() const {
  if (!navigation || navigation->viewControllers().empty()) return nullptr;
  return std::dynamic_pointer_cast<MembersViewController>(
      navigation->viewControllers().front());
}

void ContactsApplication::didFinishLaunching() {
  navigation = makeContactsNavigation();
  // The list is on screen from the start.
  list()->view();
}

}  // namespace zv::hosts
