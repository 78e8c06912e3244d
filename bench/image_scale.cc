// Contact-picture scaling: ui::Image::scaleToSize (aspect fill, centre crop,
// area-average resampler) against stb_image_resize's default filter on the
// same crop, measured in the same process. Prints our time over the peer's.
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#include <stb/stb_image_resize.h>
#pragma GCC diagnostic pop

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/run_times.h"
#include "platform/ui/image.h"

namespace {

// A 240 x 320 thumbnail (a typical camera-made contact picture) with some
// texture, scaled to the 40-point list avatar at scale 2.
const zv::ui::Image& source() {
  static const zv::ui::Image image = [] {
    std::vector<uint8_t> rgba;
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 240; ++x)
        rgba.insert(rgba.end(),
                    {static_cast<uint8_t>(x), static_cast<uint8_t>(y),
                     static_cast<uint8_t>((x * y) & 0xff), 255});
    return zv::ui::Image(240, 320, 2, std::move(rgba));
  }();
  return image;
}

void BM_ScaleToSize(benchmark::State& state) {
  for (auto _ : state) {
    auto scaled = source().scaleToSize({40, 40}, 2);
    benchmark::DoNotOptimize(scaled);
  }
}
BENCHMARK(BM_ScaleToSize);

void BM_StbResizeSameCrop(benchmark::State& state) {
  // The centre 240 x 240 square of the source, to 80 x 80 pixels.
  const auto& image = source();
  const uint8_t* crop = image.rgba().data() + 40 * 240 * 4;
  std::vector<uint8_t> out(80 * 80 * 4);
  for (auto _ : state) {
    stbir_resize_uint8(crop, 240, 240, 240 * 4, out.data(), 80, 80, 80 * 4, 4);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_StbResizeSameCrop);

}  // namespace

int main(int argc, char** argv) {
  auto times = zv::bench::runBenchmarks(argc, argv);
  const double ours = times["BM_ScaleToSize"];
  const double peer = times["BM_StbResizeSameCrop"];
  if (ours > 0 && peer > 0)
    std::printf("scaleToSize / stb_image_resize: %.2f\n", ours / peer);
  return 0;
}
