// libzvwindow.so: the GTK 4 window behind window/surface.h. A drawing area
// shows the last picture painted of the host's window, one picture pixel to one
// screen pixel (on a high-density screen too), scaled down (never up) to fit
// when the window is smaller than that and centred in it; pointer, touch and
// key events are turned back into screen points and key names for the program.
#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/render/paint_window.h"
#include "tools/zorvel/window/surface.h"

namespace zv::window {
namespace {

class GtkSurface final : public Surface {
 public:
  GtkSurface(const SurfaceOptions& options, SurfaceInput& input)
      : input_(input) {
    window_ = gtk_window_new();
    g_object_ref_sink(window_);
    gtk_window_set_title(GTK_WINDOW(window_), options.title.c_str());
    gtk_window_set_icon_name(GTK_WINDOW(window_), options.iconName.c_str());
    area_ = gtk_drawing_area_new();
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area_), &GtkSurface::draw,
                                   this, nullptr);
    gtk_widget_set_focusable(area_, TRUE);
    gtk_window_set_child(GTK_WINDOW(window_), area_);

    // One drag gesture takes the mouse's first button and touches alike:
    // its start, moves and end are the finger's.
    GtkGesture* drag = gtk_gesture_drag_new();
    gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(drag), GDK_BUTTON_PRIMARY);
    g_signal_connect(drag, "drag-begin", G_CALLBACK(&GtkSurface::dragBegin),
                     this);
    g_signal_connect(drag, "drag-update", G_CALLBACK(&GtkSurface::dragUpdate),
                     this);
    g_signal_connect(drag, "drag-end", G_CALLBACK(&GtkSurface::dragEnd), this);
    gtk_widget_add_controller(area_, GTK_EVENT_CONTROLLER(drag));

    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect(keys, "key-pressed", G_CALLBACK(&GtkSurface::keyPressed),
                     this);
    gtk_widget_add_controller(window_, keys);
    g_signal_connect(window_, "close-request",
                     G_CALLBACK(&GtkSurface::closeRequest), this);
  }

  ~GtkSurface() override {
    if (picture_) cairo_surface_destroy(picture_);
    gtk_window_destroy(GTK_WINDOW(window_));
    g_object_unref(window_);
  }

  void show(const ui::UIView& window, double scale) override {
    const int w =
        static_cast<int>(std::lround(window.frame().size.width * scale));
    const int h =
        static_cast<int>(std::lround(window.frame().size.height * scale));
    if (w <= 0 || h <= 0) return;
    if (!picture_ || cairo_image_surface_get_width(picture_) != w ||
        cairo_image_surface_get_height(picture_) != h) {
      if (picture_) cairo_surface_destroy(picture_);
      picture_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
      const int density = std::max(1, gtk_widget_get_scale_factor(area_));
      gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area_),
                                         (w + density - 1) / density);
      gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area_),
                                          (h + density - 1) / density);
    }
    // White under the window, as under every picture.
    cairo_t* cr = cairo_create(picture_);
    cairo_set_source_rgba(cr, 1, 1, 1, 1);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
    render::paintWindow(cr, window, scale);
    cairo_destroy(cr);
    cairo_surface_flush(picture_);
    points_per_pixel_ = 1 / scale;
    gtk_widget_queue_draw(area_);
    if (!gtk_widget_get_visible(window_)) {
      gtk_window_present(GTK_WINDOW(window_));
      gtk_widget_grab_focus(area_);
    }
  }

 private:
  // The picture's place in the area: its top-left corner and the area's
  // units per picture pixel (1 / density at full size).
  struct Placement {
    double k = 1, x = 0, y = 0;
    bool exact = true;
  };
  Placement placement() const {
    Placement p;
    if (!picture_) return p;
    const double w = cairo_image_surface_get_width(picture_),
                 h = cairo_image_surface_get_height(picture_);
    const double aw = gtk_widget_get_width(area_),
                 ah = gtk_widget_get_height(area_);
    const double full = 1.0 / std::max(1, gtk_widget_get_scale_factor(area_));
    p.k = std::min({full, aw / w, ah / h});
    p.exact = p.k == full;
    p.x = std::max(0.0, (aw - w * p.k) / 2);
    p.y = std::max(0.0, (ah - h * p.k) / 2);
    return p;
  }
  ui::Point toPoints(double x, double y) const {
    const Placement p = placement();
    return {(x - p.x) / p.k * points_per_pixel_,
            (y - p.y) / p.k * points_per_pixel_};
  }

  static void draw(GtkDrawingArea*, cairo_t* cr, int, int, gpointer data) {
    auto* self = static_cast<GtkSurface*>(data);
    if (!self->picture_) return;
    const Placement p = self->placement();
    cairo_translate(cr, p.x, p.y);
    cairo_scale(cr, p.k, p.k);
    cairo_set_source_surface(cr, self->picture_, 0, 0);
    // One to one stays pixel-exact; a shrunk picture is filtered.
    cairo_pattern_set_filter(cairo_get_source(cr), p.exact
                                                       ? CAIRO_FILTER_NEAREST
                                                       : CAIRO_FILTER_GOOD);
    cairo_paint(cr);
  }

  static void dragBegin(GtkGestureDrag*, double x, double y, gpointer data) {
    auto* self = static_cast<GtkSurface*>(data);
    self->start_x_ = x;
    self->start_y_ = y;
    gtk_widget_grab_focus(self->area_);
    self->input_.pointerDown(self->toPoints(x, y));
  }
  static void dragUpdate(GtkGestureDrag*, double dx, double dy, gpointer data) {
    auto* self = static_cast<GtkSurface*>(data);
    self->input_.pointerMoved(
        self->toPoints(self->start_x_ + dx, self->start_y_ + dy));
  }
  static void dragEnd(GtkGestureDrag*, double dx, double dy, gpointer data) {
    auto* self = static_cast<GtkSurface*>(data);
    self->input_.pointerUp(
        self->toPoints(self->start_x_ + dx, self->start_y_ + dy));
  }
  static gboolean keyPressed(GtkEventControllerKey*, guint keyval, guint,
                             GdkModifierType state, gpointer data) {
    // Shortcuts with Control or Alt belong to the desktop.
    if (state & (GDK_CONTROL_MASK | GDK_ALT_MASK)) return FALSE;
    const char* name = gdk_keyval_name(keyval);
    static_cast<GtkSurface*>(data)->input_.key(name ? name : "",
                                               gdk_keyval_to_unicode(keyval));
    return TRUE;
  }
  static gboolean closeRequest(GtkWindow*, gpointer data) {
    static_cast<GtkSurface*>(data)->input_.closed();
    return TRUE;  // the program ends and takes the window with it
  }

  SurfaceInput& input_;
  GtkWidget* window_ = nullptr;
  GtkWidget* area_ = nullptr;
  cairo_surface_t* picture_ = nullptr;
  double points_per_pixel_ = 0.5;
  double start_x_ = 0, start_y_ = 0;
};

}  // namespace
}  // namespace zv::window

extern "C" bool zvStartWindows(std::string* error) {
  if (gtk_init_check()) return true;
  if (error)
    *error = "cannot open a display (is DISPLAY or WAYLAND_DISPLAY set?)";
  return false;
}

extern "C" zv::window::Surface* zvOpenWindow(
    const zv::window::SurfaceOptions* options,
    zv::window::SurfaceInput* input) {
  return new zv::window::GtkSurface(*options, *input);
}
