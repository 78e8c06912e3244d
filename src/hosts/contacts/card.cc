#include "hosts/contacts/card.h"

#include "hosts/contacts/text_sizes.h"
#include "hostsdk/contacts.h"
#include "platform/platform.h"
#include "platform/runtime/message.h"

namespace zv::hosts {

void registerMembersClasses();  // members.cc

namespace {

using ui::self;
constexpr double kCardTop = 160;
constexpr double kCellHeight = 56;

}  // namespace

void PhoneNumberCell::build(const ContactPhone& phone) {
  setUp(ui::CellStyle::Default, "phone");
  labelLabel = ui::make<ui::UILabel>();
  labelLabel->setFont({"Helvetica", detailFontSize(3)});
  labelLabel->setText(labelText(phone.label));
  labelLabel->setFrame({{15, 6}, {280, 18}});
  valueLabel = ui::make<ui::UILabel>();
  valueLabel->setFont({"Helvetica", nameFontSize(3)});
  valueLabel->setText(phone.value);
  valueLabel->setFrame({{15, 26}, {280, 22}});
  contentView()->addSubview(labelLabel);
  contentView()->addSubview(valueLabel);
}

std::shared_ptr<ContactViewController> ContactViewController::make(
    const Contact& contact) {
  auto vc = std::dynamic_pointer_cast<ContactViewController>(
      rt::alloc(rt::getClass(kClassName)));
  vc->contact = std::dynamic_pointer_cast<ContactObject>(
      rt::alloc(rt::getClass(ContactObject::kClassName)));
  vc->contact->contact = contact;
  vc->title = contact.name;
  return vc;
}

std::shared_ptr<ui::UIView> ContactViewController::loadView() {
  auto root = ui::make<ui::UIView>();
  const auto screen = platform::current().device().screenPoints;
  root->setFrame({{0, 0}, screen});
  phoneCells.clear();
  double y = kCardTop;
  for (const ContactPhone& phone : contact->contact.phones) {
    auto cell = std::dynamic_pointer_cast<PhoneNumberCell>(
        rt::alloc(rt::getClass(PhoneNumberCell::kClassName)));
    cell->build(phone);
    cell->setFrame({{0, y}, {screen.width, kCellHeight}});
    root->addSubview(cell);
    phoneCells.push_back(cell);
    y += kCellHeight;
  }
  return root;
}

void ContactViewController::layout() {
  view();
  // Auto layout asks each cell for its constraints more than once.
  for (int pass = 0; pass < 2; ++pass)
    for (auto& cell : phoneCells)
      rt::send(cell, sdk::ABPropertyPhoneNumberCell::updateConstraints);
}

void registerContactsClasses() {
  registerRecordClasses();
  registerMembersClasses();
  rt::registerClass<PhoneNumberCell>(PhoneNumberCell::kClassName,
                                     "UITableViewCell");
  rt::define(sdk::ABPropertyPhoneNumberCell::updateConstraints,
             [](const rt::Id&) {});
  rt::define(sdk::ABPropertyPhoneNumberCell::labelLabel, [](const rt::Id& s) {
    return rt::Id(self<PhoneNumberCell>(s).labelLabel);
  });
  rt::define(sdk::ABPropertyPhoneNumberCell::valueLabel, [](const rt::Id& s) {
    return rt::Id(self<PhoneNumberCell>(s).valueLabel);
  });
  rt::registerClass<ContactViewController>(ContactViewController::kClassName,
                                           "UIViewController");
  rt::define(sdk::ABContactViewController::contact, [](const rt::Id& s) {
    return rt::Id(self<ContactViewController>(s).contact);
  });
  rt::define(
      sdk::ABContactViewController::viewWillAppear,
      [](const rt::Id& s, bool) { self<ContactViewController>(s).layout(); });
}

}  // namespace zv::hosts
