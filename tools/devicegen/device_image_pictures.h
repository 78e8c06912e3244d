// Pictures for generated device images: contact thumbnails (a diagonal
// two-colour gradient with the contact's initial in white) and the grey
// head-and-shoulders placeholder, encoded as JPEG or PNG bytes.
#pragma once

#include <cstdint>
#include <string>

namespace zv::device_pictures {

// Side of the square contact thumbnails, in pixels: large enough for the
// biggest list avatar (50 points at scale 2).
inline constexpr int kThumbnailSize = 120;

// A kThumbnailSize square picture; `colour` picks one of 12 gradients.
std::string thumbnail(char initial, uint32_t colour, bool jpeg);

// The placeholder avatar as PNG bytes, `size` pixels square.
std::string placeholder(int size);

}  // namespace zv::device_pictures
