#include "hosts/phone/incall.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "hosts/kit/call_screens.h"
#include "hostsdk/phone.h"
#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/telephony/call_objects.h"

namespace zv::hosts {
namespace {

using ui::self;
using Lcd = sdk::InCallLCDView;
using Controller = sdk::InCallController;

constexpr char kDurationSelector[] = "updateCallDuration";
constexpr double kDurationInterval = 1.0;

void registerClasses() {
  platform::registerTelephonyClasses(rt::runtime());
  rt::registerClass<InCallLCDView>(InCallLCDView::kClassName, "UIView");
  rt::define(Lcd::label, [](const rt::Id& s) {
    return self<InCallLCDView>(s).statusLabel->text();
  });
  rt::define(Lcd::setLabelAnimate, [](const rt::Id& s, std::string l, bool) {
    self<InCallLCDView>(s).statusLabel->setText(std::move(l));
  });
  rt::define(Lcd::shouldCenterText,
             [](const rt::Id& s) { return self<InCallLCDView>(s).centerText; });

  rt::registerClass<InCallController>(InCallController::kClassName,
                                      "UIViewController");
  rt::define(Controller::callStatusChanged, [](const rt::Id& s, rt::Id call) {
    self<InCallController>(s).hostCallStatusChanged(call);
  });
}

std::shared_ptr<ui::UILabel> centredLabel(double y, double width, double height,
                                          double size) {
  auto l = ui::make<ui::UILabel>();
  l->setFrame({{0, y}, {width, height}});
  l->setFont({".HelveticaNeueInterface-Thin", size});
  l->setTextColor({1, 1, 1, 1});
  l->setTextAlignment(ui::TextAlignment::Center);
  return l;
}

}  // namespace

void registerInCallClasses() { registerClasses(); }

std::string callDurationText(double seconds) {
  long total = seconds > 0 ? static_cast<long>(std::floor(seconds)) : 0;
  char text[32];
  if (total >= 3600)
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", total / 3600,
                  total / 60 % 60, total % 60);
  else
    std::snprintf(text, sizeof text, "%02ld:%02ld", total / 60, total % 60);
  return text;
}

InCallController::~InCallController() {
  // A screen that outlives its process (a test holding it after the world
  // ended) has no observer or timer left to remove.
  try {
    if (observer_) platform::removeCallStatusObserver(observer_);
    platform::current().cancelPrevious(this, kDurationSelector);
  } catch (const std::logic_error&) {
  }
}

std::shared_ptr<InCallController> InCallController::start() {
  auto c = std::dynamic_pointer_cast<InCallController>(
      rt::alloc(rt::getClass(Controller::kName)));
  if (!c) return nullptr;
  std::weak_ptr<InCallController> weak = c;
  c->observer_ = platform::observeCallStatus([weak](const rt::Id& call) {
    if (auto controller = weak.lock())
      rt::send(controller, Controller::callStatusChanged, call);
  });
  return c;
}

std::shared_ptr<ui::UIView> InCallController::loadView() {
  auto size = platform::current().device().screenPoints;
  auto root = ui::make<ui::UIView>();
  root->setFrame({{0, 0}, size});
  root->setBackgroundColor(ui::Color{0.1, 0.1, 0.12, 1});
  auto lcd = ui::makeAs<InCallLCDView>(rt::getClass(Lcd::kName));
  lcd->setFrame({{0, 0}, {size.width, 140}});
  lcd->textLabel = centredLabel(40, size.width, 36, 34);
  lcd->statusLabel = centredLabel(76, size.width, 20, 17);
  lcd->addSubview(lcd->textLabel);
  lcd->addSubview(lcd->statusLabel);
  root->addSubview(lcd);
  rt::setIvar(shared_from_this(), Controller::lcd, rt::Id(lcd));
  return root;
}

void InCallLCDView::layoutSubviews() {
  const double w = frame().size.width;
  const auto align =
      centerText ? ui::TextAlignment::Center : ui::TextAlignment::Left;
  textLabel->setTextAlignment(align);
  statusLabel->setTextAlignment(align);
  if (centerText) {
    textLabel->setFrame({{10, 30}, {w - 20, 40}});
    statusLabel->setFrame({{10, 70}, {w - 20, 22}});
  } else {
    textLabel->setFrame({{20, 20}, {w - 40, 38}});
    statusLabel->setFrame({{20, 58}, {w - 40, 22}});
  }
}

std::shared_ptr<InCallLCDView> InCallController::lcd() {
  view();
  return std::dynamic_pointer_cast<InCallLCDView>(
      rt::ivar(shared_from_this(), Controller::lcd).value_or(nullptr));
}

void InCallController::hostCallStatusChanged(const rt::Id& call) {
  auto info = platform::callInfo(call);
  if (!info) return;
  const bool onScreen = call == shownCall();
  switch (info->status) {
    case platform::kCallDialling:
    case platform::kCallActive: {
      if (!onScreen) {
        shown_call_ = call;
        auto v = lcd();
        v->textLabel->setText(callerLabels(*info).name);
        v->centerText = info->abUID == -1;
        v->statusLabel->setText("");
      }
      show();
      if (info->status == platform::kCallDialling) {
        setStatusLine("calling…");
      } else {
        updateDuration();
      }
      break;
    }
    case platform::kCallHeld:
      if (!onScreen) break;
      platform::current().cancelPrevious(this, kDurationSelector);
      setStatusLine("hold");
      break;
    case platform::kCallEnding:
    case platform::kCallEnded:
      if (!onScreen) break;
      platform::current().cancelPrevious(this, kDurationSelector);
      setStatusLine("call ended");
      shown_call_.reset();
      hide();
      break;
    default:  // a call ringing in belongs to the springboard's screen
      break;
  }
}

void InCallController::show() {
  if (shown_) return;
  shown_ = true;
  ui::sendWillAppear(
      std::static_pointer_cast<ui::UIViewController>(shared_from_this()), true);
}

void InCallController::hide() {
  if (!shown_) return;
  shown_ = false;
  ui::sendWillDisappear(
      std::static_pointer_cast<ui::UIViewController>(shared_from_this()), true);
}

void InCallController::setStatusLine(const std::string& text) {
  rt::send(rt::Id(lcd()), Lcd::setLabelAnimate, text, false);
}

void InCallController::updateDuration() {
  auto info = platform::callInfo(shownCall());
  if (!info || info->status != platform::kCallActive) return;
  double connected =
      info->connectedAt > 0 ? platform::current().now() - info->connectedAt : 0;
  setStatusLine(callDurationText(connected));
  scheduleDuration();
}

void InCallController::scheduleDuration() {
  auto& platform = platform::current();
  platform.cancelPrevious(this, kDurationSelector);
  std::weak_ptr<rt::Object> weak = weak_from_this();
  platform.performAfterDelay(this, kDurationSelector, kDurationInterval,
                             [this, weak] {
                               if (weak.lock()) updateDuration();
                             });
}

}  // namespace zv::hosts
