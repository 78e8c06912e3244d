#include "tools/zorvel/window/phone_input.h"

#include <glib.h>

#include <cmath>

#include "dialer/keypad_controller.h"
#include "platform/ui/scroll_view.h"
#include "platform/utf8.h"

namespace zv::window {
namespace {

template <typename T>
std::shared_ptr<T> ancestor(std::shared_ptr<ui::UIView> view) {
  for (; view; view = view->superview())
    if (auto t = std::dynamic_pointer_cast<T>(view)) return t;
  return nullptr;
}

// `gesture` on the view under `point` and up its superviews, until one
// answers it.
bool performAt(ui::UIWindow& window, ui::Point point, ui::Gesture gesture) {
  for (auto v = window.hitTest(point); v; v = v->superview())
    if (v->perform(gesture)) return true;
  return false;
}

// The pager of the extension when it is up over the keypad.
std::shared_ptr<ZVKeypadView> shownPager(hosts::PhoneApplication& app) {
  auto controller = platform::Process::current().slot<ZVKeypadController>();
  auto pager = controller ? controller->keypadView() : nullptr;
  return pager && pager->isVisible() &&
                 pager->superview() == app.dialer->dialerView()
             ? pager
             : nullptr;
}

// `text` less its last character.
std::string withoutLastCharacter(const std::string& text) {
  size_t last = 0;
  for (size_t i = 0; i < text.size(); i += utf8CharAt(text, i).bytes) last = i;
  return text.substr(0, last);
}

}  // namespace

PhoneInput::~PhoneInput() { cancelTimer(); }

void PhoneInput::cancelTimer() {
  if (timer_) g_source_remove(timer_);
  timer_ = 0;
}

void PhoneInput::pointerDown(ui::Point point) {
  cancelTimer();
  down_ = point;
  touching_ = true;
  moved_ = long_pressed_ = false;
  timer_ = g_timeout_add(
      static_cast<guint>(kLongPressSeconds * 1000),
      [](gpointer data) -> gboolean {
        auto* self = static_cast<PhoneInput*>(data);
        self->timer_ = 0;
        self->longPress();
        return G_SOURCE_REMOVE;
      },
      this);
}

void PhoneInput::pointerMoved(ui::Point point) {
  if (!touching_ || moved_) return;
  if (std::hypot(point.x - down_.x, point.y - down_.y) > kSlop) {
    moved_ = true;
    cancelTimer();
  }
}

void PhoneInput::pointerUp(ui::Point point) {
  if (!touching_) return;
  touching_ = false;
  cancelTimer();
  if (long_pressed_) return;  // the long press was the gesture
  pointerMoved(point);
  if (moved_)
    drag(down_, point);
  else
    tap(down_);
  port_.changed();
}

void PhoneInput::longPress() {
  if (!touching_ || moved_) return;
  long_pressed_ = true;
  auto window = port_.window();
  performAt(*window, down_, ui::Gesture::LongPress);
  port_.changed();
}

void PhoneInput::tap(ui::Point point) {
  auto window = port_.window();
  if (!performAt(*window, point, ui::Gesture::Tap))
    performAt(*window, point, ui::Gesture::TouchEnded);
}

void PhoneInput::drag(ui::Point from, ui::Point to) {
  auto window = port_.window();
  auto scroll = ancestor<ui::UIScrollView>(window->hitTest(from));
  if (!scroll) return;
  const double dx = to.x - from.x, dy = to.y - from.y;
  if (scroll->isPagingEnabled()) {
    // A swipe turns one page, whatever its length.
    if (std::abs(dx) >= std::abs(dy))
      scroll->drag(dx < 0 ? scroll->frame().size.width
                          : -scroll->frame().size.width);
    else
      scroll->drag(0, dy < 0 ? scroll->frame().size.height
                             : -scroll->frame().size.height);
  } else {
    scroll->drag(-dx, -dy);
  }
}

void PhoneInput::key(const std::string& name, uint32_t character) {
  if (type(name, character)) port_.changed();
}

bool PhoneInput::typeInAlert(ui::UIWindow& window, const std::string& name,
                             uint32_t character) {
  auto& alert = *window.alert;
  if (name == "BackSpace") {
    alert.inputText = withoutLastCharacter(alert.inputText);
  } else if (name == "Return" || name == "KP_Enter") {
    const int last = static_cast<int>(alert.buttons().size()) - 1;
    if (last >= 0 && window.pressAlertButton) window.pressAlertButton(last);
  } else if (character >= 0x20 && g_unichar_validate(character)) {
    char bytes[8] = {};
    alert.inputText.append(bytes, g_unichar_to_utf8(character, bytes));
  } else {
    return false;
  }
  return true;
}

bool PhoneInput::type(const std::string& name, uint32_t character) {
  if (!app_.dialer) return false;
  auto window = port_.window();
  // Something modal over the app takes the keys (text alerts) or keeps
  // them from it.
  if (window->alert)
    return window->alert->textInput && typeInAlert(*window, name, character);
  if (ui::UIActionSheet::presented()) return false;
  auto pad = app_.dialer->dialerView()->pad;
  if (name == "BackSpace") {
    auto pager = shownPager(app_);
    if (pager && pager->deleteButton()->isVisible())
      pager->deleteButton()->touch();
    else
      pad->pressDelete();
    return true;
  }
  if (name == "Return" || name == "KP_Enter") {
    pad->pressCall();
    return true;
  }
  if (character == '+') {
    pad->holdZero();
    return true;
  }
  if ((character >= '0' && character <= '9') || character == '*' ||
      character == '#') {
    pad->pressKey(static_cast<char>(character));
    return true;
  }
  return false;
}

}  // namespace zv::window
