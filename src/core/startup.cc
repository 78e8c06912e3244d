#include "core/startup.h"

#include <cstdlib>

#include "core/settings.h"
#include "platform/platform.h"

namespace zv {

float systemVersionFloat() {
  // floatValue of "7.1.2": the longest leading decimal, 7.1.
  return Value(platform::current().device().systemVersion).floatValue();
}

bool zv_init() {
  try {
    auto settings = ZVSettings::make<ZVSettings>();
    if (!settings->Enable()) return false;
    return systemVersionFloat() >= 7.0f;
  } catch (...) {
    return false;
  }
}

}  // namespace zv
