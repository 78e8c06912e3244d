#include "tools/zorvel/phone_setup/device_home.h"

#include <cstdlib>
#include <filesystem>

#include "tools/zorvel/install_layout.h"

namespace zv::cli {

namespace fs = std::filesystem;

std::string phoneDeviceRoot() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data && *data == '/') return std::string(data) + "/zorvel/device";
  const char* home = std::getenv("HOME");
  return std::string(home ? home : "") + "/.local/share/zorvel/device";
}

std::string installedDeviceData() {
  std::error_code ec;
  // The installed layout first: a build folder's sample device may be
  // gone long after the package was made from it.
  const fs::path installed = programFolder() / "../share/zorvel/Library/Zorvel";
  if (fs::is_directory(installed / "Area", ec)) return installed.string();
  const fs::path sample = fs::path(ZV_SAMPLE_ROOT) / "Library/Zorvel";
  if (fs::is_directory(sample / "Area", ec)) return sample.string();
  return "";
}

}  // namespace zv::cli
