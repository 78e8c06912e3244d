#include "tools/zorvel/device_root.h"

#include <filesystem>

#include "tools/zorvel/command.h"

namespace zv::cli {

namespace fs = std::filesystem;

bool isDeviceRoot(const std::string& dir) {
  std::error_code ec;
  return fs::is_directory(fs::path(dir) / "var/mobile/Library", ec);
}

void requireDeviceRoot(const std::string& dir) {
  std::error_code ec;
  const auto status = fs::status(dir, ec);
  if (!fs::exists(status)) throw CommandError("device root not found: " + dir);
  if (!fs::is_directory(status))
    throw CommandError("device root " + dir + " is not a folder");
  if (!isDeviceRoot(dir))
    throw CommandError(dir +
                       " is not a device root (no var/mobile/Library; "
                       "zorvel device create makes one)");
}

}  // namespace zv::cli
