// The simulated in-call service ("com.apple.InCallService", 8.x) on the
// host kit. When a call begins (one ringing in, or one the user dials) and
// no call screen is up, it builds the call screen
// (PHInCallRootViewControllerActual through the initialiser it inherits
// from PHInCallRootViewController, initWithNibName:bundle:) and shows what
// the initialiser answered; for every call that rings in, it then asks its
// PHRingtoneController to play the ringtone
// (playRingtoneWithIdentifier:vibrationPattern:), which stops when the call
// stops ringing. The screen goes when the last call has ended.
// TUCallCenter (incomingCall / incomingVideoCall) is the platform's.
//
// The call screen holds a PHAudioCallViewController whose
// PHCallParticipantsViewController shows the call: the caller's name, the
// status label it answers for the participant
// (labelForParticipantAtIndex:inParticipantsView:, a text or an array of
// texts) and the picture (imageForParticipantAtIndex:inParticipantsView:).
// Every call change reaches the root (callStateChangedNotification:) and
// the participants (callStatusChangedNotification:) as a notification
// whose object is the call, before the participants are laid out again. A
// ringing call shows the unlocked layout with its decline button when
// PHInCallUtilities isSpringBoardLocked says no; the question is asked when
// the screen comes up and again whenever the lock changes while it rings.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "hosts/kit/call_screens.h"
#include "hosts/kit/call_views.h"
#include "hosts/kit/host_kit.h"
#include "platform/ui/application.h"
#include "platform/ui/label.h"
#include "platform/ui/view_controller.h"

namespace zv::hosts {

HostDefinition inCallServiceHost();

// One group of calls on the screen (several for a conference).
class CallGroup : public rt::Object {
 public:
  static constexpr const char* kClassName = "TUCallGroup";
  using rt::Object::Object;
  std::vector<rt::Id> calls;
};

// The participants view: with a picture of the participant, the picture at
// the top left and the name and status line left-aligned beside it;
// without, both centred. Views others add to it stay where they put them.
class CallParticipantsView : public ui::UIView {
 public:
  static constexpr const char* kClassName = "PHCallParticipantsView";
  explicit CallParticipantsView(rt::Class* isa) : ui::UIView(isa) {}
  std::weak_ptr<ui::UILabel> nameLabel, statusLabel;
  std::weak_ptr<ui::UIImageView> imageView;
  void layoutSubviews() override;
};

class CallParticipantsViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "PHCallParticipantsViewController";
  explicit CallParticipantsViewController(rt::Class* isa)
      : ui::UIViewController(isa) {}
  std::vector<rt::Id> groups;
  // The participants view is the controller's view; in it the first
  // participant's name, status label and picture.
  std::shared_ptr<ui::UILabel> nameLabel, statusLabel;
  std::shared_ptr<ui::UIImageView> imageView;
  // The status label's texts as last answered.
  std::vector<std::string> labelLines;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

class AudioCallViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "PHAudioCallViewController";
  explicit AudioCallViewController(rt::Class* isa)
      : ui::UIViewController(isa) {}
  std::shared_ptr<CallParticipantsViewController> participants;
  bool keypadShown = false;
};

// The call screen.
class InCallRootViewController : public ui::UIViewController {
 public:
  static constexpr const char* kClassName = "PHInCallRootViewControllerActual";
  explicit InCallRootViewController(rt::Class* isa)
      : ui::UIViewController(isa) {}
  rt::Id call;  // the call it was made for
  bool appeared = false;
  std::shared_ptr<AudioCallViewController> audio;
  // At the bottom while the call rings: the slider or the buttons.
  std::shared_ptr<CallAnswerControls> answerControls;

 protected:
  std::shared_ptr<ui::UIView> loadView() override;
};

class RingtoneController : public rt::Object {
 public:
  static constexpr const char* kClassName = "PHRingtoneController";
  using rt::Object::Object;
  bool playing = false;
  // The call the ringtone plays for.
  platform::CallId call = 0;
};

class InCallServiceApplication : public ui::UIApplication,
                                 public CallScreenHost {
 public:
  static constexpr const char* kClassName = "InCallServiceApplication";
  explicit InCallServiceApplication(rt::Class* isa) : ui::UIApplication(isa) {}

  static std::shared_ptr<InCallServiceApplication> shared();

  // What the service shows: its call screen, or what stands in its place;
  // null when no call screen is up.
  const rt::Id& screen() const { return screen_; }
  // The call screen's participants, null when no call screen is up.
  std::shared_ptr<CallParticipantsViewController> participants() const;
  const std::shared_ptr<RingtoneController>& ringtone() const {
    return ringtone_;
  }
  bool locked() const { return locked_; }
  // PHInCallUtilities' sharedInstance.
  const rt::Id& utilities() const { return utilities_; }
  // The user taps the keypad button of the call controls.
  void showKeypad();

  // CallScreenHost
  const std::vector<ScreenedCall>& screenedCalls() const override {
    return calls_;
  }
  std::optional<CallScreenLabels> screenLabels() const override;
  std::optional<CallScreenText> screenText() const override;
  void setLocked(bool locked) override;

  void didFinishLaunching() override;

 protected:
  // The call screen while one is up, else the lock screen.
  void prepareWindow(ui::UIWindow& window) override;

 private:
  void callChanged(const rt::Id& call);
  void showScreen(const rt::Id& call, ScreenedCall& record);
  void ring(ScreenedCall& record);
  void updateScreen();
  void layOutAnswerButtons();

  std::vector<ScreenedCall> calls_;
  rt::Id screen_;
  std::shared_ptr<RingtoneController> ringtone_;
  rt::Id utilities_;
  bool locked_ = false;
  bool decline_button_ = false;
  std::shared_ptr<ui::UIViewController> lock_;
};

}  // namespace zv::hosts
