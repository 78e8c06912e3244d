// The zorvel command's subcommands register themselves here: each
// tools/zorvel/*/cmd_*.cc defines a function that adds its subcommand to
// the CLI11 app, and a static Registration that lists it. The same
// definitions make --help, the man page and the bash completion.
//
// Errors: a subcommand throws CommandError with one line; main prints it to
// stderr as "zorvel: <line>" and exits with the error's code (1). A
// mistake in the command line itself (an unknown action, a bad value) is a
// UsageError and exits 2, as CLI11's own parse errors do.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace zv::cli {

class CommandError : public std::runtime_error {
 public:
  explicit CommandError(const std::string& line, int code = 1)
      : std::runtime_error(line), code_(code) {}
  int code() const { return code_; }

 private:
  int code_;
};

class UsageError : public CommandError {
 public:
  explicit UsageError(const std::string& line) : CommandError(line, 2) {}
};

using Registrar = std::function<void(CLI::App&)>;
std::vector<Registrar>& registrars();

struct Registration {
  explicit Registration(Registrar r) { registrars().push_back(std::move(r)); }
};

// Adds --root to a subcommand; applyRoot() then points the Linux platform at
// it (an empty value keeps $ZORVEL_ROOT or the bundled sample device),
// refuses a folder that is not a device root (see device_root.h) and says
// on stderr when the device's settings file does not parse.
void addRootOption(CLI::App& command, std::string& root);
void applyRoot(const std::string& root);

// The simulated phone a session runs on: `os` one of `versions`, `screen` a
// size some phone has (see platform::screenSizes); a UsageError naming the
// choices otherwise.
platform::DeviceFacts sessionDevice(
    const std::string& os, const std::string& screen,
    std::initializer_list<const char*> versions = {"7.1", "8.1"});

// Says on stderr, in one line, that a property-list file of the device is
// there but does not parse (the command goes on with the defaults the
// extension would use). `what` names it ("settings file").
void warnUnparsable(const char* devicePath, const char* what);

// A throw-away copy of the current device root, made the root for the
// rest of the command and removed when this goes (sessions' --scratch).
class ScratchDevice {
 public:
  ScratchDevice();
  ~ScratchDevice();
  ScratchDevice(const ScratchDevice&) = delete;
  ScratchDevice& operator=(const ScratchDevice&) = delete;

 private:
  std::string path_;
};

}  // namespace zv::cli
