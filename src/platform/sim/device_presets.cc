#include "platform/sim/device_presets.h"

namespace zv::platform {
namespace {

struct Screen {
  const char* inches;
  Size points, pixels;
  double scale;
  const char* model;
};

constexpr Screen kScreens[] = {
    {"3.5", {320, 480}, {640, 960}, 2, "iPhone4,1"},
    {"4", {320, 568}, {640, 1136}, 2, "iPhone6,1"},
    {"4.7", {375, 667}, {750, 1334}, 2, "iPhone7,2"},
    {"5.5", {414, 736}, {1242, 2208}, 3, "iPhone7,1"},
};

}  // namespace

std::optional<DeviceFacts> simulatedDevice(std::string_view systemVersion,
                                           std::string_view screenInches) {
  for (const Screen& s : kScreens) {
    if (screenInches != s.inches) continue;
    DeviceFacts facts;
    facts.screenPoints = s.points;
    facts.screenPixels = s.pixels;
    facts.screenScale = s.scale;
    facts.hardwareModel = s.model;
    facts.systemVersion = std::string(systemVersion);
    return facts;
  }
  return std::nullopt;
}

const std::vector<std::string>& screenSizes() {
  static const std::vector<std::string> sizes = [] {
    std::vector<std::string> out;
    for (const Screen& s : kScreens) out.emplace_back(s.inches);
    return out;
  }();
  return sizes;
}

}  // namespace zv::platform
