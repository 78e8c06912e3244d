#include "tools/zorvel/install_layout.h"

#include <unistd.h>

namespace zv::cli {

namespace fs = std::filesystem;

fs::path programFolder() {
  std::error_code ec;
  fs::path self = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::path() : self.parent_path();
}

std::string sampleDevice() {
  const fs::path folder = programFolder();
  std::error_code ec;
  for (const fs::path& candidate :
       {folder / "sample-device", folder / "../share/zorvel/sample-device"})
    if (fs::is_directory(candidate, ec))
      return candidate.lexically_normal().string();
  return "";
}

std::string dataFile(const char* devicePath, const char* installedName) {
  std::error_code ec;
  const std::string sample = sampleDevice();
  if (!sample.empty()) {
    const fs::path copy =
        fs::path(sample) / fs::path(devicePath).relative_path();
    if (fs::is_regular_file(copy, ec)) return copy.string();
  }
  const fs::path installed =
      programFolder() / "../share/zorvel" / installedName;
  return fs::is_regular_file(installed, ec)
             ? installed.lexically_normal().string()
             : "";
}

std::string findZvtool() {
  std::error_code ec;
  for (const fs::path& candidate :
       {programFolder() / "zvtool", programFolder() / "../libexec/zvtool"})
    if (fs::is_regular_file(candidate, ec) &&
        ::access(candidate.c_str(), X_OK) == 0)
      return candidate.string();
  return "";
}

}  // namespace zv::cli
