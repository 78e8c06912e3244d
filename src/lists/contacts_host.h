// What the Contacts controller needs of the host's contacts list and cards
// (shared by the Phone app's Contacts tab, the Contacts app and Messages),
// as one interface: phone-number cells on a card, the card's view
// controller, list cells with their person, and the list's table view. The
// contacts hooks implement it with the host's selectors. A list cell is a
// table cell of the UI model (image view, text label and separator inset are
// reached directly).
//
// Each operation answers null (or nothing) when the host object lacks what
// is asked; none raises for a missing piece.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/runtime/object.h"
#include "platform/ui/label.h"

namespace zv {

class ABPersonRecord;

class ContactsHost {
 public:
  virtual ~ContactsHost() = default;

  // --- A phone-number cell on a card (ABPropertyPhoneNumberCell) -----------
  virtual std::shared_ptr<ui::UILabel> labelLabel(const rt::Id& cell) = 0;
  virtual std::shared_ptr<ui::UILabel> valueLabel(const rt::Id& cell) = 0;

  // --- The card (ABContactViewController) ----------------------------------
  // The record id of the shown contact; nothing when it shows none.
  virtual std::optional<int32_t> contactRecordId(
      const rt::Id& viewController) = 0;

  // --- A list cell ----------------------------------------------------------
  // Whether the cell responds to `person`.
  virtual bool hasPerson(const rt::Id& cell) = 0;
  // The person's `name`; nothing when it has none.
  virtual std::optional<std::string> personName(const rt::Id& cell) = 0;
  // The person's address-book `record`; null when it has none.
  virtual std::shared_ptr<const ABPersonRecord> personRecord(
      const rt::Id& cell) = 0;
  // The cell's contactNameView and its nameLabel (before 8.0); null when
  // absent.
  virtual std::shared_ptr<ui::UIView> contactNameView(const rt::Id& cell) = 0;
  virtual std::shared_ptr<ui::UILabel> nameLabel(const rt::Id& cell) = 0;

  // --- The list's table view ------------------------------------------------
  virtual void setSeparatorStyle(const rt::Id& tableView, int style) = 0;
};

}  // namespace zv
