#include "hosts/kit/call_views.h"

#include "platform/platform.h"
#include "platform/ui/canvas.h"

namespace zv::hosts {
namespace {

const ui::Color kWhite{1, 1, 1, 1};

// A new T, its class registered in the process on first use.
template <typename T>
std::shared_ptr<T> makeView(const char* superclass) {
  rt::Class* cls = rt::getClass(T::kClassName);
  if (!cls) cls = rt::registerClass<T>(T::kClassName, superclass);
  return ui::makeAs<T>(cls);
}

std::shared_ptr<ui::UIButton> roundButton(const std::string& title,
                                          const ui::Color& colour,
                                          bool hangUp) {
  auto b = makeView<CallAnswerButton>("UIButton");
  b->disc = colour;
  b->hangUp = hangUp;
  b->setAccessibilityLabel(title);
  return b;
}

}  // namespace

std::shared_ptr<CallAnswerControls> CallAnswerControls::make(
    double screenWidth, double screenHeight) {
  auto c = makeView<CallAnswerControls>("UIView");
  c->setFrame({{0, screenHeight - 150}, {screenWidth, 130}});
  c->decline_ = roundButton("Decline", {0.9, 0.22, 0.2, 1}, true);
  c->answer_ = roundButton("Answer", {0.3, 0.85, 0.39, 1}, false);
  c->slider_ = makeView<CallAnswerSlider>("UIView");
  c->slider_->setAccessibilityLabel("slide to answer");
  std::weak_ptr<CallAnswerControls> weak = c;
  c->decline_->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
    if (auto me = weak.lock(); me && me->call_)
      platform::current().telephony().disconnect(me->call_);
  });
  c->answer_->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
    if (auto me = weak.lock(); me && me->call_)
      platform::current().telephony().answer(me->call_);
  });
  for (const auto& v : std::initializer_list<std::shared_ptr<ui::UIView>>{
           c->decline_, c->answer_, c->slider_})
    c->addSubview(v);
  c->show(Mode::None, 0);
  return c;
}

void CallAnswerControls::show(Mode mode, platform::CallId call) {
  mode_ = mode;
  call_ = call;
  setHidden(mode == Mode::None);
  decline_->setHidden(mode != Mode::Buttons);
  answer_->setHidden(mode != Mode::Buttons);
  slider_->setHidden(mode != Mode::Slide);
}

void CallAnswerControls::layoutSubviews() {
  const double w = frame().size.width, d = 72;
  decline_->setFrame({{w / 4 - d / 2, 10}, {d, d + 28}});
  answer_->setFrame({{3 * w / 4 - d / 2, 10}, {d, d + 28}});
  slider_->setFrame({{20, 40}, {w - 40, 64}});
}

void CallAnswerButton::draw(ui::Canvas& canvas) const {
  const double d = frame().size.width;
  canvas.fill({{0, 0}, {d, d}}, disc, d / 2);
  // The handset: a bar with its ends bent towards the mouth.
  const double c = d / 2, k = hangUp ? 1 : -1;
  canvas.path({{c - 16, c + k * 4},
               {c - 14, c - k * 4},
               {c + 14, c - k * 4},
               {c + 16, c + k * 4}},
              kWhite, 6);
  canvas.text({{-10, d + 4}, {d + 20, 22}}, accessibilityLabel(),
              {"Helvetica", 17}, kWhite, ui::TextAlignment::Center);
}

void CallAnswerSlider::draw(ui::Canvas& canvas) const {
  const auto size = frame().size;
  canvas.fill({{0, 0}, size}, {1, 1, 1, 0.18}, size.height / 2);
  canvas.fill({{4, 4}, {size.height - 8, size.height - 8}}, kWhite,
              (size.height - 8) / 2);
  // The knob's arrow.
  const double cx = size.height / 2, cy = size.height / 2;
  canvas.path({{cx - 8, cy},
               {cx + 8, cy},
               {cx + 2, cy - 6},
               {cx + 8, cy},
               {cx + 2, cy + 6}},
              {0.3, 0.85, 0.39, 1}, 3);
  canvas.text({{size.height, 0}, {size.width - size.height - 10, size.height}},
              "slide to answer", {"HelveticaNeue-Light", 22}, kWhite,
              ui::TextAlignment::Center);
}

std::shared_ptr<LockScreenView> LockScreenView::make(platform::Size screen) {
  auto v = makeView<LockScreenView>("UIView");
  v->setFrame({{0, 0}, screen});
  v->setBackgroundColor(kWallpaper);
  return v;
}

void LockScreenView::draw(ui::Canvas& canvas) const {
  const double w = frame().size.width;
  canvas.text({{0, 50}, {w, 80}}, "9:41", {"HelveticaNeue-Light", 72}, kWhite,
              ui::TextAlignment::Center);
}

}  // namespace zv::hosts
