#include "platform/ui/image.h"

#include <gtest/gtest.h>
#include <stb/stb_image_write.h>

#include <cstdlib>
#include <string>

#include "platform/ui/jpeg_tables.h"

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

bool allPixels(const Image& image, Pixel expected, int tolerance = 0) {
  for (int y = 0; y < image.pixelHeight(); ++y)
    for (int x = 0; x < image.pixelWidth(); ++x) {
      const Pixel p = image.pixel(x, y);
      if (std::abs(p.r - expected.r) > tolerance ||
          std::abs(p.g - expected.g) > tolerance ||
          std::abs(p.b - expected.b) > tolerance ||
          std::abs(p.a - expected.a) > tolerance)
        return false;
    }
  return true;
}

TEST(ImageTest, PngRoundTripKeepsPixelsAndScaleSetsPointSize) {
  Image source = bands(6, 4, 2, kRed, kGreen, kBlue, false);
  std::string png = source.encodePng();
  ASSERT_FALSE(png.empty());

  ImagePtr decoded = Image::decode(png, 2);
  ASSERT_NE(decoded, nullptr);
  EXPECT_EQ(decoded->pixelWidth(), 6);
  EXPECT_EQ(decoded->pixelHeight(), 4);
  EXPECT_EQ(decoded->size(), (platform::Size{3, 2}));
  EXPECT_EQ(decoded->rgba(), source.rgba());
  EXPECT_EQ(decoded->pixel(6, 0), Pixel{});  // outside is transparent
}

TEST(ImageTest, DecodesJpeg) {
  Image source = Image::filled(16, 8, 1, Pixel{200, 40, 40, 255});
  std::string jpeg;
  auto append = [](void* ctx, void* data, int size) {
    static_cast<std::string*>(ctx)->append(static_cast<char*>(data), size);
  };
  ASSERT_TRUE(stbi_write_jpg_to_func(append, &jpeg, 16, 8, 4,
                                     source.rgba().data(), 95));
  ImagePtr decoded = Image::decode(jpeg, 2);
  ASSERT_NE(decoded, nullptr);
  EXPECT_EQ(decoded->size(), (platform::Size{8, 4}));
  EXPECT_TRUE(allPixels(*decoded, Pixel{200, 40, 40, 255}, 6));
}

TEST(ImageTest, RefusesJpegHuffmanTablesOfMoreThan256Codes) {
  // Found by fuzzing address-book pictures: stb's decoder wrote one entry
  // per declared code into arrays of 256 (caught by the sanitizer builds).
  Image source = Image::filled(8, 8, 1, kRed);
  std::string jpeg;
  auto append = [](void* ctx, void* data, int size) {
    static_cast<std::string*>(ctx)->append(static_cast<char*>(data), size);
  };
  ASSERT_TRUE(
      stbi_write_jpg_to_func(append, &jpeg, 8, 8, 4, source.rgba().data(), 90));
  EXPECT_TRUE(jpegHuffmanTablesFit(jpeg));
  const size_t table = jpeg.find("\xFF\xC4");
  ASSERT_NE(table, std::string::npos);
  std::string forged = jpeg;
  // The first table's last two counts: 255 codes of 15 and 16 bits.
  forged[table + 5 + 14] = '\xFF';
  forged[table + 5 + 15] = '\xFF';
  EXPECT_FALSE(jpegHuffmanTablesFit(forged));
  EXPECT_EQ(Image::decode(forged, 1), nullptr);
  // A table found after the first scan is looked at too.
  std::string late = jpeg.substr(0, jpeg.size() - 2) +
                     forged.substr(table, 4 + 17 + 600) + "\xFF\xD9";
  EXPECT_FALSE(jpegHuffmanTablesFit(late));
  // Not a JPEG stream at all: not this check's business.
  EXPECT_TRUE(jpegHuffmanTablesFit("\x89PNG\xFF\xC4\xFF\xFF"));
}

TEST(ImageTest, RejectsWhatIsNotAPicture) {
  std::string png = Image::filled(4, 4, 1, kRed).encodePng();
  EXPECT_EQ(Image::decode("", 2), nullptr);
  EXPECT_EQ(Image::decode("GIF89a not really", 2), nullptr);
  EXPECT_EQ(Image::decode(png.substr(0, png.size() / 2), 2), nullptr);
  EXPECT_EQ(Image::decode(png, 0), nullptr);
  EXPECT_EQ(Image::fromFile("/nonexistent/picture.png", 2), nullptr);
  EXPECT_THROW(Image(2, 2, 1, std::vector<uint8_t>(15)), std::invalid_argument);
}

TEST(ImageTest, ScaleToSizeCropsTheCentreOfWideAndTallImages) {
  // The outer quarters fall outside a square target and must not bleed in.
  Image wide = bands(80, 40, 20, kRed, kGreen, kBlue, false);
  ImagePtr a = wide.scaleToSize({10, 10}, 2);
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a->pixelWidth(), 20);
  EXPECT_EQ(a->pixelHeight(), 20);
  EXPECT_EQ(a->scale(), 2);
  EXPECT_EQ(a->size(), (platform::Size{10, 10}));
  EXPECT_TRUE(allPixels(*a, kGreen));

  // Growing interpolates with the rows next to the window, so the band is
  // wider than what shows; the red and blue ends still must not show.
  Image tall = bands(30, 90, 25, kRed, kGreen, kBlue, true);
  ImagePtr b = tall.scaleToSize({36, 36}, 2);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(b->pixelWidth(), 72);
  EXPECT_TRUE(allPixels(*b, kGreen));

  // A tall target shows the middle columns of a wide image across its whole
  // height; a square image is stretched over any target.
  ImagePtr c = wide.scaleToSize({5, 20}, 1);
  ASSERT_NE(c, nullptr);
  EXPECT_TRUE(allPixels(*c, kGreen));
  Image square = bands(8, 8, 2, kRed, kGreen, kBlue, false);
  ImagePtr d = square.scaleToSize({16, 4}, 1);
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(d->pixel(0, 0), kRed);
  EXPECT_EQ(d->pixel(15, 3), kBlue);
  EXPECT_EQ(d->pixel(8, 2), kGreen);
}

TEST(ImageTest, ShrinkingAveragesInPremultipliedAlpha) {
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
}

TEST(ImageTest, GrowingInterpolatesBetweenNeighbours) {
  std::vector<uint8_t> two = {0, 0, 0, 255, 200, 200, 200, 255};
  ImagePtr wide = Image(2, 1, 1, two).drawnInRect({8, 1}, 1, {{0, 0}, {8, 1}});
  ASSERT_NE(wide, nullptr);
  int previous = -1;
  for (int x = 0; x < 8; ++x) {
    const int v = wide->pixel(x, 0).r;
    EXPECT_GE(v, previous) << "at " << x;
    previous = v;
  }
  EXPECT_EQ(wide->pixel(0, 0).r, 0);
  EXPECT_EQ(wide->pixel(7, 0).r, 200);
  EXPECT_GT(wide->pixel(4, 0).r, 0);
  EXPECT_LT(wide->pixel(3, 0).r, 200);
}

TEST(ImageTest, DegenerateTargets) {
  Image image = Image::filled(4, 4, 2, kRed);
  EXPECT_EQ(image.scaleToSize({0, 10}, 2), nullptr);
  EXPECT_EQ(image.scaleToSize({10, -1}, 2), nullptr);
  EXPECT_EQ(image.scaleToSize({10, 10}, 0), nullptr);
  EXPECT_EQ(image.scaleToSize({1e6, 10}, 2), nullptr);

  // The empty image draws nothing: a transparent picture of the size asked.
  ImagePtr blank = Image().scaleToSize({20, 10}, 2);
  ASSERT_NE(blank, nullptr);
  EXPECT_EQ(blank->pixelWidth(), 40);
  EXPECT_EQ(blank->pixelHeight(), 20);
  EXPECT_TRUE(allPixels(*blank, Pixel{}));
  EXPECT_EQ(Image().encodePng(), "");

  // Drawing outside the context leaves it transparent.
  ImagePtr outside = image.drawnInRect({4, 4}, 1, {{10, 10}, {4, 4}});
  ASSERT_NE(outside, nullptr);
  EXPECT_TRUE(allPixels(*outside, Pixel{}));
}

}  // namespace
}  // namespace zv::ui
