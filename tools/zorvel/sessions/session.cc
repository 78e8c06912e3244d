#include "tools/zorvel/sessions/session.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "core/settings.h"
#include "hooks/modules.h"
#include "platform/linux/linux_platform.h"
#include "tools/zorvel/device_root.h"
#include "tools/zorvel/output.h"

namespace zv::cli {
namespace {

// Runs a command of the device (zvtool) with its standard output and
// error collected into the process's log; returns its wait status as
// system() does.
int runCaptured(platform::SimProcess& process, const std::string& root,
                const std::string& command) {
  std::fflush(nullptr);
  const std::string line =
      platform::deviceCommandLine(root, command) + " 2>&1 </dev/null";
  FILE* pipe = ::popen(line.c_str(), "r");
  if (!pipe) return -1;
  std::string output;
  char buffer[4096];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    output.append(buffer, n);
  const int status = ::pclose(pipe);
  // Each line is logged under the program's name ("zvtool: deleted 1").
  std::string program = command.substr(0, command.find(' '));
  program = program.substr(program.rfind('/') + 1);
  std::istringstream lines(output);
  for (std::string text; std::getline(lines, text);)
    process.log(program + ": " + text);
  return status;
}

// `text` with every byte outside printable ASCII as \xHH.
std::string escapedBytes(std::string_view text) {
  std::string out;
  for (unsigned char c : text) {
    if (c >= 0x20 && c < 0x7F && c != '\\') {
      out += static_cast<char>(c);
    } else {
      char hex[5];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      out += hex;
    }
  }
  return out;
}

void requireActions(const SessionOptions& options) {
  if (options.actions.empty())
    throw UsageError("at least one action is required");
}

}  // namespace

void addSessionOptions(CLI::App& command, SessionOptions& options,
                       const std::string& actionHelp, const char* versions) {
  addRootOption(command, options.root);
  command
      .add_option("--screen", options.screen, "screen size: 3.5, 4, 4.7, 5.5")
      ->type_name("INCHES");
  command
      .add_option("--os", options.os,
                  std::string("system version: ") + versions)
      ->type_name("VERSION");
  command.add_flag("--json", options.json, "one JSON object per action");
  addPngOption(command, options.png);
  command.add_flag("--scratch", options.scratch,
                   "run on a throw-away copy of the device, leaving it as it "
                   "was");
  // Required here, not by CLI11, so that an unknown option is named first.
  command.add_option("actions", options.actions, actionHelp)
      ->type_name("ACTION");
}

std::string argumentOf(const std::string& action, std::string_view verb) {
  return action.size() > verb.size() + 1 ? action.substr(verb.size() + 1) : "";
}

double actionSeconds(const std::string& text, const std::string& action) {
  if (!text.empty() &&
      text.find_first_not_of("0123456789.") == std::string::npos) {
    try {
      size_t used = 0;
      const double v = std::stod(text, &used);
      if (used == text.size() && std::isfinite(v) && v <= 1e9) return v;
    } catch (const std::exception&) {
    }
  }
  throw UsageError("bad number in action " + action + " (seconds: 0 or more)");
}

size_t actionCount(const std::string& text, const std::string& action) {
  if (!text.empty() && text.size() <= 6 &&
      text.find_first_not_of("0123456789") == std::string::npos) {
    const size_t n = std::stoul(text);
    if (n >= 1) return n;
  }
  throw UsageError("bad number in action " + action + " (counting from 1)");
}

SessionRunner::SessionRunner(const SessionOptions& options,
                             std::initializer_list<const char*> versions)
    : json_(options.json),
      facts_(sessionDevice(options.os, options.screen, versions)),
      pictures_((requireActions(options), options.png)) {
  applyRoot(options.root);
  if (options.scratch) {
    scratch_.emplace();
  } else {
    // A session changes the device as the phone would (calls, caches,
    // settings): one that cannot be written is refused before anything runs.
    const std::string data = root() + "/var/mobile/Library";
    if (::access(data.c_str(), W_OK | X_OK) != 0)
      throw CommandError("cannot write to the device " + root() + ": " +
                         std::strerror(errno) + " (--scratch runs on a copy)");
  }
}

SessionRunner::~SessionRunner() = default;

std::string SessionRunner::root() const {
  return platform::LinuxPlatform::instance().root();
}

platform::SimWorld& SessionRunner::world(std::optional<double> epoch) {
  if (!world_) {
    if (epoch)
      world_.emplace(root(), *epoch);
    else
      world_.emplace(root());
  }
  return *world_;
}

platform::SimProcess& SessionRunner::launch(const hosts::HostDefinition& host) {
  platform::DeviceFacts facts = facts_;
  facts.bundleIdentifier = host.bundleIdentifier;
  auto& process = world().launch(host.bundleIdentifier, facts);
  process.setSystemHandler(
      [&process, root = root()](const std::string& command) {
        return runCaptured(process, root, command);
      });
  process.run([&] { hosts::launch(host, ZorvelInitializer); });
  return process;
}

std::string SessionRunner::picture(platform::SimProcess& process,
                                   const std::string& action,
                                   const std::function<render::Scene()>& make) {
  if (!pictures_.enabled()) return "";
  return process.run([&] { return pictures_.take(action, make); });
}

void SessionRunner::play(
    const std::vector<std::string>& actions,
    const std::function<std::optional<std::string>(size_t)>& perform,
    const std::function<Frame(const std::string&)>& look, double settle) {
  for (size_t i = 0; i < actions.size(); ++i) {
    const auto note = perform(i);
    world().advance(settle);
    write(actions[i], look(actions[i]), note);
  }
}

void SessionRunner::write(const std::string& action, const Frame& frame,
                          const std::optional<std::string>& note) const {
  if (json_) {
    nlohmann::ordered_json out{{"action", action}};
    if (!validUtf8(action)) out["action_bytes"] = escapedBytes(action);
    out.update(frame.screen);
    if (note) out["note"] = *note;
    Pictures::addTo(out, frame.picture);
    writeOut(jsonLine(out));
  } else {
    std::string text = "> " + action + "\n";
    if (note) text += "  (" + *note + ")\n";
    writeOut(text + frame.text + Pictures::line(frame.picture));
  }
}

}  // namespace zv::cli
