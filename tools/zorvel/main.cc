// zorvel: the command-line front end (settings, area lookups, the area
// database compiler, T9 search, device images, scripted host sessions).
//
// Exit status: 0 done; 1 the command failed (one "zorvel:" line on
// stderr); 2 the command line is wrong (one "zorvel:" line on stderr).
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "core/zv_exception.h"
#include "platform/linux/linux_platform.h"
#include "platform/plist.h"
#include "platform/sim/device_presets.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/output.h"
#include "tools/zorvel/phone_setup/device_home.h"
#include "tools/zorvel/screens/pictures.h"

namespace zv::cli {

std::vector<Registrar>& registrars() {
  static std::vector<Registrar> list;
  return list;
}

namespace {

// "a, b or c".
std::string choices(const std::vector<std::string>& items) {
  std::string out;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i) out += i + 1 == items.size() ? " or " : ", ";
    out += items[i];
  }
  return out;
}

}  // namespace

platform::DeviceFacts sessionDevice(
    const std::string& os, const std::string& screen,
    std::initializer_list<const char*> versions) {
  const std::vector<std::string> known(versions.begin(), versions.end());
  if (std::find(known.begin(), known.end(), os) == known.end())
    throw UsageError("unknown system version " + os + " (use " +
                     choices(known) + ")");
  auto facts = platform::simulatedDevice(os, screen);
  if (!facts)
    throw UsageError("unknown screen " + screen + " (use " +
                     choices(platform::screenSizes()) + ")");
  return *facts;
}

void addSessionOptions(CLI::App& command, SessionOptions& options,
                       const char* versions) {
  addRootOption(command, options.root);
  command.add_option("--screen", options.screen,
                     "screen size: 3.5, 4, 4.7, 5.5");
  command.add_option("--os", options.os,
                     std::string("system version: ") + versions);
  command.add_flag("--json", options.json, "one JSON object per action");
  addPngOption(command, options.png);
}

void addRootOption(CLI::App& command, std::string& root) {
  command.add_option("--root", root,
                     "device root folder (default: $ZORVEL_ROOT or the "
                     "bundled sample device)");
}

void applyRoot(const std::string& root) {
  auto& platform = platform::LinuxPlatform::instance();
  if (!root.empty()) platform.setRoot(root);
  if (!std::filesystem::is_directory(platform.root()))
    throw CommandError("device root not found: " + platform.root());
}

void warnUnparsable(const char* devicePath, const char* what) {
  const std::string path = platform::current().path(devicePath);
  if (std::filesystem::exists(path) && !plist::readDictionary(path))
    std::fprintf(stderr, "zorvel: %s %s does not parse; using defaults\n", what,
                 path.c_str());
}

ScratchDevice::ScratchDevice() {
  namespace fs = std::filesystem;
  auto& platform = platform::LinuxPlatform::instance();
  std::string pattern =
      (fs::temp_directory_path() / "zorvel-scratch.XXXXXX").string();
  if (!::mkdtemp(pattern.data()))
    throw CommandError("cannot make a scratch device: " +
                       std::string(std::strerror(errno)));
  path_ = pattern;
  std::error_code ec;
  fs::copy(platform.root(), path_,
           fs::copy_options::recursive | fs::copy_options::copy_symlinks, ec);
  if (ec) {
    fs::remove_all(path_, ec);
    throw CommandError("cannot copy " + platform.root() +
                       " to a scratch device: " + ec.message());
  }
  platform.setRoot(path_);
}

ScratchDevice::~ScratchDevice() {
  std::error_code ec;
  std::filesystem::remove_all(path_, ec);
}

}  // namespace zv::cli

namespace {

int fail(const std::string& line, int code) {
  std::fprintf(stderr, "zorvel: %s\n", line.c_str());
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  // A closed pipe is a write error that the commands report, not a signal
  // that ends the program without a word.
  std::signal(SIGPIPE, SIG_IGN);
  CLI::App app{"zorvel: dialler and caller-information tools"};
  app.set_version_flag("--version",
                       std::string("zorvel ") + zv::ZVException::kVersion);
  app.require_subcommand(1);
  // The bundled sample device in a build folder; an installed zorvel on a
  // phone has the phone's own device root instead.
  zv::platform::LinuxPlatform::instance().setDefaultRoot(
      std::filesystem::is_directory(ZV_SAMPLE_ROOT)
          ? std::string(ZV_SAMPLE_ROOT)
          : zv::cli::phoneDeviceRoot());
  for (auto& registrar : zv::cli::registrars()) registrar(app);
  try {
    app.parse(argc, argv);
    zv::cli::finishOut();
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    return fail(e.what(), 2);
  } catch (const zv::cli::CommandError& e) {
    try {
      zv::cli::finishOut();  // what was answered before the error stays
    } catch (const zv::cli::CommandError&) {
    }
    return fail(e.what(), e.code());
  } catch (const std::exception& e) {
    return fail(e.what(), 1);
  }
  return 0;
}
