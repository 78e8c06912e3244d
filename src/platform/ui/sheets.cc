#include "platform/ui/sheets.h"

#include "platform/platform.h"
#include "platform/ui/canvas.h"

namespace zv::ui {

void UIActionSheet::draw(Canvas& canvas) const {
  const Color kLine{0.7, 0.7, 0.72, 1};
  const double W = frame().size.width, H = frame().size.height;
  canvas.fill({{0, 0}, frame().size}, {0, 0, 0, 0.4});
  const double w = W - 16, x = 8;
  std::vector<int> main;
  for (int i = 0; i < static_cast<int>(buttons_.size()); ++i)
    if (i != cancel_index_) main.push_back(i);
  const double titleH = title.empty() ? 0 : 44;
  const double cancelH = cancel_index_ >= 0 ? 57 + 8 : 0;
  const double groupH = titleH + 57.0 * main.size();
  double y = H - 8 - cancelH - groupH;
  canvas.fill({{x, y}, {w, groupH}}, {0.97, 0.97, 0.97, 1}, 13);
  if (titleH > 0)
    canvas.text({{x + 16, y}, {w - 32, titleH}}, title, {"Helvetica", 13},
                {0.56, 0.56, 0.58, 1}, TextAlignment::Center);
  y += titleH;
  for (size_t k = 0; k < main.size(); ++k, y += 57) {
    if (k > 0 || titleH > 0)
      canvas.fill({{x, y}, {w, canvas.hairline()}}, kLine);
    const int i = main[k];
    canvas.text({{x + 8, y}, {w - 16, 57}}, buttons_[i], {"Helvetica", 20},
                i == destructive_index_ ? Color{1, 0.23, 0.19, 1} : kTintColor,
                TextAlignment::Center);
  }
  if (cancelH > 0) {
    const Rect r{{x, H - 8 - 57}, {w, 57}};
    canvas.fill(r, {1, 1, 1, 1}, 13);
    canvas.text(r, buttons_[cancel_index_], {"Helvetica-Bold", 20}, kTintColor,
                TextAlignment::Center);
  }
}
namespace {

struct PresentedSheet {
  std::shared_ptr<UIActionSheet> sheet;
};

std::shared_ptr<UIActionSheet>& presentedSlot() {
  auto& holder = platform::Process::current().slot<PresentedSheet>();
  if (!holder) holder = std::make_shared<PresentedSheet>();
  return holder->sheet;
}

}  // namespace

int UIActionSheet::addButtonWithTitle(std::string title) {
  buttons_.push_back(std::move(title));
  return static_cast<int>(buttons_.size()) - 1;
}

std::string UIActionSheet::buttonTitleAtIndex(int index) const {
  if (index < 0 || index >= static_cast<int>(buttons_.size())) return "";
  return buttons_[static_cast<size_t>(index)];
}

void UIActionSheet::showInView(const std::shared_ptr<UIView>& view) {
  shown_in_ = view;
  presentedSlot() = std::static_pointer_cast<UIActionSheet>(shared_from_this());
}

bool UIActionSheet::isVisible() const { return presentedSlot().get() == this; }

void UIActionSheet::dismissWithClickedButtonIndex(int index) {
  auto keep = shared_from_this();
  if (presentedSlot().get() == this) presentedSlot().reset();
  if (delegate) delegate(*this, index);
}

std::shared_ptr<UIActionSheet> UIActionSheet::presented() {
  return presentedSlot();
}

void UIAlertView::show() {
  auto alert = std::make_shared<platform::Alert>();
  alert->title = title;
  alert->message = message;
  alert->cancelButton = cancelButtonTitle;
  alert->otherButtons = otherButtonTitles;
  alert->tag = tag();
  alert->textInput = alertViewStyle == AlertViewStyle::PlainTextInput;
  alert->inputText = inputText;
  auto me = std::static_pointer_cast<UIAlertView>(shared_from_this());
  alert->onButton = [me](const platform::Alert& shown, int index) {
    if (shown.textInput) me->inputText = shown.inputText;
    if (me->delegate) me->delegate(*me, index);
  };
  platform::current().showAlert(alert);
}

std::string UIPasteboard::string() { return platform::current().pasteboard(); }

void UIPasteboard::setString(const std::string& text) {
  platform::current().setPasteboard(text);
}

}  // namespace zv::ui
