#include "devicegen/device_image_pictures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>
// A vector font of ASCII drawn as axis-aligned rectangles: enough for one
// initial without shipping a font file.
#include <stb/stb_easy_font.h>

namespace zv::device_pictures {
namespace {

struct Rgb {
  uint8_t r, g, b;
};

// Pairs of colours for the gradients, from the top-left to the bottom-right.
constexpr Rgb kGradients[12][2] = {
    {{239, 83, 80}, {183, 28, 28}},  {{236, 64, 122}, {136, 14, 79}},
    {{171, 71, 188}, {74, 20, 140}}, {{126, 87, 194}, {49, 27, 146}},
    {{92, 107, 192}, {26, 35, 126}}, {{66, 165, 245}, {13, 71, 161}},
    {{38, 198, 218}, {0, 96, 100}},  {{38, 166, 154}, {0, 77, 64}},
    {{102, 187, 106}, {27, 94, 32}}, {{255, 202, 40}, {255, 111, 0}},
    {{255, 112, 67}, {191, 54, 12}}, {{141, 110, 99}, {62, 39, 35}}};

class Canvas {
 public:
  explicit Canvas(int size) : size_(size), pixels_(size * size * 3) {}

  void set(int x, int y, Rgb c) {
    if (x < 0 || y < 0 || x >= size_ || y >= size_) return;
    uint8_t* p = &pixels_[(y * size_ + x) * 3];
    p[0] = c.r;
    p[1] = c.g;
    p[2] = c.b;
  }

  void fillRect(int x0, int y0, int x1, int y1, Rgb c) {
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) set(x, y, c);
  }

  std::string encode(bool jpeg) const {
    std::string out;
    auto append = [](void* context, void* data, int size) {
      static_cast<std::string*>(context)->append(static_cast<char*>(data),
                                                 size);
    };
    if (jpeg) {
      stbi_write_jpg_to_func(append, &out, size_, size_, 3, pixels_.data(), 85);
    } else {
      stbi_write_png_to_func(append, &out, size_, size_, 3, pixels_.data(),
                             size_ * 3);
    }
    return out;
  }

  int size() const { return size_; }

 private:
  int size_;
  std::vector<uint8_t> pixels_;
};

uint8_t mix(uint8_t a, uint8_t b, double t) {
  return static_cast<uint8_t>(std::lround(a + (b - a) * t));
}

// Draws `letter` in white, centred, each font unit `scale` pixels.
void drawLetter(Canvas& canvas, char letter, int scale) {
  char text[2] = {letter, 0};
  // stb_easy_font writes 4 vertices of 16 bytes per rectangle.
  struct Vertex {
    float x, y, z;
    unsigned char rgba[4];
  };
  Vertex vertices[4 * 64];
  int quads = stb_easy_font_print(0, 0, text, nullptr, vertices,
                                  static_cast<int>(sizeof vertices));
  float minX = 1e9f, minY = 1e9f, maxX = -1e9f, maxY = -1e9f;
  for (int i = 0; i < quads * 4; ++i) {
    minX = std::min(minX, vertices[i].x);
    maxX = std::max(maxX, vertices[i].x);
    minY = std::min(minY, vertices[i].y);
    maxY = std::max(maxY, vertices[i].y);
  }
  if (quads == 0) return;
  int offsetX = (canvas.size() - static_cast<int>((maxX - minX) * scale)) / 2;
  int offsetY = (canvas.size() - static_cast<int>((maxY - minY) * scale)) / 2;
  auto px = [&](float v, float min, int offset) {
    return offset + static_cast<int>(std::lround((v - min) * scale));
  };
  for (int q = 0; q < quads; ++q) {
    const Vertex* v = &vertices[q * 4];
    float x0 = std::min(v[0].x, v[2].x), x1 = std::max(v[0].x, v[2].x);
    float y0 = std::min(v[0].y, v[2].y), y1 = std::max(v[0].y, v[2].y);
    canvas.fillRect(px(x0, minX, offsetX), px(y0, minY, offsetY),
                    px(x1, minX, offsetX), px(y1, minY, offsetY),
                    {255, 255, 255});
  }
}

}  // namespace

std::string thumbnail(char initial, uint32_t colour, bool jpeg) {
  Canvas canvas(kThumbnailSize);
  const Rgb* g = kGradients[colour % 12];
  int n = kThumbnailSize;
  for (int y = 0; y < n; ++y) {
    for (int x = 0; x < n; ++x) {
      double t = (x + y) / (2.0 * (n - 1));
      canvas.set(x, y,
                 {mix(g[0].r, g[1].r, t), mix(g[0].g, g[1].g, t),
                  mix(g[0].b, g[1].b, t)});
    }
  }
  drawLetter(canvas, initial, n / 12);
  return canvas.encode(jpeg);
}

std::string placeholder(int size) {
  Canvas canvas(size);
  constexpr Rgb kBackground{204, 208, 214};
  constexpr Rgb kFigure{245, 246, 248};
  double c = size / 2.0;
  double head = size * 0.19;
  double headY = size * 0.38;
  double bodyY = size * 0.98;
  double bodyRx = size * 0.36, bodyRy = size * 0.32;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      double px = x + 0.5, py = y + 0.5;
      double dh = std::hypot(px - c, py - headY);
      double bx = (px - c) / bodyRx, by = (py - bodyY) / bodyRy;
      bool figure = dh <= head || bx * bx + by * by <= 1.0;
      canvas.set(x, y, figure ? kFigure : kBackground);
    }
  }
  return canvas.encode(false);
}

}  // namespace zv::device_pictures
