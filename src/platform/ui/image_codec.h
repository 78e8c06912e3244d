// JPEG and PNG to and from RGBA8 pixels, through libjpeg-turbo (its
// TurboJPEG interface) and libpng (its simplified interface). Both libraries
// are fuzzed upstream and report a damaged stream as an error instead of
// trusting it, which is what pictures from anywhere (contact photos, files
// a user installs) need.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv::ui {

struct DecodedPixels {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> rgba;  // width * height * 4, straight alpha
};

// Decodes a JPEG (baseline or progressive, grey or colour) or PNG stream
// into RGBA. False for any other format, a damaged stream, or a
// picture wider or taller than `maxSide` pixels; the size is read from the
// header before any pixel buffer is made, so a forged size allocates
// nothing. A JPEG whose data ends early decodes as far as it goes (the rest
// grey), as image viewers show it; a progressive JPEG of more scans
// than any encoder writes is refused rather than decoded for minutes.
bool decodePicture(std::string_view bytes, int maxSide, DecodedPixels& out);

// PNG of `rgba` (width * height * 4 bytes); "" when it cannot be made.
std::string encodePng(const uint8_t* rgba, int width, int height);

// JPEG of `rgba` (width * height * 4 bytes, alpha ignored) at `quality`
// 1..100; "" when it cannot be made.
std::string encodeJpeg(const uint8_t* rgba, int width, int height, int quality);

}  // namespace zv::ui
