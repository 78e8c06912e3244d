#include "platform/ui/image.h"

#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

#include <cmath>
#include <stdexcept>

#include "platform/plist.h"
#include "platform/ui/image_geometry.h"
#include "platform/ui/image_resample.h"
#include "platform/ui/jpeg_tables.h"

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
  if (bytes.empty() || !(scale > 0) || bytes.size() > INT32_MAX) return nullptr;
  if (!jpegHuffmanTablesFit(bytes)) return nullptr;
  const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
  const int length = static_cast<int>(bytes.size());
  int w = 0, h = 0, channels = 0;
  // Look at the header first so that a forged size cannot make the decoder
  // allocate gigabytes.
  if (!stbi_info_from_memory(data, length, &w, &h, &channels) || w <= 0 ||
      h <= 0 || w > kMaxPixels || h > kMaxPixels)
    return nullptr;
  stbi_uc* pixels = stbi_load_from_memory(data, length, &w, &h, &channels, 4);
  if (!pixels) return nullptr;
  std::vector<uint8_t> rgba(pixels, pixels + static_cast<size_t>(w) * h * 4);
  stbi_image_free(pixels);
  return std::make_shared<const Image>(w, h, scale, std::move(rgba));
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
  if (empty()) return "";
  std::string out;
  auto append = [](void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data),
                                               size);
  };
  if (!stbi_write_png_to_func(append, &out, width_, height_, 4, rgba_.data(),
                              width_ * 4))
    return "";
  return out;
}

}  // namespace zv::ui
