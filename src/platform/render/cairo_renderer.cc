// The Renderer of libzvrender: one cairo image surface per picture, the
// scene's layers, bars and modal layer drawn in that order.
#include <cairo.h>

#include <cmath>
#include <stdexcept>

#include "platform/render/paint_window.h"
#include "platform/render/renderer.h"
#include "platform/render/view_painter.h"

namespace zv::render {
namespace {

class CairoRenderer : public Renderer {
 public:
  ui::Image draw(const Scene& scene) override {
    cairo_surface_t* surface = paint(scene);
    const int w = cairo_image_surface_get_width(surface);
    const int h = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    std::vector<uint8_t> rgba(static_cast<size_t>(w) * h * 4);
    uint8_t* out = rgba.data();
    for (int y = 0; y < h; ++y) {
      const auto* row = reinterpret_cast<const uint32_t*>(
          data + static_cast<size_t>(y) * stride);
      for (int x = 0; x < w; ++x, out += 4) {
        const uint32_t p = row[x];
        const uint32_t a = p >> 24;
        auto un = [a](uint32_t c) {
          return static_cast<uint8_t>(a ? (c * 255 + a / 2) / a : 0);
        };
        out[0] = un((p >> 16) & 0xff);
        out[1] = un((p >> 8) & 0xff);
        out[2] = un(p & 0xff);
        out[3] = static_cast<uint8_t>(a);
      }
    }
    cairo_surface_destroy(surface);
    return ui::Image(w, h, scene.scale, std::move(rgba));
  }

  std::string png(const Scene& scene) override {
    cairo_surface_t* surface = paint(scene);
    std::string bytes;
    auto append = [](void* closure, const unsigned char* data,
                     unsigned int length) {
      static_cast<std::string*>(closure)->append(
          reinterpret_cast<const char*>(data), length);
      return CAIRO_STATUS_SUCCESS;
    };
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(surface, append, &bytes);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS)
      throw std::runtime_error(std::string("cannot encode picture: ") +
                               cairo_status_to_string(status));
    return bytes;
  }

 private:
  cairo_surface_t* paint(const Scene& scene) {
    const int w =
        static_cast<int>(std::lround(scene.points.width * scene.scale));
    const int h =
        static_cast<int>(std::lround(scene.points.height * scene.scale));
    if (w <= 0 || h <= 0 || w > ui::Image::kMaxPixels ||
        h > ui::Image::kMaxPixels)
      throw std::invalid_argument("screen size out of range");
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
    cairo_t* cr = cairo_create(surface);
    cairo_scale(cr, scene.scale, scene.scale);
    setColour(cr, scene.background);
    cairo_paint(cr);
    ViewPainter views(cr, text_);
    for (const auto& [view, frame] : scene.layers) {
      if (!view) continue;
      if (frame)
        views.drawIn(*view, *frame);
      else if (view->frame().size.width <= 0 || view->frame().size.height <= 0)
        views.drawIn(*view, {{0, 0}, scene.points});
      else
        views.draw(*view);
    }
    cairo_destroy(cr);
    cairo_surface_flush(surface);
    return surface;
  }

  TextPainter text_;
};

}  // namespace

void paintWindow(cairo_t* cr, const ui::UIView& window, double scale) {
  // One Pango context for the process's drawing thread.
  static thread_local TextPainter text;
  cairo_save(cr);
  cairo_scale(cr, scale, scale);
  ViewPainter(cr, text).draw(window);
  cairo_restore(cr);
}

std::unique_ptr<Renderer> makeRenderer() {
  return std::make_unique<CairoRenderer>();
}

}  // namespace zv::render

zv::render::Renderer* zvCreateRenderer() {
  return zv::render::makeRenderer().release();
}
