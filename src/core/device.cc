#include "core/device.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/platform.h"
#include "platform/process.h"

namespace zv {
namespace {

constexpr uint32_t kSystemVibrationSound = 4095;

// The per-process answers: the version (0 until read) and one tri-state per
// model or screen test (-1 untested, 0 no, 1 yes).
enum Test {
  kPhone6p,
  kPhone6,
  kPhone5s,
  kPhone5,
  kPhone4s,
  kPhone4,
  kPhone6pScreen,
  kPhone6Screen,
  kPhone5Screen,
  kPhone4Screen,
  kTestCount
};

struct DeviceCache {
  float osVersion = 0;
  signed char tests[kTestCount];
  DeviceCache() {
    for (auto& t : tests) t = -1;
  }
};

DeviceCache& cache() {
  auto& slot = platform::Process::current().slot<DeviceCache>();
  if (!slot) slot = std::make_shared<DeviceCache>();
  return *slot;
}

template <typename Compute>
bool cachedTest(Test test, Compute&& compute) {
  signed char& answer = cache().tests[test];
  if (answer < 0) answer = compute() ? 1 : 0;
  return answer == 1;
}

bool modelBeginsWith(Test test, const char* prefix) {
  return cachedTest(test, [prefix] {
    return platform::current().device().hardwareModel.starts_with(prefix);
  });
}

bool sizeIs(platform::Size s, double a, double b) {
  return (s.width == a && s.height == b) || (s.width == b && s.height == a);
}

bool screenPointsAre(Test test, double a, double b) {
  return cachedTest(test, [a, b] {
    return sizeIs(platform::current().device().screenPoints, a, b);
  });
}

bool screenPixelsAre(Test test, double a, double b) {
  return cachedTest(test, [a, b] {
    return sizeIs(platform::current().device().screenPixels, a, b);
  });
}

// A float as a number in the pattern dictionary: the shortest decimal that
// reads back as the same float, so 0.8f is stored as 0.8.
double floatNumber(float f) {
  char buf[32];
  for (int precision = 1; precision <= 9; ++precision) {
    std::snprintf(buf, sizeof buf, "%.*g", precision, static_cast<double>(f));
    if (std::strtof(buf, nullptr) == f) return std::strtod(buf, nullptr);
  }
  return f;
}

}  // namespace

float UIDevice::OSVersion() {
  float& version = cache().osVersion;
  if (version == 0)
    version = Value(platform::current().device().systemVersion).floatValue();
  return version;
}

bool UIDevice::isPhone6p() { return modelBeginsWith(kPhone6p, "iPhone7,1"); }
bool UIDevice::isPhone6() { return modelBeginsWith(kPhone6, "iPhone7,2"); }
bool UIDevice::isPhone5s() { return modelBeginsWith(kPhone5s, "iPhone6"); }
bool UIDevice::isPhone5() { return modelBeginsWith(kPhone5, "iPhone5"); }
bool UIDevice::isPhone4s() { return modelBeginsWith(kPhone4s, "iPhone4"); }
bool UIDevice::isPhone4() { return modelBeginsWith(kPhone4, "iPhone3"); }

bool UIDevice::isPhone6pscreen() {
  return screenPointsAre(kPhone6pScreen, 414, 736);
}
bool UIDevice::isPhone6screen() {
  return screenPointsAre(kPhone6Screen, 375, 667);
}
bool UIDevice::isPhone5screen() {
  return screenPixelsAre(kPhone5Screen, 640, 1136);
}
bool UIDevice::isPhone4screen() {
  return screenPixelsAre(kPhone4Screen, 640, 960);
}

Dict vibrationPattern(float intensity, int64_t total, int64_t on, int64_t off) {
  Array pattern;
  int64_t remaining = total;
  for (int pass = 0; pass < 10; ++pass) {
    if (remaining <= on) {
      if (remaining >= 1) {
        pattern.emplace_back(true);
        pattern.emplace_back(remaining);
      }
      break;
    }
    pattern.emplace_back(true);
    pattern.emplace_back(on);
    if (remaining - on <= off) break;
    pattern.emplace_back(false);
    pattern.emplace_back(off);
    remaining -= on + off;
  }
  return Dict{{"VibePattern", Value(std::move(pattern))},
              {"Intensity", Value(floatNumber(intensity))}};
}

void UIDevice::vibrateWithIntensity(float intensity, int64_t totalDuration,
                                    int64_t onDuration, int64_t offDuration) {
  platform::current().playVibration(
      kSystemVibrationSound,
      vibrationPattern(intensity, totalDuration, onDuration, offDuration));
}

}  // namespace zv
