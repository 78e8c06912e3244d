#include "hosts/incallservice/app.h"

#include <algorithm>

#include "hostsdk/incallservice.h"
#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "platform/telephony/call_objects.h"
#include "platform/ui/messages.h"

namespace zv::hosts {
namespace {

using Root = sdk::PHInCallRootViewController;
using Actual = sdk::PHInCallRootViewControllerActual;
using Audio = sdk::PHAudioCallViewController;
using Participants = sdk::PHCallParticipantsViewController;
using Group = sdk::TUCallGroup;
using Ringtone = sdk::PHRingtoneController;
using Utilities = sdk::PHInCallUtilities;
using ui::self;

// The status label of a call as the service words it: a ringing call from a
// contact alternates the number's label with "incoming call".
Value participantLabel(const platform::CallInfo& info) {
  CallScreenLabels caller = callerLabels(info);
  switch (info.status) {
    case platform::kCallRinging:
      if (caller.label) return Array{*caller.label, "incoming call"};
      return "incoming call";
    case platform::kCallDialling:
      return "calling…";
    case platform::kCallHeld:
      return "on hold";
    case platform::kCallActive:
      return caller.label.value_or("");
    default:
      return "call ended";
  }
}

std::optional<platform::CallInfo> participantCall(
    const CallParticipantsViewController& p, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= p.groups.size())
    return std::nullopt;
  auto* group = dynamic_cast<CallGroup*>(p.groups[index].get());
  if (!group || group->calls.empty()) return std::nullopt;
  return platform::callInfo(group->calls.front());
}

void registerScreenClasses() {
  rt::registerClass(Root::kName, "UIViewController");
  rt::define(Root::alertActivationCall, [](const rt::Id& s) {
    auto* actual = dynamic_cast<InCallRootViewController*>(s.get());
    return actual ? actual->call : rt::Id();
  });
  rt::registerClass<InCallRootViewController>(Actual::kName, Root::kName);
  rt::define(Actual::viewWillAppear, [](const rt::Id& s, bool) {
    self<InCallRootViewController>(s).appeared = true;
  });
  rt::define(Actual::viewWillDisappear, [](const rt::Id& s, bool) {
    self<InCallRootViewController>(s).appeared = false;
  });
  rt::define(Actual::dealloc, [](const rt::Id&) {});
  rt::define(Actual::callStateChangedNotification,
             [](const rt::Id&, rt::Id) {});

  rt::registerClass<AudioCallViewController>(Audio::kName, "UIViewController");
  rt::define(Audio::audioCallControlsViewControllerRequestedKeypadPresentation,
             [](const rt::Id& s, rt::Id) {
               self<AudioCallViewController>(s).keypadShown = true;
             });
  rt::define(Audio::callParticipantsViewController, [](const rt::Id& s) {
    return rt::Id(self<AudioCallViewController>(s).participants);
  });

  rt::registerClass<CallGroup>(Group::kName);
  rt::registerClass<CallParticipantsView>(CallParticipantsView::kClassName,
                                          "UIView");
  rt::define(Group::calls,
             [](const rt::Id& s) { return self<CallGroup>(s).calls; });

  rt::registerClass<CallParticipantsViewController>(Participants::kName,
                                                    "UIViewController");
  rt::define(Participants::callStatusChangedNotification,
             [](const rt::Id&, rt::Id) {});
  rt::define(Participants::labelForParticipantAtIndexInParticipantsView,
             [](const rt::Id& s, int32_t index, rt::Id) -> Value {
               auto info = participantCall(
                   self<CallParticipantsViewController>(s), index);
               return info ? participantLabel(*info) : Value();
             });
  rt::define(Participants::imageForParticipantAtIndexInParticipantsView,
             [](const rt::Id& s, int32_t index, rt::Id) -> ui::ImagePtr {
               auto info = participantCall(
                   self<CallParticipantsViewController>(s), index);
               if (!info || !contactHasPicture(info->abUID)) return nullptr;
               return std::make_shared<const ui::Image>(ui::Image::filled(
                   120, 120, 2, ui::Pixel{128, 128, 128, 255}));
             });
  rt::define(Participants::viewWillAppear, [](const rt::Id&, bool) {});
  rt::define(Participants::participantsView, [](const rt::Id& s) {
    return rt::Id(self<CallParticipantsViewController>(s).view());
  });
  rt::define(Participants::callGroups, [](const rt::Id& s) {
    return self<CallParticipantsViewController>(s).groups;
  });
}

void registerInCallServiceClasses() {
  // The platform's telephony classes, which the call screens talk to.
  platform::registerTelephonyClasses(rt::runtime());
  rt::registerClass<InCallServiceApplication>(
      InCallServiceApplication::kClassName, "UIApplication");
  registerScreenClasses();

  rt::registerClass<RingtoneController>(Ringtone::kName);
  rt::define(Ringtone::playRingtoneWithIdentifierVibrationPattern,
             [](const rt::Id& s, std::optional<std::string>, rt::Id) {
               auto& r = self<RingtoneController>(s);
               r.playing = true;
               auto info = platform::callInfo(rt::send(
                   platform::callCenter(), sdk::TUCallCenter::incomingCall));
               r.call = info ? info->id : 0;
             });
  rt::define(Ringtone::stopRingtone, [](const rt::Id& s) {
    auto& r = self<RingtoneController>(s);
    r.playing = false;
    r.call = 0;
  });

  rt::registerClass(Utilities::kName);
  rt::define(Utilities::sharedInstance, [](const rt::Id&) {
    auto app = InCallServiceApplication::shared();
    return app ? app->utilities() : nullptr;
  });
  rt::define(Utilities::isSpringBoardLocked, [](const rt::Id&) {
    auto app = InCallServiceApplication::shared();
    return app && app->locked();
  });
}

}  // namespace

HostDefinition inCallServiceHost() {
  return HostDefinition{
      "com.apple.InCallService", [] { registerInCallServiceClasses(); },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<InCallServiceApplication>(
                rt::alloc(rt::getClass(InCallServiceApplication::kClassName))));
      }};
}

std::shared_ptr<ui::UIView> CallParticipantsViewController::loadView() {
  auto view = ui::makeAs<CallParticipantsView>(
      rt::getClass(CallParticipantsView::kClassName));
  const double width = platform::current().device().screenPoints.width;
  view->setFrame({{0, 0}, {width, 260}});
  nameLabel = ui::make<ui::UILabel>();
  nameLabel->setFrame({{10, 60}, {width - 20, 40}});
  statusLabel = ui::make<ui::UILabel>();
  statusLabel->setFrame({{10, 100}, {width - 20, 20}});
  imageView = ui::make<ui::UIImageView>();
  imageView->setFrame({{width - 80, 60}, {60, 60}});
  for (const auto& [label, size] :
       {std::pair{nameLabel, 32.0}, std::pair{statusLabel, 17.0}}) {
    label->setFont({"HelveticaNeue-Light", size});
    label->setTextColor({1, 1, 1, 1});
    label->setAdjustsFontSizeToFitWidth(true);
  }
  view->nameLabel = nameLabel;
  view->statusLabel = statusLabel;
  view->imageView = imageView;
  view->addSubview(nameLabel);
  view->addSubview(statusLabel);
  view->addSubview(imageView);
  return view;
}

void CallParticipantsView::layoutSubviews() {
  auto name = nameLabel.lock();
  auto status = statusLabel.lock();
  auto image = imageView.lock();
  if (!name || !status || !image) return;
  const double w = frame().size.width;
  const bool picture =
      image->image() && !image->image()->empty() && !image->isHidden();
  if (picture) {
    image->setFrame({{20, 46}, {64, 64}});
    image->setCornerRadius(32);
    name->setFrame({{96, 52}, {w - 116, 36}});
    status->setFrame({{96, 88}, {w - 116, 22}});
  } else {
    name->setFrame({{10, 60}, {w - 20, 40}});
    status->setFrame({{10, 100}, {w - 20, 22}});
  }
  const auto align =
      picture ? ui::TextAlignment::Left : ui::TextAlignment::Center;
  name->setTextAlignment(align);
  status->setTextAlignment(align);
}

std::shared_ptr<ui::UIView> InCallRootViewController::loadView() {
  auto view = ui::UIViewController::loadView();
  const auto screen = platform::current().device().screenPoints;
  view->setFrame({{0, 0}, screen});
  view->setBackgroundColor(kCallScreenBackground);
  audio = std::dynamic_pointer_cast<AudioCallViewController>(
      rt::alloc(rt::getClass(Audio::kName)));
  audio->participants =
      std::dynamic_pointer_cast<CallParticipantsViewController>(
          rt::alloc(rt::getClass(Participants::kName)));
  view->addSubview(audio->view());
  audio->view()->setFrame({{0, 0}, screen});
  audio->view()->addSubview(audio->participants->view());
  answerControls = CallAnswerControls::make(screen.width, screen.height);
  view->addSubview(answerControls);
  return view;
}

std::shared_ptr<InCallServiceApplication> InCallServiceApplication::shared() {
  return ui::sharedApplication<InCallServiceApplication>();
}

void InCallServiceApplication::didFinishLaunching() {
  ringtone_ = std::dynamic_pointer_cast<RingtoneController>(
      rt::alloc(rt::getClass(Ringtone::kName)));
  utilities_ = rt::create(rt::getClass(Utilities::kName));
  // The observer goes with the process; it must not keep the app alive.
  std::weak_ptr<rt::Object> weak = weak_from_this();
  platform::observeCallStatus([weak](const rt::Id& call) {
    if (auto app =
            std::static_pointer_cast<InCallServiceApplication>(weak.lock()))
      app->callChanged(call);
  });
}

std::shared_ptr<CallParticipantsViewController>
InCallServiceApplication::participants() const {
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  if (!root || !root->isViewLoaded()) return nullptr;
  return root->audio->participants;
}

std::optional<CallScreenLabels> InCallServiceApplication::screenLabels() const {
  auto p = participants();
  if (!p) return std::nullopt;
  CallScreenLabels labels;
  labels.name = p->nameLabel->text();
  if (!p->statusLabel->text().empty()) labels.label = p->statusLabel->text();
  return labels;
}

std::optional<CallScreenText> InCallServiceApplication::screenText() const {
  auto p = participants();
  if (!p) return std::nullopt;
  CallScreenText text;
  text.name = p->nameLabel->text();
  text.labelLines = p->labelLines;
  text.declineButton = decline_button_;
  collectScreenTexts(p->view(), {p->nameLabel.get(), p->statusLabel.get()},
                     text.infoLines, text.extraLabels);
  return text;
}

void InCallServiceApplication::prepareWindow(ui::UIWindow& window) {
  if (auto root =
          std::dynamic_pointer_cast<InCallRootViewController>(screen_)) {
    window.setRootViewController(root);
    return;
  }
  if (!lock_) {
    lock_ = ui::make<ui::UIViewController>();
    lock_->setView(
        LockScreenView::make(platform::current().device().screenPoints));
  }
  window.setRootViewController(lock_);
}

void InCallServiceApplication::setLocked(bool locked) {
  locked_ = locked;
  layOutAnswerButtons();
}

void InCallServiceApplication::showKeypad() {
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  if (!root || !root->isViewLoaded()) return;
  rt::send(rt::Id(root->audio),
           Audio::audioCallControlsViewControllerRequestedKeypadPresentation,
           rt::Id());
}

void InCallServiceApplication::layOutAnswerButtons() {
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  auto info = root ? platform::callInfo(root->call) : std::nullopt;
  if (!info || info->status != platform::kCallRinging) {
    decline_button_ = false;
    if (root && root->answerControls)
      root->answerControls->show(CallAnswerControls::Mode::None, 0);
    return;
  }
  // Over the lock screen a ringing call is answered by sliding; unlocked,
  // the screen has answer and decline buttons.
  decline_button_ = !rt::send(utilities_, Utilities::isSpringBoardLocked);
  if (root->answerControls)
    root->answerControls->show(decline_button_
                                   ? CallAnswerControls::Mode::Buttons
                                   : CallAnswerControls::Mode::Slide,
                               info->id);
}

void InCallServiceApplication::callChanged(const rt::Id& call) {
  auto info = platform::callInfo(call);
  if (!info) return;
  forgetOldEndedCalls(calls_);
  auto it =
      std::find_if(calls_.begin(), calls_.end(),
                   [&](const ScreenedCall& c) { return c.id == info->id; });
  const bool isNew = it == calls_.end();
  if (isNew) {
    ScreenedCall record;
    record.id = info->id;
    record.number = info->destinationID;
    record.outgoing = info->isOutgoing;
    calls_.push_back(record);
    it = calls_.end() - 1;
  }
  const int32_t previous = isNew ? 0 : it->status;
  it->status = info->status;
  const bool begins = info->status == platform::kCallRinging ||
                      info->status == platform::kCallDialling;
  if (isNew && begins) {
    // Every call that rings in is put on a screen of its own, and so gets
    // its own decision (call waiting): under a screen already up as well
    // as after a blocked call ringing on unseen. A call dialled while a
    // screen is up joins that screen.
    const bool incoming =
        info->status == platform::kCallRinging && !info->isOutgoing;
    if (incoming ||
        !std::dynamic_pointer_cast<InCallRootViewController>(screen_))
      showScreen(call, *it);
    if (info->status == platform::kCallRinging) ring(*it);
  }
  if (previous == platform::kCallRinging &&
      info->status != platform::kCallRinging && ringtone_->playing &&
      ringtone_->call == info->id)
    rt::send(rt::Id(ringtone_), Ringtone::stopRingtone);
  // The screen hears of the change before it is laid out again.
  if (auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
      root && root->isViewLoaded()) {
    rt::Id note = rt::makeNotification(
        std::string(sdk::NSNotification::kCallStatusChanged), call);
    rt::send(rt::Id(root), Actual::callStateChangedNotification, note);
    rt::send(rt::Id(root->audio->participants),
             Participants::callStatusChangedNotification, note);
  }
  // The screen goes with the last call.
  const bool anyLive =
      std::any_of(calls_.begin(), calls_.end(), [](const ScreenedCall& c) {
        return c.status != platform::kCallEnding &&
               c.status != platform::kCallEnded;
      });
  if (screen_ && !anyLive) {
    decline_button_ = false;
    if (auto root = std::dynamic_pointer_cast<InCallRootViewController>(
            std::exchange(screen_, nullptr))) {
      ui::sendWillDisappear(root, true);
      // The service lets the screen go; its last message is dealloc.
      rt::send(rt::Id(root), Actual::dealloc);
    }
  } else {
    updateScreen();
    layOutAnswerButtons();
  }
}

void InCallServiceApplication::showScreen(const rt::Id& call,
                                          ScreenedCall& record) {
  rt::Id made =
      rt::make(rt::getClass(Actual::kName), Root::initWithNibNameBundle,
               std::optional<std::string>(), rt::Id());
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(made);
  if (!root) {
    // Whatever stands in the call screen's place is shown as it is, unless
    // a real screen is up: that one stays.
    record.screenBlocked = true;
    if (!std::dynamic_pointer_cast<InCallRootViewController>(screen_))
      screen_ = made;
    return;
  }
  // The call that rang in takes the screen from the one it showed.
  if (auto shown = std::dynamic_pointer_cast<InCallRootViewController>(
          std::exchange(screen_, made))) {
    ui::sendWillDisappear(shown, true);
    rt::send(rt::Id(shown), Actual::dealloc);
  }
  root->call = call;
  root->view();
  auto group = std::dynamic_pointer_cast<CallGroup>(
      rt::alloc(rt::getClass(Group::kName)));
  group->calls = {call};
  root->audio->participants->groups = {group};
  updateScreen();
  layOutAnswerButtons();
  ui::sendWillAppear(root, true);
  ui::sendWillAppear(root->audio->participants, true);
}

void InCallServiceApplication::ring(ScreenedCall& record) {
  rt::send(rt::Id(ringtone_),
           Ringtone::playRingtoneWithIdentifierVibrationPattern,
           std::optional<std::string>(), rt::Id());
  if (ringtone_->playing && ringtone_->call == record.id)
    record.ringtone = true;
}

void InCallServiceApplication::updateScreen() {
  auto p = participants();
  if (!p || p->groups.empty()) return;
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  auto info = platform::callInfo(root->call);
  if (!info) return;
  p->nameLabel->setText(callerLabels(*info).name);
  rt::Id self = p;
  rt::Id view = p->view();
  Value label =
      rt::send(self, Participants::labelForParticipantAtIndexInParticipantsView,
               0, view);
  p->labelLines.clear();
  if (const auto* text = label.string()) {
    p->labelLines.push_back(*text);
  } else if (const auto* lines = label.array()) {
    for (const auto& line : *lines)
      if (const auto* t = line.string()) p->labelLines.push_back(*t);
  }
  p->statusLabel->setText(p->labelLines.empty() ? "" : p->labelLines.front());
  p->imageView->setImage(
      rt::send(self, Participants::imageForParticipantAtIndexInParticipantsView,
               0, view));
}

}  // namespace zv::hosts
