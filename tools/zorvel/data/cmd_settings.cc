// zorvel settings: the effective value of every settings key on a device,
// grouped by settings class, and whether it came from the settings file or
// the built-in default; then the keypad's own flags (EnableSearch,
// AddressBookChanged) from zorvel.keypad.plist. The listing reads only; nothing
// is written to the device. (Its actions, which change one key, are
// phone_setup/settings_edit.h.)
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "core/settings_catalogue.h"
#include "dialer/keypad_controller.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/output.h"
#include "tools/zorvel/phone_setup/settings_edit.h"

namespace zv::cli {
namespace {

std::string plainText(const SettingInfo& info, const Value& value) {
  if (info.type == "boolean") return value.boolValue() ? "true" : "false";
  if (info.type == "float") return floatText(value.doubleValue());
  if (info.type == "string")
    return nlohmann::ordered_json(value.stringValue())
        .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  return value.stringValue();
}

nlohmann::ordered_json jsonValue(const SettingInfo& info, const Value& value) {
  if (info.type == "boolean") return value.boolValue();
  if (info.type == "integer") return value.intValue();
  if (info.type == "float")
    return std::strtod(floatText(value.doubleValue()).c_str(), nullptr);
  return value.stringValue();
}

// One class and the keys it lists: the general class shows the shared keys,
// each feature class only the keys it adds on top of them.
struct ClassListing {
  std::string name;
  std::vector<SettingInfo> keys;
};

std::vector<ClassListing> listing() {
  auto catalogue = makeSettingsCatalogue();
  const size_t shared = catalogue.front()->describe().size();
  std::vector<ClassListing> out;
  for (size_t i = 0; i < catalogue.size(); ++i) {
    auto keys = catalogue[i]->describe();
    keys.erase(keys.begin(), keys.begin() + (i == 0 ? 0 : shared));
    out.push_back(ClassListing{catalogue[i]->className(), std::move(keys)});
  }
  return out;
}

// A property-list file the command reads: its host path and whether it is
// "missing", "loaded" or "unparsable" (reported on stderr).
struct FileState {
  std::string path;
  const char* status = "missing";
  std::optional<Dict> dict;
};

FileState readState(const std::string& devicePath, const char* what) {
  FileState f;
  f.path = platform::current().path(devicePath);
  if (!std::filesystem::exists(f.path)) return f;
  f.dict = plist::readDictionary(f.path);
  if (f.dict) {
    f.status = "loaded";
  } else {
    f.status = "unparsable";
    warnUnparsable(devicePath.c_str(), what);
  }
  return f;
}

// The keypad's own switches, kept in their own file by the keypad and the
// searcher: the search switch and the address-book-changed flag. Both read
// false when absent.
std::vector<SettingInfo> keypadFlags(const FileState& f) {
  std::vector<SettingInfo> keys;
  for (const char* key :
       {ZVKeypadController::kEnableSearchKey, ZVSearcher::kChangedKey}) {
    SettingInfo info;
    info.key = key;
    info.type = "boolean";
    info.defaultValue = Value(false);
    info.value = Value(false);
    if (f.dict) {
      auto it = f.dict->find(key);
      if (it != f.dict->end()) {
        info.value = Value(it->second.boolValue());
        info.fromFile = true;
      }
    }
    keys.push_back(std::move(info));
  }
  return keys;
}

size_t keyWidth(const std::vector<ClassListing>& classes) {
  size_t width = 0;
  for (const auto& c : classes)
    for (const auto& k : c.keys) width = std::max(width, k.key.size());
  return width;
}

void printKeys(const std::vector<SettingInfo>& keys, size_t width) {
  for (const auto& k : keys) {
    std::string source = "default";
    if (k.fromFile)
      source = "file (default " + plainText(k, k.defaultValue) + ")";
    std::printf("  %-*s  %-7s  %-14s  %s\n", static_cast<int>(width),
                k.key.c_str(), k.type.c_str(), plainText(k, k.value).c_str(),
                source.c_str());
  }
}

void printPlain(const std::vector<ClassListing>& classes,
                const std::string& file, const char* status) {
  std::printf("settings file %s (%s)\n", file.c_str(), status);
  for (const auto& c : classes) {
    std::printf("\n%s\n", c.name.c_str());
    printKeys(c.keys, keyWidth(classes));
  }
}

nlohmann::ordered_json jsonKeys(const std::vector<SettingInfo>& keys) {
  nlohmann::ordered_json out = nlohmann::ordered_json::array();
  for (const auto& k : keys)
    out.push_back({{"key", k.key},
                   {"type", k.type},
                   {"value", jsonValue(k, k.value)},
                   {"default", jsonValue(k, k.defaultValue)},
                   {"source", k.fromFile ? "file" : "default"}});
  return out;
}

void printJson(const std::vector<ClassListing>& classes,
               const std::string& file, const char* status,
               const ClassListing& keypad, const std::string& flagsFile,
               const char* flagsStatus) {
  nlohmann::ordered_json doc = {{"file", file}, {"fileStatus", status}};
  auto& list = doc["classes"] = nlohmann::ordered_json::array();
  for (const auto& c : classes)
    list.push_back({{"class", c.name}, {"keys", jsonKeys(c.keys)}});
  doc["keypadFlags"] = {{"file", flagsFile},
                        {"fileStatus", flagsStatus},
                        {"keys", jsonKeys(keypad.keys)}};
  // A text of the file that is not UTF-8 is shown with U+FFFD.
  writeOut(doc.dump(2, ' ', false,
                    nlohmann::ordered_json::error_handler_t::replace) +
           "\n");
}

struct Options {
  std::string root;
  bool json = false;
};

void run(const Options& options) {
  applyRoot(options.root);
  const FileState settings = readState(ZVSettings::kPath, "settings file");
  const FileState flags =
      readState(ZVSearcher::kKeypadFlagsPath, "keypad flags file");
  auto classes = listing();
  ClassListing keypad{"keypad flags", keypadFlags(flags)};
  if (options.json) {
    printJson(classes, settings.path, settings.status, keypad, flags.path,
              flags.status);
  } else {
    printPlain(classes, settings.path, settings.status);
    std::printf("\nkeypad flags file %s (%s)\n", flags.path.c_str(),
                flags.status);
    printKeys(keypad.keys, keyWidth(classes));
  }
}

Registration reg([](CLI::App& app) {
  auto options = std::make_shared<Options>();
  auto* cmd = app.add_subcommand(
      "settings",
      "Show every settings key of the device with its effective value and "
      "whether it comes from the settings file or the default, then the "
      "keypad flags (EnableSearch, AddressBookChanged) of "
      "zorvel.keypad.plist. "
      "ZVGeneralSettings "
      "lists the shared keys; each feature class lists the keys it adds. A "
      "settings file that does not parse is reported on stderr and the "
      "defaults are shown (exit status 0, as the extension itself would run "
      "on defaults). Nothing is written.");
  addRootOption(*cmd, options->root);
  cmd->add_flag("--json", options->json,
                "print one JSON document {file, fileStatus, classes}");
  // get/set/unset/keys change or read one key; without one, the listing.
  addSettingsEdits(*cmd);
  cmd->callback([options, cmd] {
    if (cmd->get_subcommands().empty()) run(*options);
  });
});

}  // namespace
}  // namespace zv::cli
