#include "callscreens/caller_info_views.h"

#include <cstdio>

#include "area/area_loader.h"
#include "callscreens/call_screen_geometry.h"
#include "core/area_label.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "core/style.h"
#include "platform/db/platform_schema.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/call_history.h"

namespace zv {
namespace {

constexpr const char* kPhoneSection = "com.apple.mobilephone";
constexpr const char* kMessagesSection = "com.apple.MobileSMS";

using call_screen::InfoViewStyle;
using call_screen::kInfoViewTag;
using call_screen::kOutgoingLabelTag;

std::string joinLines(const std::optional<std::string>& head,
                      const std::string& line) {
  return head ? *head + "\n" + line : line;
}

// The common tail of the host-label joiners: the label kept, the area
// alone, or both with two blanks.
std::string joinTwo(const std::string& label, const std::string& area) {
  return joinArea(label, area, AreaGap::kTwo);
}

// The larger phone screens move the system's views in from the edges.
bool largerScreen() {
  return UIDevice::isPhone6screen() || UIDevice::isPhone6pscreen();
}

// The text view's height: what it needs, within the cap.
double fittedHeight(ui::UITextView& view) {
  view.sizeToFit();
  const double fitted = view.frame().size.height;
  return fitted > InfoViewStyle::kMaxHeight - InfoViewStyle::kFitSlack
             ? InfoViewStyle::kMaxHeight
             : fitted + InfoViewStyle::kFitSlack;
}

constexpr ui::Color kTextColor{InfoViewStyle::kTextWhite,
                               InfoViewStyle::kTextWhite,
                               InfoViewStyle::kTextWhite, 1};

}  // namespace

CallerInfoViews::CallerInfoViews(
    std::shared_ptr<ZVIncomingCallSettings> settings,
    std::shared_ptr<ZVAreaLoader> area,
    std::shared_ptr<ZVAddressBook> addressBook,
    std::shared_ptr<ZVCallHistory> callHistory)
    : _settings(std::move(settings)),
      _area(std::move(area)),
      _addressbook(std::move(addressBook)),
      _callhistory(std::move(callHistory)) {}

std::optional<std::string> CallerInfoViews::areaOf(
    const std::optional<std::string>& number, bool name, bool type) {
  if (!number || !_area) return std::nullopt;
  return _area->getArea(*number, name, type);
}

// --- Label joiners -----------------------------------------------------------

std::optional<std::string> CallerInfoViews::areaIncomingCall(
    const rt::Id& screen, std::optional<std::string> label) {
  if (!_settings || !host_ || !screen) return label;
  const auto& s = *_settings;
  if (!s.EnableArea() || !s.AreaNameIncomingCall() ||
      s.AreaStyleIncomingCall() != 0)
    return label;
  if (s.AreaOnlyStrangers() && host_->incomingCallerABUID(screen) != -1)
    return label;
  auto area = areaOf(host_->incomingCallNumber(screen),
                     s.AreaNameIncomingCall(), s.AreaTypeIncomingCall());
  if (!area) return label;
  if (!label || label->empty()) return area;
  if (labelEndsWithArea(*label, *area)) return label;
  if (s.AreaReplaceTextIncomingCall()) return area;
  return joinTwo(*label, *area);
}

std::optional<std::string> CallerInfoViews::areaTUCall(
    const rt::Id& call, std::optional<std::string> label) {
  if (!_settings || !host_ || !call) return label;
  const auto& s = *_settings;
  if (!s.EnableArea() || !s.AreaNameMore()) return label;
  if (s.AreaOnlyStrangers() && host_->abUID(call) != -1) return label;
  auto area =
      areaOf(host_->destinationID(call), s.AreaNameMore(), s.AreaTypeMore());
  if (!area) return label;
  if (s.AreaReplaceTextMore() || !label) return area;
  if (labelEndsWithArea(*label, *area)) return area;
  return joinTwo(*label, *area);
}

std::optional<std::string> CallerInfoViews::areaInCall(
    const rt::Id& call, std::optional<std::string> label) {
  if (!_settings || !host_ || !call) return label;
  const auto& s = *_settings;
  const bool incoming =
      s.AreaNameIncomingCall() && s.AreaStyleIncomingCall() == 0;
  const bool outgoing =
      s.AreaNameOutgoingCall() && s.AreaStyleOutgoingCall() == 0;
  if (!s.EnableArea() || !(incoming || outgoing || s.AreaNameInCall()))
    return label;
  if (s.AreaOnlyStrangers() && host_->abUID(call) != -1) return label;
  auto number = host_->destinationID(call);
  if (!number) return label;

  std::optional<std::string> area;
  bool replace = false;
  switch (host_->status(call)) {
    case kCallRinging:
      if (!incoming) return label;
      area = areaOf(number, s.AreaNameIncomingCall(), s.AreaTypeIncomingCall());
      replace = s.AreaReplaceTextIncomingCall();
      break;
    case kCallDialling:
      // With its own label (style 1 and up) the area stays off the host's.
      if (!s.AreaNameOutgoingCall() || s.AreaStyleOutgoingCall() != 0)
        return label;
      area = areaOf(number, s.AreaNameOutgoingCall(), s.AreaTypeOutgoingCall());
      replace = s.AreaReplaceTextOutgoingCall();
      break;
    case kCallActive:
      if (!s.AreaNameInCall()) return label;
      area = areaOf(number, s.AreaNameInCall(), s.AreaTypeInCall());
      break;
    default:
      return label;
  }
  if (!area) return label;
  if (!label || area->starts_with(*label) || labelEndsWithArea(*label, *area) ||
      replace)
    return area;
  return joinTwo(*label, *area);
}

Value CallerInfoViews::areaParticipantsView(const rt::Id& participants,
                                            int32_t index, Value label) {
  if (!_settings || !host_ || !participants) return label;
  const auto& s = *_settings;
  if (!s.EnableArea()) return label;
  if (_curInCallStatus == kCallActive
          ? !s.AreaNameInCall()
          : !(s.AreaNameIncomingCall() || s.AreaNameOutgoingCall() ||
              s.AreaNameInCall()))
    return label;
  auto groups = host_->callGroups(participants);
  if (index < 0 || static_cast<size_t>(index) >= groups.size()) return label;
  auto calls = host_->groupCalls(groups[index]);
  if (calls.empty() || !calls.front()) return label;
  const rt::Id& call = calls.front();
  if (const auto* text = label.string())
    return areaInCall(call, *text).value_or(*text);
  if (const auto* lines = label.array()) {
    if (lines->empty() || !lines->front().string()) return label;
    const std::string& first = *lines->front().string();
    auto joined = areaInCall(call, first);
    if (!joined || *joined == first) return label;
    Array out{*joined};
    out.insert(out.end(), lines->begin() + 1, lines->end());
    return out;
  }
  return label;
}

void CallerInfoViews::imageForParticipant(const ui::ImagePtr& image) {
  _haveInCallImage = image && !image->empty();
}

// --- Banners and the status bar ---------------------------------------------

bool CallerInfoViews::annotatesBulletin(const rt::Id& bulletin) {
  if (!_settings || !host_ || !bulletin) return false;
  const auto& s = *_settings;
  if (!s.EnableArea() || !s.AreaNameNotification()) return false;
  const std::string section = host_->bulletinSectionID(bulletin);
  return section == kPhoneSection || section == kMessagesSection;
}

std::optional<std::string> CallerInfoViews::areaBulletin(
    const rt::Id& bulletin, std::optional<std::string> title) {
  if (!annotatesBulletin(bulletin)) return title;
  const auto& s = *_settings;
  auto plain = areaOf(host_->bulletinContactInfo(bulletin),
                      s.AreaNameNotification(), s.AreaTypeNotification());
  if (!plain) return title;
  std::string area = *plain;
  if (s.CallHistoryRingDuration() && _callhistory) {
    if (auto date = host_->bulletinDate(bulletin)) {
      // Ring durations are keyed by the platform database's own date unit.
      const double key = UIDevice::OSVersion() >= 8.0f
                             ? *date
                             : *date + platform_schema::kReferenceDateOffset;
      if (int64_t seconds = _callhistory->getRingDuration(key)) {
        const std::string unit =
            platform::current().localizedString("sec", "Zorvel");
        char count[32];
        std::snprintf(count, sizeof count, "%lld",
                      static_cast<long long>(seconds));
        area += " (" + std::string(count) + unit + ")";
      }
    }
  }
  if (title && !title->empty() && !labelEndsWithArea(*title, area) &&
      title->find(*plain) == std::string::npos)
    return joinTwo(*title, area);
  if (!title || title->empty()) return area;
  return title;
}

std::optional<std::string> CallerInfoViews::updateCarrierName(
    std::optional<std::string> name) {
  if (!_settings || _settings->CarrierName().empty() || !name) return name;
  return _settings->CarrierName();
}

// --- The information text view -----------------------------------------------

std::optional<std::string> CallerInfoViews::infoText(
    bool style, const std::optional<std::string>& number, int32_t recordId) {
  const auto& s = *_settings;
  std::optional<std::string> text;
  if (style && !(s.AreaOnlyStrangers() && recordId != -1))
    text = areaOf(number, s.AreaNameIncomingCall(), s.AreaTypeIncomingCall());
  if (!s.EnableInfo() || recordId == -1) return text;
  if (s.InfoIncomingCallNumber() && number && !number->empty())
    text = joinLines(text, *number);
  int mask = 0;
  if (s.InfoIncomingCallOrganization()) mask |= ZVAddressBook::kOrganization;
  if (s.InfoIncomingCallDepartment()) mask |= ZVAddressBook::kDepartment;
  if (s.InfoIncomingCallJobTitle()) mask |= ZVAddressBook::kJobTitle;
  if (s.InfoIncomingCallNickname()) mask |= ZVAddressBook::kNickname;
  if (s.InfoIncomingCallBirthday()) mask |= ZVAddressBook::kBirthday;
  if (s.InfoIncomingCallNote()) mask |= ZVAddressBook::kNote;
  if (mask != 0 && _addressbook) {
    if (auto details = _addressbook->getAddressBookInfo(recordId, mask))
      text = joinLines(text, *details);
  }
  return text;
}

void CallerInfoViews::showInfoView(ui::UIView& parent,
                                   std::shared_ptr<ui::UITextView> view,
                                   const ui::Font& font, ui::Point origin,
                                   double width, ui::TextAlignment alignment,
                                   const std::string& text) {
  if (!view) {
    view = makeInfoView(font, {origin, {width, InfoViewStyle::kMaxHeight}});
    parent.addSubview(view);
  }
  view->setTextAlignment(alignment);
  view->setText(text);
  const double height = fittedHeight(*view);
  view->setFrame({origin, {width, height}});
}

std::shared_ptr<ui::UITextView> CallerInfoViews::makeInfoView(
    const ui::Font& font, const ui::Rect& frame) {
  auto view = ui::make<ui::UITextView>();
  view->setFrame(frame);
  view->setUserInteractionEnabled(false);
  view->setFont(font);
  view->setContentInset({InfoViewStyle::kInsetTop, InfoViewStyle::kInsetSide, 0,
                         InfoViewStyle::kInsetSide});
  view->setTextColor(kTextColor);
  view->setBackgroundColor(ui::Color{0, 0, 0, 0});
  view->setLayerShadow(ui::UIView::LayerShadow{{0, 0, 0, 1}, {0, 0}, 0.2, 1});
  view->setTag(kInfoViewTag);
  view->setLayoutManagerDelegate(
      std::static_pointer_cast<ui::LayoutManagerDelegate>(shared_from_this()));
  return view;
}

double CallerInfoViews::lineSpacingAfterGlyphAtIndex(size_t, const ui::Rect&) {
  return InfoViewStyle::kLineSpacing;
}

void CallerInfoViews::infoIncomingCall(
    const rt::Id& screen, const std::optional<std::string>& companyName,
    const std::optional<std::string>& label) {
  if (!_settings || !host_ || !screen) return;
  const InfoViewParts parts = infoViewParts();
  if (!parts.incomingArea && !parts.details) return;
  auto lcd = host_->topLCDView(screen);
  if (!lcd) return;
  auto view =
      std::dynamic_pointer_cast<ui::UITextView>(lcd->viewWithTag(kInfoViewTag));
  std::optional<std::string> text;
  if (view)
    text = view->text();
  else
    text = infoText(parts.incomingArea, host_->incomingCallNumber(screen),
                    host_->incomingCallerABUID(screen));
  if (!text) return;
  using Screen = call_screen::IncomingScreen7;
  const bool centre = host_->shouldCenterText(screen);
  const double y = !companyName && !label ? Screen::kYNameOnly
                   : centre               ? Screen::kYCentred
                                          : Screen::kYLeft;
  showInfoView(*lcd, std::move(view),
               ZVFont::thinSystemFontOfSize(InfoViewStyle::kFontSize),
               {Screen::kX, y}, Screen::kWidth,
               centre ? ui::TextAlignment::Center : ui::TextAlignment::Left,
               *text);
}

void CallerInfoViews::infoInCall(const rt::Id& participants) {
  if (_isInCallFieldMode || !_settings || !host_ || !participants) return;
  const auto& s = *_settings;
  const InfoViewParts parts = infoViewParts();
  const bool outNumber = parts.details && s.InfoOutgoingCallNumber();
  if (!parts.any()) return;
  auto view = host_->participantsView(participants);
  auto groups = host_->callGroups(participants);
  if (!view || groups.empty()) return;
  auto calls = host_->groupCalls(groups.front());
  if (calls.empty() || !calls.front()) return;
  const rt::Id& call = calls.front();
  auto number = host_->destinationID(call);
  const int32_t record = host_->abUID(call);
  const bool larger = largerScreen();
  using Screen = call_screen::ParticipantsView8;

  if (!host_->isOutgoing(call)) {
    auto textView = std::dynamic_pointer_cast<ui::UITextView>(
        view->viewWithTag(kInfoViewTag));
    std::optional<std::string> text;
    if (textView)
      text = textView->text();
    else
      text = infoText(parts.incomingArea, number, record);
    if (!text) return;
    double x = Screen::kInfoX;
    double y =
        _haveInCallImage ? Screen::kInfoYWithImage : Screen::kInfoYWithoutImage;
    double width = view->frame().size.width - Screen::kInfoSideMargins;
    if (!_haveInCallLabel) y -= Screen::kNoStatusLabelRise;
    if (larger) {
      x += Screen::kLargerInsetX;
      y += Screen::kLargerDropY;
      width -= 2 * Screen::kLargerInsetX;
    }
    showInfoView(
        *view, std::move(textView),
        ZVFont::mediumSystemFontOfSize(InfoViewStyle::kFontSize), {x, y}, width,
        _haveInCallImage ? ui::TextAlignment::Left : ui::TextAlignment::Center,
        *text);
    return;
  }

  if (!outNumber && !parts.outgoingArea) return;
  std::optional<std::string> area;
  if (!(s.AreaOnlyStrangers() && record != -1))
    area = areaOf(number, s.AreaNameOutgoingCall(), s.AreaTypeOutgoingCall());
  std::optional<std::string> text = area;
  if (outNumber && record != -1 && number && !number->empty())
    text = area ? *area + " " + *number : *number;
  if (!text) return;
  auto label = std::dynamic_pointer_cast<ui::UILabel>(
      view->viewWithTag(kOutgoingLabelTag));
  if (!label) {
    double x = Screen::kOutgoingX, y = Screen::kOutgoingY;
    double width = view->frame().size.width - Screen::kOutgoingSideMargins;
    if (larger) {
      x += Screen::kLargerInsetX;
      y += Screen::kLargerDropY;
      width -= 2 * Screen::kLargerInsetX;
    }
    label = ui::make<ui::UILabel>();
    label->setFrame({{x, y}, {width, Screen::kOutgoingHeight}});
    label->setFont(ZVFont::mediumSystemFontOfSize(InfoViewStyle::kFontSize));
    label->setLineBreakMode(ui::LineBreakMode::TruncateMiddle);
    label->setTextColor(kTextColor);
    label->setTag(kOutgoingLabelTag);
    view->addSubview(label);
  }
  label->setTextAlignment(_haveInCallImage ? ui::TextAlignment::Left
                                           : ui::TextAlignment::Center);
  label->setText(*text);
}

CallerInfoViews::InfoViewParts CallerInfoViews::infoViewParts() const {
  const auto& s = *_settings;
  return {s.EnableArea() && s.AreaNameIncomingCall() &&
              s.AreaStyleIncomingCall() == 1,
          s.EnableArea() && s.AreaNameOutgoingCall() &&
              s.AreaStyleOutgoingCall() == 1,
          s.EnableInfo()};
}

void CallerInfoViews::removeInfoViews(const std::shared_ptr<ui::UIView>& view) {
  if (!view) return;
  for (int tag : {kOutgoingLabelTag, kInfoViewTag}) {
    if (auto sub = view->viewWithTag(tag)) {
      sub->setHidden(true);
      sub->removeFromSuperview();
    }
  }
}

void CallerInfoViews::hideInfoInCall(const rt::Id& audioCall) {
  if (!_settings || !host_ || !audioCall) return;
  if (!infoViewParts().any()) return;
  removeInfoViews(host_->participantsView(
      host_->callParticipantsViewController(audioCall)));
}

void CallerInfoViews::callStatusChangedNotification(
    const rt::Id& notification, const rt::Id& participants) {
  if (!_settings || !host_ || !participants) return;
  if (!infoViewParts().any()) return;
  rt::Id call = host_->notificationObject(notification);
  if (!call) return;
  if (!isPastSetUp(host_->status(call))) return;
  removeInfoViews(host_->participantsView(participants));
}

void CallerInfoViews::callStateChanged(const rt::Id& call) {
  if (!_settings || !host_) return;
  const auto& s = *_settings;
  const bool area =
      s.EnableArea() && (s.AreaNameIncomingCall() || s.AreaNameOutgoingCall() ||
                         s.AreaNameInCall());
  _curInCallStatus = area && call ? host_->status(call) : kCallStatusNone;
}

void CallerInfoViews::deallocCall() {
  _isInCallFieldMode = false;
  _curInCallStatus = kCallStatusNone;
}

}  // namespace zv
