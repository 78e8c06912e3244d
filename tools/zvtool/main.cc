// zvtool: keeps the backup of deleted calls for system 7.x, where the
// extension cannot change the call history itself and runs this tool
// through system(). The device root comes from $ZORVEL_ROOT.
//
//   zvtool -s N       put back up to N of the newest backed-up calls older
//                     than every call left, then empty the backup
//   zvtool -d DATE    delete the backed-up call of that date (unix seconds)
//   zvtool -c         empty the backup
//   zvtool --install  add the backup tables and the triggers that fill them
//                     (call_history.db and CallHistory.storedata, whichever
//                     the device has)
//
// Exit status: 0 done, 1 failed (one line on stderr, nothing changed),
// 2 bad arguments (usage on stderr).
#include <CLI/CLI.hpp>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <string>

#include "call_backup.h"

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
    ++installed;
  }
  if (installed == 0) return fail("no call history database under " + root);
  return 0;
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
  app.require_option(1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "zvtool: " << e.what() << "\n" << app.help();
    return 2;
  }

  const char* root = std::getenv("ZORVEL_ROOT");
  if (!root || !*root) return fail("ZORVEL_ROOT is not set");
  if (*i) return install(root);

  std::string error;
  auto backup =
      zv::zvtool::CallBackup::open(root, zv::zvtool::kLegacyCalls, error);
  if (!backup) return fail(error);
  bool ok = true;
  if (*s)
    ok = backup->restore(restore, error);
  else if (*d)
    ok = backup->remove(date, error);
  else if (*c)
    ok = backup->clear(error);
  return ok ? 0 : fail(error);
}
