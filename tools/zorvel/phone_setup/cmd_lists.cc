// zorvel blacklist|whitelist add|remove|list: the call-blocking lists as
// the settings pane keeps them, a property-list dictionary whose keys are
// numbers and patterns (list_entry.h). Every entry of a command is checked
// before the file is touched; a change is written atomically and announced
// with "ZVBlacklistChanged", on which a running callerd drops the lists it
// loaded.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "callscreens/call_blocking_policy.h"
#include "callscreens/incoming_call_controller.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/phone_setup/device_edit.h"
#include "tools/zorvel/phone_setup/list_entry.h"

namespace zv::cli {
namespace {

struct ListOptions {
  const char* name;  // "blacklist"
  const char* devicePath;
  std::string root;
  std::vector<std::string> entries;
};

std::vector<std::string> checkedEntries(const ListOptions& o) {
  std::vector<std::string> out;
  for (const auto& typed : o.entries) {
    std::string why;
    auto entry = listEntry(typed, &why);
    if (!entry) throw UsageError("'" + typed + "' can never match: " + why);
    out.push_back(*entry);
  }
  return out;
}

void save(const ListOptions& o, const Dict& list) {
  writeEdited(o.devicePath, list);
  announce(ZVIncomingCallController::kChangedNotification);
}

void add(const ListOptions& o) {
  const auto entries = checkedEntries(o);
  applyRoot(o.root);
  Dict list = readForEdit(o.devicePath, o.name);
  bool changed = false;
  for (const auto& e : entries) changed |= list.emplace(e, true).second;
  if (changed) save(o, list);
}

void remove(const ListOptions& o) {
  const auto entries = checkedEntries(o);
  applyRoot(o.root);
  Dict list = readForEdit(o.devicePath, o.name);
  for (const auto& e : entries)
    if (!list.contains(e))
      throw CommandError(e + " is not in the " + o.name + "; nothing removed");
  for (const auto& e : entries) list.erase(e);
  save(o, list);
}

void list(const ListOptions& o) {
  applyRoot(o.root);
  for (const auto& [entry, value] : readForEdit(o.devicePath, o.name))
    std::printf("%s\n", entry.c_str());
}

void addListCommand(CLI::App& app, const char* name, const char* devicePath,
                    const char* what) {
  auto* cmd = app.add_subcommand(name, what);
  cmd->require_subcommand(1);
  auto o = std::make_shared<ListOptions>();
  o->name = name;
  o->devicePath = devicePath;
  auto* a = cmd->add_subcommand(
      "add",
      "add numbers or patterns (# one digit, * a run at the start, "
      "the end or once inside)");
  auto* r = cmd->add_subcommand("remove", "remove numbers or patterns");
  auto* l = cmd->add_subcommand("list", "print the entries, one a line");
  for (auto* sub : {a, r, l}) addRootOption(*sub, o->root);
  for (auto* sub : {a, r})
    sub->add_option("ENTRY", o->entries, "number or pattern")->required();
  a->callback([o] { add(*o); });
  r->callback([o] { remove(*o); });
  l->callback([o] { list(*o); });
}

Registration reg([](CLI::App& app) {
  addListCommand(app, "blacklist", CallBlockingPolicy::kBlacklistPath,
                 "numbers and patterns whose calls are blocked");
  addListCommand(app, "whitelist", CallBlockingPolicy::kWhitelistPath,
                 "numbers and patterns that pass the whitelist mode");
});

}  // namespace
}  // namespace zv::cli
