#include "messages/group_view_controller.h"

#include "messages/recipients_file.h"
#include "platform/platform.h"

namespace zv {
namespace {

constexpr size_t kSourcesSection = 0;
constexpr size_t kSavedSection = 1;
constexpr size_t kButtonSection = 2;

std::string localized(const char* key) {
  return platform::current().localizedString(key);
}

rt::Class* groupClass() {
  if (rt::Class* c = rt::getClass(ZVSMSGroupViewController::kClassName))
    return c;
  ui::uiClass("UITableViewController");
  return rt::registerClass(ZVSMSGroupViewController::kClassName,
                           "UITableViewController");
}

}  // namespace

std::shared_ptr<ZVSMSGroupViewController>
ZVSMSGroupViewController::initWithRecipients(
    std::vector<SMSRecipient> recipients) {
  auto vc = ui::makeAs<ZVSMSGroupViewController>(groupClass());
  vc->setStyle(ui::TableViewStyle::Grouped);
  vc->_recipients = std::move(recipients);
  vc->loadSavedRecipients();
  vc->_addressBook = ABAddressBookHandle::create();
  if (vc->_addressBook) {
    vc->_addressBookCount = vc->_addressBook->personCount();
    for (auto& g : vc->_addressBook->groups())
      vc->_groups.emplace_back(std::move(g.name), std::move(g.members));
  }
  vc->updateButtons();
  return vc;
}

Dict ZVSMSGroupViewController::getRecipientsDictionary() {
  return recipients_file::read();
}

void ZVSMSGroupViewController::loadSavedRecipients() {
  _savedRecipients = getRecipientsDictionary();
  _savedRecipientsNames.clear();
  for (const auto& [name, list] : _savedRecipients)
    _savedRecipientsNames.push_back(name);
}

bool ZVSMSGroupViewController::saveRecipients(const std::string& name) {
  if (!_recipients) return false;
  // Another process may have changed the file: change only this list.
  Dict lists = getRecipientsDictionary();
  lists[name] = recipients_file::listValue(*_recipients);
  if (!recipients_file::write(lists)) return false;
  _recipients.reset();
  return true;
}

size_t ZVSMSGroupViewController::numberOfRowsInSection(ui::UITableView&,
                                                       size_t section) {
  switch (section) {
    case kSourcesSection:
      return _groups.size() + 1;
    case kSavedSection:
      return _savedRecipientsNames.size();
    case kButtonSection:
      return 1;
    default:
      return 0;
  }
}

std::shared_ptr<ui::UITableViewCell>
ZVSMSGroupViewController::cellForRowAtIndexPath(ui::UITableView& table,
                                                ui::IndexPath path) {
  if (path.section == kButtonSection) {
    auto cell = table.dequeueReusableCellWithIdentifier(kButtonCell);
    if (!cell)
      cell = ui::UITableViewCell::make(ui::CellStyle::Default, kButtonCell);
    auto label = cell->textLabel();
    label->setTextAlignment(ui::TextAlignment::Center);
    if (hasRecipients()) {
      label->setText(localized("Save Recipients") + "  (" +
                     std::to_string(_recipients->size()) + ")");
      label->setTextColor(kButtonColor);
      cell->selectionStyle = ui::CellSelectionStyle::Blue;
    } else {
      label->setText(localized("Save Recipients"));
      label->setTextColor(kDisabledColor);
      cell->selectionStyle = ui::CellSelectionStyle::None;
    }
    return cell;
  }
  auto cell = table.dequeueReusableCellWithIdentifier(kGroupCell);
  if (!cell)
    cell = ui::UITableViewCell::make(ui::CellStyle::Value1, kGroupCell);
  cell->accessoryType = ui::CellAccessoryType::DisclosureIndicator;
  std::string text, detail;
  if (path.section == kSourcesSection) {
    text = path.row == 0                ? localized("All Contacts")
           : path.row <= _groups.size() ? _groups[path.row - 1].first
                                        : "";
  } else if (path.row < _savedRecipientsNames.size()) {
    text = _savedRecipientsNames[path.row];
    auto it = _savedRecipients.find(text);
    const Array* list =
        it == _savedRecipients.end() ? nullptr : it->second.array();
    detail = std::to_string(list ? list->size() : 0);
  }
  cell->textLabel()->setText(text);
  cell->detailTextLabel()->setText(detail);
  return cell;
}

bool ZVSMSGroupViewController::canEditRowAtIndexPath(ui::UITableView&,
                                                     ui::IndexPath path) {
  return path.section == kSavedSection;
}

ui::CellEditingStyle ZVSMSGroupViewController::editingStyleForRowAtIndexPath(
    ui::UITableView&, ui::IndexPath path) {
  return path.section == kSavedSection ? ui::CellEditingStyle::Delete
                                       : ui::CellEditingStyle::None;
}

void ZVSMSGroupViewController::commitEditingStyle(ui::UITableView&,
                                                  ui::CellEditingStyle style,
                                                  ui::IndexPath path) {
  if (style != ui::CellEditingStyle::Delete || path.section != kSavedSection ||
      path.row >= _savedRecipientsNames.size())
    return;
  // Another process may have changed the file: change only this list.
  Dict lists = getRecipientsDictionary();
  lists.erase(_savedRecipientsNames[path.row]);
  if (!recipients_file::write(lists)) {
    // The row stays: it is still in the file.
    showWriteFailedAlert();
    return;
  }
  _savedRecipients = std::move(lists);
  _savedRecipientsNames.clear();
  for (const auto& [name, list] : _savedRecipients)
    _savedRecipientsNames.push_back(name);
  deleteRowsAtIndexPaths({path}, ui::RowAnimation::Automatic);
  updateButtons();
}

std::vector<ZVSMSSelectContactsViewController::Entry>
ZVSMSGroupViewController::entriesFor(ui::IndexPath path,
                                     std::string& title) const {
  std::vector<ZVSMSSelectContactsViewController::Entry> entries;
  if (path.section == kSourcesSection) {
    if (path.row == 0) {
      title = localized("All Contacts");
      if (_addressBook)
        entries = _addressBook->phoneEntries(_addressBook->allPeople());
    } else if (path.row <= _groups.size()) {
      const auto& group = _groups[path.row - 1];
      title = group.first;
      if (_addressBook) entries = _addressBook->phoneEntries(group.second);
    }
  } else if (path.section == kSavedSection &&
             path.row < _savedRecipientsNames.size()) {
    title = _savedRecipientsNames[path.row];
    auto it = _savedRecipients.find(title);
    if (it != _savedRecipients.end())
      for (const auto& r : recipients_file::recipientsOf(it->second))
        entries.push_back({r[0], r[1], r[2]});
  }
  return entries;
}

void ZVSMSGroupViewController::didSelectRowAtIndexPath(ui::UITableView&,
                                                       ui::IndexPath path) {
  if (path.section == kButtonSection) {
    if (hasRecipients()) showSaveAlert();
    return;
  }
  std::string name;
  auto entries = entriesFor(path, name);
  auto checklist = ZVSMSSelectContactsViewController::initWithList(
      std::move(entries), selects);
  checklist->title = name;
  checklist->titleName = name;
  checklist->delegate =
      std::static_pointer_cast<ZVSMSGroupViewController>(shared_from_this());
  if (auto nav = navigationController())
    nav->pushViewController(checklist, true);
}

void ZVSMSGroupViewController::showSaveAlert() {
  auto alert = ui::make<ui::UIAlertView>();
  alert->title = localized("Save Recipients");
  alert->alertViewStyle = ui::AlertViewStyle::PlainTextInput;
  alert->cancelButtonTitle = localized("Cancel");
  alert->otherButtonTitles = {localized("Save")};
  alert->setTag(kSaveAlertTag);
  std::weak_ptr<ZVSMSGroupViewController> weak =
      std::static_pointer_cast<ZVSMSGroupViewController>(shared_from_this());
  alert->delegate = [weak](ui::UIAlertView& shown, int index) {
    if (auto me = weak.lock()) me->alertViewClickedButtonAtIndex(shown, index);
  };
  alert->show();
}

void ZVSMSGroupViewController::showWriteFailedAlert() {
  auto alert = ui::make<ui::UIAlertView>();
  alert->title = localized("Save Recipients");
  alert->message = localized(kWriteFailedMessage);
  alert->cancelButtonTitle = localized("OK");
  alert->show();
}

void ZVSMSGroupViewController::alertViewClickedButtonAtIndex(
    ui::UIAlertView& alert, int buttonIndex) {
  if (alert.tag() != kSaveAlertTag) return;
  // Button 0 is Cancel, 1 is Save.
  if (buttonIndex != 1 || alert.inputText.empty()) return;
  if (!saveRecipients(alert.inputText)) showWriteFailedAlert();
  loadSavedRecipients();
  updateButtons();
  tableView()->reloadData();
}

void ZVSMSGroupViewController::updateButtons() {
  std::weak_ptr<ZVSMSGroupViewController> weak =
      std::static_pointer_cast<ZVSMSGroupViewController>(shared_from_this());
  auto item = navigationItem();
  item->leftBarButtonItem = ui::UIBarButtonItem::make(
      localized("Cancel"), ui::BarButtonItemStyle::Plain,
      [weak](const rt::Id&) {
        if (auto me = weak.lock()) me->cancelButtonPressed();
      });
  // Editing only deletes saved lists: no Edit button while there are none.
  if (!isEditing() && _savedRecipientsNames.empty()) {
    item->rightBarButtonItem = nullptr;
    return;
  }
  item->rightBarButtonItem =
      ui::UIBarButtonItem::make(localized(isEditing() ? "Done" : "Edit"),
                                isEditing() ? ui::BarButtonItemStyle::Done
                                            : ui::BarButtonItemStyle::Plain,
                                [weak](const rt::Id&) {
                                  if (auto me = weak.lock())
                                    me->editButtonPressed();
                                });
}

void ZVSMSGroupViewController::editButtonPressed() {
  setEditing(!isEditing(), true);
  updateButtons();
}

void ZVSMSGroupViewController::cancelButtonPressed() {
  dismissViewControllerAnimated(true);
}

void ZVSMSGroupViewController::ZVSMSSelectContactsViewControllerDone(
    ZVSMSSelectContactsViewController& checklist) {
  selects = checklist.selects();
  auto keep = shared_from_this();
  if (auto d = delegate.lock()) d->ZVSMSGroupViewControllerDone(*this);
  dismissViewControllerAnimated(true);
}

}  // namespace zv
