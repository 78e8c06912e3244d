#include "tools/zorvel/phone_setup/device_edit.h"

#include <filesystem>

#include "platform/platform.h"
#include "platform/plist.h"
#include "tools/zorvel/command.h"

namespace zv::cli {

Dict readForEdit(const char* devicePath, const char* what) {
  namespace fs = std::filesystem;
  const std::string path = platform::current().path(devicePath);
  std::error_code ec;
  const auto status = fs::symlink_status(path, ec);
  if (!fs::exists(status)) return {};
  if (!fs::is_regular_file(status))
    throw CommandError(std::string(what) + " " + path +
                       " is not a regular file; left alone");
  auto dict = plist::readDictionary(path);
  if (!dict)
    throw CommandError(std::string(what) + " " + path +
                       " does not parse; left alone");
  return std::move(*dict);
}

void writeEdited(const char* devicePath, const Dict& dict) {
  const std::string path = platform::current().path(devicePath);
  if (!plist::writeFile(path, Value(dict)))
    throw CommandError("cannot write " + path);
}

void announce(const char* name) { platform::current().post(name); }

}  // namespace zv::cli
