// ZVSMSSelectContactsViewController: a plain checklist of phone numbers,
// pushed by the recipient-group screen. Each entry is a list of texts whose
// first is the phone number, then the name and the phone label. A tap
// checks or unchecks a number; at most 50 numbers can be checked and a
// further tap on an unchecked row is silently refused. The title reads
// "<name> (<checked>/50)". Done reports the checked numbers to the delegate.
//
// Rows show the name (the number when there is none) and, as detail, the
// label and the number with the number's area when EnableArea is on; the
// check mark is the image "/Library/Zorvel/checked.png" or
// "/Library/Zorvel/notchecked.png" of the device.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "messages/number_selection.h"
#include "platform/ui/table_view_controller.h"

namespace zv {

class ZVAreaLoader;
class ZVSMSSettings;
class ZVSMSSelectContactsViewController;

class ZVSMSSelectContactsViewControllerDelegate {
 public:
  virtual ~ZVSMSSelectContactsViewControllerDelegate() = default;
  virtual void ZVSMSSelectContactsViewControllerDone(
      ZVSMSSelectContactsViewController& checklist) = 0;
};

class ZVSMSSelectContactsViewController : public ui::UITableViewController {
 public:
  static constexpr const char* kClassName = "ZVSMSSelectContactsViewController";
  static constexpr size_t kMaxSelects = 50;
  static constexpr const char* kCheckedImagePath =
      "/Library/Zorvel/checked.png";
  static constexpr const char* kNotCheckedImagePath =
      "/Library/Zorvel/notchecked.png";
  static constexpr const char* kCellIdentifier = "ContactCell";

  using Entry = std::vector<std::string>;

  explicit ZVSMSSelectContactsViewController(rt::Class* isa);
  // initWithList:selected: the entries, and the numbers checked already.
  static std::shared_ptr<ZVSMSSelectContactsViewController> initWithList(
      std::vector<Entry> list, const SMSNumberSelection& selected);

  void viewWillAppear(bool animated);
  void updateTitle();
  void doneButtonPressed();

  size_t numberOfRowsInSection(ui::UITableView&, size_t section) override;
  std::shared_ptr<ui::UITableViewCell> cellForRowAtIndexPath(
      ui::UITableView& table, ui::IndexPath path) override;
  void didSelectRowAtIndexPath(ui::UITableView& table,
                               ui::IndexPath path) override;

  std::string titleName;
  std::weak_ptr<ZVSMSSelectContactsViewControllerDelegate> delegate;
  const SMSNumberSelection& selects() const { return selects_; }
  const std::vector<Entry>& list() const { return _list; }
  const ui::ImagePtr& checkedImage() const { return _checkedImage; }
  const ui::ImagePtr& notcheckedImage() const { return _notcheckedImage; }

 private:
  std::string detailText(const Entry& entry);

  std::shared_ptr<ZVSMSSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::vector<Entry> _list;
  SMSNumberSelection selects_;
  ui::ImagePtr _checkedImage;
  ui::ImagePtr _notcheckedImage;
};

}  // namespace zv
