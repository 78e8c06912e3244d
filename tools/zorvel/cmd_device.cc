// zorvel device create DIR: writes a generated device root (contacts, call
// histories, pictures, installed data, settings) for tests, benchmarks and
// demonstrations.
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "devicegen/device_image.h"
#include "tools/zorvel/command.h"

namespace zv::cli {
namespace {

// Data that `create` installs when no file is named: the copy in the
// bundled sample device, when there is one.
std::string sampleFile(const char* devicePath) {
  std::filesystem::path file =
      std::filesystem::path(ZV_SAMPLE_ROOT) /
      std::filesystem::path(devicePath).relative_path();
  return std::filesystem::is_regular_file(file) ? file.string() : "";
}

struct CreateArgs {
  std::string dir;
  DeviceImageOptions options;
};

void create(const CreateArgs& args) {
  DeviceImageOptions options = args.options;
  if (options.tableFile.empty()) {
    options.tableFile = sampleFile("/Library/Zorvel/Table/PinYin.txt");
    if (options.tableFile.empty())
      throw CommandError("no reading table found; pass --table FILE");
  }
  if (options.areaFile.empty())
    options.areaFile = sampleFile("/Library/Zorvel/Area/China");
  try {
    DeviceImageSummary s = createDeviceImage(args.dir, options);
    std::printf(
        "%s: %d contacts, %d numbers, %d pictures, %d calls (%d missed)\n",
        args.dir.c_str(), s.contacts, s.phoneNumbers, s.pictures, s.calls,
        s.missedCalls);
  } catch (const std::exception& e) {
    throw CommandError(e.what());
  }
}

Registration reg([](CLI::App& app) {
  auto* device = app.add_subcommand("device", "generated device roots");
  device->require_subcommand(1);
  auto args = std::make_shared<CreateArgs>();
  auto* cmd = device->add_subcommand(
      "create",
      "write a device root with generated contacts, calls and pictures");
  cmd->add_option("DIR", args->dir, "device root folder to write")->required();
  cmd->add_option("--contacts", args->options.contacts, "number of contacts")
      ->check(CLI::Range(0, 10000000))
      ->capture_default_str();
  cmd->add_option("--calls", args->options.calls, "number of calls")
      ->check(CLI::Range(0, 10000000))
      ->capture_default_str();
  cmd->add_option("--seed", args->options.seed, "random seed")
      ->capture_default_str();
  cmd->add_option("--table", args->options.tableFile,
                  "reading table to install (default: the sample device's)");
  cmd->add_option("--area", args->options.areaFile,
                  "area database to install as Area/China (default: the "
                  "sample device's, if any)");
  cmd->add_option("--settings", args->options.settingsFile,
                  "settings file to install (default: a small generated one)");
  cmd->callback([args] { create(*args); });
});

}  // namespace
}  // namespace zv::cli
