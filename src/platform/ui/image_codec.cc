#include "platform/ui/image_codec.h"

#include <png.h>
#include <turbojpeg.h>

#include <climits>
#include <cstring>
#include <memory>

namespace zv::ui {
namespace {

struct TjCloser {
  void operator()(void* handle) const { tjDestroy(handle); }
};
using TjHandle = std::unique_ptr<void, TjCloser>;

struct PngImage {
  png_image image;
  PngImage() {
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
  }
  ~PngImage() { png_image_free(&image); }
};

bool sizeFits(long width, long height, int maxSide) {
  return width > 0 && height > 0 && width <= maxSide && height <= maxSide;
}

bool decodeJpeg(std::string_view bytes, int maxSide, DecodedPixels& out) {
  if (bytes.size() > ULONG_MAX) return false;
  TjHandle tj(tjInitDecompress());
  if (!tj) return false;
  auto* data =
      reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
  const auto length = static_cast<unsigned long>(bytes.size());
  int width = 0, height = 0, subsampling = 0, colorspace = 0;
  if (tjDecompressHeader3(tj.get(), data, length, &width, &height, &subsampling,
                          &colorspace) != 0 ||
      !sizeFits(width, height, maxSide))
    return false;
  std::vector<uint8_t> rgba(static_cast<size_t>(width) * height * 4);
  if (tjDecompress2(tj.get(), data, length, rgba.data(), width, width * 4,
                    height, TJPF_RGBA, TJFLAG_LIMITSCANS) != 0 &&
      tjGetErrorCode(tj.get()) != TJERR_WARNING)
    return false;
  out = {width, height, std::move(rgba)};
  return true;
}

bool decodePng(std::string_view bytes, int maxSide, DecodedPixels& out) {
  PngImage png;
  if (!png_image_begin_read_from_memory(&png.image, bytes.data(),
                                        bytes.size()) ||
      !sizeFits(png.image.width, png.image.height, maxSide))
    return false;
  png.image.format = PNG_FORMAT_RGBA;
  const int width = static_cast<int>(png.image.width);
  const int height = static_cast<int>(png.image.height);
  std::vector<uint8_t> rgba(PNG_IMAGE_SIZE(png.image));
  if (!png_image_finish_read(&png.image, nullptr, rgba.data(), 0, nullptr))
    return false;
  out = {width, height, std::move(rgba)};
  return true;
}

}  // namespace

bool decodePicture(std::string_view bytes, int maxSide, DecodedPixels& out) {
  if (bytes.size() >= 2 && static_cast<uint8_t>(bytes[0]) == 0xFF &&
      static_cast<uint8_t>(bytes[1]) == 0xD8)
    return decodeJpeg(bytes, maxSide, out);
  if (bytes.size() >= 8 &&
      png_sig_cmp(reinterpret_cast<png_const_bytep>(bytes.data()), 0, 8) == 0)
    return decodePng(bytes, maxSide, out);
  return false;
}

std::string encodePng(const uint8_t* rgba, int width, int height) {
  if (width <= 0 || height <= 0) return "";
  PngImage png;
  png.image.width = static_cast<png_uint_32>(width);
  png.image.height = static_cast<png_uint_32>(height);
  png.image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  if (!png_image_write_get_memory_size(png.image, size, 0, rgba, 0, nullptr))
    return "";
  std::string out(size, '\0');
  if (!png_image_write_to_memory(&png.image, out.data(), &size, 0, rgba, 0,
                                 nullptr))
    return "";
  out.resize(size);
  return out;
}

std::string encodeJpeg(const uint8_t* rgba, int width, int height,
                       int quality) {
  if (width <= 0 || height <= 0 || quality < 1 || quality > 100) return "";
  TjHandle tj(tjInitCompress());
  if (!tj) return "";
  unsigned char* jpeg = nullptr;
  unsigned long size = 0;
  const bool ok =
      tjCompress2(tj.get(), rgba, width, width * 4, height, TJPF_RGBA, &jpeg,
                  &size, TJSAMP_420, quality, TJFLAG_ACCURATEDCT) == 0;
  std::string out = ok ? std::string(reinterpret_cast<char*>(jpeg), size) : "";
  tjFree(jpeg);
  return out;
}

}  // namespace zv::ui
