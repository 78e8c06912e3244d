// zorvel tour [--root DIR] [--picture-scale F] DIR: one scripted walk through
// every screen the simulated hosts have, drawn as pictures into DIR with an
// index.html that shows them in order, a caption each. The walk runs the
// session commands themselves (this program again, with --json and --png) on a
// throw-away copy of the device, so the pictures are exactly what those
// sessions draw and the device is left as it was.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "core/settings.h"
#include "platform/linux/linux_platform.h"
#include "platform/plist.h"
#include "platform/ui/image.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/pictures.h"
#include "tools/zorvel/screens/tour_page.h"

extern char** environ;

namespace zv::cli {
namespace {

namespace fs = std::filesystem;

struct Step {
  const char* action;
  const char* caption;  // empty: the action runs, its picture is left out
};

struct Walk {
  const char* name;
  std::vector<std::string> command;
  std::vector<Step> steps;
};

const std::vector<Walk>& walks() {
  static const std::vector<Walk> all = {
      {"keypad",
       {"phone", "--screen", "4.7"},
       {{"type:2",
         "Keypad: one digit typed shows in the extension's display, "
         "with the buttons to delete it or add it to a contact"},
        {"type:3",
         "Typing 23: the result pager with the area beside the "
         "number's label, and the result counter"},
        {"list",
         "The result list open: each row's matched run highlighted, "
         "round contact pictures"},
        {"list", ""},
        {"menu",
         "Long press on the result: copy, prefix dialling, send a "
         "message"},
        {"menu:1", ""},
        {"longdelete", ""},
        {"tab:recents", "Recents: areas and ring times under the names"}}},
      {"prefix",
       {"phone", "--os", "7.1", "--screen", "4"},
       {{"type:13801700000", "Typing a whole number on 7.1"},
        {"call",
         "Prefix dialling: the number goes out with the IP prefix; "
         "the in-call area names its place"},
        {"connect", "The in-call screen once the call is connected"},
        {"end", ""}}},
      {"calls",
       {"call", "--os", "8.1", "--screen", "4.7"},
       {{"incoming:13912345678",
         "An incoming call: the caller's area on the "
         "call screen"},
        {"hangup", ""},
        {"incoming:10010",
         "A blocked incoming call: hung up before any "
         "screen shows"}}},
      {"contacts",
       {"contacts", "--screen", "4.7"},
       {{"open:1", "A contact card: the area beside each phone label"}}},
      {"messages",
       {"messages", "--screen", "4"},
       {{"list", "Messages: the conversation list with areas and pictures"},
        {"open:1", "A conversation with the contact's picture"},
        {"back", ""},
        {"new", ""},
        {"to:10086", "A new message: the Group button beside the recipients"},
        {"group",
         "Recipient groups: pick saved groups, contacts and recents"}}},
      {"controlcenter",
       {"controlcenter", "--screen", "4.7"},
       {{"open", "Control Centre with the replaced shortcut glyphs"},
        {"tap:bluetooth", "Control Centre after a tap on Bluetooth"}}},
  };
  return all;
}

// The features whose screens the walk shows, switched on in the copy.
void switchFeaturesOn() {
  const std::string path = platform::current().path(ZVSettings::kPath);
  Dict settings = plist::readDictionary(path).value_or(Dict{});
  for (const char* key : {"Enable",
                          "EnableArea",
                          "EnableAvatar",
                          "EnableInfo",
                          "EnableBlacklist",
                          "EnablePrefix",
                          "DialerCallHistory",
                          "AreaNameInCall",
                          "AreaNameKeypad",
                          "AreaNameKeypadList",
                          "AreaNameCallHistory",
                          "AreaNameContacts",
                          "AreaNameSMS",
                          "AreaNameIncomingCall",
                          "AreaNameNotification",
                          "AvatarKeypad",
                          "AvatarKeypadList",
                          "AvatarCallHistory",
                          "AvatarContacts",
                          "AvatarSMS",
                          "AvatarSMSChat",
                          "InfoIncomingCallOrganization",
                          "CallHistoryRingDuration",
                          "SMSSelectGroup",
                          "SMSMultiSelect"})
    settings[key] = Value(true);
  // Every Control Centre replacement, and a prefix to dial with.
  for (const char* key :
       {"ControlCenterHome", "ControlCenterMultitasking",
        "ControlCenterLockScreen", "ControlCenterCellularData"})
    settings[key] = Value(int64_t{1});
  settings["PrefixNumber"] = Value(std::string("17951"));
  if (!plist::writeFile(path, Value(settings)))
    throw CommandError("tour: cannot write the settings of the copy " + path);
  // The blocked call of the calls walk: its number on the blacklist.
  const std::string black = platform::current().path(
      "/var/mobile/Library/Preferences/zorvel.black.plist");
  Dict blacklist = plist::readDictionary(black).value_or(Dict{});
  blacklist["10010"] = Value(std::string("10010"));
  if (!plist::writeFile(black, Value(blacklist)))
    throw CommandError("tour: cannot write the blacklist of the copy " + black);
}

// Runs this program with `args`; returns its standard output. The child's
// errors go to our standard error; a failing child is a CommandError.
std::string runSelf(const std::vector<std::string>& args) {
  std::error_code ec;
  const std::string self = fs::read_symlink("/proc/self/exe", ec).string();
  if (ec) throw CommandError("tour: cannot find this program: " + ec.message());
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(self.c_str()));
  for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  int out[2];
  if (pipe(out) != 0) throw CommandError("tour: cannot make a pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, out[0]);
  pid_t pid = 0;
  const int spawned =
      posix_spawn(&pid, self.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(out[1]);
  if (spawned != 0) {
    close(out[0]);
    throw CommandError("tour: cannot run " + self);
  }
  std::string text;
  char buffer[4096];
  for (ssize_t n; (n = read(out[0], buffer, sizeof buffer)) != 0;) {
    if (n < 0) {
      if (errno == EINTR) continue;
      break;
    }
    text.append(buffer, static_cast<size_t>(n));
  }
  close(out[0]);
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw CommandError("tour: zorvel " + args.front() + " failed");
  return text;
}

// Redraws the picture at `path` at `factor` of its size (our own area
// averaging), for pages that show many at once.
void shrink(const std::string& path, double factor) {
  auto image = ui::Image::fromFile(path, 1);
  if (!image) throw CommandError("tour: cannot read back " + path);
  auto small = image->scaleToSize(
      {std::max(1.0, std::round(image->pixelWidth() * factor)),
       std::max(1.0, std::round(image->pixelHeight() * factor))},
      1);
  if (!small || !plist::writeBytesAtomically(path, small->encodePng()))
    throw CommandError("cannot write picture " + path);
}

void run(const std::string& root, const std::string& dir, double factor) {
  applyRoot(root);
  // Checks DIR before anything runs (and loads nothing here: the sessions
  // draw).
  {
    std::error_code ec;
    fs::create_directories(dir, ec);
    if (ec || !fs::is_directory(dir) || access(dir.c_str(), W_OK | X_OK) != 0)
      throw UsageError("tour: cannot write to " + dir);
  }
  ScratchDevice scratch;
  const std::string device = platform::LinuxPlatform::instance().root();
  switchFeaturesOn();
  std::vector<TourPicture> pictures;
  int index = 0;
  for (const Walk& walk : walks()) {
    ++index;
    const std::string sub = std::to_string(index) + "-" + walk.name;
    std::vector<std::string> args = walk.command;
    for (const std::string& a :
         {std::string("--root"), device, std::string("--json"),
          std::string("--png"), (fs::path(dir) / sub).string()})
      args.push_back(a);
    for (const Step& s : walk.steps) args.push_back(s.action);
    std::istringstream lines(runSelf(args));
    size_t step = 0;
    for (std::string line; std::getline(lines, line);) {
      auto out = nlohmann::json::parse(line, nullptr, false);
      if (out.is_discarded() || !out.contains("picture")) continue;
      // contacts draws its start screen before the first action.
      if (out.value("action", "") !=
          walk.steps[std::min(step, walk.steps.size() - 1)].action)
        continue;
      const Step& s = walk.steps[step++];
      if (factor < 1) shrink(out["picture"].get<std::string>(), factor);
      if (*s.caption)
        pictures.push_back({sub + "/" +
                                fs::path(out["picture"].get<std::string>())
                                    .filename()
                                    .string(),
                            s.caption});
      if (step == walk.steps.size()) break;
    }
    if (step != walk.steps.size())
      throw CommandError("tour: zorvel " + walk.command.front() +
                         " drew fewer pictures than it had actions");
  }
  const std::string page = (fs::path(dir) / "index.html").string();
  std::ofstream out(page, std::ios::trunc);
  out << tourPage(pictures);
  out.close();
  if (!out) throw CommandError("cannot write " + page);
  std::cout << page << ": " << pictures.size() << " pictures\n";
  if (!std::cout.flush()) throw CommandError("cannot write the output");
}

Registration reg([](CLI::App& app) {
  auto root = std::make_shared<std::string>();
  auto dir = std::make_shared<std::string>();
  auto factor = std::make_shared<double>(1.0);
  auto* cmd = app.add_subcommand(
      "tour",
      "walk through every screen of the simulated hosts and draw each into "
      "DIR, with DIR/index.html showing them in order (the device is left as "
      "it was)");
  addRootOption(*cmd, *root);
  cmd->add_option("dir", *dir, "where the pictures and index.html go")
      ->required();
  cmd->add_option("--picture-scale", *factor,
                  "reduce each picture to this part of the screen's size")
      ->check(CLI::Range(0.05, 1.0));
  cmd->callback([root, dir, factor] { run(*root, *dir, *factor); });
});

}  // namespace
}  // namespace zv::cli
