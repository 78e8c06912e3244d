#include "platform/ui/image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/ui/image_codec.h"

namespace zv::ui {
namespace {

const Pixel kRed{255, 0, 0, 255};
const Pixel kGreen{0, 255, 0, 255};
const Pixel kBlue{0, 0, 255, 255};

// An image whose columns (or rows, when `rows`) are painted in three bands:
// the first `edge` pixels `a`, the last `edge` pixels `c`, the middle `b`.
Image bands(int w, int h, int edge, Pixel a, Pixel b, Pixel c, bool rows) {
  std::vector<uint8_t> rgba;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int i = rows ? y : x, n = rows ? h : w;
      const Pixel p = i < edge ? a : (i >= n - edge ? c : b);
      rgba.insert(rgba.end(), {p.r, p.g, p.b, p.a});
    }
  return Image(w, h, 1, std::move(rgba));
}

// Whether there is an image and every pixel is within `tolerance` of
// `expected` in each channel.
bool allPixels(const ImagePtr& image, Pixel expected, int tolerance = 0) {
  if (!image) return false;
  for (int y = 0; y < image->pixelHeight(); ++y)
    for (int x = 0; x < image->pixelWidth(); ++x) {
      const Pixel p = image->pixel(x, y);
      if (std::abs(p.r - expected.r) > tolerance ||
          std::abs(p.g - expected.g) > tolerance ||
          std::abs(p.b - expected.b) > tolerance ||
          std::abs(p.a - expected.a) > tolerance)
        return false;
    }
  return true;
}

// "width x height @ scale" in pixels, or "none".
std::string shape(const ImagePtr& image) {
  if (!image) return "none";
  return std::to_string(image->pixelWidth()) + "x" +
         std::to_string(image->pixelHeight()) + "@" +
         std::to_string(int(image->scale()));
}

TEST(ImageTest, DecodesJpegAsFarAsItsHeaderAllowsAndRejectsWhatIsNotAPicture) {
  Image source = Image::filled(16, 8, 1, Pixel{200, 40, 40, 255});
  const std::string jpeg = encodeJpeg(source.rgba().data(), 16, 8, 95);
  ASSERT_FALSE(jpeg.empty());
  ImagePtr decoded = Image::decode(jpeg, 2);
  EXPECT_EQ(shape(decoded), "16x8@2");
  EXPECT_TRUE(allPixels(decoded, Pixel{200, 40, 40, 255}, 6));

  // A stream cut short still shows what arrived, as viewers show it: the
  // top band keeps its colour.
  Image striped = bands(64, 64, 16, kRed, kGreen, kBlue, true);
  const std::string big = encodeJpeg(striped.rgba().data(), 64, 64, 95);
  const size_t scan = big.find("\xFF\xDA");
  ASSERT_NE(scan, std::string::npos);
  ImagePtr cut = Image::decode(big.substr(0, (scan + big.size()) / 2), 1);
  ASSERT_EQ(shape(cut), "64x64@1");
  EXPECT_NEAR(cut->pixel(32, 4).r, 255, 8);
  // A header claiming more than kMaxPixels on a side is refused before
  // any buffer is made; a Huffman table declaring more codes than fit
  // (stb's decoder once wrote past its arrays on one) is an error.
  const size_t frame = jpeg.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  std::string huge = jpeg;
  huge[frame + 5] = '\x7F';  // height 0x7Fxx
  EXPECT_EQ(Image::decode(huge, 1), nullptr);
  const size_t table = jpeg.find("\xFF\xC4");
  ASSERT_NE(table, std::string::npos);
  std::string forged = jpeg;
  forged[table + 5 + 14] = '\xFF';
  forged[table + 5 + 15] = '\xFF';
  EXPECT_EQ(Image::decode(forged, 1), nullptr);
  // Nor are other bytes, a cut PNG, no scale, a missing file or too few
  // pixels for the size.
  std::string png = Image::filled(4, 4, 1, kRed).encodePng();
  EXPECT_EQ(Image::decode("", 2), nullptr);
  EXPECT_EQ(Image::decode("GIF89a not really", 2), nullptr);
  EXPECT_EQ(Image::decode(png.substr(0, png.size() / 2), 2), nullptr);
  EXPECT_EQ(Image::decode(png, 0), nullptr);
  EXPECT_EQ(Image::fromFile("/nonexistent/picture.png", 2), nullptr);
  EXPECT_THROW(Image(2, 2, 1, std::vector<uint8_t>(15)), std::invalid_argument);
}

TEST(ImageTest, ScaleToSizeCropsTheCentreAndRefusesDegenerateTargets) {
  // The outer quarters fall outside a square target and must not bleed in.
  Image wide = bands(80, 40, 20, kRed, kGreen, kBlue, false);
  ImagePtr a = wide.scaleToSize({10, 10}, 2);
  EXPECT_EQ(shape(a), "20x20@2");
  EXPECT_EQ(a->size(), (platform::Size{10, 10}));
  EXPECT_TRUE(allPixels(a, kGreen));

  // Growing interpolates with the rows next to the window, so the band is
  // wider than what shows; the red and blue ends still must not show.
  Image tall = bands(30, 90, 25, kRed, kGreen, kBlue, true);
  ImagePtr b = tall.scaleToSize({36, 36}, 2);
  EXPECT_EQ(shape(b), "72x72@2");
  EXPECT_TRUE(allPixels(b, kGreen));

  // A tall target shows the middle columns of a wide image across its whole
  // height; a square image is stretched over any target.
  EXPECT_TRUE(allPixels(wide.scaleToSize({5, 20}, 1), kGreen));
  Image square = bands(8, 8, 2, kRed, kGreen, kBlue, false);
  ImagePtr d = square.scaleToSize({16, 4}, 1);
  ASSERT_NE(d, nullptr);
  EXPECT_EQ((std::vector{d->pixel(0, 0), d->pixel(8, 2), d->pixel(15, 3)}),
            (std::vector{kRed, kGreen, kBlue}));

  // Degenerate targets.
  Image image = Image::filled(4, 4, 2, kRed);
  for (platform::Size bad : {platform::Size{0, 10}, {10, -1}, {1e6, 10}})
    EXPECT_EQ(image.scaleToSize(bad, 2), nullptr);
  EXPECT_EQ(image.scaleToSize({10, 10}, 0), nullptr);

  // The empty image draws nothing: a transparent picture of the size asked.
  ImagePtr blank = Image().scaleToSize({20, 10}, 2);
  EXPECT_EQ(shape(blank), "40x20@2");
  EXPECT_TRUE(allPixels(blank, Pixel{}));
  EXPECT_EQ(Image().encodePng(), "");

  // Drawing outside the context leaves it transparent, however far off
  // the rectangle lies (far off, the source index once overflowed an int
  // and the loop ran for minutes).
  for (Rect far : {Rect{{10, 10}, {4, 4}}, Rect{{-1e12, 0}, {4, 4}},
                   Rect{{0, 1e12}, {4, 4}}})
    EXPECT_TRUE(allPixels(image.drawnInRect({4, 4}, 1, far), Pixel{}));
}

TEST(ImageTest, ResamplingAveragesPremultipliedAndInterpolatesWhenGrowing) {
  // Black and white checks average to mid grey.
  std::vector<uint8_t> checks = {0,   0,   0,   255, 255, 255, 255, 255,
                                 255, 255, 255, 255, 0,   0,   0,   255};
  ImagePtr grey = Image(2, 2, 1, checks).scaleToSize({1, 1}, 1);
  ASSERT_NE(grey, nullptr);
  EXPECT_EQ(grey->pixel(0, 0), (Pixel{128, 128, 128, 255}));

  // Red beside fully transparent black: the colour stays red, only the
  // coverage halves (straight averaging would give dark red).
  std::vector<uint8_t> half = {255, 0, 0, 255, 0, 0, 0, 0};
  ImagePtr edge = Image(2, 1, 1, half).drawnInRect({1, 1}, 1, {{0, 0}, {1, 1}});
  ASSERT_NE(edge, nullptr);
  EXPECT_EQ(edge->pixel(0, 0), (Pixel{255, 0, 0, 128}));

  // Growing rises steadily from one end's value to the other's (linearly
  // between the source pixels' centres).
  std::vector<uint8_t> two = {0, 0, 0, 255, 200, 200, 200, 255};
  ImagePtr wide = Image(2, 1, 1, two).drawnInRect({8, 1}, 1, {{0, 0}, {8, 1}});
  ASSERT_NE(wide, nullptr);
  std::vector<int> reds;
  for (int x = 0; x < 8; ++x) reds.push_back(wide->pixel(x, 0).r);
  EXPECT_EQ(reds, (std::vector<int>{0, 0, 25, 75, 125, 175, 200, 200}));
}

}  // namespace
}  // namespace zv::ui
