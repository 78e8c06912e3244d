// Bitmap images of the UI model: RGBA8 pixels (straight alpha, rows top to
// bottom) with a scale factor, so that an image of 80 x 80 pixels at scale 2
// is 40 x 40 points, as on the platform. Images are immutable once made and
// shared as ImagePtr, so a cached picture can be handed to any thread.
//
// decode() reads JPEG and PNG (platform/ui/image_codec.h); scaleToSize()
// redraws an image into a new one of a given size with aspect fill and centre
// crop, resampled by area averaging when shrinking and bilinearly when growing,
// in premultiplied alpha so that transparent edges do not darken.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "platform/ui/style_types.h"

namespace zv::ui {

struct Pixel {
  uint8_t r = 0, g = 0, b = 0, a = 0;
  bool operator==(const Pixel&) const = default;
};

class Image;
using ImagePtr = std::shared_ptr<const Image>;

class Image {
 public:
  // The empty image: no pixels, size 0 x 0 points.
  Image() = default;
  // rgba must hold pixelWidth * pixelHeight * 4 bytes; throws
  // std::invalid_argument otherwise or for a scale that is not positive.
  Image(int pixelWidth, int pixelHeight, double scale,
        std::vector<uint8_t> rgba);
  // An image of one colour.
  static Image filled(int pixelWidth, int pixelHeight, double scale,
                      Pixel colour);

  // Decodes JPEG or PNG bytes at `scale`; null for anything else, for a
  // corrupt stream or for a picture larger than kMaxPixels on a side.
  static ImagePtr decode(std::string_view bytes, double scale);
  // decode() of a whole file (a host path); null when it cannot be read.
  static ImagePtr fromFile(const std::string& path, double scale);

  static constexpr int kMaxPixels = 8192;

  int pixelWidth() const { return width_; }
  int pixelHeight() const { return height_; }
  double scale() const { return scale_; }
  // Size in points: pixels divided by the scale.
  platform::Size size() const;
  bool empty() const { return width_ == 0 || height_ == 0; }
  const std::vector<uint8_t>& rgba() const { return rgba_; }
  // The pixel at (x, y); a transparent pixel outside the image.
  Pixel pixel(int x, int y) const;

  // The image redrawn into a new one of `size` points at `scale` (pixels
  // rounded to the nearest whole number), covering it with aspect fill and
  // centre crop: a wider image is fitted to the height and cropped left and
  // right, a taller one fitted to the width and cropped top and bottom, a
  // square one stretched over the whole target. An empty image gives a
  // transparent one of that size. Null when the size or scale is not
  // positive or the result would exceed kMaxPixels on a side.
  ImagePtr scaleToSize(platform::Size size, int scale) const;
  // The image context underneath: a new transparent image of `size` points
  // at `scale` with this image drawn into `rect` (points, may reach outside
  // the context). Null under the same conditions as scaleToSize.
  ImagePtr drawnInRect(platform::Size size, int scale, const Rect& rect) const;

  // The image as PNG bytes; "" for the empty image.
  std::string encodePng() const;

 private:
  int width_ = 0;
  int height_ = 0;
  double scale_ = 1;
  std::vector<uint8_t> rgba_;
};

}  // namespace zv::ui
