#include "platform/ui/sheets.h"

#include "platform/platform.h"
#include "platform/ui/button.h"
#include "platform/ui/canvas.h"

namespace zv::ui {

namespace {

// Where a sheet's buttons go on a screen of `screen`: the group of buttons
// (title first) at the bottom, the cancel button apart below it.
struct SheetPlaces {
  Rect group;
  double titleH = 0;
  std::vector<Rect> buttons;  // by button index
};

SheetPlaces sheetPlaces(Size screen, const UIActionSheet& sheet) {
  SheetPlaces p;
  const double W = screen.width, H = screen.height, w = W - 16, x = 8;
  const int n = static_cast<int>(sheet.buttons().size());
  const int cancel = sheet.cancelButtonIndex();
  const double shown = n - (cancel >= 0 && cancel < n ? 1 : 0);
  p.titleH = sheet.title.empty() ? 0 : 44;
  const double cancelH = cancel >= 0 && cancel < n ? 57 + 8 : 0;
  const double groupH = p.titleH + 57.0 * shown;
  p.group = {{x, H - 8 - cancelH - groupH}, {w, groupH}};
  double y = p.group.origin.y + p.titleH;
  p.buttons.resize(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) {
    if (i == cancel) {
      p.buttons[i] = {{x, H - 8 - 57}, {w, 57}};
    } else {
      p.buttons[i] = {{x, y}, {w, 57}};
      y += 57;
    }
  }
  return p;
}

}  // namespace

void UIActionSheet::layoutSubviews() {
  for (const auto& v : std::vector<std::shared_ptr<UIView>>(subviews()))
    v->removeFromSuperview();
  const SheetPlaces p = sheetPlaces(frame().size, *this);
  std::weak_ptr<UIActionSheet> weak =
      std::static_pointer_cast<UIActionSheet>(shared_from_this());
  for (size_t i = 0; i < buttons_.size(); ++i) {
    const int index = static_cast<int>(i);
    auto b = make<UIButton>();
    b->setFrame(p.buttons[i]);
    b->setTitle(buttons_[i]);
    b->setTitleFont(
        {index == cancel_index_ ? "Helvetica-Bold" : "Helvetica", 20});
    b->setTitleColor(index == destructive_index_ ? Color{1, 0.23, 0.19, 1}
                                                 : kTintColor);
    b->addTarget(kTouchUpInside, [weak, index](const rt::Id&) {
      if (auto me = weak.lock()) me->dismissWithClickedButtonIndex(index);
    });
    addSubview(b);
  }
}

void UIActionSheet::draw(Canvas& canvas) const {
  const Color kLine{0.7, 0.7, 0.72, 1};
  canvas.fill({{0, 0}, frame().size}, {0, 0, 0, 0.4});
  const SheetPlaces p = sheetPlaces(frame().size, *this);
  const double x = p.group.origin.x, w = p.group.size.width;
  canvas.fill(p.group, {0.97, 0.97, 0.97, 1}, 13);
  if (p.titleH > 0)
    canvas.text({{x + 16, p.group.origin.y}, {w - 32, p.titleH}}, title,
                {"Helvetica", 13}, {0.56, 0.56, 0.58, 1},
                TextAlignment::Center);
  // Lines between the group's rows; the cancel button is apart, rounded.
  bool first = p.titleH <= 0;
  for (size_t i = 0; i < p.buttons.size(); ++i) {
    if (static_cast<int>(i) == cancel_index_) continue;
    if (!first)
      canvas.fill({p.buttons[i].origin, {w, canvas.hairline()}}, kLine);
    first = false;
  }
  if (cancel_index_ >= 0 && cancel_index_ < static_cast<int>(buttons_.size()))
    canvas.fill(p.buttons[static_cast<size_t>(cancel_index_)], {1, 1, 1, 1},
                13);
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
