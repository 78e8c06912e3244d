// The renderer checked by what its pictures hold (their pixel size on
// every screen is tests/tools/pictures_cli_test.cc's).
#include <gtest/gtest.h>

#include "platform/render/renderer.h"
#include "platform/render/text_painter.h"
#include "platform/ui/text_metrics.h"
#include "platform/ui/text_view.h"
#include "platform/ui/window.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using ui::Pixel;

bool near(Pixel p, Pixel q, int tolerance = 8) {
  return std::abs(p.r - q.r) <= tolerance && std::abs(p.g - q.g) <= tolerance &&
         std::abs(p.b - q.b) <= tolerance && std::abs(p.a - q.a) <= tolerance;
}

// Pixels of `image` inside the point rectangle `r` that are near `colour`.
int countIn(const ui::Image& image, const ui::Rect& r, Pixel colour,
            int tolerance = 8) {
  int n = 0;
  const double s = image.scale();
  for (int y = int(r.origin.y * s); y < int((r.origin.y + r.size.height) * s);
       ++y)
    for (int x = int(r.origin.x * s); x < int((r.origin.x + r.size.width) * s);
         ++x)
      n += near(image.pixel(x, y), colour, tolerance);
  return n;
}

class RenderTest : public testing::SimTest {
 protected:
  RenderTest() : proc_(world_.launch("com.example.render")) {}
  // A 4-inch screen at scale 2 showing `layer` over white.
  render::Scene scene(std::shared_ptr<ui::UIView> layer) {
    render::Scene s;
    s.points = {320, 568};
    s.scale = 2;
    s.layers.push_back({std::move(layer), std::nullopt});
    return s;
  }
  // A screen-sized root view holding `child`.
  static std::shared_ptr<ui::UIView> screenWith(
      std::shared_ptr<ui::UIView> child) {
    auto root = ui::make<ui::UIView>();
    root->setFrame({{0, 0}, {320, 568}});
    root->addSubview(std::move(child));
    return root;
  }
  std::unique_ptr<render::Renderer> renderer_ = render::makeRenderer();
  platform::SimProcess& proc_;
};

TEST_F(RenderTest, HiddenViewsAndTheirSubviewsLeaveNoPixels) {
  proc_.run([&] {
    const Pixel red{255, 0, 0, 255};
    auto box = ui::make<ui::UIView>();
    box->setFrame({{40, 100}, {100, 100}});
    box->setBackgroundColor(ui::Color{1, 0, 0, 1});
    auto inner = ui::make<ui::UILabel>();
    inner->setFrame({{0, 0}, {100, 30}});
    inner->setText("Hidden");
    inner->setTextColor({1, 0, 0, 1});
    box->addSubview(inner);
    auto root = screenWith(box);
    auto s = scene(root);
    const ui::Rect whole{{0, 0}, {320, 568}};
    EXPECT_EQ(countIn(renderer_->draw(s), {{40, 100}, {100, 100}}, red),
              200 * 200);
    box->setHidden(true);
    EXPECT_EQ(countIn(renderer_->draw(s), whole, red), 0);
    box->setHidden(false);
    box->setAlpha(0);
    EXPECT_EQ(countIn(renderer_->draw(s), whole, red), 0);
    // Half transparent: the box and its label blend with the white screen.
    box->setAlpha(0.5);
    EXPECT_EQ(countIn(renderer_->draw(s), {{40, 130}, {100, 70}},
                      {255, 128, 128, 255}),
              200 * 140);
    // Drawing read the tree and changed nothing in it.
    EXPECT_EQ(box->frame(), (ui::Rect{{40, 100}, {100, 100}}));
    EXPECT_EQ(root->subviews().size(), 1u);
  });
}

// A label's text wraps over at most its number of lines (0: as many as its
// height holds); a one-line label stays on one line.
TEST_F(RenderTest, LabelTextTakesAtMostItsNumberOfLines) {
  proc_.run([&] {
    // The height (points) of the band of rows the text's ink covers.
    auto inkHeight = [&](int lines) {
      auto label = ui::make<ui::UILabel>();
      label->setFrame({{10, 100}, {200, 160}});
      label->setFont({"Helvetica", 15});
      label->setText(
          "A long preview of the last message that cannot fit on two lines "
          "of this label, so that its second line has to end early.");
      label->setNumberOfLines(lines);
      auto image = renderer_->draw(scene(screenWith(label)));
      int top = -1, bottom = -1;
      for (int y = 0; y < image.pixelHeight(); ++y)
        for (int x = 0; x < image.pixelWidth(); ++x)
          if (image.pixel(x, y).r < 128) {
            if (top < 0) top = y;
            bottom = y;
            break;
          }
      return (bottom - top + 1) / image.scale();
    };
    const double one = inkHeight(1), two = inkHeight(2), all = inkHeight(0);
    EXPECT_LT(one, 20);
    EXPECT_GT(two, one + 10);
    EXPECT_LT(two, 2 * 20);
    EXPECT_GT(all, two + 10);
  });
}

TEST_F(RenderTest, RoundAvatarShowsThePictureInsideAndTheScreenInTheCorners) {
  proc_.run([&] {
    const Pixel green{0, 200, 0, 255}, white{255, 255, 255, 255};
    auto avatar = ui::make<ui::UIImageView>();
    avatar->setFrame({{100, 100}, {40, 40}});
    avatar->setCornerRadius(20);
    avatar->setImage(
        std::make_shared<const ui::Image>(ui::Image::filled(80, 80, 2, green)));
    const auto s = scene(avatar);
    auto image = renderer_->draw(s);
    // The middle is the picture; a square around it well inside the circle
    // too.
    EXPECT_EQ(countIn(image, {{110, 110}, {20, 20}}, green), 40 * 40);
    // Each corner of the frame, outside the circle, is the white screen.
    for (auto [x, y] :
         {std::pair{100, 100}, {136, 100}, {100, 136}, {136, 136}})
      EXPECT_EQ(countIn(image, {{double(x), double(y)}, {4, 4}}, white), 8 * 8)
          << x << "," << y;
    // Scaled by its transform to half about its centre: the picture covers
    // only the middle.
    avatar->setScale(0.5);
    image = renderer_->draw(s);
    EXPECT_EQ(countIn(image, {{100, 100}, {8, 40}}, green), 0);
    EXPECT_EQ(countIn(image, {{116, 116}, {8, 8}}, green), 16 * 16);
  });
}

TEST_F(RenderTest,
       ChineseNameOnTheLatinFontDrawsFallbackGlyphsAtTheModelsWidth) {
  proc_.run([&] {
    render::TextPainter text;
    const ui::Font font{"Helvetica", 20};
    // The fallback face's ideographs are one em wide, as the model counts.
    EXPECT_NEAR(text.naturalWidth("张伟", font), 40, 2);
    EXPECT_DOUBLE_EQ(ui::textWidth("张伟", font), 40);
    // The model measures with the pinned faces' own advances: Pango's
    // width and the model's agree to the model's quarter-point rounding,
    // regular and bold, Latin-1 included.
    for (const char* s : {"Elizabeth Müller", "+86 138 0013 8000", "Mobile",
                          "WWW iii MMM", "(0)-9/ß,é;Ä"})
      for (const char* face : {"Helvetica", "Helvetica-Bold"}) {
        const ui::Font f{face, 17};
        // Up to a quarter point, give or take the table's thousandths of an
        // em and Pango's 1/1024 units.
        const double over = ui::textWidth(s, f) - text.naturalWidth(s, f);
        EXPECT_GE(over, -0.03) << s << " " << face;
        EXPECT_LT(over, 0.27) << s << " " << face;
      }

    auto label = ui::make<ui::UILabel>();
    label->setFrame({{20, 100}, {200, 30}});
    label->setFont(font);
    label->setText("张伟 Wei");
    label->setTextColor({0, 0, 1, 1});
    auto image = renderer_->draw(scene(label));
    const Pixel blue{0, 0, 255, 255};
    // Ink of both ideographs, and nothing past the measured text.
    EXPECT_GT(countIn(image, {{20, 100}, {20, 30}}, blue, 40), 20);
    EXPECT_GT(countIn(image, {{40, 100}, {20, 30}}, blue, 40), 20);
    const double end = 20 + ui::textWidth(label->text(), font);
    EXPECT_EQ(countIn(image, {{end + 1, 100}, {220 - end, 30}}, blue, 120), 0);
  });
}

TEST_F(RenderTest, AlertIsDrawnAboveEverythingOverADimmedScreen) {
  proc_.run([&] {
    auto vc = ui::make<ui::UIViewController>();
    vc->view()->setBackgroundColor(ui::Color{1, 0, 0, 1});
    auto window = ui::UIWindow::makeForScreen({320, 568});
    window->setRootViewController(vc);
    auto alert = std::make_shared<platform::Alert>();
    alert->title = "Save group";
    alert->message = "Name the group";
    alert->cancelButton = "Cancel";
    alert->otherButtons = {"Save"};
    window->alert = alert;
    window->layoutIfNeeded();
    auto image = renderer_->draw(render::Scene::ofWindow(window, 2));
    // The dimmed red around, the light box in the middle.
    EXPECT_TRUE(near(image.pixel(10, 600), {153, 0, 0, 255}, 3));
    EXPECT_GT(countIn(image, {{30, 284}, {260, 4}}, {247, 247, 247, 255}),
              260 * 8 * 3 / 4);
  });
}

// Spacing the text view's delegate answers after every line.
struct WideSpacing : ui::LayoutManagerDelegate {
  double lineSpacingAfterGlyphAtIndex(size_t, const ui::Rect&) override {
    return 20;
  }
};

TEST_F(RenderTest, TextViewLinesAreDrawnWhereTheModelLaidThemOut) {
  proc_.run([&] {
    const Pixel blue{0, 0, 255, 255};
    auto tv = ui::make<ui::UITextView>();
    tv->setFrame({{20, 100}, {280, 10}});
    tv->setContentInset({8, 10, 8, 10});
    tv->setFont({"Helvetica", 14});
    tv->setTextColor({0, 0, 1, 1});
    tv->setText("Acme Trading\nSales");
    auto spacing = std::make_shared<WideSpacing>();
    tv->setLayoutManagerDelegate(spacing);
    tv->sizeToFit();
    auto image = renderer_->draw(scene(screenWith(tv)));
    const auto lines = tv->placedLines();
    ASSERT_EQ(lines.size(), 2u);
    // Each line's ink lies in its own rectangle; the 20 points of spacing
    // between them and the insets around stay empty.
    for (const auto& line : lines) {
      const ui::Rect r{{20 + line.frame.origin.x, 100 + line.frame.origin.y},
                       line.frame.size};
      EXPECT_GT(countIn(image, r, blue, 60), 20) << line.text;
    }
    const double gapTop =
        100 + lines[0].frame.origin.y + lines[0].frame.size.height + 2;
    EXPECT_EQ(countIn(image, {{20, gapTop}, {280, 16}}, blue, 60), 0);
    EXPECT_EQ(countIn(image, {{20, 100}, {280, 7}}, blue, 60), 0);
    EXPECT_EQ(
        countIn(image, {{20, 100}, {9, tv->frame().size.height}}, blue, 60), 0);
  });
}

}  // namespace
}  // namespace zv
