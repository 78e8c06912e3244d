#include "dialer/zv_label.h"

#include <algorithm>

#include "dialer/text_runs.h"
#include "platform/ui/text_metrics.h"

namespace zv {

rt::Class* dialerViewClass(const char* name, const char* superclass) {
  ui::uiClass(superclass);
  return rt::registerClass(name, superclass);
}

std::shared_ptr<ZVLabel> ZVLabel::make() {
  auto label = ui::makeAs<ZVLabel>(dialerViewClass(kClassName));
  label->build();
  return label;
}

void ZVLabel::build() {
  left_ = ui::make<ui::UILabel>();
  center_ = ui::make<ui::UILabel>();
  right_ = ui::make<ui::UILabel>();
  addSubview(left_);
  addSubview(center_);
  addSubview(right_);
}

void ZVLabel::updateLabel() {
  const ui::Color plain = textColor;
  for (auto* l : {&left_, &center_, &right_}) {
    (*l)->setFont(font);
    (*l)->setTextColor(plain);
  }
  if (highlightColor) center_->setTextColor(*highlightColor);

  bool runs = false;
  if (auto parts = splitRuns(text, highlightRange)) {
    double widths[3];
    for (int i = 0; i < 3; ++i) widths[i] = ui::textWidth((*parts)[i], font);
    double total = widths[0] + widths[1] + widths[2];
    if (textSize == 0 || textSize > total) {
      double x = 0;
      const std::shared_ptr<ui::UILabel>* labels[3] = {&left_, &center_,
                                                       &right_};
      for (int i = 0; i < 3; ++i) {
        auto& l = *labels[i];
        l->setText((*parts)[i]);
        l->sizeToFit();
        l->setOrigin(x, 0);
        x += l->frame().size.width;
      }
      runs = true;
    }
  }
  if (!runs) {
    left_->setText(text);
    left_->sizeToFit();
    left_->setOrigin(0, 0);
    if (textSize > 0 && textSize < left_->frame().size.width)
      left_->setSize(textSize, left_->frame().size.height);
    for (auto* l : {&center_, &right_}) {
      (*l)->setText("");
      (*l)->setFrame({});
    }
  }
  // sizeToFit: the three runs side by side, as high as the left one.
  setSize(left_->frame().size.width + center_->frame().size.width +
              right_->frame().size.width,
          left_->frame().size.height);
}

}  // namespace zv
