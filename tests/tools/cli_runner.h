// Runs a built program through the shell and collects what it did: exit
// status, standard output and standard error. The program must exist: a
// missing binary fails the test rather than skipping it. Also the device
// roots the program suites start from.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/device_files.h"
#include "support/device_people.h"
#include "support/sim_fixture.h"

namespace zv::testing {

struct CliResult {
  int status = -1;  // exit status; -1 when ended by a signal
  std::string out, err;
  // Lines of standard error.
  size_t errLines() const {
    return static_cast<size_t>(std::count(err.begin(), err.end(), '\n'));
  }
};

// `s` in single quotes, for a shell command line.
inline std::string shellQuoted(const std::string& s) { return "'" + s + "'"; }

inline const std::string& zorvelBinary() {
  static const std::string path = ZV_BINARY_DIR "/zorvel";
  return path;
}

// Runs `command` (a shell command line) with `input` on standard input.
inline CliResult runShell(const std::string& command,
                          const std::string& input = "") {
  namespace fs = std::filesystem;
  static int counter = 0;
  const std::string base =
      fs::temp_directory_path() /
      ("zvcli." + std::to_string(::getpid()) + "." + std::to_string(counter++));
  std::ofstream(base + ".in", std::ios::binary) << input;
  const std::string full = "(" + command + ") <'" + base + ".in' >'" + base +
                           ".out' 2>'" + base + ".err'";
  int status = std::system(full.c_str());
  CliResult r;
  r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  r.out = readFile(base + ".out");
  r.err = readFile(base + ".err");
  for (const char* suffix : {".in", ".out", ".err"}) fs::remove(base + suffix);
  return r;
}

// A command line that must fail: its exit status and a text its one line
// of standard error holds.
struct FailingRun {
  std::string args;
  int status;
  std::string says;
};
// Runs each row with `run(args)`: each prints nothing on standard output.
template <class Run>
void expectFailures(Run&& run, const std::vector<FailingRun>& rows) {
  for (const auto& [args, status, says] : rows) {
    const CliResult r = run(args);
    EXPECT_EQ(r.status, status) << args << ": " << r.err;
    EXPECT_EQ(r.out, "") << args;
    EXPECT_EQ(r.errLines(), 1u) << args << ": " << r.err;
    EXPECT_NE(r.err.find(says), std::string::npos) << args << ": " << r.err;
  }
}

// The lines of a program's output, each parsed as one JSON object.
inline std::vector<nlohmann::json> jsonLines(const std::string& out) {
  std::vector<nlohmann::json> lines;
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);)
    lines.push_back(nlohmann::json::parse(line));
  return lines;
}

// Runs `zorvel ARGS` (the args already quoted for the shell).
inline CliResult runZorvel(const std::string& args,
                           const std::string& input = "") {
  EXPECT_TRUE(std::filesystem::exists(zorvelBinary()))
      << "the zorvel program was not built";
  return runShell("'" + zorvelBinary() + "' " + args, input);
}

// Runs `zvtool ARGS` with ZORVEL_ROOT set to `root`, or unset when empty.
inline CliResult runZvtool(const std::string& args, const std::string& root) {
  const std::string binary = ZV_BINARY_DIR "/zvtool";
  EXPECT_TRUE(std::filesystem::exists(binary)) << "zvtool was not built";
  return runShell(
      (root.empty() ? "env -u ZORVEL_ROOT " : "ZORVEL_ROOT='" + root + "' ") +
      binary + " " + args);
}

// Copies the sample device into `root`.
inline void copySampleDevice(const std::string& root) {
  namespace fs = std::filesystem;
  ASSERT_TRUE(fs::exists(ZV_BINARY_DIR "/sample-device"))
      << "the sample device was not built";
  fs::copy(ZV_BINARY_DIR "/sample-device", root,
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

// A phone under `root` whose keypad searches Mary Jones (138 0170 0000)
// and Wei Zhang (13912345678) and dials with the prefix 17951 outside 010.
inline void writePrefixDiallingPhone(const std::string& root) {
  writeFile(root + "/Library/Zorvel/Area/China", chinaDatabase());
  auto mary = deviceContact(1, "Mary", "Jones", "13801700000");
  mary.phones[0] = {"138 0170 0000", "13801700000", 1};
  writeDevicePeople(root,
                    {mary, deviceContact(2, "Wei", "Zhang", "13912345678")});
  const std::string prefs = root + "/var/mobile/Library/Preferences/";
  writePlist(prefs + "zorvel.plist",
             Dict{{"EnablePrefix", true},
                  {"PrefixNumber", "17951"},
                  {"PrefixLocalAreaCode", "010"},
                  // The simulated phone has no number formatter (the Linux
                  // one has): both show digits.
                  {"DialerFormatPhoneNubmer", false}});
  writePlist(prefs + "zorvel.keypad.plist", Dict{{"EnableSearch", true}});
}

// `zorvel ARGS --root COPY` on a fresh copy of the sample device.
class SampleDeviceTest : public ::testing::Test {
 protected:
  void SetUp() override { copySampleDevice(root_.path()); }
  CliResult run(const std::string& args) {
    return runZorvel(args + " --root '" + root_.path() + "'");
  }
  TempRoot root_;
};

// Every regular file under `root` with its bytes: equal snapshots mean a
// command wrote nothing.
inline std::map<std::string, std::string> fileSnapshot(
    const std::string& root) {
  std::map<std::string, std::string> files;
  for (const auto& e : std::filesystem::recursive_directory_iterator(root))
    if (e.is_regular_file()) files[e.path().string()] = readFile(e.path());
  return files;
}

// `zorvel COMMAND --root ROOT ...` on a fresh temporary device root.
class ZorvelCliTest : public ::testing::Test {
 protected:
  // The root starts as the smallest device: its user's data folder.
  explicit ZorvelCliTest(std::string command) : command_(std::move(command)) {
    std::filesystem::create_directories(root() + "/var/mobile/Library");
  }
  const std::string& root() const { return root_.path(); }
  std::string prefs(const std::string& name) const {
    return root() + "/var/mobile/Library/Preferences/" + name;
  }
  CliResult run(const std::string& args) {
    return runZorvel(command_ + " --root '" + root() + "' " + args);
  }
  // A --json session that must succeed, one object per action.
  std::vector<nlohmann::json> session(const std::string& args) {
    auto r = run("--json " + args);
    EXPECT_EQ(r.status, 0) << r.err;
    return jsonLines(r.out);
  }
  // Each script is a usage error: exit 2, nothing run or printed, one line.
  void expectUsageErrors(std::initializer_list<const char*> scripts) {
    std::vector<FailingRun> rows;
    for (const char* args : scripts) rows.push_back({args, 2, ""});
    expectFailures([&](auto& args) { return run(args); }, rows);
  }

  TempRoot root_;
  std::string command_;
};

}  // namespace zv::testing
