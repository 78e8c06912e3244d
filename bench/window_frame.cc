// From a key press to the repainted frame in `zorvel window`, on a
// generated phone of 2,000 contacts with the dial-pad search on: the key
// reaches the keypad as the window's input delivers it, the search runs,
// and the app's key window (750 x 1334, the 4.7-inch phone at scale 2) is
// laid out and painted onto a cairo surface as the window's surface does. Keys
// cycle through typing two digits and deleting them, so every step searches or
// narrows. The peer in the same process is a repaint of the same screen with no
// key (the drawing alone). Times are the thread's CPU time, so that other work
// on a shared machine counts against neither. Printed: the key-to-frame
// time against the 16 ms frame budget, and over the peer's.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

#include "bench/run_times.h"
#include "devicegen/device_image.h"
#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "hosts/phone/app.h"
#include "platform/plist.h"
#include "platform/render/paint_window.h"
#include "platform/sim/device_presets.h"
#include "tools/zorvel/window/phone_input.h"

namespace {

namespace fs = std::filesystem;
using namespace zv;

constexpr int kContacts = 2000;
constexpr double kFrameBudgetMs = 16;

struct Phone final : window::PhoneInput::Port {
  Phone() {
    root = (fs::temp_directory_path() / "zv-bench-window").string();
    fs::remove_all(root);
    DeviceImageOptions options;
    options.contacts = kContacts;
    options.tableFile = ZV_SOURCE_DIR "/data/table/PinYin.txt";
    createDeviceImage(root, options);
    plist::writeFile(
        root + "/var/mobile/Library/Preferences/zorvel.keypad.plist",
        Value(Dict{{"EnableSearch", true}}));
    world = std::make_unique<platform::SimWorld>(root);
    proc = &hosts::launchSimulated(*world, hosts::phoneHost(),
                                   *platform::simulatedDevice("8.1", "4.7"),
                                   ZorvelInitializer);
    world->advance(0);
    app = proc->run([] { return hosts::PhoneApplication::shared(); });
    input = std::make_unique<window::PhoneInput>(*app, *this);
    picture = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 750, 1334);
  }
  ~Phone() override {
    proc->run([&] {
      input.reset();
      app.reset();
    });
    world.reset();
    cairo_surface_destroy(picture);
    fs::remove_all(root);
  }
  std::shared_ptr<ui::UIWindow> window() override {
    return hosts::keyWindow(*proc);
  }
  void changed() override {}
  void closed() override {}

  // What the window does for one key: deliver it, let the app's queued
  // work run, draw the screen.
  void keyToFrame(const std::string& name, uint32_t character) {
    proc->run([&] { input->type(name, character); });
    world->advance(0);
    frame();
  }
  void frame() {
    proc->run([&] {
      cairo_t* cr = cairo_create(picture);
      cairo_set_source_rgb(cr, 1, 1, 1);
      cairo_paint(cr);
      render::paintWindow(cr, *window(), 2);
      cairo_destroy(cr);
      cairo_surface_flush(picture);
      benchmark::DoNotOptimize(cairo_image_surface_get_data(picture));
    });
  }

  std::string root;
  std::unique_ptr<platform::SimWorld> world;
  platform::SimProcess* proc = nullptr;
  std::shared_ptr<hosts::PhoneApplication> app;
  std::unique_ptr<window::PhoneInput> input;
  cairo_surface_t* picture = nullptr;
};

double threadSeconds() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return ts.tv_sec + ts.tv_nsec * 1e-9;
}

Phone& phone() {
  static Phone p;
  return p;
}

void BM_KeyToFrame(benchmark::State& state) {
  auto& p = phone();
  static const struct {
    const char* name;
    uint32_t character;
  } steps[] = {{"6", '6'}, {"4", '4'}, {"BackSpace", 0}, {"BackSpace", 0},
               {"2", '2'}, {"6", '6'}, {"BackSpace", 0}, {"BackSpace", 0}};
  size_t i = 0;
  for (auto _ : state) {
    const auto& s = steps[i++ % std::size(steps)];
    const double start = threadSeconds();
    p.keyToFrame(s.name, s.character);
    state.SetIterationTime(threadSeconds() - start);
  }
}
BENCHMARK(BM_KeyToFrame)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_RepaintOnly(benchmark::State& state) {
  auto& p = phone();
  for (auto _ : state) {
    const double start = threadSeconds();
    p.frame();
    state.SetIterationTime(threadSeconds() - start);
  }
}
BENCHMARK(BM_RepaintOnly)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

int main(int argc, char** argv) {
  auto times = zv::bench::runBenchmarks(argc, argv);
  const double key = times["BM_KeyToFrame/manual_time"];
  const double peer = times["BM_RepaintOnly/manual_time"];
  if (key > 0 && peer > 0)
    std::printf(
        "key press to repainted frame at %d contacts: %.2f ms, %.2f of the "
        "%.0f ms frame budget; %.2fx a repaint with no key (%.2f ms)\n",
        kContacts, key, key / kFrameBudgetMs, kFrameBudgetMs, key / peer, peer);
  return 0;
}
