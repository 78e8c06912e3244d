// zorvel: the command-line front end (settings, area lookups, the area
// database compiler, T9 search, device images, scripted host sessions).
#include <cstdio>
#include <filesystem>

#include "platform/linux/linux_platform.h"
#include "tools/zorvel/command.h"

namespace zv::cli {

std::vector<Registrar>& registrars() {
  static std::vector<Registrar> list;
  return list;
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

}  // namespace zv::cli

int main(int argc, char** argv) {
  CLI::App app{"zorvel: dialler and caller-information tools"};
  app.require_subcommand(1);
  zv::platform::LinuxPlatform::instance().setDefaultRoot(ZV_SAMPLE_ROOT);
  for (auto& registrar : zv::cli::registrars()) registrar(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  } catch (const zv::cli::CommandError& e) {
    std::fprintf(stderr, "zorvel: %s\n", e.what());
    return e.code();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "zorvel: %s\n", e.what());
    return 1;
  }
  return 0;
}
