// zvcontacts_init: areas beside the phone labels of a contact's card and
// avatars in the contacts list, in every host that shows them (Phone,
// Contacts, Messages). The controller reaches the screens through
// RuntimeContactsHost, which sends the host's own selectors.
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hooks/person_record.h"
#include "hostsdk/contacts.h"
#include "lists/contacts_controller.h"

namespace zv {
namespace {

using PhoneCell = sdk::ABPropertyPhoneNumberCell;
using Card = sdk::ABContactViewController;
using Source = sdk::ABMembersDataSource;
using MemberCell = sdk::ABMemberCell;

template <typename T>
std::shared_ptr<T> viewAs(const rt::Id& object) {
  return std::dynamic_pointer_cast<T>(object);
}

class RuntimeContactsHost : public ContactsHost {
 public:
  std::shared_ptr<ui::UILabel> labelLabel(const rt::Id& cell) override {
    return viewAs<ui::UILabel>(rt::trySend(cell, PhoneCell::labelLabel));
  }
  std::shared_ptr<ui::UILabel> valueLabel(const rt::Id& cell) override {
    return viewAs<ui::UILabel>(rt::trySend(cell, PhoneCell::valueLabel));
  }
  std::optional<int32_t> contactRecordId(const rt::Id& card) override {
    rt::Id contact = rt::trySend(card, Card::contact);
    if (!rt::respondsTo(contact, sdk::ABContact::recordID)) return std::nullopt;
    return rt::send(contact, sdk::ABContact::recordID);
  }
  bool hasPerson(const rt::Id& cell) override {
    return rt::respondsTo(cell, MemberCell::person);
  }
  std::optional<std::string> personName(const rt::Id& cell) override {
    std::string name = rt::trySend(rt::trySend(cell, MemberCell::person),
                                   sdk::ABModelPerson::name);
    if (name.empty()) return std::nullopt;
    return name;
  }
  std::shared_ptr<const ABPersonRecord> personRecord(
      const rt::Id& cell) override {
    return RuntimePersonRecord::wrap(rt::trySend(
        rt::trySend(cell, MemberCell::person), sdk::ABModelPerson::record));
  }
  std::shared_ptr<ui::UIView> contactNameView(const rt::Id& cell) override {
    return viewAs<ui::UIView>(rt::trySend(cell, MemberCell::contactNameView));
  }
  std::shared_ptr<ui::UILabel> nameLabel(const rt::Id& cell) override {
    return viewAs<ui::UILabel>(
        rt::trySend(rt::trySend(cell, MemberCell::contactNameView),
                    sdk::ABMemberNameView::nameLabel));
  }
  void setSeparatorStyle(const rt::Id& tableView, int style) override {
    rt::trySend(tableView, sdk::ABMembersTableView::setSeparatorStyle, style);
  }
};

}  // namespace

void zvcontacts_init() {
  runStartup("zvcontacts_init", [] {
    auto s = ZVPhoneSettings::sharedInstance();
    if (!s || (!s->EnableArea() && !s->EnableAvatar())) return;
    auto c = ZVContactsController::sharedInstance();
    if (!c) return;
    c->setHost(std::make_shared<RuntimeContactsHost>());
    const auto k = GuardKind::Alert;
    using namespace hook;
    using Id = const rt::Id&;
    // clang-format off
    hostFirst(k, PhoneCell::updateConstraints, [c](Id self) { c->areaCell(self); });
    hostFirst(k, Card::viewWillAppear, [c](Id self, bool) { c->viewWillAppear(self); });
    hostFirst(k, Source::tableViewCellForRowAtIndexPath, [c](Id, rt::Id& cell, rt::Id table, ui::IndexPath) { c->avatarTableView(table); c->avatarCell(cell); });
    // clang-format on
  });
}

}  // namespace zv
