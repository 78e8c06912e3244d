// Loads the real libzorvel.so into the host_loader program, with dlopen and
// with LD_PRELOAD, and checks that the probe method was replaced only in the
// probe host.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/plist.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

const std::string kHost = ZV_BINARY_DIR "/host_loader";
const std::string kExtension = ZV_BINARY_DIR "/libzorvel.so";

// Runs `command` in a shell; its exit status and standard output.
std::pair<int, std::string> shell(const std::string& command) {
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) return {-1, "popen failed"};
  std::string out;
  char buf[256];
  while (size_t n = std::fread(buf, 1, sizeof buf, pipe)) out.append(buf, n);
  return {::pclose(pipe), out};
}

class LoaderTest : public ::testing::Test {
 protected:
  // Runs host_loader with the extension loaded `how` ("dlopen", "preload" or
  // "none"); returns its standard output, or "exit N" when it failed.
  std::string load(const std::string& how, const std::string& bundle = "") {
    std::string command = "ZORVEL_ROOT='" + root_ + "'";
    if (!bundle.empty()) command += " ZORVEL_BUNDLE_ID='" + bundle + "'";
    // A sanitizer runtime wants to come first; the preloaded library is
    // instrumented the same way, so the order does not matter here.
    if (how == "preload")
      command += " ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD='" +
                 kExtension + "'";
    command += " '" + kHost + "'";
    if (how == "dlopen") command += " '" + kExtension + "'";
    auto [status, out] = shell(command);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
      return "exit " + std::to_string(status);
    return out;
  }

  testing::TempRoot temp_;
  const std::string& root_ = temp_.path();
};

constexpr char kHooked[] =
    "greeting: hooked by libzorvel\nmodules: zvloaderprobe_init\n";
constexpr char kUntouched[] = "greeting: host\nmodules: \n";

// Loaded either way, the extension hooks the probe host only, and only
// while Enable is on. (Which host starts what is the start-up tests'.)
TEST_F(LoaderTest, ExtensionReplacesTheProbeMethodHoweverItIsLoaded) {
  ASSERT_TRUE(std::filesystem::exists(kHost));
  ASSERT_TRUE(std::filesystem::exists(kExtension));
  EXPECT_EQ(load("none"), kUntouched);
  EXPECT_EQ(load("dlopen"), kHooked);
  EXPECT_EQ(load("preload"), kHooked);
  EXPECT_EQ(load("preload", "com.example.other"), kUntouched);
  ASSERT_TRUE(
      plist::writeFile(root_ + "/var/mobile/Library/Preferences/zorvel.plist",
                       Value(Dict{{"Enable", Value(false)}})));
  EXPECT_EQ(load("dlopen"), kUntouched);
}

TEST_F(LoaderTest, BadExtensionPathIsAnError) {
  auto [status, out] = shell("'" + kHost + "' '" + root_ + "/missing.so' 2>&1");
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  EXPECT_EQ(out.rfind("host_loader: ", 0), 0u) << out;
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;
}

}  // namespace
}  // namespace zv
