#include "tools/zorvel/window/phone_input.h"

#include <glib.h>

#include <cmath>

#include "dialer/keypad_controller.h"
#include "platform/render/chrome_layout.h"
#include "platform/ui/button.h"
#include "platform/ui/scroll_view.h"
#include "platform/ui/sheets.h"
#include "platform/ui/table_view.h"
#include "tools/zorvel/screens/scenes.h"

namespace zv::window {
namespace {

// A view under a screen point: the view, the layer's root view it is in,
// and the point in that root's coordinates.
struct Hit {
  std::shared_ptr<ui::UIView> view, root;
  ui::Point inRoot;
};

Hit hitAt(const render::Scene& scene, ui::Point p) {
  for (auto it = scene.layers.rbegin(); it != scene.layers.rend(); ++it) {
    const ui::Rect frame = it->frame.value_or(it->view->frame());
    const ui::Point local{p.x - frame.origin.x, p.y - frame.origin.y};
    if (auto view = it->view->hitTest(local)) return {view, it->view, local};
  }
  return {};
}

template <typename T>
std::shared_ptr<T> ancestor(std::shared_ptr<ui::UIView> view) {
  for (; view; view = view->superview())
    if (auto t = std::dynamic_pointer_cast<T>(view)) return t;
  return nullptr;
}

// `p` (in `root`'s coordinates) in the coordinates of `view` inside it.
ui::Point pointIn(const ui::UIView& view, const ui::UIView& root, ui::Point p) {
  for (const ui::UIView* v = &view; v && v != &root; v = v->superview().get()) {
    p.x -= v->frame().origin.x;
    p.y -= v->frame().origin.y;
  }
  return p;
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
  const render::Scene scene = port_.scene();
  if (scene.alert || scene.sheet) return;
  Hit hit = hitAt(scene, down_);
  if (!hit.view) return;
  if (auto dialer = ancestor<hosts::PhoneDialerView>(hit.view);
      dialer && hit.view == dialer) {
    const ui::Point p = pointIn(*dialer, *hit.root, hit.inRoot);
    for (const auto& key : cli::padKeys(dialer->frame().size))
      if (key.key == '0' && render::contains(key.rect, p))
        dialer->pad->holdZero();
  } else {
    for (auto v = hit.view; v; v = v->superview())
      if (v->perform(ui::Gesture::LongPress)) break;
  }
  port_.changed();
}

void PhoneInput::tap(ui::Point point) {
  const render::Scene scene = port_.scene();
  if (scene.alert) {
    if (auto i = render::placeAt(
            render::alertLayout(scene.points, *scene.alert).buttons, point))
      port_.pressAlertButton(*i);
    return;
  }
  if (scene.sheet) {
    auto sheet = ui::UIActionSheet::presented();
    if (auto i = render::placeAt(
            render::sheetLayout(scene.points, *scene.sheet).buttons, point);
        i && sheet)
      sheet->dismissWithClickedButtonIndex(*i);
    return;
  }
  if (scene.tabBar) {
    if (auto i = render::placeAt(
            render::tabPlaces(scene.points, scene.tabBar->titles.size()),
            point)) {
      app_.selectTab(*i);
      return;
    }
  }
  Hit hit = hitAt(scene, point);
  if (!hit.view) return;
  if (auto button = ancestor<ui::UIButton>(hit.view)) {
    button->touch();
    return;
  }
  if (auto cell = ancestor<ui::UITableViewCell>(hit.view)) {
    if (auto table = ancestor<ui::UITableView>(cell))
      for (const auto& [row, shown] : table->visibleCells())
        if (shown == cell) {
          table->selectRow(row);
          return;
        }
  }
  if (auto dialer = ancestor<hosts::PhoneDialerView>(hit.view);
      dialer && hit.view == dialer) {
    const ui::Point p = pointIn(*dialer, *hit.root, hit.inRoot);
    for (const auto& key : cli::padKeys(dialer->frame().size)) {
      if (!render::contains(key.rect, p)) continue;
      if (key.key == cli::kCallKey)
        dialer->pad->pressCall();
      else
        dialer->pad->pressKey(key.key);
      return;
    }
    return;
  }
  for (auto v = hit.view; v; v = v->superview())
    if (v->perform(ui::Gesture::Tap) || v->perform(ui::Gesture::TouchEnded))
      return;
}

void PhoneInput::drag(ui::Point from, ui::Point to) {
  const render::Scene scene = port_.scene();
  if (scene.alert || scene.sheet) return;
  Hit hit = hitAt(scene, from);
  auto scroll = ancestor<ui::UIScrollView>(hit.view);
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

bool PhoneInput::type(const std::string& name, uint32_t character) {
  if (!app_.dialer) return false;
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
