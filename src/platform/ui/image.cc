#include "platform/ui/image.h"

#include <cmath>
#include <stdexcept>

#include "platform/plist.h"
#include "platform/ui/image_codec.h"
#include "platform/ui/image_geometry.h"
#include "platform/ui/image_resample.h"

namespace zv::ui {

Image::Image(int pixelWidth, int pixelHeight, double scale,
             std::vector<uint8_t> rgba)
    : width_(pixelWidth),
      height_(pixelHeight),
      scale_(scale),
      rgba_(std::move(rgba)) {
  if (pixelWidth < 0 || pixelHeight < 0 || !(scale > 0) ||
      rgba_.size() != static_cast<size_t>(pixelWidth) * pixelHeight * 4)
    throw std::invalid_argument("image buffer does not match its size");
}

Image Image::filled(int pixelWidth, int pixelHeight, double scale,
                    Pixel colour) {
  std::vector<uint8_t> rgba;
  rgba.reserve(static_cast<size_t>(pixelWidth) * pixelHeight * 4);
  for (int i = 0; i < pixelWidth * pixelHeight; ++i)
    rgba.insert(rgba.end(), {colour.r, colour.g, colour.b, colour.a});
  return Image(pixelWidth, pixelHeight, scale, std::move(rgba));
}

ImagePtr Image::decode(std::string_view bytes, double scale) {
  DecodedPixels pixels;
  if (!(scale > 0) || !decodePicture(bytes, kMaxPixels, pixels)) return nullptr;
  return std::make_shared<const Image>(pixels.width, pixels.height, scale,
                                       std::move(pixels.rgba));
}

ImagePtr Image::fromFile(const std::string& path, double scale) {
  std::string bytes;
  if (!plist::readBytes(path, bytes)) return nullptr;
  return decode(bytes, scale);
}

platform::Size Image::size() const {
  return {width_ / scale_, height_ / scale_};
}

Pixel Image::pixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return {};
  const uint8_t* p = rgba_.data() + (static_cast<size_t>(y) * width_ + x) * 4;
  return {p[0], p[1], p[2], p[3]};
}

ImagePtr Image::scaleToSize(platform::Size size, int scale) const {
  return drawnInRect(size, scale, aspectFillRect(size, this->size()));
}

ImagePtr Image::drawnInRect(platform::Size size, int scale,
                            const Rect& r) const {
  if (!(size.width > 0) || !(size.height > 0) || scale <= 0) return nullptr;
  const double pw = std::round(size.width * scale);
  const double ph = std::round(size.height * scale);
  if (pw < 1 || ph < 1 || pw > kMaxPixels || ph > kMaxPixels) return nullptr;
  const int dw = static_cast<int>(pw), dh = static_cast<int>(ph);
  if (empty())
    return std::make_shared<const Image>(
        dw, dh, scale, std::vector<uint8_t>(static_cast<size_t>(dw) * dh * 4));
  const Rect pixels{{r.origin.x * scale, r.origin.y * scale},
                    {r.size.width * scale, r.size.height * scale}};
  return std::make_shared<const Image>(
      dw, dh, scale,
      resampleRGBA(rgba_.data(), width_, height_, dw, dh, pixels));
}

std::string Image::encodePng() const {
  return empty() ? "" : ui::encodePng(rgba_.data(), width_, height_);
}

}  // namespace zv::ui
