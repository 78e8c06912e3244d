// Draws a Scene (render/scene.h) into a picture of the device's pixel size
// (points times scale) and encodes it as PNG. The library behind it
// (libzvrender, cairo and Pango) is its own shared object: programs that
// draw only on request load it then, through zvCreateRenderer, so that a
// run without pictures maps no drawing code at all.
//
// Text is set with Pango in pinned fonts (Liberation Sans, metric-compatible
// with the Helvetica family the UI model names, and Noto Sans CJK SC for
// what it lacks) and fitted to the widths of the UI model's own measurement
// (platform/ui/text_metrics.h), so what the views sized to fit is what the
// picture shows: runs laid side by side stay side by side, a label the model
// counts as fitting is never cut.
#pragma once

#include <memory>
#include <string>

#include "platform/render/scene.h"
#include "platform/ui/image.h"

namespace zv::render {

class Renderer {
 public:
  virtual ~Renderer() = default;
  // The scene as pixels (RGBA, straight alpha) at its scale.
  virtual ui::Image draw(const Scene& scene) = 0;
  // draw() encoded as PNG bytes.
  virtual std::string png(const Scene& scene) = 0;
};

std::unique_ptr<Renderer> makeRenderer();

}  // namespace zv::render

// The library's one entry for programs that load it at run time; the caller
// owns the result.
extern "C" zv::render::Renderer* zvCreateRenderer();
