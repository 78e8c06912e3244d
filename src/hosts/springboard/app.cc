#include "hosts/springboard/app.h"

#include "hosts/springboard/controlcenter_app.h"
#include "hostsdk/springboard.h"
#include "platform/db/contact_lookup.h"
#include "platform/db/platform_schema.h"
#include "platform/platform.h"
#include "platform/telephony/call_objects.h"
#include "platform/telephony/telephony.h"
#include "platform/ui/bulletin.h"

namespace zv::hosts {
namespace {

using ui::self;

void registerSpringBoardClasses() {
  // The platform's telephony classes, which the call screens talk to.
  platform::registerTelephonyClasses(rt::runtime());
  registerControlCenterClasses();
  registerLockButton(rt::registerClass<SpringBoardApplication>(
      sdk::SpringBoard::kName, "UIApplication"));
  // The user agent answers for the running springboard.
  rt::registerClass(sdk::SBUserAgent::kName);
  rt::define(sdk::SBUserAgent::sharedUserAgent, [](const rt::Id&) {
    auto app = SpringBoardApplication::shared();
    return app ? app->userAgent() : nullptr;
  });
  rt::define(sdk::SBUserAgent::lockScreenIsShowing, [](const rt::Id&) {
    auto app = SpringBoardApplication::shared();
    return app && app->locked();
  });
  // The status bar shows the operator's name as the network gives it.
  using StatusBar = sdk::SBStatusBarStateAggregator;
  rt::registerClass(StatusBar::kName);
  rt::define(StatusBar::sharedInstance, [](const rt::Id&) {
    auto app = SpringBoardApplication::shared();
    return app ? app->statusBar() : nullptr;
  });
  rt::define(
      StatusBar::sbCarrierNameForOperator,
      [](const rt::Id&, std::optional<std::string> name) { return name; });
  ui::registerBulletinClass(rt::runtime());
}

}  // namespace

HostDefinition springboardHost() {
  return HostDefinition{
      "com.apple.springboard", [] { registerSpringBoardClasses(); },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<SpringBoardApplication>(
                rt::alloc(rt::getClass(sdk::SpringBoard::kName))));
      }};
}

std::shared_ptr<SpringBoardApplication> SpringBoardApplication::shared() {
  return ui::sharedApplication<SpringBoardApplication>();
}

const std::vector<ScreenedCall>& SpringBoardApplication::screenedCalls() const {
  static const std::vector<ScreenedCall> none;
  return incoming_ ? incoming_->screenedCalls() : none;
}

std::optional<CallScreenLabels> SpringBoardApplication::screenLabels() const {
  return incoming_ ? incoming_->screenLabels() : std::nullopt;
}

std::optional<CallScreenText> SpringBoardApplication::screenText() const {
  return incoming_ ? incoming_->screenText() : std::nullopt;
}

void SpringBoardApplication::prepareWindow(ui::UIWindow& window) {
  const auto screen = platform::current().device().screenPoints;
  if (!home_) {
    home_ = ui::make<ui::UIViewController>();
    lock_view_ = LockScreenView::make(screen);
    home_view_ = ui::make<ui::UIView>();
    home_view_->setFrame({{0, 0}, screen});
    home_view_->setBackgroundColor(kWallpaper);
  }
  home_->setView(locked_ ? lock_view_ : home_view_);
  window.setRootViewController(home_);
  if (incoming_ && incoming_->screen())
    window.overlays.push_back(incoming_->screen()->view());
  if (controlCenter && controlCenter->presented)
    window.overlays.push_back(controlCenter->view());
}

void SpringBoardApplication::setLocked(bool locked) {
  locked_ = locked;
  if (incoming_) incoming_->lockChanged();
}

void SpringBoardApplication::messageReceived(const std::string& number,
                                             const std::string& text) {
  (void)text;  // the banner's message line is not the bulletin's title
  platform::CallInfo sender;
  sender.destinationID = number;
  if (auto match = platform_schema::findContactByNumber(
          platform::current().path(platform_schema::kAddressBookPath), number))
    sender.abUID = static_cast<int32_t>(match->recordId);
  ui::presentBulletin(
      ui::makeBulletin({callerLabels(sender).name, "com.apple.MobileSMS",
                        Dict{{"contactInfo", number}},
                        Date{platform::current().now() -
                             platform_schema::kReferenceDateOffset}}));
}

void SpringBoardApplication::callChanged(const rt::Id& call) {
  if (incoming_) incoming_->callChanged(call);
  auto info = platform::callInfo(call);
  if (!info || info->isOutgoing) return;
  if (info->status == platform::kCallRinging) {
    live_incoming_.emplace(info->id, false);
    return;
  }
  auto it = live_incoming_.find(info->id);
  if (it == live_incoming_.end()) return;
  if (info->status == platform::kCallActive) it->second = true;
  if (info->status != platform::kCallEnded) return;
  const bool answered = it->second;
  live_incoming_.erase(it);
  if (answered) return;
  Dict context;
  if (info->destinationID) context["contactInfo"] = *info->destinationID;
  ui::presentBulletin(ui::makeBulletin(
      {callerLabels(*info).name, "com.apple.mobilephone", std::move(context),
       Date{info->date - platform_schema::kReferenceDateOffset}}));
}

void SpringBoardApplication::didFinishLaunching() {
  controlCenter = ControlCenterViewController::make();
  user_agent_ = rt::create(rt::getClass(sdk::SBUserAgent::kName));
  status_bar_ =
      rt::create(rt::getClass(sdk::SBStatusBarStateAggregator::kName));
  auto& platform = platform::current();
  if (auto name = rt::send(
          status_bar_,
          sdk::SBStatusBarStateAggregator::sbCarrierNameForOperator,
          std::optional<std::string>(platform.telephony().operatorName())))
    platform.showCarrierName(*name);
  // Below 8.0 the springboard itself shows incoming calls.
  const std::string& version = platform.device().systemVersion;
  if (std::stod(version) < 8.0) {
    incoming_ = std::make_unique<IncomingCallScreens>();
    incoming_->start();
  }
  // The observer goes with the process; it must not keep the app alive.
  std::weak_ptr<rt::Object> weak = weak_from_this();
  platform::observeCallStatus([weak](const rt::Id& call) {
    if (auto app =
            std::static_pointer_cast<SpringBoardApplication>(weak.lock()))
      app->callChanged(call);
  });
}

}  // namespace zv::hosts
