// What the Recents controller needs of the Phone app's Recents screen, as one
// interface: the row cells (PHRecentsCell), the call objects they show, and
// the Recents view controller with its table and call manager. The recents
// hooks implement it with the host's selectors, so the controller never
// names a host class or selector. The cell itself is a table cell of the UI
// model (content view, image view, separator inset are reached directly).
//
// Each operation answers the neutral value (null, empty, -1) when the host
// object lacks what is asked; none raises for a missing piece.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/runtime/object.h"
#include "platform/ui/view.h"
#include "platform/value.h"

namespace zv {

class ABPersonRecord;

class RecentsHost {
 public:
  virtual ~RecentsHost() = default;

  // --- A row cell -----------------------------------------------------------
  // The call the row shows; null when none.
  virtual rt::Id call(const rt::Id& cell) = 0;
  // The cell's sub-view under `key` of its allViews ("Name", "Label",
  // "CallTypeIcon", and "Count" before 8.0); null when absent.
  virtual std::shared_ptr<ui::UIView> cellView(const rt::Id& cell,
                                               const std::string& key) = 0;
  // Number of calls the row groups (8.0 on); 0 when unknown.
  virtual int64_t count(const rt::Id& cell) = 0;
  virtual bool isEditing(const rt::Id& cell) = 0;
  // Whether the object is one of the host's Recents cells.
  virtual bool isRecentsCell(const rt::Id& cell) = 0;

  // --- A call ---------------------------------------------------------------
  // callOccurrences: an array of dictionaries (one per occurrence, the date
  // under "kCHCallOccurrenceDateKey" from 8.0, "RecentCallDate" before), or
  // null when the call has no such list.
  virtual Value callOccurrences(const rt::Id& call) = 0;
  // The call's `date` (a Date value), or null.
  virtual Value date(const rt::Id& call) = 0;
  // The other party's number: `callerId` (8.0 on), `destination` (before).
  virtual std::string callerId(const rt::Id& call) = 0;
  virtual std::string destination(const rt::Id& call) = 0;
  // The contact: `addressBookRecordId` (8.0 on; a number or null), `uid`
  // (before; -1 for no contact).
  virtual Value addressBookRecordId(const rt::Id& call) = 0;
  virtual int32_t uid(const rt::Id& call) = 0;
  // The contact's address-book record: through the call's phoneBookManager
  // getABRecordRef (8.0 on), or the call's addressBookRecord (before). Null
  // when the caller is no contact.
  virtual std::shared_ptr<const ABPersonRecord> phoneBookRecord(
      const rt::Id& call) = 0;
  virtual std::shared_ptr<const ABPersonRecord> addressBookRecord(
      const rt::Id& call) = 0;

  // --- The Recents view controller -----------------------------------------
  // The cell of `row` in the controller's `table`; null when not on screen.
  virtual rt::Id cellForRow(const rt::Id& viewController, int64_t row) = 0;
  // Asks the controller's recentsManager to reload its calls (before 8.0).
  virtual void callHistorySignificantChangeNotification(
      const rt::Id& viewController) = 0;
};

}  // namespace zv
