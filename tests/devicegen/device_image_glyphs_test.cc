// The Control Centre glyphs a device image installs: every file the
// Control Centre reads is there, decodes as a 28-point template at scale 2
// (white when normal, black when selected, same outline), and the two Home
// buttons differ only inside the ring.
#include <gtest/gtest.h>

#include <string>

#include "devicegen/device_image.h"
#include "platform/ui/image.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

class DeviceGlyphsTest : public ::testing::Test {
 protected:
  DeviceGlyphsTest() {
    DeviceImageOptions options;
    options.contacts = 0;
    options.calls = 0;
    createDeviceImage(root_.path(), options);
  }
  ui::ImagePtr glyph(const std::string& name) {
    return ui::Image::fromFile(
        root_.path() + "/Library/Zorvel/" + name + ".png", 2);
  }
  // Share of pixels with any coverage.
  static double coverage(const ui::Image& image) {
    int covered = 0;
    for (int y = 0; y < image.pixelHeight(); ++y)
      for (int x = 0; x < image.pixelWidth(); ++x)
        covered += image.pixel(x, y).a > 0;
    return double(covered) / (image.pixelWidth() * image.pixelHeight());
  }
  testing::TempRoot root_;
};

TEST_F(DeviceGlyphsTest, EveryGlyphIsATemplateInBothStates) {
  for (const char* name : {"home", "home5s", "switcher", "lock", "cellular"}) {
    SCOPED_TRACE(name);
    auto normal = glyph(std::string(name) + "_normal");
    auto selected = glyph(std::string(name) + "_selected");
    ASSERT_NE(normal, nullptr);
    ASSERT_NE(selected, nullptr);
    EXPECT_EQ(normal->size(), (platform::Size{28, 28}));
    ASSERT_EQ(selected->size(), normal->size());
    // Drawn, but not a filled square: the ground stays transparent.
    double c = coverage(*normal);
    EXPECT_GT(c, 0.08);
    EXPECT_LT(c, 0.7);
    EXPECT_EQ(normal->pixel(0, 0).a, 0);
    bool antialiased = false;
    for (int y = 0; y < normal->pixelHeight(); ++y) {
      for (int x = 0; x < normal->pixelWidth(); ++x) {
        ui::Pixel n = normal->pixel(x, y), s = selected->pixel(x, y);
        ASSERT_EQ(n.a, s.a) << x << "," << y;
        if (n.a == 0) continue;
        EXPECT_EQ(n, (ui::Pixel{255, 255, 255, n.a}));
        EXPECT_EQ(s, (ui::Pixel{0, 0, 0, n.a}));
        antialiased |= n.a != 255;
      }
    }
    EXPECT_TRUE(antialiased);
  }
}

TEST_F(DeviceGlyphsTest, HomeButtonsShareTheRingAndOnlyTheOlderHasASquare) {
  auto square = glyph("home_normal");
  auto ring = glyph("home5s_normal");
  ASSERT_TRUE(square && ring);
  int centre = square->pixelWidth() / 2;
  // The ring's edge on the left, the square's edge left of the centre.
  EXPECT_EQ(square->pixel(2, centre).a, ring->pixel(2, centre).a);
  EXPECT_GT(ring->pixel(2, centre).a, 0);
  int squareEdge = static_cast<int>(0.35 * square->pixelWidth());
  EXPECT_GT(square->pixel(squareEdge, centre).a, 200);
  EXPECT_EQ(ring->pixel(squareEdge, centre).a, 0);
  // Both are hollow in the middle.
  EXPECT_EQ(square->pixel(centre, centre).a, 0);
  EXPECT_EQ(ring->pixel(centre, centre).a, 0);
}

}  // namespace
}  // namespace zv
