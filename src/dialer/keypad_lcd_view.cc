#include "dialer/keypad_lcd_view.h"

#include <algorithm>

#include "core/device.h"
#include "core/style.h"
#include "dialer/text_runs.h"
#include "platform/ui/text_metrics.h"
#include "platform/utf8.h"

namespace zv {
namespace {

const ui::Color kBlack{0, 0, 0, 1};
const ui::Font kNameFont{".HelveticaNeueInterface-Regular", 15};

}  // namespace

std::optional<ui::Color> highlightColorForCode(int code) {
  switch (code) {
    case 0:
      return ZVColor::blueColor();
    case 1:
      return ZVColor::greenColor();
    case 2:
      return ZVColor::redColor();
    default:
      return std::nullopt;
  }
}

std::shared_ptr<ZVKeypadLCDView> ZVKeypadLCDView::make(const ui::Rect& frame) {
  auto v = ui::makeAs<ZVKeypadLCDView>(dialerViewClass(kClassName));
  v->setFrame(frame);
  v->build();
  return v;
}

void ZVKeypadLCDView::build() {
  for (auto* line : {&number_labels_, &name_labels_})
    for (auto& l : *line) {
      l = ui::make<ui::UILabel>();
      addSubview(l);
    }
  avatarImageView_ = ui::make<ui::UIImageView>();
  avatarImageView_->setHidden(true);
  addSubview(avatarImageView_);
  std::weak_ptr<ZVKeypadLCDView> weak =
      std::static_pointer_cast<ZVKeypadLCDView>(shared_from_this());
  onGesture(ui::Gesture::TouchEnded, [weak](ui::UIView&) {
    if (auto me = weak.lock())
      if (auto d = me->delegate_.lock()) d->keypadLCDViewPressed();
  });
  onGesture(ui::Gesture::LongPress, [weak](ui::UIView&) {
    if (auto me = weak.lock())
      if (auto d = me->delegate_.lock()) d->keypadLCDViewLongPress();
  });
}

double ZVKeypadLCDView::numberFontSize(size_t length, size_t a, size_t b) {
  double S = 36, m = 24;
  if (UIDevice::isPhone4screen()) {
    S = 32;
    m = 28;
  } else if (UIDevice::isPhone6screen()) {
    S = 40;
    m = 28;
  } else if (UIDevice::isPhone6pscreen()) {
    S = 44;
    m = 32;
  }
  if (length <= a) return S;
  if (length >= b) return m;
  return S -
         static_cast<double>(length - a) * (S - m) / static_cast<double>(b - a);
}

void ZVKeypadLCDView::layoutLine(
    std::array<std::shared_ptr<ui::UILabel>, 3>& labels,
    const std::string& text, ZVRange range, bool split, const ui::Font& font,
    double boxX, double boxWidth, double top, double height, bool fitWhole) {
  const double pageWidth = frame().size.width;
  for (auto& l : labels) l->setFont(font);
  auto parts = split ? splitRuns(text, range) : std::nullopt;
  if (parts) {
    double total = 0;
    for (int i = 0; i < 3; ++i) {
      labels[i]->setText((*parts)[i]);
      labels[i]->setAdjustsFontSizeToFitWidth(false);
      labels[i]->sizeToFit();
      total += labels[i]->frame().size.width;
    }
    double x = std::max(boxX, (pageWidth - total) / 2);
    for (auto& l : labels) {
      l->setFrame({{x, top}, {l->frame().size.width, height}});
      x += l->frame().size.width;
    }
    return;
  }
  labels[0]->setText(text);
  labels[0]->setTextAlignment(ui::TextAlignment::Center);
  labels[0]->setAdjustsFontSizeToFitWidth(fitWhole);
  labels[0]->setFrame({{boxX, top}, {boxWidth, height}});
  for (int i = 1; i < 3; ++i) {
    labels[i]->setText("");
    labels[i]->setFrame({});
  }
}

void ZVKeypadLCDView::applyColor(const std::shared_ptr<ui::UILabel>& label,
                                 int code, int& applied) {
  if (code == applied) return;
  applied = code;
  label->setTextColor(highlightColorForCode(code).value_or(kBlack));
}

void ZVKeypadLCDView::updateLCDView() {
  const double width = frame().size.width;
  if (avatar_) {
    avatarImageView_->setImage(avatar_);
    avatarImageView_->setHidden(false);
    avatarImageView_->setCornerRadius(18);
    avatarImageView_->setClipsToBounds(true);
    avatarImageView_->setFrame(
        {{14, std::max(0.0, (frame().size.height - 36) / 2)}, {36, 36}});
  } else {
    avatarImageView_->setHidden(true);
  }
  const bool roomForAvatar = avatar_ || showsAvatar_;
  const double boxX = roomForAvatar ? 60 : 20;
  const double boxWidth = width - (roomForAvatar ? 110 : 70);
  const size_t a = roomForAvatar ? 10 : 12, b = roomForAvatar ? 15 : 18;

  const size_t length = characterCount(number_);
  ui::Font numberFont =
      ZVFont::thinSystemFontOfSize(numberFontSize(length, a, b));
  const bool splitNumber = length > 0 && length < 20 && showsHighlight_ &&
                           highlightNumberRange_.length > 0;
  const double numberTop = UIDevice::isPhone4screen() ? 6 : 8;
  layoutLine(number_labels_, number_, highlightNumberRange_, splitNumber,
             numberFont, boxX, boxWidth, numberTop, 40, length < b);

  const bool splitName = ui::textWidth(name_, kNameFont) < 310 &&
                         showsHighlight_ && highlightNameRange_.length > 0;
  double nameTop = 45;
  if (UIDevice::isPhone4screen())
    nameTop = 41;
  else if (UIDevice::isPhone6screen())
    nameTop = 55;
  else if (UIDevice::isPhone6pscreen())
    nameTop = 66;
  layoutLine(name_labels_, name_, highlightNameRange_, splitName, kNameFont,
             boxX, boxWidth, nameTop, 20, true);

  applyColor(number_labels_[1], numberHighlightColor_, applied_number_color_);
  applyColor(name_labels_[1], nameHighlightColor_, applied_name_color_);
}

void ZVKeypadLCDView::clearLCDView() {
  for (auto* line : {&number_labels_, &name_labels_})
    for (auto& l : *line) l->setText("");
  number_.clear();
  name_.clear();
  avatar_.reset();
  avatarImageView_->setImage(nullptr);
  avatarImageView_->setHidden(true);
}

}  // namespace zv
