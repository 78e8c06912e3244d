#include "platform/ui/window.h"

#include <algorithm>

#include "platform/ui/button.h"
#include "platform/ui/canvas.h"
#include "platform/ui/text_metrics.h"

namespace zv::ui {
namespace {

const Color kPanel{0.97, 0.97, 0.97, 1};
const Color kLine{0.7, 0.7, 0.72, 1};
const Color kDim{0, 0, 0, 0.4};

bool unsized(const UIView& v) {
  return v.frame().size.width <= 0 || v.frame().size.height <= 0;
}

bool dark(const std::optional<Color>& c) {
  return c && c->a > 0.5 && 0.3 * c->r + 0.59 * c->g + 0.11 * c->b < 0.5;
}

}  // namespace

namespace {

// Where an alert's parts go on a screen of `screen`: the box, the height of
// its text part, and the buttons' frames (in screen points).
struct AlertPlaces {
  Rect box;
  double titleH = 0, messageH = 0, inputH = 0, bodyH = 0;
  std::vector<Rect> buttons;
};

AlertPlaces alertPlaces(Size screen, const platform::Alert& alert) {
  AlertPlaces p;
  const double w = 270;
  const size_t n = alert.buttons().size();
  const bool sideBySide = n == 2;
  const double rows = n == 0 ? 0 : sideBySide ? 1 : static_cast<double>(n);
  p.titleH = alert.title.empty() ? 0 : 24;
  p.messageH =
      alert.message.empty()
          ? 0
          : 18 * std::min(6.0, 1 + textWidth(alert.message, {"Helvetica", 13}) /
                                       (w - 32));
  p.inputH = alert.textInput ? 36 : 0;
  p.bodyH = 20 + p.titleH + p.messageH + p.inputH + 18;
  const double h = p.bodyH + rows * 44;
  p.box = {{(screen.width - w) / 2, (screen.height - h) / 2}, {w, h}};
  const double x = p.box.origin.x, y = p.box.origin.y + p.bodyH;
  for (size_t i = 0; i < n; ++i)
    p.buttons.push_back(sideBySide ? Rect{{x + i * w / 2, y}, {w / 2, 44}}
                                   : Rect{{x, y + i * 44}, {w, 44}});
  return p;
}

}  // namespace

void UIAlertPanel::layoutSubviews() {
  for (const auto& v : std::vector<std::shared_ptr<UIView>>(subviews()))
    v->removeFromSuperview();
  if (!alert) return;
  const AlertPlaces places = alertPlaces(frame().size, *alert);
  const std::vector<std::string> titles = alert->buttons();
  for (size_t i = 0; i < titles.size(); ++i) {
    auto b = make<UIButton>();
    b->setFrame(places.buttons[i]);
    b->setTitle(titles[i]);
    const bool cancel = static_cast<int>(i) == alert->cancelButtonIndex();
    b->setTitleFont({cancel ? "Helvetica-Bold" : "Helvetica", 17});
    b->setTitleColor(kTintColor);
    b->addTarget(kTouchUpInside, [press = press, i](const rt::Id&) {
      if (press) press(static_cast<int>(i));
    });
    addSubview(b);
  }
}

void UIAlertPanel::draw(Canvas& canvas) const {
  const Size screen = frame().size;
  canvas.fill({{0, 0}, screen}, kDim);
  if (!alert) return;
  const AlertPlaces p = alertPlaces(screen, *alert);
  const double x = p.box.origin.x, w = p.box.size.width;
  canvas.fill(p.box, kPanel, 13);
  double cy = p.box.origin.y + 20;
  if (p.titleH > 0)
    canvas.text({{x + 16, cy}, {w - 32, p.titleH}}, alert->title,
                {"Helvetica-Bold", 17}, {0, 0, 0, 1}, TextAlignment::Center,
                LineBreakMode::WordWrap, 0);
  cy += p.titleH;
  if (p.messageH > 0)
    canvas.text({{x + 16, cy}, {w - 32, p.messageH}}, alert->message,
                {"Helvetica", 13}, {0, 0, 0, 1}, TextAlignment::Center,
                LineBreakMode::WordWrap, 0);
  cy += p.messageH;
  if (p.inputH > 0) {
    canvas.fill({{x + 16, cy + 6}, {w - 32, 26}}, {1, 1, 1, 1}, 4);
    canvas.text({{x + 20, cy + 6}, {w - 40, 26}}, alert->inputText,
                {"Helvetica", 13}, {0, 0, 0, 1});
  }
  // The lines between the buttons; the buttons draw their titles.
  const double hair = canvas.hairline();
  for (size_t i = 0; i < p.buttons.size(); ++i) {
    const Rect& r = p.buttons[i];
    canvas.fill({r.origin, {r.size.width, hair}}, kLine);
    if (p.buttons.size() == 2 && i == 1)
      canvas.fill({r.origin, {hair, r.size.height}}, kLine);
  }
}

std::shared_ptr<UIWindow> UIWindow::makeForScreen(Size points) {
  auto w = make<UIWindow>();
  w->setFrame({{0, 0}, points});
  w->setBackgroundColor(Color{1, 1, 1, 1});
  return w;
}

const std::shared_ptr<UIStatusBar>& UIWindow::statusBar() {
  if (!status_bar_) status_bar_ = make<UIStatusBar>();
  return status_bar_;
}

void UIWindow::show(const std::shared_ptr<UIViewController>& vc,
                    const Rect& area) {
  if (!vc) return;
  if (auto presented = vc->presentedViewController()) {
    show(presented, bounds());
    return;
  }
  if (auto tabs = std::dynamic_pointer_cast<UITabBarController>(vc)) {
    tab_bar_ = make<UITabBar>();
    tab_bar_->setFrame(
        {{area.origin.x, area.origin.y + area.size.height - UITabBar::kHeight},
         {area.size.width, UITabBar::kHeight}});
    tab_bar_->show(tabs);
    show(
        tabs->selectedViewController(),
        {area.origin, {area.size.width, area.size.height - UITabBar::kHeight}});
    addSubview(tab_bar_);
    return;
  }
  if (auto nav = std::dynamic_pointer_cast<UINavigationController>(vc)) {
    auto top = nav->topViewController();
    if (!top) return;
    const double bar = UINavigationBar::kHeight - area.origin.y;
    navigation_bar_ = make<UINavigationBar>();
    navigation_bar_->setFrame({area.origin, {area.size.width, bar}});
    navigation_bar_->show(nav, top);
    show(top, {{area.origin.x, area.origin.y + bar},
               {area.size.width, area.size.height - bar}});
    addSubview(navigation_bar_);
    return;
  }
  auto view = vc->view();
  // The platform sizes a controller's view to the area it shows in; the
  // model's hosts often leave theirs without a frame.
  if (unsized(*view)) view->setFrame(area);
  addSubview(view);
}

void UIWindow::layoutSubviews() {
  for (const auto& v : std::vector<std::shared_ptr<UIView>>(subviews()))
    v->removeFromSuperview();
  navigation_bar_.reset();
  tab_bar_.reset();
  show(root_, bounds());
  for (const auto& o : overlays) {
    if (unsized(*o)) o->setFrame(bounds());
    addSubview(o);
  }
  auto& bar = statusBar();
  bar->setFrame({{0, 0}, {frame().size.width, UIStatusBar::kHeight}});
  // Light content over a dark screen without a navigation bar.
  bool darkScreen = dark(backgroundColor());
  for (const auto& v : subviews())
    if (v->frame().origin.y <= 0 && v->backgroundColor())
      darkScreen = dark(v->backgroundColor());
  bar->lightContent = !navigation_bar_ && darkScreen;
  addSubview(bar);
  if (alert) {
    auto panel = make<UIAlertPanel>();
    panel->alert = alert;
    panel->press = pressAlertButton;
    panel->setFrame(bounds());
    addSubview(panel);
  } else if (auto sheet = UIActionSheet::presented()) {
    sheet->setFrame(bounds());
    addSubview(sheet);
  }
}

}  // namespace zv::ui
