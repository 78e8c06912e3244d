// Operating-system, model and screen tests, computed once per process from
// the platform's device facts; and the vibration call.
#pragma once

#include <cstdint>

#include "platform/value.h"

namespace zv {

struct UIDevice {
  static float OSVersion();       // "8.1.2" gives 8.1, read once
  static bool isPhone6p();        // hardware model begins with "iPhone7,1"
  static bool isPhone6();         // "iPhone7,2"
  static bool isPhone5s();        // "iPhone6"
  static bool isPhone5();         // "iPhone5"
  static bool isPhone4s();        // "iPhone4"
  static bool isPhone4();         // "iPhone3"
  static bool isPhone6pscreen();  // 414 x 736 points, either orientation
  static bool isPhone6screen();   // 375 x 667 points
  static bool isPhone5screen();   // 640 x 1136 pixels
  static bool isPhone4screen();   // 640 x 960 pixels
  // Plays the system vibration (sound 4095) with the pattern built by
  // vibrationPattern; durations in whole milliseconds.
  static void vibrateWithIntensity(float intensity, int64_t totalDuration,
                                   int64_t onDuration, int64_t offDuration);
};

// {"VibePattern": [true, on, false, off, ...], "Intensity": intensity}.
Dict vibrationPattern(float intensity, int64_t total, int64_t on, int64_t off);

}  // namespace zv
