#include "platform/platform.h"

#include <algorithm>
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

namespace {

// `text` as one word for the shell.
std::string shellQuoted(std::string_view text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'')
      out += "'\\''";
    else
      out += c;
  }
  return out + "'";
}

}  // namespace

std::string deviceCommandLine(const std::string& root,
                              const std::string& command) {
  // The program's path is mapped under the root and quoted with it, so a
  // root whose path holds blanks or quotes still names the program; the
  // arguments after it stay as the caller wrote them.
  std::string mapped = command;
  if (!mapped.empty() && mapped.front() == '/') {
    const size_t end = std::min(mapped.find(' '), mapped.size());
    mapped = shellQuoted(root + mapped.substr(0, end)) + mapped.substr(end);
  }
  return "ZORVEL_ROOT=" + shellQuoted(root) + " " + mapped;
}

int runDeviceCommand(const std::string& root, const std::string& command) {
  return std::system(deviceCommandLine(root, command).c_str());
}

}  // namespace zv::platform
