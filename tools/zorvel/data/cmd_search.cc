// zorvel search [--root DIR] [--json] KEY...: the dial-pad search of the
// device, one searcher, the keys searched in order as successive keystrokes
// (so 9 94 942 narrows incrementally, "##" lists recent numbers, "**" all
// contact numbers). Plain output marks the highlighted part of each row's
// name or number with [ ]; --json prints one object per key and line.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/number_utils.h"
#include "core/settings.h"
#include "core/settings_catalogue.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "platform/utf8.h"
#include "search/person.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"

namespace zv::cli {
namespace {

struct SearchArgs {
  std::string root;
  bool json = false;
  std::vector<std::string> keys;
};

// Byte offset in UTF-8 `text` of the UTF-16 unit index `units`; a position
// past the end or inside a surrogate pair marks up to the end.
size_t byteOffset(const std::string& text, int64_t units) {
  size_t i =
      utf8OffsetOfUtf16(text, static_cast<size_t>(std::max<int64_t>(units, 0)));
  return i == std::string::npos ? text.size() : i;
}

// The text with the range (UTF-16 units, or bytes when `bytes`) in [ ].
std::string mark(const std::string& text, ZVRange range, bool bytes) {
  if (range.length <= 0) return text;
  size_t from = bytes ? static_cast<size_t>(range.location)
                      : byteOffset(text, range.location);
  size_t to = bytes ? static_cast<size_t>(range.location + range.length)
                    : byteOffset(text, range.location + range.length);
  from = std::min(from, text.size());
  to = std::min(std::max(to, from), text.size());
  return text.substr(0, from) + "[" + text.substr(from, to - from) + "]" +
         text.substr(to);
}

// The ranges the keypad views show: the name's, else the number's.
std::pair<ZVRange, ZVRange> rowRanges(const ZVPerson& p,
                                      const std::string& key) {
  std::string name = p.getNameFull();
  ZVRange nameRange = ZVSearcher::getHighlightNameRange(name, key, &p);
  ZVRange numberRange;
  if (nameRange.length == 0 && nameRange.location == 0)
    numberRange = ZVSearcher::getHighlightNumberRange(p.getPhoneNumber(), key);
  return {nameRange, numberRange};
}

void checkKey(const std::string& key) {
  if (key.empty()) throw UsageError("empty key");
  for (char c : key)
    if (!isDialable(c)) throw UsageError("not a keypad key: " + key);
}

void warn(const std::string& line) {
  std::fprintf(stderr, "zorvel: %s\n", line.c_str());
}

// The files the search reads. Without a readable address book there is no
// answer worth giving; a missing reading table only loses the readings of
// names (said on stderr).
void checkFiles() {
  warnUnparsable(ZVSearcher::kKeypadFlagsPath, "keypad flags file");
  const std::string book =
      platform::current().path(platform_schema::kAddressBookPath);
  if (!std::filesystem::is_regular_file(book))
    throw CommandError("no address book at " + book);
  {
    sql::Database db(book);
    // Both tables there and readable; a count of their join would take
    // time growing with the square of the book.
    sql::Statement probe(db,
                         "SELECT EXISTS (SELECT 1 FROM ABPerson), "
                         "EXISTS (SELECT 1 FROM ABMultiValue)");
    if (!db.ok() || !probe.ok() || !probe.step())
      throw CommandError("cannot read the address book " + book + ": " +
                         db.error());
  }
  auto settings = ZVPhoneSettings::sharedInstance();
  const std::string& table = settings->DialerT9Database();
  if (!table.empty()) {
    const bool plistTable = table.ends_with(".plist");
    const std::string path = platform::current().path(
        std::string(plistTable ? ZVSearcher::kPlistTableDir
                               : ZVSearcher::kTableDir) +
        table);
    std::ifstream in(path);
    if (!in || std::filesystem::is_directory(path))
      warn("no reading table at " + path +
           "; names are matched without "
           "their readings");
    else if (plistTable && !plist::readDictionary(path))
      warn("reading table " + path +
           " does not parse; names are matched "
           "without their readings");
  }
}

void run(const SearchArgs& args) {
  for (const auto& key : args.keys) checkKey(key);
  applyRoot(args.root);
  checkFiles();
  auto searcher = ZVSearcher::sharedInstance();
  for (const auto& key : args.keys) {
    size_t count = searcher->search(key);
    if (args.json) {
      nlohmann::json rows = nlohmann::json::array();
      for (const auto& p : searcher->results()) {
        auto [nameRange, numberRange] = rowRanges(*p, key);
        rows.push_back(
            {{"recordId", p->recordId()},
             {"phoneType", p->phoneType()},
             {"priority", p->priority()},
             {"name", p->getNameFull()},
             {"number", p->getPhoneNumber()},
             {"nameRange", {nameRange.location, nameRange.length}},
             {"numberRange", {numberRange.location, numberRange.length}}});
      }
      nlohmann::json out = {{"key", key}, {"count", count}, {"results", rows}};
      std::printf("%s\n", out.dump(-1, ' ', false,
                                   nlohmann::json::error_handler_t::replace)
                              .c_str());
      continue;
    }
    std::printf("%s: %zu\n", key.c_str(), count);
    size_t index = 0;
    for (const auto& p : searcher->results()) {
      auto [nameRange, numberRange] = rowRanges(*p, key);
      std::string name = mark(p->getNameFull(), nameRange, false);
      std::string number = mark(p->getPhoneNumber(), numberRange, true);
      std::printf("  %3zu. %-24s %s  (record %d, type %d, priority %d)\n",
                  ++index, name.empty() ? "-" : name.c_str(), number.c_str(),
                  p->recordId(), p->phoneType(), p->priority());
    }
  }
}

Registration reg([](CLI::App& app) {
  auto args = std::make_shared<SearchArgs>();
  auto* cmd = app.add_subcommand(
      "search", "T9 search of the device's contacts, key by key");
  addRootOption(*cmd, args->root);
  cmd->add_flag("--json", args->json, "one JSON object per key and line");
  cmd->add_option("KEY", args->keys,
                  "typed keys, searched in order as successive keystrokes")
      ->required();
  cmd->callback([args] { run(*args); });
});

}  // namespace
}  // namespace zv::cli
