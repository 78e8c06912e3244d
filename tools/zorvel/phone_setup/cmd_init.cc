// zorvel init [--root DIR] [--force]: the device root of a real phone. It
// holds what the platform would have before anyone used Zorvel: the
// installed data (area databases, reading table, pictures, the reminder
// sound, zvtool with its backup triggers), an empty address book, address
// book pictures and call histories in the platform's layouts, and a
// settings file with no keys (every key at its default). No people are made
// up: contacts come from `zorvel addressbook sync` or `import`.
//
// The root is --root, else $ZORVEL_ROOT, else $XDG_DATA_HOME/zorvel/device
// (what the installed callerd unit uses). A folder with other things in it
// is refused; an existing device is left as it is. --force makes a device
// of a non-empty folder and brings the installed data of an existing one up
// to date, but never replaces its address book, call history, settings or
// lists.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "core/settings.h"
#include "platform/db/platform_schema.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/install_layout.h"
#include "tools/zorvel/phone_setup/device_home.h"

namespace zv::cli {
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;

struct InitOptions {
  std::string root;
  bool force = false;
};

// A device root is recognised by the platform folders it has.
bool isDevice(const fs::path& dir) {
  std::error_code ec;
  return fs::is_directory(dir / "Library/Zorvel", ec) &&
         fs::is_directory(dir / "var/mobile/Library", ec);
}

void copyData(const fs::path& from, const fs::path& to) {
  std::error_code ec;
  for (auto it = fs::recursive_directory_iterator(from, ec);
       !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
    const fs::path rel = fs::relative(it->path(), from);
    if (rel == "zvtool") continue;  // installed with its triggers below
    const fs::path target = to / rel;
    if (it->is_directory()) {
      fs::create_directories(target, ec);
    } else if (it->is_regular_file()) {
      if (fs::exists(fs::symlink_status(target)) &&
          !fs::is_regular_file(fs::symlink_status(target)))
        throw CommandError(target.string() +
                           " is not a regular file; left alone");
      fs::create_directories(target.parent_path(), ec);
      fs::copy_file(it->path(), target, fs::copy_options::overwrite_existing,
                    ec);
    }
    if (ec)
      throw CommandError("cannot install " + target.string() + ": " +
                         ec.message());
  }
  if (ec)
    throw CommandError("cannot read " + from.string() + ": " + ec.message());
}

void makeDatabase(const fs::path& root, const char* devicePath,
                  ps::Database which) {
  const fs::path file = root / fs::path(devicePath).relative_path();
  if (fs::exists(fs::symlink_status(file))) return;
  std::string error;
  if (!ps::createDatabase(file.string(), which, &error))
    throw CommandError("cannot create " + file.string() + ": " + error);
}

void writeIfMissing(const fs::path& root, const char* devicePath,
                    const Dict& dict) {
  const fs::path file = root / fs::path(devicePath).relative_path();
  if (fs::exists(fs::symlink_status(file))) return;
  if (!plist::writeFile(file.string(), Value(dict)))
    throw CommandError("cannot write " + file.string());
}

void init(const InitOptions& o) {
  std::string chosen = o.root;
  if (chosen.empty())
    if (const char* env = std::getenv("ZORVEL_ROOT"); env && *env) chosen = env;
  if (chosen.empty()) chosen = phoneDeviceRoot();
  const fs::path root = chosen;
  std::error_code ec;
  const auto status = fs::status(root, ec);
  const bool device = isDevice(root);
  if (fs::exists(status) && !fs::is_directory(status))
    throw CommandError(chosen + " exists and is not a folder");
  if (device && !o.force) {
    std::printf("%s is already a device; nothing changed\n", chosen.c_str());
    return;
  }
  if (!device && fs::exists(status) && !fs::is_empty(root, ec) && !o.force)
    throw CommandError(chosen +
                       " is not empty and not a device (--force makes it one)");
  const std::string data = installedDeviceData();
  if (data.empty())
    throw CommandError("the installed data of zorvel was not found");

  fs::create_directories(root, ec);
  if (ec) throw CommandError("cannot create " + chosen + ": " + ec.message());
  copyData(data, root / "Library/Zorvel");
  makeDatabase(root, ps::kAddressBookPath, ps::Database::kAddressBook);
  makeDatabase(root, ps::kAddressBookImagesPath,
               ps::Database::kAddressBookImages);
  makeDatabase(root, ps::kCallHistoryStorePath,
               ps::Database::kCallHistoryStore);
  makeDatabase(root, ps::kCallHistoryDbPath, ps::Database::kCallHistoryDb);
  // No keys: every setting at its default until the user sets it.
  writeIfMissing(root, ZVSettings::kPath, Dict{});
  // The dial-pad search on; the contacts encoded on first use.
  writeIfMissing(root, ZVSearcher::kKeypadFlagsPath,
                 Dict{{"EnableSearch", true}, {ZVSearcher::kChangedKey, true}});
  const std::string tool = findZvtool();
  if (tool.empty()) throw CommandError("no zvtool installed beside zorvel");
  installZvtool(root.string(), tool);
  std::printf("%s: %s device ready\n", chosen.c_str(),
              device ? "installed data updated on the" : "new");
}

Registration reg([](CLI::App& app) {
  auto o = std::make_shared<InitOptions>();
  auto* cmd = app.add_subcommand(
      "init",
      "make the device root of a Linux phone: installed data, empty address "
      "book and call history, default settings");
  cmd->add_option("--root", o->root,
                  "device root folder (default: $ZORVEL_ROOT, else "
                  "$XDG_DATA_HOME/zorvel/device)");
  cmd->add_flag("--force", o->force,
                "make a device of a folder that is not empty, or update the "
                "installed data of an existing device (the user's address "
                "book, calls, settings and lists are kept)");
  cmd->callback([o] { init(*o); });
});

}  // namespace
}  // namespace zv::cli
