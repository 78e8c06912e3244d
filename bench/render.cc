// One picture of the keypad screen with the search list open (750 x 1334,
// the 4.7-inch phone at scale 2), as `zorvel phone --png` draws it, against
// a peer in the same process: the same screen's texts set straight with
// pango_cairo into a surface of the same size, one layout each, no view
// tree, no fitting, no pixel conversion. Prints the time of a picture and
// our time over the peer's.
#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/run_times.h"
#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/render/renderer.h"
#include "platform/sim/device_presets.h"
#include "tools/zorvel/screens/scenes.h"

namespace {

namespace fs = std::filesystem;
using namespace zv;

struct Text {
  std::string text;
  double x, y, size;
};

// A Phone app on a copy of the sample device with "23" typed and the list
// open; the screen's scene and the texts on it.
struct Keypad {
  Keypad() {
    root = (fs::temp_directory_path() / "zv-bench-render").string();
    fs::remove_all(root);
    fs::copy(ZV_SAMPLE_ROOT, root, fs::copy_options::recursive);
    world = std::make_unique<platform::SimWorld>(root);
    proc = &hosts::launchSimulated(*world, hosts::phoneHost(),
                                   *platform::simulatedDevice("8.1", "4.7"),
                                   ZorvelInitializer);
    world->advance(0);
    app = proc->run([] { return hosts::PhoneApplication::shared(); });
    proc->run([&] {
      app->dialer->dialerView()->pad->pressKey('2');
      app->dialer->dialerView()->pad->pressKey('3');
    });
    world->advance(0);
    proc->run([&] {
      auto c = platform::Process::current().slot<ZVKeypadController>();
      c->keypadView()->lcdViews()[1]->perform(ui::Gesture::TouchEnded);
    });
    world->advance(0);
    proc->run([&] {
      scene = cli::phoneScene(*proc, *app);
      collect(app->dialer->dialerView(), 0, 0);
    });
  }
  ~Keypad() {
    // The views go inside their process, before the world.
    proc->run([&] {
      scene = render::Scene{};
      app.reset();
    });
    world.reset();
    fs::remove_all(root);
  }
  void collect(const std::shared_ptr<ui::UIView>& v, double x, double y) {
    if (v->isHidden()) return;
    x += v->frame().origin.x, y += v->frame().origin.y;
    if (auto l = std::dynamic_pointer_cast<ui::UILabel>(v))
      if (!l->text().empty())
        texts.push_back({l->text(), x, y, l->font().size});
    if (auto s = std::dynamic_pointer_cast<ui::UIScrollView>(v))
      x -= s->contentOffset().x, y -= s->contentOffset().y;
    for (const auto& c : v->subviews()) collect(c, x, y);
  }
  std::string root;
  std::unique_ptr<platform::SimWorld> world;
  platform::SimProcess* proc = nullptr;
  std::shared_ptr<hosts::PhoneApplication> app;
  render::Scene scene;
  std::vector<Text> texts;
};

Keypad& keypad() {
  static Keypad k;
  return k;
}

void BM_RenderKeypadWithList(benchmark::State& state) {
  auto& k = keypad();
  auto renderer = render::makeRenderer();
  k.proc->run([&] {
    for (auto _ : state) {
      auto image = renderer->draw(k.scene);
      benchmark::DoNotOptimize(image);
    }
  });
  state.counters["texts"] = static_cast<double>(k.texts.size());
}
BENCHMARK(BM_RenderKeypadWithList)->Unit(benchmark::kMillisecond);

void BM_PangoCairoSameTexts(benchmark::State& state) {
  auto& k = keypad();
  PangoFontMap* map = pango_cairo_font_map_new();
  for (auto _ : state) {
    cairo_surface_t* s =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 750, 1334);
    cairo_t* cr = cairo_create(s);
    cairo_scale(cr, 2, 2);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    PangoContext* context = pango_font_map_create_context(map);
    pango_cairo_update_context(cr, context);
    cairo_set_source_rgb(cr, 0, 0, 0);
    for (const Text& t : k.texts) {
      PangoLayout* layout = pango_layout_new(context);
      PangoFontDescription* d =
          pango_font_description_from_string("Liberation Sans");
      pango_font_description_set_absolute_size(d, t.size * PANGO_SCALE);
      pango_layout_set_font_description(layout, d);
      pango_font_description_free(d);
      pango_layout_set_text(layout, t.text.data(),
                            static_cast<int>(t.text.size()));
      cairo_move_to(cr, t.x, t.y);
      pango_cairo_show_layout(cr, layout);
      g_object_unref(layout);
    }
    g_object_unref(context);
    cairo_destroy(cr);
    cairo_surface_flush(s);
    benchmark::DoNotOptimize(cairo_image_surface_get_data(s));
    cairo_surface_destroy(s);
  }
  g_object_unref(map);
}
BENCHMARK(BM_PangoCairoSameTexts)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  auto times = zv::bench::runBenchmarks(argc, argv);
  const double ours = times["BM_RenderKeypadWithList"];
  const double peer = times["BM_PangoCairoSameTexts"];
  if (ours > 0 && peer > 0) {
    std::printf("keypad picture 750x1334: %.2f ms (goal: under 30 ms)\n", ours);
    std::printf("keypad picture / pango_cairo texts alone: %.2f\n",
                ours / peer);
  }
  std::fflush(stdout);
  return 0;
}
