// Where a picture is drawn when it is scaled to fill a target size: the
// aspect-fill rectangle with centre crop used for contact pictures. Pure
// geometry; the pixel work lives in image.h.
#pragma once

#include "platform/ui/style_types.h"

namespace zv::ui {

// The rectangle, in the target's coordinates, to draw an image of size
// `image` into so that it covers all of `target` with its proportions kept
// and is centred. A wide image is scaled to the target's height and cropped
// left and right, a tall one to the width and cropped top and bottom; a
// square one (or one without area) fills the target exactly.
Rect aspectFillRect(platform::Size target, platform::Size image);

}  // namespace zv::ui
