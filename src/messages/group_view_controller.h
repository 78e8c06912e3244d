// ZVSMSGroupViewController: the grouped table from which the Messages
// composer gets its recipients. Section 0 lists "All Contacts" and the
// address book's groups, section 1 the saved recipient lists (with their
// sizes; deletable), section 2 one button that saves the composer's
// recipients under a typed name. A row of section 0 or 1 pushes a
// ZVSMSSelectContactsViewController with that source's numbers; its Done
// hands the chosen numbers (`selects`) to this screen's delegate and
// dismisses the screen.
//
// Saved lists live in the recipients file (messages/recipients_file.h), read
// afresh and written back on every change. The composer's recipients can be
// saved once: after a save the screen lets go of them and the button greys.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "messages/address_book_handle.h"
#include "messages/select_contacts_view_controller.h"
#include "messages/sms_host.h"
#include "platform/ui/sheets.h"
#include "platform/value.h"

namespace zv {

class ZVSMSGroupViewController;

class ZVSMSGroupViewControllerDelegate {
 public:
  virtual ~ZVSMSGroupViewControllerDelegate() = default;
  virtual void ZVSMSGroupViewControllerDone(
      ZVSMSGroupViewController& group) = 0;
};

class ZVSMSGroupViewController
    : public ui::UITableViewController,
      public ZVSMSSelectContactsViewControllerDelegate {
 public:
  static constexpr const char* kClassName = "ZVSMSGroupViewController";
  static constexpr const char* kGroupCell = "GroupCell";
  static constexpr const char* kButtonCell = "ButtonCell";
  static constexpr int kSaveAlertTag = 10086;
  // The message shown when the saved lists could not be written (a full
  // disk, a read-only device); the screen then shows what the file holds.
  static constexpr char kWriteFailedMessage[] = "Could not save the lists";
  // The "Save Recipients" button's text colour while it can save.
  static constexpr ui::Color kButtonColor{0, 0.478, 1, 1};
  static constexpr ui::Color kDisabledColor{2.0 / 3, 2.0 / 3, 2.0 / 3, 1};

  explicit ZVSMSGroupViewController(rt::Class* isa)
      : ui::UITableViewController(isa) {}
  static std::shared_ptr<ZVSMSGroupViewController> initWithRecipients(
      std::vector<SMSRecipient> recipients);

  size_t numberOfSectionsInTableView(ui::UITableView&) override { return 3; }
  size_t numberOfRowsInSection(ui::UITableView&, size_t section) override;
  std::shared_ptr<ui::UITableViewCell> cellForRowAtIndexPath(
      ui::UITableView& table, ui::IndexPath path) override;
  bool canEditRowAtIndexPath(ui::UITableView&, ui::IndexPath path) override;
  ui::CellEditingStyle editingStyleForRowAtIndexPath(
      ui::UITableView&, ui::IndexPath path) override;
  void commitEditingStyle(ui::UITableView& table, ui::CellEditingStyle style,
                          ui::IndexPath path) override;
  void didSelectRowAtIndexPath(ui::UITableView& table,
                               ui::IndexPath path) override;

  void alertViewClickedButtonAtIndex(ui::UIAlertView& alert, int buttonIndex);
  void updateButtons();
  void editButtonPressed();
  void cancelButtonPressed();
  void ZVSMSSelectContactsViewControllerDone(
      ZVSMSSelectContactsViewController& checklist) override;

  void loadSavedRecipients();
  // Stores the recipients under `name` (replacing a list of that name) and
  // lets go of them; false, keeping them for another try, when the file
  // could not be written.
  bool saveRecipients(const std::string& name);
  static Dict getRecipientsDictionary();

  std::weak_ptr<ZVSMSGroupViewControllerDelegate> delegate;
  SMSNumberSelection selects;

  bool hasRecipients() const { return _recipients && !_recipients->empty(); }
  const std::vector<std::string>& savedRecipientsNames() const {
    return _savedRecipientsNames;
  }
  int addressBookCount() const { return _addressBookCount; }
  size_t groupCount() const { return _groups.size(); }

 private:
  // The rows' entries and titles behind a row of section 0 or 1.
  std::vector<ZVSMSSelectContactsViewController::Entry> entriesFor(
      ui::IndexPath path, std::string& title) const;
  void showSaveAlert();
  // Tells the user that the saved lists could not be written.
  void showWriteFailedAlert();

  std::optional<std::vector<SMSRecipient>> _recipients;
  std::unique_ptr<ABAddressBookHandle> _addressBook;
  int _addressBookCount = 0;
  std::vector<std::pair<std::string, std::vector<int32_t>>> _groups;
  Dict _savedRecipients;
  std::vector<std::string> _savedRecipientsNames;
};

}  // namespace zv
