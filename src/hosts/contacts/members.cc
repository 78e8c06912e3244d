#include "hosts/contacts/members.h"

#include "hosts/contacts/card.h"
#include "hosts/contacts/text_sizes.h"
#include "hostsdk/contacts.h"
#include "platform/platform.h"
#include "platform/runtime/message.h"
#include "platform/ui/messages.h"

namespace zv::hosts {
namespace {

using ui::self;
constexpr double kRowHeight = 44;
constexpr double kTextLeft = 15;

bool beforeEight() { return systemVersion() < 8.0f; }

}  // namespace

void MemberCell::build() {
  setUp(ui::CellStyle::Default, "member");
  const double size = nameFontSize(3);
  textLabel()->setFont({"Helvetica", size});
  textLabel()->setFrame({{kTextLeft, 11}, {250, 22}});
  nameView = std::dynamic_pointer_cast<MemberNameView>(
      rt::alloc(rt::getClass(MemberNameView::kClassName)));
  nameView->setFrame({{kTextLeft, 11}, {250, 22}});
  nameView->nameLabel = ui::make<ui::UILabel>();
  nameView->nameLabel->setFont({"Helvetica", size});
  nameView->nameLabel->setFrame({{0, 0}, {250, 22}});
  nameView->addSubview(nameView->nameLabel);
  contentView()->addSubview(nameView);
}

void MemberCell::layoutSubviews() {
  UITableViewCell::layoutSubviews();
  const ui::Rect& text = textLabel()->frame();
  nameView->setFrame(
      {{text.origin.x, (frame().size.height - 22) / 2}, {text.size.width, 22}});
  nameView->nameLabel->setFrame({{0, 0}, {text.size.width, 22}});
}

void MemberCell::show(const std::shared_ptr<ModelPerson>& p) {
  person = p;
  imageView()->setImage(nullptr);
  imageView()->setHidden(true);
  // Before 8.0 a name view draws the name; from 8.0 the text label does.
  if (beforeEight()) {
    nameView->setHidden(false);
    nameView->nameLabel->setText(p->name);
    textLabel()->setText("");
  } else {
    nameView->setHidden(true);
    textLabel()->setText(p->name);
  }
}

std::shared_ptr<MembersViewController> MembersViewController::make() {
  auto vc = std::dynamic_pointer_cast<MembersViewController>(
      rt::alloc(rt::getClass(kClassName)));
  vc->title = "All Contacts";
  vc->dataSource = std::dynamic_pointer_cast<MembersDataSource>(
      rt::alloc(rt::getClass(MembersDataSource::kClassName)));
  return vc;
}

const std::vector<Contact>& MembersViewController::contacts() {
  if (!loaded_) {
    dataSource->contacts = loadContacts();
    loaded_ = true;
  }
  return dataSource->contacts;
}

std::shared_ptr<MembersTableView> MembersViewController::table() {
  return std::dynamic_pointer_cast<MembersTableView>(view());
}

std::shared_ptr<ui::UIView> MembersViewController::loadView() {
  auto table = std::dynamic_pointer_cast<MembersTableView>(
      rt::alloc(rt::getClass(MembersTableView::kClassName)));
  table->setFrame({{0, 64}, platform::current().device().screenPoints});
  // The platform's list draws no separators on 7.x.
  table->separatorStyle = beforeEight() ? 0 : 1;
  std::weak_ptr<MembersViewController> weak =
      std::static_pointer_cast<MembersViewController>(shared_from_this());
  table->numberOfRows = [weak] {
    auto vc = weak.lock();
    return vc ? vc->contacts().size() : 0;
  };
  table->heightForRow = [](size_t) { return kRowHeight; };
  table->cellForRow = [weak](ui::UITableView& t, size_t row) {
    auto vc = weak.lock();
    if (!vc) return std::shared_ptr<ui::UITableViewCell>();
    return std::dynamic_pointer_cast<ui::UITableViewCell>(rt::send(
        vc->dataSource,
        sdk::ABMembersDataSource::tableViewCellForRowAtIndexPath,
        t.shared_from_this(), ui::IndexPath{0, static_cast<int64_t>(row)}));
  };
  table->didSelectRow = [weak](ui::UITableView&, size_t row) {
    if (auto vc = weak.lock()) vc->openRow(row);
  };
  table->reloadData();
  return table;
}

void MembersViewController::reload() {
  dataSource->contacts = loadContacts();
  loaded_ = true;
  rt::send(table(), ui::msg::UITableView::reloadData);
}

bool MembersViewController::openRow(size_t row) {
  if (row >= contacts().size()) return false;
  openContact(contacts()[row]);
  return true;
}

void MembersViewController::openContact(const Contact& contact) {
  auto nav = navigation.lock();
  if (!nav) return;
  nav->pushViewController(ContactViewController::make(contact), true);
}

std::shared_ptr<ui::UINavigationController> makeContactsNavigation() {
  auto nav = ui::make<ui::UINavigationController>();
  nav->title = "contacts";
  auto list = MembersViewController::make();
  list->navigation = nav;
  nav->pushViewController(list, false);
  return nav;
}

void registerMembersClasses() {
  rt::registerClass<MemberNameView>(MemberNameView::kClassName, "UIView");
  rt::define(sdk::ABMemberNameView::nameLabel, [](const rt::Id& s) {
    return rt::Id(self<MemberNameView>(s).nameLabel);
  });
  rt::registerClass<MemberCell>(MemberCell::kClassName, "UITableViewCell");
  rt::define(sdk::ABMemberCell::person, [](const rt::Id& s) {
    return rt::Id(self<MemberCell>(s).person);
  });
  if (beforeEight())
    rt::define(sdk::ABMemberCell::contactNameView, [](const rt::Id& s) {
      return rt::Id(self<MemberCell>(s).nameView);
    });
  rt::registerClass<MembersTableView>(MembersTableView::kClassName,
                                      "UITableView");
  rt::define(sdk::ABMembersTableView::setSeparatorStyle,
             [](const rt::Id& s, int style) {
               self<MembersTableView>(s).separatorStyle = style;
             });
  rt::registerClass<MembersDataSource>(MembersDataSource::kClassName);
  rt::define(
      sdk::ABMembersDataSource::tableViewCellForRowAtIndexPath,
      [](const rt::Id& s, rt::Id tableView, ui::IndexPath path) -> rt::Id {
        auto& source = self<MembersDataSource>(s);
        if (path.row < 0 ||
            static_cast<size_t>(path.row) >= source.contacts.size())
          return nullptr;
        auto table = std::dynamic_pointer_cast<ui::UITableView>(tableView);
        auto cell = std::dynamic_pointer_cast<MemberCell>(
            table ? table->dequeueReusableCellWithIdentifier("member")
                  : nullptr);
        if (!cell) {
          cell = std::dynamic_pointer_cast<MemberCell>(
              rt::alloc(rt::getClass(MemberCell::kClassName)));
          cell->build();
        }
        const Contact& contact = source.contacts[path.row];
        auto person = std::dynamic_pointer_cast<ModelPerson>(
            rt::alloc(rt::getClass(ModelPerson::kClassName)));
        person->name = contact.name;
        person->record = makeRecord(contact);
        cell->setFrame(
            {{0, 0}, {table ? table->frame().size.width : 320, kRowHeight}});
        cell->show(person);
        return cell;
      });
  rt::registerClass<MembersViewController>(MembersViewController::kClassName,
                                           "UIViewController");
}

}  // namespace zv::hosts
