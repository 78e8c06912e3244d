// ZVContactsController: what the contacts lists and cards gain, wherever they
// are shown (the Phone app's Contacts tab, the Contacts app, Messages). On a
// card, each phone number's label gets the number's area after two blanks
// (or is replaced by it); in the list, each row gets a round avatar before
// the name, on the small screens (3.5 and 4 inch) only.
//
// The card's phone-number cells lay out many times; the ends-with test keeps
// the area from being added twice. Opening a card on a small screen drops
// the contact's cached pictures, so that a photo changed on the card shows
// afresh in the list.
//
// The host is reached only through ContactsHost (supplied by the contacts
// hooks). A per-process singleton; main thread only, except the avatar
// pictures, which are loaded on a background queue.
#pragma once

#include <memory>

#include "lists/contacts_host.h"
#include "platform/ui/table_view.h"

namespace zv {

class ZVAddressBook;
class ZVAreaLoader;
class ZVPhoneSettings;

class ZVContactsController {
 public:
  static constexpr double kAvatarSide = 44;
  static constexpr double kAvatarScale = 0.8;
  static constexpr double kSeparatorInset = 62;
  static constexpr int kSingleLineSeparator = 1;

  static std::shared_ptr<ZVContactsController> sharedInstance();
  ZVContactsController();

  void setHost(std::shared_ptr<ContactsHost> host) { host_ = std::move(host); }

  // A phone-number cell on a card, after each constraint pass.
  void areaCell(const rt::Id& cell);
  // A card comes on screen.
  void viewWillAppear(const rt::Id& viewController);
  // The list's table view and one of its cells, after the host made it.
  void avatarTableView(const rt::Id& tableView);
  void avatarCell(const rt::Id& cell);

  // Blanks put before a list name before 7.1, by its font size.
  static int nameBlanks(double fontSize);

 private:
  static bool smallScreen();
  void setAvatar(const rt::Id& cell, ui::UITableViewCell& table);

  std::shared_ptr<ZVPhoneSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ContactsHost> host_;
};

}  // namespace zv
