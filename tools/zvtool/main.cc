// zvtool: keeps the backup of deleted calls for system 7.x, where the
// extension cannot change the call history itself and runs this tool
// through system(). The device root comes from $ZORVEL_ROOT.
//
//   zvtool -s N       put back up to N of the newest backed-up calls older
//                     than every call left, then empty the backup (even
//                     when they cannot go back)
//   zvtool -d DATE    delete the backed-up call of that date (unix seconds)
//   zvtool -c         empty the backup
//   zvtool --install  add the backup tables and the triggers that fill them
//                     (call_history.db and CallHistory.storedata, whichever
//                     the device has)
//
// Each command says on stdout what it did ("restored 3", "deleted 1",
// "emptied the backup of 4 calls", "installed in <file>").
//
// Exit status: 0 done; 1 failed or nothing to do (one line on stderr,
// nothing changed: no database, no backup table, an empty backup, no call
// of that date); 2 bad arguments (one line on stderr). --version says the
// version; --help the usage.
#include <CLI/CLI.hpp>
#include <climits>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

#include "call_backup.h"
#include "core/zv_exception.h"
#include "tools/zorvel/cli_docs.h"

namespace {

int fail(const std::string& message) {
  std::cerr << "zvtool: " << message << "\n";
  return 1;
}

int install(const std::string& root) {
  int installed = 0;
  for (const auto* tables :
       {&zv::zvtool::kLegacyCalls, &zv::zvtool::kModernCalls}) {
    std::string error;
    auto backup = zv::zvtool::CallBackup::open(root, *tables, error);
    if (!backup) continue;
    if (!backup->install(error)) return fail(error);
    std::cout << "installed the call backup in " << root << tables->devicePath
              << "\n";
    ++installed;
  }
  if (installed == 0) return fail("no call history database under " + root);
  return 0;
}

std::string dateText(double date) {
  std::ostringstream text;
  text << std::setprecision(17) << date;
  return text.str();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Keeps the backup of calls deleted from the call history.",
               "zvtool"};
  int restore = 0;
  double date = 0;
  auto* s = app.add_option("-s", restore,
                           "restore up to N backed-up calls, empty the backup")
                ->type_name("N")
                ->check(CLI::Range(0, INT_MAX));
  auto* d = app.add_option("-d", date, "delete the backed-up call of DATE")
                ->type_name("DATE");
  auto* c = app.add_flag("-c")->description("empty the backup");
  auto* i = app.add_flag("--install")
                ->description("add the backup tables and triggers");
  app.set_version_flag("--version",
                       std::string("zvtool ") + zv::ZVException::kVersion);
  std::string docs;
  app.add_option("--docs", docs, "write the man page or bash completion")
      ->check(CLI::IsMember({"man", "bash-completion"}))
      ->group("");  // for the build only
  try {
    app.parse(argc, argv);
    if (!docs.empty()) {
      std::cout << (docs == "man"
                        ? zv::cli::manPage(app, zv::ZVException::kVersion)
                        : zv::cli::bashCompletion(app));
      std::cout.flush();
      return std::cout ? 0 : fail("cannot write output");
    }
    if ((s->count() > 0) + (d->count() > 0) + (c->count() > 0) +
            (i->count() > 0) !=
        1)
      throw CLI::ValidationError("give exactly one of -s, -d, -c, --install");
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "zvtool: " << e.what() << " (see zvtool --help)\n";
    return 2;
  }

  const char* root = std::getenv("ZORVEL_ROOT");
  if (!root || !*root) return fail("ZORVEL_ROOT is not set");
  if (*i) return install(root);

  std::string error;
  auto backup =
      zv::zvtool::CallBackup::open(root, zv::zvtool::kLegacyCalls, error);
  if (!backup) return fail(error);
  if (!backup->hasBackup(error)) return fail(error);
  const int64_t held = backup->backedUp();
  int64_t done = 0;
  if (*s) {
    if (held == 0) return fail("nothing to restore: the backup is empty");
    if (!backup->restore(restore, done, error)) return fail(error);
    std::cout << "restored " << done << " (the backup of " << held
              << " emptied)\n";
  } else if (*d) {
    if (!backup->remove(date, done, error)) return fail(error);
    if (done == 0) return fail("no backed-up call of date " + dateText(date));
    std::cout << "deleted " << done << "\n";
  } else if (*c) {
    if (held == 0) return fail("nothing to empty: the backup is empty");
    if (!backup->clear(done, error)) return fail(error);
    std::cout << "emptied the backup of " << done << " calls\n";
  }
  std::cout.flush();
  if (!std::cout) return fail("cannot write output");
  return 0;
}
