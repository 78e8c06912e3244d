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
using Ringtone = sdk::PHRingtoneController;
using Utilities = sdk::PHInCallUtilities;
using ui::self;

void registerInCallServiceClasses() {
  // The platform's telephony classes, which the call screens talk to.
  platform::registerTelephonyClasses(rt::runtime());
  rt::registerClass<InCallServiceApplication>(
      InCallServiceApplication::kClassName, "UIApplication");
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

std::shared_ptr<ui::UIView> InCallRootViewController::loadView() {
  auto view = ui::UIViewController::loadView();
  nameLabel = ui::make<ui::UILabel>();
  statusLabel = ui::make<ui::UILabel>();
  view->addSubview(nameLabel);
  view->addSubview(statusLabel);
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

std::optional<CallScreenLabels> InCallServiceApplication::screenLabels() const {
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  if (!root || !root->isViewLoaded()) return std::nullopt;
  CallScreenLabels labels;
  labels.name = root->nameLabel->text();
  if (!root->statusLabel->text().empty())
    labels.label = root->statusLabel->text();
  return labels;
}

void InCallServiceApplication::callChanged(const rt::Id& call) {
  auto info = platform::callInfo(call);
  if (!info) return;
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
    if (!screen_) showScreen(call, *it);
    if (info->status == platform::kCallRinging) ring(*it);
  }
  if (previous == platform::kCallRinging &&
      info->status != platform::kCallRinging && ringtone_->playing &&
      ringtone_->call == info->id)
    rt::send(rt::Id(ringtone_), Ringtone::stopRingtone);
  // The screen goes with the last call.
  const bool anyLive =
      std::any_of(calls_.begin(), calls_.end(), [](const ScreenedCall& c) {
        return c.status != platform::kCallEnding &&
               c.status != platform::kCallEnded;
      });
  if (screen_ && !anyLive) {
    if (auto root = std::dynamic_pointer_cast<InCallRootViewController>(
            std::exchange(screen_, nullptr)))
      ui::sendWillDisappear(root, true);
  } else {
    updateScreen();
  }
}

void InCallServiceApplication::showScreen(const rt::Id& call,
                                          ScreenedCall& record) {
  rt::Id made =
      rt::make(rt::getClass(Actual::kName), Root::initWithNibNameBundle,
               std::optional<std::string>(), rt::Id());
  screen_ = made;
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(made);
  if (!root) {
    // Whatever stands in the call screen's place is shown as it is.
    record.screenBlocked = true;
    return;
  }
  root->call = call;
  root->view();
  updateScreen();
  ui::sendWillAppear(root, true);
}

void InCallServiceApplication::ring(ScreenedCall& record) {
  rt::send(rt::Id(ringtone_),
           Ringtone::playRingtoneWithIdentifierVibrationPattern,
           std::optional<std::string>(), rt::Id());
  if (ringtone_->playing && ringtone_->call == record.id)
    record.ringtone = true;
}

void InCallServiceApplication::updateScreen() {
  auto root = std::dynamic_pointer_cast<InCallRootViewController>(screen_);
  if (!root || !root->isViewLoaded()) return;
  auto info = platform::callInfo(root->call);
  if (!info) return;
  CallScreenLabels caller = callerLabels(*info);
  root->nameLabel->setText(caller.name);
  std::string status;
  switch (info->status) {
    case platform::kCallRinging:
      status = caller.label.value_or("incoming call");
      break;
    case platform::kCallDialling:
      status = "calling…";
      break;
    case platform::kCallHeld:
      status = "on hold";
      break;
    case platform::kCallActive:
      status = caller.label.value_or("");
      break;
    default:
      status = "call ended";
  }
  root->statusLabel->setText(status);
}

}  // namespace zv::hosts
