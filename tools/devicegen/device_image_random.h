// A small deterministic random source for generated device images: the same
// seed gives the same sequence on every platform and compiler (unlike the
// standard distributions, whose results are implementation-defined).
#pragma once

#include <cstddef>
#include <cstdint>

namespace zv {

class DeviceRandom {
 public:
  explicit DeviceRandom(uint64_t seed) : state_(seed) {}

  // splitmix64: passes the usual statistical tests and needs no warm-up.
  uint64_t next() {
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }

  // Uniform in [lo, hi]; the modulo bias is far below anything that shows
  // in generated data.
  int uniform(int lo, int hi) {
    return lo + static_cast<int>(next() % static_cast<uint64_t>(hi - lo + 1));
  }

  // Uniform in [0, 1).
  double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

  bool chance(double p) { return unit() < p; }

  template <class T, size_t N>
  const T& pick(const T (&items)[N]) {
    return items[next() % N];
  }

 private:
  uint64_t state_;
};

}  // namespace zv
