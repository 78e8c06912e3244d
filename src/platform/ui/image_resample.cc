#include "platform/ui/image_resample.h"

#include <algorithm>
#include <cmath>

namespace zv::ui {
namespace {

// The source pixels that make up each destination pixel along one axis.
struct AxisWeights {
  std::vector<int> first;     // per destination pixel: offset into taps
  std::vector<int> count;     // per destination pixel: number of taps
  std::vector<int> index;     // per tap: source index
  std::vector<float> weight;  // per tap: share of the destination pixel
};

void addTap(AxisWeights& w, int index, float weight) {
  if (weight <= 0) return;
  w.index.push_back(index);
  w.weight.push_back(weight);
}

// Destination pixel i covers source interval [(i - start) * k, (i + 1 -
// start) * k) with k = sourceLength / length.
AxisWeights axisWeights(int sourceLength, int destLength, double start,
                        double length) {
  AxisWeights w;
  w.first.resize(destLength);
  w.count.resize(destLength);
  const double k = sourceLength / length;
  for (int i = 0; i < destLength; ++i) {
    w.first[i] = static_cast<int>(w.index.size());
    const double u0 = (i - start) * k;
    const double u1 = (i + 1 - start) * k;
    const double footprint = u1 - u0;
    if (footprint >= 1.0) {
      // Shrinking: average the source pixels under the footprint, weighted
      // by how much of each lies inside it.
      const double lo = std::max(u0, 0.0);
      const double hi = std::min(u1, static_cast<double>(sourceLength));
      // A footprint wholly outside the source (the rectangle may lie far
      // off the canvas) reads nothing; checked before lo becomes an int.
      if (!(lo < hi)) {
        w.count[i] = 0;
        continue;
      }
      for (int s = static_cast<int>(std::floor(lo)); s < hi; ++s) {
        const double overlap = std::min(hi, s + 1.0) - std::max(lo, 1.0 * s);
        addTap(w, s, static_cast<float>(overlap / footprint));
      }
    } else {
      // Growing: interpolate between the two nearest source centres.
      const double centre = (u0 + u1) / 2;
      if (centre >= 0 && centre <= sourceLength) {
        const double c = centre - 0.5;
        const int i0 = static_cast<int>(std::floor(c));
        const float f = static_cast<float>(c - i0);
        const int a = std::clamp(i0, 0, sourceLength - 1);
        const int b = std::clamp(i0 + 1, 0, sourceLength - 1);
        if (a == b) {
          addTap(w, a, 1.0f);
        } else {
          addTap(w, a, 1.0f - f);
          addTap(w, b, f);
        }
      }
    }
    w.count[i] = static_cast<int>(w.index.size()) - w.first[i];
  }
  return w;
}

uint8_t toByte(float v) {
  return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L));
}

}  // namespace

std::vector<uint8_t> resampleRGBA(const uint8_t* src, int sw, int sh, int dw,
                                  int dh, const Rect& rect) {
  std::vector<uint8_t> out(static_cast<size_t>(dw) * dh * 4, 0);
  const bool finite =
      std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) &&
      std::isfinite(rect.size.width) && std::isfinite(rect.size.height);
  if (sw <= 0 || sh <= 0 || dw <= 0 || dh <= 0 || !finite ||
      rect.size.width <= 0 || rect.size.height <= 0)
    return out;
  const AxisWeights wx = axisWeights(sw, dw, rect.origin.x, rect.size.width);
  const AxisWeights wy = axisWeights(sh, dh, rect.origin.y, rect.size.height);

  // Only the source rows that some destination row reads.
  int rowLo = sh, rowHi = -1;
  for (int idx : wy.index) {
    rowLo = std::min(rowLo, idx);
    rowHi = std::max(rowHi, idx);
  }
  if (rowHi < rowLo) return out;

  // Horizontal pass into premultiplied floats, one row per source row used.
  const int rows = rowHi - rowLo + 1;
  std::vector<float> tmp(static_cast<size_t>(rows) * dw * 4, 0.0f);
  for (int y = rowLo; y <= rowHi; ++y) {
    const uint8_t* row = src + static_cast<size_t>(y) * sw * 4;
    float* dst = tmp.data() + static_cast<size_t>(y - rowLo) * dw * 4;
    for (int x = 0; x < dw; ++x) {
      float r = 0, g = 0, b = 0, a = 0;
      for (int t = wx.first[x], e = t + wx.count[x]; t < e; ++t) {
        const uint8_t* p = row + static_cast<size_t>(wx.index[t]) * 4;
        const float wa = wx.weight[t] * p[3];
        r += wa * p[0];
        g += wa * p[1];
        b += wa * p[2];
        a += wa;
      }
      dst[x * 4 + 0] = r;
      dst[x * 4 + 1] = g;
      dst[x * 4 + 2] = b;
      dst[x * 4 + 3] = a;
    }
  }

  // Vertical pass, then back to straight alpha.
  for (int y = 0; y < dh; ++y) {
    uint8_t* dst = out.data() + static_cast<size_t>(y) * dw * 4;
    for (int x = 0; x < dw; ++x) {
      float r = 0, g = 0, b = 0, a = 0;
      for (int t = wy.first[y], e = t + wy.count[y]; t < e; ++t) {
        const float* p =
            tmp.data() +
            (static_cast<size_t>(wy.index[t] - rowLo) * dw + x) * 4;
        const float w = wy.weight[t];
        r += w * p[0];
        g += w * p[1];
        b += w * p[2];
        a += w * p[3];
      }
      if (a <= 0) continue;
      dst[x * 4 + 0] = toByte(r / a);
      dst[x * 4 + 1] = toByte(g / a);
      dst[x * 4 + 2] = toByte(b / a);
      dst[x * 4 + 3] = toByte(a);
    }
  }
  return out;
}

}  // namespace zv::ui
