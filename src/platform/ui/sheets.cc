#include "platform/ui/sheets.h"

#include "platform/platform.h"

namespace zv::ui {
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
