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
  const auto screen = platform::current().device().screenPoints;
  view->setFrame({{0, 0}, screen});
  view->setBackgroundColor(kCallScreenBackground);
  // The LCD across the top of the screen, where the caller is named; its
  // text is centred (shouldCenterText).
  auto lcd = ui::make<ui::UIView>();
  const double width = screen.width;
  lcd->setFrame({{0, 0}, {width, 96}});
  nameLabel = ui::make<ui::UILabel>();
  nameLabel->setFrame({{15, 20}, {width - 30, 38}});
  statusLabel = ui::make<ui::UILabel>();
  statusLabel->setFrame({{15, 58}, {width - 30, 22}});
  for (const auto& [label, size] :
       {std::pair{nameLabel, 32.0}, std::pair{statusLabel, 17.0}}) {
    label->setFont({"HelveticaNeue-Light", size});
    label->setTextColor({1, 1, 1, 1});
    label->setTextAlignment(ui::TextAlignment::Center);
    label->setAdjustsFontSizeToFitWidth(true);
  }
  lcd->addSubview(nameLabel);
  lcd->addSubview(statusLabel);
  view->addSubview(lcd);
  answerControls = CallAnswerControls::make(screen.width, screen.height);
  view->addSubview(answerControls);
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
               c.view();
               c.nameLabel->setText(c.name.value_or(""));
               // The company line above the label, when there is one.
               std::string status = c.companyName.value_or("");
               if (c.label && !c.label->empty())
                 status = status.empty() ? *c.label : status + "  " + *c.label;
               c.statusLabel->setText(status);
             });
  rt::define(Screen::ringOrVibrate, [](const rt::Id& s) {
    auto& c = screenOf(s);
    c.ringing = true;
    if (c.onRing) c.onRing();
  });
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

std::optional<CallScreenText> IncomingCallScreens::screenText() const {
  if (!screen_) return std::nullopt;
  CallScreenText text;
  text.name = screen_->name.value_or("");
  if (screen_->label) text.labelLines.push_back(*screen_->label);
  text.declineButton = screen_->declineButton;
  collectScreenTexts(screen_->view(),
                     {screen_->nameLabel.get(), screen_->statusLabel.get()},
                     text.infoLines, text.extraLabels);
  return text;
}

void IncomingCallScreens::lockChanged() {
  if (screen_) layOutAnswerControls();
}

void IncomingCallScreens::layOutAnswerControls() {
  rt::Id agent =
      rt::trySend(rt::classObject(rt::getClass(sdk::SBUserAgent::kName)),
                  sdk::SBUserAgent::sharedUserAgent);
  screen_->declineButton =
      !(agent && rt::send(agent, sdk::SBUserAgent::lockScreenIsShowing));
  screen_->view();
  screen_->answerControls->show(screen_->declineButton
                                    ? CallAnswerControls::Mode::Buttons
                                    : CallAnswerControls::Mode::Slide,
                                screen_call_);
}

std::optional<CallScreenLabels> IncomingCallScreens::screenLabels() const {
  if (!screen_) return std::nullopt;
  return CallScreenLabels{screen_->name.value_or(""), screen_->companyName,
                          screen_->label};
}

void IncomingCallScreens::callChanged(const rt::Id& call) {
  auto info = platform::callInfo(call);
  if (!info) return;
  forgetOldEndedCalls(calls_);
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
    // Every call that rings in gets a screen made for it, and so its own
    // decision, also while another call's screen is up (call waiting).
    if (info->status == platform::kCallRinging && !info->isOutgoing)
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
    // A blocked call leaves the screen that is up, if any, as it is.
    record.screenBlocked = true;
    return;
  }
  // The call that rang in takes the screen from the one it showed.
  if (screen_) dismiss();
  screen_ = screen;
  screen_call_ = info.id;
  CallScreenLabels caller = callerLabels(info);
  rt::send(made, Screen::updateLCDWithNameCompanyNameLabelBreakPoint,
           std::optional<std::string>(caller.name), caller.companyName,
           caller.label, int32_t{0});
  layOutAnswerControls();
  const platform::CallId id = info.id;
  screen->onRing = [this, id] {
    for (auto& c : calls_)
      if (c.id == id) c.ringtone = true;
  };
  rt::send(made, Screen::ringOrVibrate);
}

void IncomingCallScreens::dismiss() {
  auto screen = std::move(screen_);
  screen_call_ = 0;
  screen->onRing = nullptr;
  rt::send(rt::Id(screen), Screen::viewWillDisappear, true);
  // The springboard lets the screen go; its last message is dealloc.
  rt::send(rt::Id(screen), Screen::dealloc);
}

}  // namespace zv::hosts
