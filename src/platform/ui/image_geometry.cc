#include "platform/ui/image_geometry.h"

namespace zv::ui {

Rect aspectFillRect(platform::Size target, platform::Size image) {
  const double W = target.width, H = target.height;
  const double w = image.width, h = image.height;
  // An image without area has no proportions to keep.
  if (w <= 0 || h <= 0 || w == h) return {{0, 0}, {W, H}};
  if (w > h) {
    const double f = H / h;
    return {{-(f * w - W) / 2, 0}, {f * w, H}};
  }
  const double f = W / w;
  return {{0, -(f * h - H) / 2}, {W, f * h}};
}

}  // namespace zv::ui
