// The aspect-fill rectangle of scaleToSize:scale: for the logic; it lives
// with the UI model's images, which draw with it.
#pragma once

#include "platform/ui/image_geometry.h"

namespace zv {

using ui::aspectFillRect;

}  // namespace zv
