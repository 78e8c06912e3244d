#include "platform/platform.h"

#include <cstdlib>

#include "platform/plist.h"

namespace zv::platform {

std::vector<std::string> Alert::buttons() const {
  std::vector<std::string> out;
  if (!cancelButton.empty()) out.push_back(cancelButton);
  out.insert(out.end(), otherButtons.begin(), otherButtons.end());
  return out;
}

std::optional<Dict> readDictionary(std::string_view devicePath) {
  return plist::readDictionary(current().path(devicePath));
}

bool writeDictionary(std::string_view devicePath, const Dict& dict) {
  return plist::writeFile(current().path(devicePath), Value(dict));
}

int runDeviceCommand(const std::string& root, const std::string& command) {
  std::string mapped = command;
  if (!mapped.empty() && mapped.front() == '/') mapped = root + mapped;
  std::string quotedRoot = "'";
  for (char c : root) {
    if (c == '\'')
      quotedRoot += "'\\''";
    else
      quotedRoot += c;
  }
  quotedRoot += "'";
  return std::system(("ZORVEL_ROOT=" + quotedRoot + " " + mapped).c_str());
}

}  // namespace zv::platform
