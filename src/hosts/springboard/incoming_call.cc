#include "hosts/springboard/incoming_call.h"

#include <algorithm>

#include "hostsdk/springboard.h"
#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "platform/telephony/call_objects.h"
#include "platform/ui/label.h"

namespace zv::hosts {
namespace {

using Screen = sdk::MPIncomingPhoneCallController;
using ui::self;

IncomingCallController& screenOf(const rt::Id& s) {
  return self<IncomingCallController>(s);
}

std::optional<platform::CallInfo> infoOf(const IncomingCallController& c) {
  return platform::callInfo(c.call);
}

}  // namespace

std::shared_ptr<ui::UIView> IncomingCallController::loadView() {
  auto view = ui::UIViewController::loadView();
  // The LCD across the top of the screen, where the caller is named.
  auto lcd = ui::make<ui::UIView>();
  lcd->setFrame({0, 0, view->frame().size.width, 96});
  view->addSubview(lcd);
  return view;
}

void registerIncomingCallClass() {
  if (rt::getClass(Screen::kName)) return;
  rt::registerClass<IncomingCallController>(Screen::kName, "UIViewController");
  rt::define(Screen::initWithCall, [](const rt::Id& s, rt::Id call) {
    screenOf(s).call = std::move(call);
    return s;
  });
  rt::define(Screen::dealloc, [](const rt::Id&) {});
  rt::define(Screen::viewWillDisappear,
             [](const rt::Id& s, bool) { screenOf(s).ringing = false; });
  rt::define(Screen::updateLCDWithNameCompanyNameLabelBreakPoint,
             [](const rt::Id& s, std::optional<std::string> name,
                std::optional<std::string> company,
                std::optional<std::string> label, int32_t breakPoint) {
               auto& c = screenOf(s);
               c.name = std::move(name);
               c.companyName = std::move(company);
               c.label = std::move(label);
               c.breakPoint = breakPoint;
             });
  rt::define(Screen::ringOrVibrate,
             [](const rt::Id& s) { screenOf(s).ringing = true; });
  rt::define(Screen::incomingCallNumber, [](const rt::Id& s) {
    auto info = infoOf(screenOf(s));
    return info ? info->destinationID : std::nullopt;
  });
  rt::define(Screen::incomingCallerABUID,
             [](const rt::Id& s) -> std::optional<int32_t> {
               auto info = infoOf(screenOf(s));
               if (!info || info->abUID == -1) return std::nullopt;
               return info->abUID;
             });
  rt::define(Screen::topLCDView, [](const rt::Id& s) {
    auto view = screenOf(s).view();
    return view->subviews().empty() ? rt::Id() : rt::Id(view->subviews()[0]);
  });
  rt::define(Screen::shouldCenterText, [](const rt::Id&) { return true; });
}

void IncomingCallScreens::start() {
  platform::current().performAfterDelay(this, "loadIncomingCallBundle",
                                        kIncomingCallClassDelay,
                                        [] { registerIncomingCallClass(); });
}

std::optional<CallScreenLabels> IncomingCallScreens::screenLabels() const {
  if (!screen_) return std::nullopt;
  return CallScreenLabels{screen_->name.value_or(""), screen_->companyName,
                          screen_->label};
}

void IncomingCallScreens::callChanged(const rt::Id& call) {
  auto info = platform::callInfo(call);
  if (!info) return;
  auto it =
      std::find_if(calls_.begin(), calls_.end(),
                   [&](const ScreenedCall& c) { return c.id == info->id; });
  if (it == calls_.end()) {
    ScreenedCall record;
    record.id = info->id;
    record.number = info->destinationID;
    record.outgoing = info->isOutgoing;
    record.status = info->status;
    calls_.push_back(record);
    it = calls_.end() - 1;
    if (info->status == platform::kCallRinging && !info->isOutgoing && !screen_)
      present(call, *info, *it);
    return;
  }
  it->status = info->status;
  if (screen_ && screen_call_ == info->id &&
      info->status != platform::kCallRinging)
    dismiss();
}

void IncomingCallScreens::present(const rt::Id& call,
                                  const platform::CallInfo& info,
                                  ScreenedCall& record) {
  // A call before the bundle's time loads it now.
  registerIncomingCallClass();
  rt::Id made =
      rt::make(rt::getClass(Screen::kName), Screen::initWithCall, call);
  auto screen = std::dynamic_pointer_cast<IncomingCallController>(made);
  if (!screen) {
    record.screenBlocked = true;
    return;
  }
  screen_ = screen;
  screen_call_ = info.id;
  CallScreenLabels caller = callerLabels(info);
  rt::send(made, Screen::updateLCDWithNameCompanyNameLabelBreakPoint,
           std::optional<std::string>(caller.name), caller.companyName,
           caller.label, int32_t{0});
  rt::send(made, Screen::ringOrVibrate);
  record.ringtone = screen->ringing;
}

void IncomingCallScreens::dismiss() {
  auto screen = std::move(screen_);
  screen_call_ = 0;
  rt::send(rt::Id(screen), Screen::viewWillDisappear, true);
}

}  // namespace zv::hosts
