// The Control Centre glyphs of the device image: Home (with the square of
// the older button, and the plain ring of the Touch ID button), app
// switcher, lock and cellular antenna, each as a normal (white) and a
// selected (black) template on a transparent ground, anti-aliased by 4 x 4
// supersampling. Sized for a glyph of 28 points at scale 2.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/image.h"

namespace zv::device_glyphs {
namespace {

constexpr int kPixels = 56;
constexpr double kScale = 2;
constexpr int kSamples = 4;

// A glyph as a point test in unit coordinates (0,0 top left, 1,1 bottom
// right).
using Shape = std::function<bool(double x, double y)>;

bool inRoundedRect(double x, double y, double x0, double y0, double x1,
                   double y1, double r) {
  if (x < x0 || x > x1 || y < y0 || y > y1) return false;
  double cx = std::clamp(x, x0 + r, x1 - r);
  double cy = std::clamp(y, y0 + r, y1 - r);
  return std::hypot(x - cx, y - cy) <= r;
}

// The outline of a rounded rectangle, `w` wide, drawn inside its bounds.
bool onRoundedRect(double x, double y, double x0, double y0, double x1,
                   double y1, double r, double w) {
  return inRoundedRect(x, y, x0, y0, x1, y1, r) &&
         !inRoundedRect(x, y, x0 + w, y0 + w, x1 - w, y1 - w,
                        std::max(0.0, r - w));
}

bool onRing(double x, double y, double cx, double cy, double r, double w) {
  double d = std::hypot(x - cx, y - cy);
  return d <= r && d >= r - w;
}

bool homeRing(double x, double y) { return onRing(x, y, 0.5, 0.5, 0.47, 0.06); }

bool homeSquare(double x, double y) {
  return homeRing(x, y) ||
         onRoundedRect(x, y, 0.34, 0.34, 0.66, 0.66, 0.07, 0.045);
}

// Two cards, the front one over the back one.
bool switcher(double x, double y) {
  bool front = inRoundedRect(x, y, 0.32, 0.26, 0.86, 0.86, 0.06);
  if (front) return onRoundedRect(x, y, 0.32, 0.26, 0.86, 0.86, 0.06, 0.06);
  return onRoundedRect(x, y, 0.14, 0.12, 0.68, 0.72, 0.06, 0.06);
}

// A padlock: shackle, body and keyhole.
bool lock(double x, double y) {
  bool shackle = y <= 0.36 && onRing(x, y, 0.5, 0.36, 0.22, 0.07);
  bool legs = y > 0.36 && y <= 0.5 &&
              ((x >= 0.28 && x <= 0.35) || (x >= 0.65 && x <= 0.72));
  bool body = inRoundedRect(x, y, 0.2, 0.46, 0.8, 0.9, 0.06);
  bool keyhole = std::hypot(x - 0.5, y - 0.63) <= 0.06 ||
                 (x >= 0.475 && x <= 0.525 && y >= 0.63 && y <= 0.76);
  return shackle || legs || (body && !keyhole);
}

// Signal bars rising to the right.
bool cellular(double x, double y) {
  for (int i = 0; i < 4; ++i) {
    double x0 = 0.12 + i * 0.2, top = 0.7 - i * 0.18;
    if (inRoundedRect(x, y, x0, top, x0 + 0.14, 0.88, 0.03)) return true;
  }
  return false;
}

std::string draw(const Shape& shape, ui::Pixel colour) {
  std::vector<uint8_t> rgba(kPixels * kPixels * 4);
  for (int py = 0; py < kPixels; ++py) {
    for (int px = 0; px < kPixels; ++px) {
      int hits = 0;
      for (int sy = 0; sy < kSamples; ++sy)
        for (int sx = 0; sx < kSamples; ++sx)
          hits += shape((px + (sx + 0.5) / kSamples) / kPixels,
                        (py + (sy + 0.5) / kSamples) / kPixels);
      uint8_t* p = &rgba[(py * kPixels + px) * 4];
      p[0] = colour.r;
      p[1] = colour.g;
      p[2] = colour.b;
      p[3] = static_cast<uint8_t>(
          std::lround(255.0 * hits / (kSamples * kSamples)));
    }
  }
  return ui::Image(kPixels, kPixels, kScale, std::move(rgba)).encodePng();
}

}  // namespace

// Device paths and PNG bytes of the ten glyph files (both Home pairs, so
// that one image serves every phone model).
std::vector<std::pair<std::string, std::string>> controlCenterGlyphs() {
  const std::pair<const char*, Shape> shapes[] = {{"home", homeSquare},
                                                  {"home5s", homeRing},
                                                  {"switcher", switcher},
                                                  {"lock", lock},
                                                  {"cellular", cellular}};
  std::vector<std::pair<std::string, std::string>> files;
  for (const auto& [name, shape] : shapes) {
    std::string base = std::string("/Library/Zorvel/") + name;
    files.emplace_back(base + "_normal.png", draw(shape, {255, 255, 255, 0}));
    files.emplace_back(base + "_selected.png", draw(shape, {0, 0, 0, 0}));
  }
  return files;
}

}  // namespace zv::device_glyphs
