#include "platform/ui/bars.h"

#include <cctype>
#include <cmath>

#include "platform/ui/canvas.h"

namespace zv::ui {
namespace {

const Color kBarColour{0.97, 0.97, 0.97, 0.98};
const Color kBarLine{0.7, 0.7, 0.72, 1};
const Color kUnselected{0.57, 0.57, 0.57, 1};

// A glyph of `name` in a 26-point square at `at`, stroked in `c`: a star,
// a clock, a person, a keypad grid, a tape; a rounded square for others.
void tabGlyph(Canvas& canvas, const std::string& name, Point at,
              const Color& c) {
  const double x = at.x, y = at.y, s = 26, m = s / 2;
  if (name == "favorites") {
    std::vector<Point> star;
    for (int i = 0; i < 10; ++i) {
      const double r = i % 2 ? 5.0 : 12.0, a = -M_PI / 2 + i * M_PI / 5;
      star.push_back({x + m + r * std::cos(a), y + m + 1 + r * std::sin(a)});
    }
    canvas.path(star, c, 1.5, true);
  } else if (name == "recents") {
    canvas.strokeRect({{x + 2, y + 2}, {s - 4, s - 4}}, c, 1.5, m);
    canvas.path({{x + m, y + 7}, {x + m, y + m}, {x + m + 6, y + m}}, c, 1.5);
  } else if (name == "contacts") {
    canvas.strokeRect({{x + 8, y + 2}, {10, 10}}, c, 1.5, 5);
    canvas.path({{x + 3, y + s - 2},
                 {x + 5, y + 16},
                 {x + 9, y + 14},
                 {x + 17, y + 14},
                 {x + 21, y + 16},
                 {x + 23, y + s - 2}},
                c, 1.5, true);
  } else if (name == "keypad") {
    for (int i = 0; i < 12; ++i)
      canvas.fill({{x + 4 + (i % 3) * 7, y + 1 + (i / 3) * 6.5}, {4.5, 4.5}}, c,
                  2.25);
  } else if (name == "voicemail") {
    canvas.strokeRect({{x + 1, y + 8}, {10, 10}}, c, 1.5, 5);
    canvas.strokeRect({{x + 15, y + 8}, {10, 10}}, c, 1.5, 5);
    canvas.path({{x + 6, y + 18}, {x + 20, y + 18}}, c, 1.5);
  } else {
    canvas.strokeRect({{x + 2, y + 2}, {s - 4, s - 4}}, c, 1.5, 5);
  }
}

std::string capitalised(std::string s) {
  if (!s.empty()) s[0] = static_cast<char>(std::toupper(s[0]));
  return s;
}

}  // namespace

void UIStatusBar::draw(Canvas& canvas) const {
  const double w = frame().size.width;
  const Color c = lightContent ? Color{1, 1, 1, 1} : Color{0, 0, 0, 1};
  for (int i = 0; i < 5; ++i)
    canvas.fill({{5.4 + i * 6.5, 7.4}, {5.2, 5.2}}, c, 2.6);
  canvas.text({{42, 0}, {w / 2 - 70, 20}}, carrier, {"Helvetica", 12}, c);
  canvas.text({{w / 2 - 40, 0}, {80, 20}}, time, {"Helvetica-Bold", 12}, c,
              TextAlignment::Center);
  canvas.strokeRect({{w - 32.5, 5.5}, {24, 10}}, c, 1);
  canvas.fill({{w - 31, 7}, {21, 7}}, c);
  canvas.fill({{w - 8, 8.5}, {2, 4}}, c);
}

void UINavigationBar::show(const std::shared_ptr<UINavigationController>& nav,
                           const std::shared_ptr<UIViewController>& top) {
  for (const auto& v : std::vector<std::shared_ptr<UIView>>(subviews()))
    v->removeFromSuperview();
  title_ = make<UILabel>();
  title_->setFont({"Helvetica-Bold", 17});
  title_->setTextAlignment(TextAlignment::Center);
  auto item = top->navigationItem();
  title_->setText(item->title.empty() ? top->title : item->title);
  addSubview(title_);
  auto barButton = [&](const std::shared_ptr<UIBarButtonItem>& bar,
                       TextAlignment alignment) {
    auto b = make<UIButton>();
    b->setTitle(bar->title);
    b->setTitleColor(kTintColor);
    b->setTitleAlignment(alignment);
    std::weak_ptr<UIBarButtonItem> weak = bar;
    b->addTarget(kTouchUpInside, [weak](const rt::Id&) {
      if (auto i = weak.lock()) i->press();
    });
    return b;
  };
  left_.reset();
  right_.reset();
  if (item->leftBarButtonItem) {
    left_ = barButton(item->leftBarButtonItem, TextAlignment::Left);
  } else if (nav->viewControllers().size() > 1) {
    left_ = make<UIButton>();
    left_->setTitle("< Back");
    left_->setTitleColor(kTintColor);
    left_->setTitleAlignment(TextAlignment::Left);
    std::weak_ptr<UINavigationController> weak = nav;
    left_->addTarget(kTouchUpInside, [weak](const rt::Id&) {
      if (auto n = weak.lock()) n->popViewControllerAnimated(true);
    });
  }
  if (item->rightBarButtonItem)
    right_ = barButton(item->rightBarButtonItem, TextAlignment::Right);
  if (left_) addSubview(left_);
  if (right_) addSubview(right_);
}

void UINavigationBar::layoutSubviews() {
  const double w = frame().size.width;
  if (title_) title_->setFrame({{80, 20}, {w - 160, 44}});
  if (left_) left_->setFrame({{8, 20}, {72, 44}});
  if (right_) right_->setFrame({{w - 80, 20}, {72, 44}});
}

void UINavigationBar::draw(Canvas& canvas) const {
  const auto size = frame().size;
  canvas.fill({{0, 0}, size}, kBarColour);
  canvas.fill(
      {{0, size.height - canvas.hairline()}, {size.width, canvas.hairline()}},
      kBarLine);
}

void UITabBarButton::draw(Canvas& canvas) const {
  const auto size = frame().size;
  const Color& c = selected ? kTintColor : kUnselected;
  tabGlyph(canvas, name, {(size.width - 26) / 2, 4}, c);
  canvas.text({{0, size.height - 18}, {size.width, 14}}, capitalised(name),
              {"Helvetica", 10}, c, TextAlignment::Center);
}

void UITabBar::show(const std::shared_ptr<UITabBarController>& tabs) {
  for (const auto& b : buttons_) b->removeFromSuperview();
  buttons_.clear();
  const auto& vcs = tabs->viewControllers();
  std::weak_ptr<UITabBarController> weak = tabs;
  for (size_t i = 0; i < vcs.size(); ++i) {
    auto b = make<UITabBarButton>();
    b->name = vcs[i]->title;
    b->selected = static_cast<int>(i) == tabs->selectedIndex();
    b->setAccessibilityLabel(capitalised(b->name));
    b->addTarget(kTouchUpInside, [weak, i](const rt::Id&) {
      if (auto t = weak.lock()) t->setSelectedIndex(static_cast<int>(i));
    });
    buttons_.push_back(b);
    addSubview(b);
  }
}

void UITabBar::layoutSubviews() {
  if (buttons_.empty()) return;
  const double w = frame().size.width / buttons_.size();
  for (size_t i = 0; i < buttons_.size(); ++i)
    buttons_[i]->setFrame({{i * w, 0}, {w, frame().size.height}});
}

void UITabBar::draw(Canvas& canvas) const {
  canvas.fill({{0, 0}, frame().size}, kBarColour);
  canvas.fill({{0, 0}, {frame().size.width, canvas.hairline()}}, kBarLine);
}

}  // namespace zv::ui
