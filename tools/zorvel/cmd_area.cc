// zorvel area [--root DIR] [--db NAME|PATH] [--name] [--type] [--alone]
//             [--json] [NUMBER...]
// Looks numbers up the way the extension does (ZVAreaLoader: the device's
// overrides and PrefixNumber apply). Without --name/--type it asks for both
// with AreaAlone from the settings. One line per number: the area text, or
// an empty line; with --json one {"number":...,"area":...|null} object per
// line. Without NUMBER it reads numbers from standard input, one per line.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "area/area_loader.h"
#include "platform/platform.h"
#include "tools/zorvel/command.h"

namespace zv::cli {
namespace {

struct AreaOptions {
  std::string root, db;
  bool name = false, type = false, alone = false, json = false;
  std::vector<std::string> numbers;
};

void openDatabase(ZVAreaLoader& loader, const std::string& db) {
  std::string path =
      db.find('/') != std::string::npos
          ? db
          : platform::current().path(ZVAreaLoader::kAreaFolder + db);
  if (!std::filesystem::is_regular_file(path))
    throw CommandError("no area database at " + path);
  loader.setDatabaseFile(path);
  loader.loadData();
  if (!loader.hasDatabase())
    throw CommandError("not a valid area database: " + path);
}

void run(const AreaOptions& o) {
  applyRoot(o.root);
  auto loader = ZVAreaLoader::sharedInstance();
  if (!o.db.empty()) openDatabase(*loader, o.db);
  bool explicitFlags = o.name || o.type || o.alone;
  bool withName = explicitFlags ? o.name : true;
  bool withType = explicitFlags ? o.type : true;
  if (explicitFlags && !withName && !withType) withName = true;

  std::string out;
  auto answer = [&](const std::string& number) {
    auto area = explicitFlags
                    ? loader->getArea(number, withName, withType, o.alone)
                    : loader->getArea(number, withName, withType);
    if (o.json) {
      nlohmann::ordered_json line = {
          {"number", number},
          {"area", area ? nlohmann::ordered_json(*area) : nullptr}};
      out += line.dump();
    } else if (area) {
      out += *area;
    }
    out += '\n';
    if (out.size() >= 1 << 16) {
      std::fwrite(out.data(), 1, out.size(), stdout);
      out.clear();
    }
  };
  if (!o.numbers.empty()) {
    for (const auto& n : o.numbers) answer(n);
  } else {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      answer(line);
    }
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
  std::fflush(stdout);
}

Registration reg([](CLI::App& app) {
  auto o = std::make_shared<AreaOptions>();
  auto* cmd = app.add_subcommand("area", "look up the area of phone numbers");
  addRootOption(*cmd, o->root);
  cmd->add_option("--db", o->db,
                  "area database: a name under /Library/Zorvel/Area/ of the "
                  "device, or a file path (default: the AreaDatabase setting)");
  cmd->add_flag("--name", o->name, "ask for the location");
  cmd->add_flag("--type", o->type, "ask for the line type");
  cmd->add_flag("--alone", o->alone, "let service numbers answer");
  cmd->add_flag("--json", o->json, "one JSON object per line");
  cmd->add_option("NUMBER", o->numbers,
                  "numbers to look up (default: one per line on stdin)");
  cmd->callback([o] { run(*o); });
});

}  // namespace
}  // namespace zv::cli
