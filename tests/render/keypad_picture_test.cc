// The keypad's picture as the `zorvel phone --png` session draws it: the
// extension's highlighted runs are the only places the highlight colour
// shows, and each of them shows it; drawing leaves the screen's view tree
// and labels as they were.
#include <gtest/gtest.h>

#include <filesystem>

#include "dialer/keypad_controller.h"
#include "dialer/keypad_lcd_view.h"
#include "hosts/phone/app.h"
#include "platform/render/renderer.h"
#include "support/device_people.h"
#include "support/world.h"
#include "tools/zorvel/screens/scenes.h"

namespace zv {
namespace {

using testing::deviceContact;
using testing::writeDevicePeople;
using ui::Rect;

class KeypadPictureTest : public testing::World {
 protected:
  KeypadPictureTest() {
    writeDevicePeople(devicePath(""),
                      {deviceContact(1, "Mary", "Jones", "13801700000"),
                       deviceContact(2, "Marc", "Smith", "13800138000"),
                       deviceContact(3, "John", "Maris", "02162120241")});
    installChinaDatabase();
    installReadingTable();
    // Red runs: nothing else on the keypad screen is red.
    writeSettings({{"DialerNumberHighlightColor", 2},
                   {"DialerNameHighlightColor", 2},
                   {"DialerListHighlightColor", 2}});
    writeDevicePlist("/var/mobile/Library/Preferences/zorvel.keypad.plist",
                     {{"EnableSearch", true}});
  }
};

// The rectangle `view` covers on screen, cut by its clipping ancestors;
// nullopt when nothing of it shows.
std::optional<Rect> onScreen(const ui::UIView& view, platform::Size screen) {
  double x0 = 0, y0 = 0, x1 = view.frame().size.width,
         y1 = view.frame().size.height;
  const ui::UIView* v = &view;
  for (; v; v = v->superview().get()) {
    x0 += v->frame().origin.x, x1 += v->frame().origin.x;
    y0 += v->frame().origin.y, y1 += v->frame().origin.y;
    auto parent = v->superview();
    if (!parent) break;
    EXPECT_EQ(parent->scale(), 1);
    if (auto* scroll = dynamic_cast<const ui::UIScrollView*>(parent.get())) {
      x0 -= scroll->contentOffset().x, x1 -= scroll->contentOffset().x;
      y0 -= scroll->contentOffset().y, y1 -= scroll->contentOffset().y;
    }
    if (parent->clipsToBounds() || parent->cornerRadius() > 0 ||
        dynamic_cast<const ui::UIScrollView*>(parent.get())) {
      x0 = std::max(x0, 0.0), y0 = std::max(y0, 0.0);
      x1 = std::min(x1, parent->frame().size.width);
      y1 = std::min(y1, parent->frame().size.height);
    }
  }
  x0 = std::max(x0, 0.0), y0 = std::max(y0, 0.0);
  x1 = std::min(x1, screen.width), y1 = std::min(y1, screen.height);
  if (x1 <= x0 || y1 <= y0) return std::nullopt;
  return Rect{{x0, y0}, {x1 - x0, y1 - y0}};
}

void collectRuns(const std::shared_ptr<ui::UIView>& view, const ui::Color& c,
                 platform::Size screen, std::vector<Rect>& runs) {
  if (view->isHidden() || view->alpha() <= 0.01) return;
  if (auto label = std::dynamic_pointer_cast<ui::UILabel>(view))
    if (!label->text().empty() && label->textColor() == c)
      if (auto r = onScreen(*label, screen)) runs.push_back(*r);
  for (const auto& child : view->subviews())
    collectRuns(child, c, screen, runs);
}

TEST_F(KeypadPictureTest, HighlightColourShowsInsideTheHighlightedRunsOnly) {
  auto& phone = start(hosts::phoneHost(), "8.1", "4.7");
  auto app = phone.run([] { return hosts::PhoneApplication::shared(); });
  phone.run([&] {
    for (char c : std::string("627"))
      app->dialer->dialerView()->pad->pressKey(c);
  });
  advance(0);
  phone.run([&] {
    auto controller = platform::Process::current().slot<ZVKeypadController>();
    ASSERT_TRUE(controller && controller->keypadView());
    controller->keypadView()->lcdViews()[1]->perform(ui::Gesture::TouchEnded);
    ASSERT_TRUE(controller->listView() && !controller->listView()->isHidden());
  });
  advance(0);
  auto renderer = render::makeRenderer();
  phone.run([&] {
    const ui::Color red = *highlightColorForCode(2);
    const auto scene = cli::phoneScene(phone, *app);
    std::vector<Rect> runs;
    collectRuns(app->dialer->dialerView(), red, scene.points, runs);
    // The current page's name run and a run in each listed row at least.
    ASSERT_GE(runs.size(), 3u);

    auto image = renderer->draw(scene);
    ASSERT_EQ(image.pixelWidth(), 750);
    const ui::Pixel target{static_cast<uint8_t>(red.r * 255 + 0.5),
                           static_cast<uint8_t>(red.g * 255 + 0.5),
                           static_cast<uint8_t>(red.b * 255 + 0.5), 255};
    auto isRed = [&](ui::Pixel p) {
      return std::abs(p.r - target.r) < 24 && std::abs(p.g - target.g) < 24 &&
             std::abs(p.b - target.b) < 24;
    };
    std::vector<int> inside(runs.size());
    int outside = 0;
    for (int y = 0; y < image.pixelHeight(); ++y)
      for (int x = 0; x < image.pixelWidth(); ++x) {
        if (!isRed(image.pixel(x, y))) continue;
        bool in = false;
        for (size_t i = 0; i < runs.size(); ++i) {
          const Rect& r = runs[i];
          if (x >= r.origin.x * 2 - 1 &&
              x <= (r.origin.x + r.size.width) * 2 + 1 &&
              y >= r.origin.y * 2 - 1 &&
              y <= (r.origin.y + r.size.height) * 2 + 1) {
            ++inside[i];
            in = true;
          }
        }
        outside += !in;
      }
    EXPECT_EQ(outside, 0);
    for (size_t i = 0; i < runs.size(); ++i) {
      if (runs[i].size.width < 8) continue;
      EXPECT_GT(inside[i], 10) << "run " << i << " at " << runs[i].origin.x
                               << "," << runs[i].origin.y;
    }
  });
}

}  // namespace
}  // namespace zv
