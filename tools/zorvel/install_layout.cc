#include "tools/zorvel/install_layout.h"

#include <unistd.h>

#include "platform/platform.h"
#include "tools/zorvel/command.h"

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

void installZvtool(const std::string& root, const std::string& tool) {
  const fs::path target = fs::path(root) / "Library/Zorvel/zvtool";
  std::error_code ec;
  fs::create_directories(target.parent_path(), ec);
  fs::copy_file(tool, target, fs::copy_options::overwrite_existing, ec);
  if (!ec)
    fs::permissions(target, fs::perms(0755), fs::perm_options::replace, ec);
  if (ec)
    throw CommandError("cannot install " + target.string() + ": " +
                       ec.message());
  if (platform::runDeviceCommand(
          root, "/Library/Zorvel/zvtool --install >/dev/null") != 0)
    throw CommandError("zvtool --install failed on " + root);
}

}  // namespace zv::cli
