// The contacts list: a table of every contact by name, with the platform's
// row cells (ABMemberCell: its person, its image view, and before 8.0 a
// name view that draws the name, from 8.0 the text label), the data source
// that makes them (ABMembersDataSource tableView:cellForRowAtIndexPath:, a
// runtime message so that a replaced one sees every row) and the view
// controller that shows the list and opens a contact's card on a tap.
#pragma once

#include <vector>

#include "hosts/contacts/contact_store.h"
#include "hosts/contacts/records.h"
#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

class MemberNameView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "ABMemberNameView";
  explicit MemberNameView(rt::Class* isa) : ui::UIView(isa) {}
  std::shared_ptr<ui::UILabel> nameLabel;
};

class MemberCell : public ui::UITableViewCell {
 public:
  static constexpr const char* kClassName = "ABMemberCell";
  explicit MemberCell(rt::Class* isa) : ui::UITableViewCell(isa) {}
  void build();
  // Shows a contact (the host's own drawing, before any hook).
  void show(const std::shared_ptr<ModelPerson>& person);
  std::shared_ptr<ModelPerson> person;
  std::shared_ptr<MemberNameView> nameView;
  // The standard layout; the name view goes where the text label went
  // (after a picture in the image view).
  void layoutSubviews() override;
};

class MembersTableView : public ui::UITableView {
 public:
  static constexpr const char* kClassName = "ABMembersTableView";
  explicit MembersTableView(rt::Class* isa) : ui::UITableView(isa) {}
  int separatorStyle = 0;  // 0 none (the platform's list before 7.1), 1 line
};

class MembersDataSource : public rt::Object {
 public:
  static constexpr const char* kClassName = "ABMembersDataSource";
  explicit MembersDataSource(rt::Class* isa) : rt::Object(isa) {}
  std::vector<Contact> contacts;
};

class MembersViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "ABMembersViewController";
  explicit MembersViewController(rt::Class* isa) : ui::UIViewController(isa) {}

  static std::shared_ptr<MembersViewController> make();
  std::shared_ptr<MembersTableView> table();
  // The list's contacts, read from the address book when first asked for:
  // a list that is never shown (the Phone app's Contacts tab while another
  // tab is open) never reads the whole book.
  const std::vector<Contact>& contacts();
  // Reads the address book again and redraws the list.
  void reload();
  // Opens the card of the contact in `row` on the navigation stack.
  bool openRow(size_t row);
  // Opens a card (nothing happens without a navigation controller).
  void openContact(const Contact& contact);

  std::shared_ptr<MembersDataSource> dataSource;
  std::weak_ptr<ui::UINavigationController> navigation;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;

 private:
  bool loaded_ = false;
};

// A navigation controller showing the contacts list.
std::shared_ptr<ui::UINavigationController> makeContactsNavigation();

}  // namespace zv::hosts
