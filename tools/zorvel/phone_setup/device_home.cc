#include "tools/zorvel/phone_setup/device_home.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace zv::cli {
namespace {

namespace fs = std::filesystem;

fs::path programFolder() {
  std::error_code ec;
  fs::path self = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::path() : self.parent_path();
}

}  // namespace

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

std::string installedZvtool() {
  for (const fs::path& candidate :
       {programFolder() / "zvtool", programFolder() / "../libexec/zvtool"})
    if (fs::is_regular_file(candidate) &&
        ::access(candidate.c_str(), X_OK) == 0)
      return candidate.string();
  return "";
}

}  // namespace zv::cli
