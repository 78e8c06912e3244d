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
#include <set>

#include "core/settings.h"
#include "core/zv_exception.h"
#include "platform/linux/linux_platform.h"
#include "platform/plist.h"
#include "platform/sim/device_presets.h"
#include "tools/zorvel/cli_docs.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/device_root.h"
#include "tools/zorvel/install_layout.h"
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

void addRootOption(CLI::App& command, std::string& root) {
  command
      .add_option("--root", root,
                  "device root folder (default: $ZORVEL_ROOT or the "
                  "bundled sample device)")
      ->type_name("DIR");
}

void applyRoot(const std::string& root) {
  auto& platform = platform::LinuxPlatform::instance();
  if (!root.empty()) platform.setRoot(root);
  requireDeviceRoot(platform.root());
  warnUnparsable(ZVSettings::kPath, "settings file");
}

void warnUnparsable(const char* devicePath, const char* what) {
  const std::string path = platform::current().path(devicePath);
  static std::set<std::string> told;  // each file once per command
  if (told.count(path)) return;
  if (std::filesystem::exists(path) && !plist::readDictionary(path) &&
      told.insert(path).second)
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

using zv::cli::kClosedPipe;

int fail(const std::string& line, int code) {
  std::fprintf(stderr, "zorvel: %s\n", line.c_str());
  return code;
}

// The reader of our output went away (`zorvel area < big | head -1`): the
// command ends as a writer in a pipeline does, by the signal, without a
// word on stderr.
int closedPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  return kClosedPipe;
}

// The first word of the command line names a subcommand: CLI11 alone would
// answer an unknown one with "A subcommand is required".
void checkSubcommand(const CLI::App& app, int argc, char** argv) {
  if (argc < 2)
    throw zv::cli::UsageError("a command is required (see zorvel --help)");
  const std::string first = argv[1];
  if (first.empty() || first[0] == '-') return;
  for (const CLI::App* sub : app.get_subcommands({}))
    if (sub->check_name(first)) return;
  throw zv::cli::UsageError("unknown command " + first +
                            " (see zorvel --help)");
}

}  // namespace

// The device a command works on without --root or $ZORVEL_ROOT: the build
// folder's sample device when run from the build, else the phone's own
// device once `zorvel init` has made it, else the installed sample device.
static std::string defaultRoot() {
  std::error_code ec;
  const auto beside = zv::cli::programFolder() / "sample-device";
  if (std::filesystem::is_directory(beside, ec)) return beside.string();
  const std::string phone = zv::cli::phoneDeviceRoot();
  if (zv::cli::isDeviceRoot(phone)) return phone;
  return zv::cli::sampleDevice();
}

int main(int argc, char** argv) {
  // A closed pipe is a write error that the commands see (and end on
  // quietly), not a signal in the middle of writing a file.
  std::signal(SIGPIPE, SIG_IGN);
  CLI::App app{"zorvel: dialler and caller-information tools", "zorvel"};
  app.set_version_flag("--version",
                       std::string("zorvel ") + zv::ZVException::kVersion);
  app.require_subcommand(0, 1);
  std::string docs;
  app.add_option("--docs", docs, "write the man page or bash completion")
      ->check(CLI::IsMember({"man", "bash-completion"}))
      ->group("");  // for the build only
  zv::platform::LinuxPlatform::instance().setDefaultRoot(defaultRoot());
  for (auto& registrar : zv::cli::registrars()) registrar(app);
  try {
    if (argc < 2 || std::string(argv[1]) != "--docs")
      checkSubcommand(app, argc, argv);
    app.parse(argc, argv);
    if (docs == "man")
      zv::cli::writeOut(zv::cli::manPage(app, zv::ZVException::kVersion));
    else if (docs == "bash-completion")
      zv::cli::writeOut(zv::cli::bashCompletion(app));
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
    int code = e.code();
    try {
      zv::cli::finishOut();  // what was answered before the error stays
    } catch (const zv::cli::CommandError& out) {
      if (out.code() == kClosedPipe) code = out.code();
    }
    if (code == kClosedPipe) return closedPipe();
    return fail(e.what(), code);
  } catch (const std::exception& e) {
    return fail(e.what(), 1);
  }
  return 0;
}
