// zorvel area [--root DIR] [--db NAME|PATH] [--name] [--type] [--alone]
//             [--json | --tsv] [NUMBER...]
// Looks numbers up the way the extension does (ZVAreaLoader: the device's
// overrides and PrefixNumber apply). Without --name/--type it asks for both
// with AreaAlone from the settings. Without NUMBER it reads numbers from
// standard input, one per line.
//
// One output line per number: the area text (an empty line for none);
// with --tsv "number<TAB>area<TAB>location<TAB>type"; with --json
// {"number","area","location","type"} (null for what is not known). A
// number that is not valid UTF-8, or has no keypad character at all ("abc",
// ""), gets an error line (an empty line, a TSV line of the number alone,
// or {"number","error"}) and a message on stderr; the rest are still
// answered, and the exit status is then 1.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "area/area_loader.h"
#include "core/number_utils.h"
#include "core/settings.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/output.h"

namespace zv::cli {
namespace {

constexpr char kBadUtf8[] = "not valid UTF-8";
constexpr char kNoNumber[] = "not a phone number";

struct AreaOptions {
  std::string root, db;
  bool name = false, type = false, alone = false, json = false, tsv = false;
  std::vector<std::string> numbers;
};

// Opens the database the command answers from (--db, else the device's
// AreaDatabase setting), or fails with one line: an answer without it would
// only be blank.
void openDatabase(ZVAreaLoader& loader, const std::string& db) {
  if (!db.empty())
    loader.setDatabaseFile(
        db.find('/') != std::string::npos
            ? db
            : platform::current().path(ZVAreaLoader::kAreaFolder + db));
  const std::string path = loader.databasePath();
  if (path.empty())
    throw CommandError("no area database: the AreaDatabase setting is empty");
  if (!std::filesystem::is_regular_file(path))
    throw CommandError("no area database at " + path);
  loader.loadData();
  if (!loader.hasDatabase() || !loader.databaseIntact())
    throw CommandError("not a valid area database: " + path);
}

using Json = nlohmann::ordered_json;

Json orNull(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}

class Answers {
 public:
  Answers(const AreaOptions& o, ZVAreaLoader& loader) : o_(o), loader_(loader) {
    explicit_ = o.name || o.type || o.alone;
    withName_ = explicit_ ? o.name : true;
    withType_ = explicit_ ? o.type : true;
    if (explicit_ && !withName_ && !withType_) withName_ = true;
  }

  void answer(const std::string& number) {
    ++line_;
    const char* error = !validUtf8(number)             ? kBadUtf8
                        : keypadString(number).empty() ? kNoNumber
                                                       : nullptr;
    if (error) {
      ++failed_;
      std::fprintf(stderr, "zorvel: %s %zu: %s\n",
                   o_.numbers.empty() ? "line" : "number", line_, error);
      const std::string shown = replaceInvalidUtf8(number);
      if (o_.json)
        writeOut(jsonLine(Json{{"number", shown}, {"error", error}}));
      else if (o_.tsv)
        writeOut(shown + "\t\t\t\n");
      else
        writeOut("\n");
      return;
    }
    auto area = explicit_
                    ? loader_.getArea(number, withName_, withType_, o_.alone)
                    : loader_.getArea(number, withName_, withType_);
    if (!o_.json && !o_.tsv) {
      writeOut(area.value_or("") + "\n");
      return;
    }
    const bool alone = explicit_ ? o_.alone : settingsAlone();
    auto location = loader_.getArea(number, true, false, alone);
    auto type = loader_.getArea(number, false, true, alone);
    // A user's override answers every question with its one text: that is
    // the location, not a line type.
    if (type && location && *type == *location) type.reset();
    if (o_.json) {
      writeOut(jsonLine(Json{{"number", number},
                             {"area", orNull(area)},
                             {"location", orNull(location)},
                             {"type", orNull(type)}}));
    } else {
      writeOut(number + "\t" + area.value_or("") + "\t" +
               location.value_or("") + "\t" + type.value_or("") + "\n");
    }
  }

  size_t failed() const { return failed_; }

 private:
  // AreaAlone, as getArea(number, name, type) applies it.
  static bool settingsAlone() {
    auto settings = ZVGeneralSettings::sharedInstance();
    return settings && settings->AreaAlone();
  }

  const AreaOptions& o_;
  ZVAreaLoader& loader_;
  bool explicit_, withName_, withType_;
  size_t line_ = 0, failed_ = 0;
};

void run(const AreaOptions& o) {
  if (o.json && o.tsv) throw UsageError("--json and --tsv exclude each other");
  applyRoot(o.root);
  warnUnparsable(ZVAreaLoader::kCustomAreaPath, "area overrides file");
  auto loader = ZVAreaLoader::sharedInstance();
  openDatabase(*loader, o.db);
  Answers answers(o, *loader);
  if (!o.numbers.empty()) {
    for (const auto& n : o.numbers) answers.answer(n);
  } else {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      answers.answer(line);
    }
    if (std::cin.bad()) throw CommandError("cannot read standard input");
  }
  finishOut();
  if (answers.failed())
    throw CommandError(std::to_string(answers.failed()) +
                       (answers.failed() == 1 ? " number" : " numbers") +
                       " not answered");
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
  cmd->add_flag("--json", o->json,
                "one JSON object per line: number, area, location, type");
  cmd->add_flag("--tsv", o->tsv,
                "tab-separated lines: number, area, location, type");
  cmd->add_option("NUMBER", o->numbers,
                  "numbers to look up (default: one per line on stdin)");
  cmd->callback([o] { run(*o); });
});

}  // namespace
}  // namespace zv::cli
