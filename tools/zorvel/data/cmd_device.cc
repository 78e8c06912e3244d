// zorvel device create DIR: writes a generated device root (contacts, call
// histories, pictures, installed data, settings) that is ready to use: the
// dial-pad search is switched on, zvtool is installed with its backup
// triggers, and no contacts cache of an earlier device is left to be
// trusted. An existing folder that is not empty is refused unless --force.
#include <unistd.h>

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "devicegen/device_image.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/device_root.h"
#include "tools/zorvel/install_layout.h"
#include "tools/zorvel/output.h"

namespace zv::cli {
namespace {

namespace fs = std::filesystem;

struct CreateArgs {
  std::string dir, zvtool;
  bool force = false;
  DeviceImageOptions options;
};

void checkTarget(const CreateArgs& args) {
  std::error_code ec;
  auto status = fs::status(args.dir, ec);
  if (!fs::exists(status)) return;
  if (!fs::is_directory(status))
    throw CommandError(args.dir + " exists and is not a folder");
  if (fs::is_empty(args.dir, ec)) return;
  // --force writes over a device, never over a folder of other files.
  if (!isDeviceRoot(args.dir))
    throw CommandError(args.dir + " is not empty and not a device root");
  if (!args.force)
    throw CommandError(args.dir +
                       " is not empty (--force writes the device over it)");
}

// What an earlier device in the folder leaves that would mislead this one:
// its contacts cache, its keypad flags and its notification sockets.
void forgetEarlierDevice(const std::string& dir) {
  std::error_code ec;
  for (const char* devicePath :
       {ZVSearcher::kCachePath, ZVSearcher::kKeypadFlagsPath})
    fs::remove(dir + devicePath, ec);
  fs::remove_all(dir + "/var/run/zorvel", ec);
}

void create(const CreateArgs& args) {
  checkTarget(args);
  DeviceImageOptions options = args.options;
  if (options.tableFile.empty()) {
    options.tableFile =
        dataFile("/Library/Zorvel/Table/PinYin.txt", "PinYin.txt");
    if (options.tableFile.empty())
      throw CommandError("no reading table found; pass --table FILE");
  }
  if (options.areaFile.empty())
    options.areaFile = dataFile("/Library/Zorvel/Area/China", "China");
  const std::string tool = args.zvtool.empty() ? findZvtool() : args.zvtool;
  if (tool.empty())
    throw CommandError("no zvtool beside zorvel; pass --zvtool FILE");

  forgetEarlierDevice(args.dir);
  DeviceImageSummary s;
  try {
    s = createDeviceImage(args.dir, options);
  } catch (const std::exception& e) {
    throw CommandError(e.what());
  }
  installZvtool(args.dir, tool);
  // The dial-pad search on, and the contacts encoded afresh on first use.
  const std::string flags = args.dir + ZVSearcher::kKeypadFlagsPath;
  if (!plist::writeFile(flags, Value(Dict{{"EnableSearch", true},
                                          {ZVSearcher::kChangedKey, true}})))
    throw CommandError("cannot write " + flags);
  writeOut(args.dir + ": " + std::to_string(s.contacts) + " contacts, " +
           std::to_string(s.phoneNumbers) + " numbers, " +
           std::to_string(s.pictures) + " pictures, " +
           std::to_string(s.calls) + " calls (" +
           std::to_string(s.missedCalls) + " missed)\n");
}

Registration reg([](CLI::App& app) {
  auto* device = app.add_subcommand("device", "generated device roots");
  device->require_subcommand(1);
  auto args = std::make_shared<CreateArgs>();
  auto* cmd = device->add_subcommand(
      "create",
      "Write a device root with generated contacts, calls and pictures, the "
      "installed data and zvtool, and the dial-pad search switched on.");
  cmd->add_option("DIR", args->dir, "device root folder to write")->required();
  cmd->add_flag("--force", args->force,
                "write over an existing device (its files are replaced, the "
                "earlier contacts cache removed); a folder of other files is "
                "always refused");
  cmd->add_option("--contacts", args->options.contacts, "number of contacts")
      ->check(CLI::Range(0, 10000000))
      ->capture_default_str();
  cmd->add_option("--calls", args->options.calls, "number of calls")
      ->check(CLI::Range(0, 10000000))
      ->capture_default_str();
  cmd->add_option("--seed", args->options.seed, "random seed (0 or more)")
      ->check(CLI::Validator(
          [](std::string& value) {
            // strtoull would take "-1" as the largest seed.
            return value.find_first_not_of("0123456789") == std::string::npos
                       ? std::string()
                       : "a seed is a whole number of 0 or more, not " + value;
          },
          "SEED"))
      ->capture_default_str();
  cmd->add_option("--table", args->options.tableFile,
                  "reading table to install (default: the sample device's)");
  cmd->add_option("--area", args->options.areaFile,
                  "area database to install as Area/China (default: the "
                  "sample device's, if any)");
  cmd->add_option("--settings", args->options.settingsFile,
                  "settings file to install (default: a small generated one)");
  cmd->add_option("--zvtool", args->zvtool,
                  "zvtool program to install (default: the one beside zorvel)");
  cmd->callback([args] { create(*args); });
});

}  // namespace
}  // namespace zv::cli
