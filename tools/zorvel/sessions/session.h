// One scripted session on simulated hosts, shared by `zorvel phone`, `call`,
// `contacts`, `messages` and `controlcenter`.
//
// A command checks all its actions first (with the number parsers below),
// then makes a SessionRunner: it checks the phone (--os, --screen), opens
// the picture folder (--png), points the platform at the device root
// (refusing a folder that is not a device root, or one that cannot be
// written) and, with --scratch, at a throw-away copy. launch() starts a host
// with the extension loaded; a helper program the extension runs (zvtool)
// has its output captured into the world's log, never into ours. play()
// then runs every action, lets the world run what is due, and writes one
// frame per action through the one writer: "> ACTION", an optional
// "  (NOTE)", the screen's text and "  picture: PATH" lines, or with --json
// one JSON object per line {"action", the screen's fields, "note",
// "picture"}. Text that is not UTF-8 is written to JSON with U+FFFD in its
// place; an action with such bytes also gets "action_bytes", the action
// with every byte outside printable ASCII written as \xHH.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/kit/host_kit.h"
#include "platform/sim/sim_platform.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/screens/pictures.h"

namespace zv::cli {

// What every session takes.
struct SessionOptions {
  std::string root;
  std::string screen = "4.7";
  std::string os = "8.1";
  bool json = false;
  bool scratch = false;
  std::string png;  // --png DIR: a picture per action, "" for none
  std::vector<std::string> actions;
};

// Adds --root, --screen, --os (`versions` says which), --json, --png,
// --scratch and the actions (described by `actionHelp`).
void addSessionOptions(CLI::App& command, SessionOptions& options,
                       const std::string& actionHelp,
                       const char* versions = "7.1 or 8.1");

// The text after "VERB:" in `action`, "" when there is none.
std::string argumentOf(const std::string& action, std::string_view verb);

// Numbers inside actions, each with one wording for a bad one (a
// UsageError naming the action): seconds are a decimal number of 0 or
// more; counts (rows, buttons, steps) are whole numbers from 1.
double actionSeconds(const std::string& text, const std::string& action);
size_t actionCount(const std::string& text, const std::string& action);

// What a session shows after an action.
struct Frame {
  nlohmann::ordered_json screen;  // an object
  std::string text;               // its rendering, lines ending in "\n"
  std::string picture;            // path, "" without --png
};

class SessionRunner {
 public:
  SessionRunner(const SessionOptions& options,
                std::initializer_list<const char*> versions = {"7.1", "8.1"});
  ~SessionRunner();
  SessionRunner(const SessionRunner&) = delete;
  SessionRunner& operator=(const SessionRunner&) = delete;

  platform::DeviceFacts& facts() { return facts_; }
  std::string root() const;
  Pictures& pictures() { return pictures_; }

  // The simulated world on the device root; `epoch` (the virtual clock's
  // start) counts only when given before the world's first use.
  platform::SimWorld& world(std::optional<double> epoch = std::nullopt);
  // Starts `host` with the extension in a new process of the world.
  platform::SimProcess& launch(const hosts::HostDefinition& host);

  // The picture after `action` of the scene `make` builds in `process`.
  std::string picture(platform::SimProcess& process, const std::string& action,
                      const std::function<render::Scene()>& make);

  // For each action: `perform(i)` (returning a note when it found nothing
  // to act on), then the world runs `settle` seconds, then `look` says what
  // the screen shows, which is written out.
  void play(const std::vector<std::string>& actions,
            const std::function<std::optional<std::string>(size_t)>& perform,
            const std::function<Frame(const std::string&)>& look,
            double settle = 0);

  // Writes one frame (the one writer of every session).
  void write(const std::string& action, const Frame& frame,
             const std::optional<std::string>& note = std::nullopt) const;

 private:
  bool json_;
  platform::DeviceFacts facts_;
  Pictures pictures_;
  std::optional<ScratchDevice> scratch_;
  std::optional<platform::SimWorld> world_;
};

}  // namespace zv::cli
