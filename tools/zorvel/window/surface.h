// The window `zorvel window` shows, as the program sees it: a surface that
// paints the host's key window with the painter of --png
// (render::paintWindow) and tells what the person does on it, in the
// window's points.
//
// Its one implementation (window/gtk_surface.cc) is a GTK 4 window in a
// library of its own, libzvwindow.so, that the command loads at run time
// through zvOpenWindow: the zorvel program itself never links GTK and runs
// on machines without a display. The surface lives on the thread that runs
// the default GLib main context, which delivers its events.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ui/view.h"

namespace zv::window {

// What the person does, delivered on the main loop.
class SurfaceInput {
 public:
  virtual ~SurfaceInput() = default;
  // A finger or the mouse's first button touches, moves and lifts, at
  // `point` in screen points.
  virtual void pointerDown(ui::Point point) = 0;
  virtual void pointerMoved(ui::Point point) = 0;
  virtual void pointerUp(ui::Point point) = 0;
  // A key: its X key name ("BackSpace", "Return", "KP_5") and the
  // character it types (0 for none).
  virtual void key(const std::string& name, uint32_t character) = 0;
  // The window was closed.
  virtual void closed() = 0;
};

class Surface {
 public:
  virtual ~Surface() = default;
  // Paints `window` (laid out) at `scale` pixels per point and shows it,
  // one picture pixel to one screen pixel. Call in the window's process.
  // Returns at once after painting; the screen shows it on its next frame.
  virtual void show(const ui::UIView& window, double scale) = 0;
};

struct SurfaceOptions {
  std::string title = "Phone";
  std::string iconName = "zorvel-phone";
};

}  // namespace zv::window

// The library's entries. zvStartWindows starts GTK on the default display;
// false, with `error` set to one line, when there is none. zvOpenWindow
// (after it) makes the window, shown with the first picture; the caller
// owns the result and keeps `input` alive as long.
extern "C" bool zvStartWindows(std::string* error);
extern "C" zv::window::Surface* zvOpenWindow(
    const zv::window::SurfaceOptions* options, zv::window::SurfaceInput* input);
