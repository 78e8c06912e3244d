// The contacts screens' classes and selectors, shared by the Phone app's
// Contacts tab, the Contacts application ("com.apple.MobileAddressBook")
// and Messages: the contacts list (its data source and cells), a contact's
// card (its view controller and phone-number cells), and the address-book
// record objects they hand out. Each selector is declared once with its
// signature; the simulated hosts define them and the contacts hooks replace
// and send them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/runtime/message.h"
#include "platform/ui/index_path.h"

namespace zv::sdk {

// An address-book person record (ABRecordRef): what ABRecordGetRecordID,
// ABPersonHasImageData and ABPersonCopyImageDataWithFormat answer.
struct ABRecord {
  static constexpr std::string_view kName = "ABRecord";
  static constexpr rt::Message<int32_t()> recordID{kName, "recordID"};
  static constexpr rt::Message<bool()> hasImageData{kName, "hasImageData"};
  static constexpr rt::Message<std::string(int)> copyImageDataWithFormat{
      kName, "copyImageDataWithFormat:"};
};

// The contacts list's data source.
struct ABMembersDataSource {
  static constexpr std::string_view kName = "ABMembersDataSource";
  static constexpr rt::Message<rt::Id(rt::Id, ui::IndexPath)>
      tableViewCellForRowAtIndexPath{kName, "tableView:cellForRowAtIndexPath:"};
};

// A row of the contacts list.
struct ABMemberCell {
  static constexpr std::string_view kName = "ABMemberCell";
  static constexpr rt::Message<rt::Id()> person{kName, "person"};
  // The view that draws the name (before 8.0).
  static constexpr rt::Message<rt::Id()> contactNameView{kName,
                                                         "contactNameView"};
};

// What a list row's person answers.
struct ABModelPerson {
  static constexpr std::string_view kName = "ABModelPerson";
  static constexpr rt::Message<std::string()> name{kName, "name"};
  static constexpr rt::Message<rt::Id()> record{kName, "record"};
};

struct ABMemberNameView {
  static constexpr std::string_view kName = "ABMemberNameView";
  static constexpr rt::Message<rt::Id()> nameLabel{kName, "nameLabel"};
};

// A contact's card.
struct ABContactViewController {
  static constexpr std::string_view kName = "ABContactViewController";
  static constexpr rt::Message<void(bool)> viewWillAppear{kName,
                                                          "viewWillAppear:"};
  static constexpr rt::Message<rt::Id()> contact{kName, "contact"};
};

// The contact a card shows.
struct ABContact {
  static constexpr std::string_view kName = "ABContact";
  static constexpr rt::Message<int32_t()> recordID{kName, "recordID"};
};

// A phone number on a card: its label and the number.
struct ABPropertyPhoneNumberCell {
  static constexpr std::string_view kName = "ABPropertyPhoneNumberCell";
  static constexpr rt::Message<void()> updateConstraints{kName,
                                                         "updateConstraints"};
  static constexpr rt::Message<rt::Id()> labelLabel{kName, "labelLabel"};
  static constexpr rt::Message<rt::Id()> valueLabel{kName, "valueLabel"};
};

// The list's table view (the UI model's UITableView with a separator
// style: 0 none, 1 single line).
struct ABMembersTableView {
  static constexpr std::string_view kName = "ABMembersTableView";
  static constexpr rt::Message<void(int)> setSeparatorStyle{
      kName, "setSeparatorStyle:"};
};

}  // namespace zv::sdk
