// What the Phone app's in-call area needs of its host, as one interface: the
// call object's properties, and the in-call screen's LCD view (reached from
// the in-call controller). The in-call hooks implement it with the host's
// selectors, so ZVInCallController never names a host class or selector.
// A nil call or view is never passed in; the answers for a missing one are
// the neutral ones (nil, empty, false).
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/runtime/object.h"
#include "platform/ui/view.h"

namespace zv {

class InCallHost {
 public:
  virtual ~InCallHost() = default;

  // --- The call --------------------------------------------------------------
  // A CallStatus (call_status.h).
  virtual int status(const rt::Id& call) = 0;
  // The other party's number; nullopt when withheld.
  virtual std::optional<std::string> destinationID(const rt::Id& call) = 0;
  // The caller's address-book record, -1 when not a contact.
  virtual int abUID(const rt::Id& call) = 0;
  virtual bool isOutgoing(const rt::Id& call) = 0;
  // The object a notification carries (on newer systems the status change
  // comes as a notification whose object is the call).
  virtual rt::Id notificationObject(const rt::Id& notification) = 0;

  // --- The in-call screen ---------------------------------------------
  // The in-call controller's LCD view (its instance variable), nil when none.
  virtual rt::Id lcdView(const rt::Id& controller) = 0;
  // The LCD's current status label ("" when none).
  virtual std::string label(const rt::Id& lcd) = 0;
  // Sets the LCD's label as anyone would, through the replaced method.
  virtual void setLabel(const rt::Id& lcd, const std::string& label,
                        bool animate) = 0;
  virtual bool shouldCenterText(const rt::Id& lcd) = 0;
  // The LCD as a view, into which the own label goes; null when it is not one.
  virtual std::shared_ptr<ui::UIView> view(const rt::Id& lcd) = 0;
};

}  // namespace zv
