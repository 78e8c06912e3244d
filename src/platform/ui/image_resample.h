// The resampler behind Image::scaleToSize: draws an RGBA8 source into a new
// RGBA8 buffer so that the source spans a given rectangle of destination
// pixels (which may reach beyond the buffer: that part is cropped).
//
// Separable: each axis gets a table of source weights per destination pixel,
// area averages where a destination pixel covers one source pixel or more,
// bilinear weights where it covers less. Colours are averaged premultiplied
// by alpha; the parts of a destination pixel outside the drawn rectangle
// stay transparent.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/ui/image.h"

namespace zv::ui {

// src: sw x sh pixels, 4 bytes each; returns dw x dh pixels. `rect` is in
// destination pixels.
std::vector<uint8_t> resampleRGBA(const uint8_t* src, int sw, int sh, int dw,
                                  int dh, const Rect& rect);

}  // namespace zv::ui
