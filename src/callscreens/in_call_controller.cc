#include "callscreens/in_call_controller.h"

#include <cmath>

#include "area/area_loader.h"
#include "callscreens/call_status.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "core/style.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/label.h"

namespace zv {
namespace {

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() &&
         text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The own label inside the LCD, made once.
std::shared_ptr<ui::UILabel> makeOwnLabel() {
  auto label = ui::make<ui::UILabel>();
  label->setFrame({{5, 92}, {310, 20}});
  label->setFont(ZVFont::thinSystemFontOfSize(17));
  label->setTextAlignment(ui::TextAlignment::Center);
  label->setLineBreakMode(ui::LineBreakMode::TruncateMiddle);
  label->setTextColor({0.85, 0.85, 0.85, 1});
  label->setShadowColor(ui::Color{0, 0, 0, 0.2});
  label->setLayerShadow(ui::UIView::LayerShadow{{0, 0, 0, 1}, {0, 0}, 0.2, 1});
  label->setUserInteractionEnabled(false);
  label->setTag(ZVInCallController::kOwnLabelTag);
  return label;
}

}  // namespace

std::shared_ptr<ZVInCallController> ZVInCallController::sharedInstance() {
  return platform::Process::current().singleton<ZVInCallController>(
      [] { return std::make_shared<ZVInCallController>(); });
}

ZVInCallController::ZVInCallController()
    : _settings(ZVPhoneSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()) {}

void ZVInCallController::clearCurCallInfo() {
  _curCallStatus = kCallStatusNone;
  _curRecordID = -1;
  _curNumber.clear();
  _curArea.clear();
}

rt::Id ZVInCallController::callOf(const rt::Id& argument) const {
  if (!argument || !host_) return nullptr;
  if (UIDevice::OSVersion() >= 8.0f) return host_->notificationObject(argument);
  return argument;
}

void ZVInCallController::areaInCall(const rt::Id& controller,
                                    const rt::Id& argument) {
  if (!_settings || !_area) return;
  const auto& s = *_settings;
  if (!s.EnableArea() || !(s.AreaNameOutgoingCall() || s.AreaNameInCall()))
    return;
  rt::Id call = callOf(argument);
  if (!call) return;
  int record = host_->abUID(call);
  if (s.AreaOnlyStrangers() && record != -1) return clearCurCallInfo();
  int status = host_->status(call);
  if (isOffLine(status)) return clearCurCallInfo();
  auto number = host_->destinationID(call);
  if (!number || number->empty()) return clearCurCallInfo();
  if (*number == _curNumber && status == _curCallStatus) return;

  _curCallStatus = status;
  _curRecordID = record;
  _curNumber = *number;
  std::optional<std::string> area;
  if (status == kCallActive)
    area = _area->getArea(_curNumber, s.AreaNameInCall(), s.AreaTypeInCall());
  else if (status == kCallDialling)
    area = _area->getArea(_curNumber, s.AreaNameOutgoingCall(),
                          s.AreaTypeOutgoingCall());
  else
    return _curArea.clear();
  if (!area) return _curArea.clear();
  _curArea = *area;
  if (UIDevice::OSVersion() >= 8.0f) return;
  // Let the LCD set its own label again, so that the label rewrite joins
  // the new area to it.
  if (rt::Id lcd = host_->lcdView(controller))
    host_->setLabel(lcd, host_->label(lcd), false);
}

std::string ZVInCallController::areaInCall(const rt::Id& lcd,
                                           const std::string& label) {
  if (!_settings || !host_) return label;
  const auto& s = *_settings;
  bool areaOn =
      s.EnableArea() && (s.AreaNameOutgoingCall() || s.AreaNameInCall());
  bool numberOn = s.EnableInfo() && s.InfoOutgoingCallNumber();
  if (!areaOn && !numberOn) return label;

  std::optional<std::string> result, own;
  if (areaOn && !_curArea.empty()) {
    const std::string& area = _curArea;
    int style = s.AreaStyleOutgoingCall();
    if (style != 0 && !UIDevice::isPhone4screen()) {
      // The own label; the 3.5-inch screen has no room for it.
      if (style == 1) own = area;
    } else if (label.empty()) {
      result = area;
    } else if (!endsWith(label, area)) {
      if (_curCallStatus == kCallDialling && s.AreaReplaceTextOutgoingCall())
        result = area;
      else
        result = label + "  " + area;
    }
  }
  if (numberOn && _curRecordID != -1 && UIDevice::isPhone5screen() &&
      !_curNumber.empty())
    own = own ? *own + " " + _curNumber : _curNumber;
  if (!own) return result.value_or(label);

  auto view = lcd ? host_->view(lcd) : nullptr;
  if (!view) return result.value_or(label);
  auto ownLabel =
      std::dynamic_pointer_cast<ui::UILabel>(view->viewWithTag(kOwnLabelTag));
  if (!ownLabel) {
    ownLabel = makeOwnLabel();
    view->addSubview(ownLabel);
  }
  if (host_->shouldCenterText(lcd)) {
    ownLabel->setTextAlignment(ui::TextAlignment::Center);
    ownLabel->setFrame({{5, 92}, {310, 20}});
  } else {
    ownLabel->setTextAlignment(ui::TextAlignment::Left);
    ownLabel->setFrame({{20, 80}, {280, 20}});
  }
  ownLabel->setText(*own);
  return result.value_or(label);
}

void ZVInCallController::connectedVibrate(const rt::Id& argument) {
  if (!_settings || !_settings->EnableConnectedVibrate()) return;
  rt::Id call = callOf(argument);
  if (!call) return;
  if (connect_vibration_.shouldVibrate(host_->status(call),
                                       host_->isOutgoing(call)))
    ConnectVibration::schedule(*this);
}

void ZVInCallController::vibrate() {
  if (_settings) ConnectVibration::vibrate(*_settings);
}

}  // namespace zv
