// A contact's card: the view controller (ABContactViewController, with the
// contact it shows) and one cell per phone number (ABPropertyPhoneNumberCell:
// the label, e.g. "mobile", and the number). Every layout pass of the card
// sends updateConstraints to each phone cell, twice, as the platform's
// auto layout does.
#pragma once

#include <vector>

#include "hosts/contacts/contact_store.h"
#include "hosts/contacts/records.h"
#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

class PhoneNumberCell : public ui::UITableViewCell {
 public:
  static constexpr const char* kClassName = "ABPropertyPhoneNumberCell";
  explicit PhoneNumberCell(rt::Class* isa) : ui::UITableViewCell(isa) {}
  void build(const ContactPhone& phone);
  std::shared_ptr<ui::UILabel> labelLabel, valueLabel;
};

class ContactViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "ABContactViewController";
  explicit ContactViewController(rt::Class* isa) : ui::UIViewController(isa) {}

  static std::shared_ptr<ContactViewController> make(const Contact& contact);
  // Lays the card out again (each phone cell hears updateConstraints).
  void layout();
  std::shared_ptr<ContactObject> contact;
  std::vector<std::shared_ptr<PhoneNumberCell>> phoneCells;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

// Registers the contacts screens' classes (records, list, card) in the
// current process: the Phone app, the Contacts app and Messages all have
// them.
void registerContactsClasses();

}  // namespace zv::hosts
