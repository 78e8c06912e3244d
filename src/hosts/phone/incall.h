// The Phone application's in-call screen (systems before 8.0): the
// InCallController with its LCD view (InCallLCDView, kept in the
// controller's instance variable "_lcd"). From launch on, every change of a
// call on the device reaches the controller on the app's run loop as
// _callStatusChanged: with the call object. The screen comes up for an
// outgoing (dialling) or active call and goes when the call it shows ends.
// The LCD shows the other party's number and a status line, set through
// setLabel:animate: like everything the screen does to itself: "calling…"
// while dialling, the connected time ("00:07", renewed every second) while
// active, "hold" while held and "call ended" at the end. It names a contact
// by the contact's name, and centres its text for a caller who is not a
// contact (a contact's screen shows the picture behind the text, which is
// then left-aligned).
#pragma once

#include <memory>
#include <string>

#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

// Registers the in-call classes (and the telephony classes they use) in the
// current process.
void registerInCallClasses();

class InCallLCDView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "InCallLCDView";
  explicit InCallLCDView(rt::Class* isa) : ui::UIView(isa) {}
  // The other party as shown: the contact's name, else the number.
  std::shared_ptr<ui::UILabel> textLabel;
  // The status line (label / setLabel:animate:).
  std::shared_ptr<ui::UILabel> statusLabel;
  bool centerText = true;
  // Centred: the name, the status line under it (ending above y 92, where
  // an extension's own centred line goes). Left-aligned (a contact): both
  // from x 20, the status line ending above y 80.
  void layoutSubviews() override;
};

class InCallController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "InCallController";
  explicit InCallController(rt::Class* isa) : ui::UIViewController(isa) {}
  ~InCallController() override;

  // The controller of the current process's Phone app, made and attached to
  // the device's calls on first use.
  static std::shared_ptr<InCallController> start();

  std::shared_ptr<InCallLCDView> lcd();
  bool isShown() const { return shown_; }
  // The call on screen, nil when the screen is down.
  rt::Id shownCall() const { return shown_call_.lock(); }

  // The host's own handling of a status change (behind _callStatusChanged:).
  void hostCallStatusChanged(const rt::Id& call);

 protected:
  std::shared_ptr<ui::UIView> loadView() override;

 private:
  void show();
  void hide();
  void setStatusLine(const std::string& text);
  void scheduleDuration();
  void updateDuration();

  bool shown_ = false;
  rt::WeakId shown_call_;
  uint64_t observer_ = 0;
};

// "00:07", "12:34", "1:02:03": the connected time of a call.
std::string callDurationText(double seconds);

}  // namespace zv::hosts
