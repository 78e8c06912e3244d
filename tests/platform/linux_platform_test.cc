// The real platform: its GLib main loop, notifications between real
// processes, and the watch on Evolution Data Server when the server cannot
// be reached. Each test uses its own LinuxPlatform on a fresh device root.
#include "platform/linux/linux_platform.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include "platform/linux/eds_address_book.h"
#include "support/sim_fixture.h"

namespace zv::platform {
namespace {

class LinuxPlatformTest : public ::testing::Test {
 protected:
  LinuxPlatformTest() { linux_.setRoot(root_); }
  zv::testing::TempRoot temp_;
  const std::string& root_ = temp_.path();
  LinuxPlatform linux_;
};

TEST_F(LinuxPlatformTest, DelayedCallsAndCancelling) {
  int target = 0;
  std::string trace;
  linux_.performAfterDelay(&target, "cancelled", 0.02, [&] { trace += "C"; });
  linux_.performAfterDelay(&target, "other", 0.05, [&] { trace += "O"; });
  linux_.performAfterDelay(&trace, "cancelled", 0.05, [&] { trace += "T"; });
  linux_.cancelPrevious(&target, "cancelled");
  // The last call ends the loop after the others had their chance.
  linux_.performAfterDelay(nullptr, "", 0.2, [&] {
    trace += ".";
    linux_.quit();
  });
  linux_.run();
  std::sort(trace.begin(), trace.end());  // O and T fall due together
  EXPECT_EQ(trace, ".OT");
  // Cancelling what already ran, or what never was, is harmless.
  linux_.cancelPrevious(&target, "other");
  linux_.cancelPrevious(nullptr, "nothing");
}

TEST_F(LinuxPlatformTest, MainQueueWorkAndProcessNotificationsStayInTheLoop) {
  // Work for the main queue is queued, not run by the caller; background
  // work runs on another thread and hands back to the loop's.
  const auto mainThread = std::this_thread::get_id();
  std::string trace;
  linux_.dispatchMain([&] { trace += "main "; });
  EXPECT_EQ(trace, "");
  linux_.dispatchBackground([&] {
    const bool elsewhere = std::this_thread::get_id() != mainThread;
    linux_.dispatchMain([&, elsewhere] {
      trace += elsewhere ? "elsewhere " : "here ";
      trace += std::this_thread::get_id() == mainThread ? "back" : "away";
      linux_.quit();
    });
  });
  linux_.run();
  EXPECT_EQ(trace, "main elsewhere back");
  // Process notifications stay in the loop.
  int seen = 0;
  auto token = linux_.observe(
      "local", [&] { ++seen; }, Scope::Process);
  linux_.observe(
      "local", [&] { linux_.quit(); }, Scope::Process);
  linux_.post("local", Scope::Process);
  EXPECT_EQ(seen, 0);
  linux_.run();
  EXPECT_EQ(seen, 1);
  linux_.removeObserver(token);
  linux_.post("local", Scope::Process);
  linux_.run();
  EXPECT_EQ(seen, 1);
}

TEST_F(LinuxPlatformTest, PathsAndBundleIdentifier) {
  EXPECT_EQ(linux_.path("/var/mobile/x.plist"), root_ + "/var/mobile/x.plist");
  ::setenv("ZORVEL_BUNDLE_ID", "com.apple.springboard", 1);
  LinuxPlatform named;
  ::unsetenv("ZORVEL_BUNDLE_ID");
  EXPECT_EQ(named.device().bundleIdentifier, "com.apple.springboard");
  EXPECT_EQ(LinuxPlatform().device().bundleIdentifier, "com.zorvel.cli");
}

// Waits up to `seconds` for a byte on fd.
bool readByte(int fd, double seconds) {
  pollfd p{fd, POLLIN, 0};
  char c;
  return ::poll(&p, 1, static_cast<int>(seconds * 1000)) == 1 &&
         ::read(fd, &c, 1) == 1;
}

TEST_F(LinuxPlatformTest, NotificationReachesAnObserverInAnotherProcess) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // The observer: its own platform on the same root. Exit status 0 when
    // "ZVAreaChanged" arrived and "ZVOther" did not.
    std::string heard;
    {
      LinuxPlatform observer;
      observer.setRoot(root_);
      observer.observe(
          "ZVOther", [&] { heard += "other "; }, Scope::System);
      observer.observe(
          "ZVAreaChanged",
          [&] {
            observer.quit();
            heard += "area";
          },
          Scope::System);
      (void)!::write(ready[1], "r", 1);
      observer.runFor(20);
    }
    ::_exit(heard == "area" ? 0 : 1);
  }
  ::close(ready[1]);
  ASSERT_TRUE(readByte(ready[0], 20));
  ::close(ready[0]);
  // The observer's socket is in the shared folder of the device root.
  const std::string folder = root_ + "/var/run/zorvel/notify";
  EXPECT_FALSE(std::filesystem::is_empty(folder));
  linux_.post("ZVAreaChanged", Scope::System);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  // The observer removed its socket when it ended; shutting down (what the
  // shared platform does at exit) removes one too.
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  linux_.observe(
      "ZVAreaChanged", [] {}, Scope::System);
  EXPECT_FALSE(std::filesystem::is_empty(folder));
  linux_.shutdown();
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// Appends to a file as another program saving a change would (no
// notification is posted).
void append(const std::string& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary | std::ios::app) << bytes;
}

TEST_F(LinuxPlatformTest, AddressBookChangesOnDiskRaiseTheChangeSignal) {
  const std::string db =
      root_ + "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";
  std::filesystem::create_directories(std::filesystem::path(db).parent_path());
  append(db, "pages");
  int signals = 0;
  linux_.observe(
      kAddressBookExternalChangeNotification, [&] { ++signals; },
      Scope::System);
  // Reading, and files of other databases, change nothing.
  { std::ifstream(db).get(); }
  append(db + "-shm", "x");
  append(root_ + "/var/mobile/Library/AddressBook/AddressBookImages.sqlitedb",
         "x");
  linux_.runFor(0.6);
  EXPECT_EQ(signals, 0);
  // A burst of writes is one signal.
  append(db, "more");
  append(db + "-journal", "j");
  std::filesystem::remove(db + "-journal");
  linux_.runFor(1.0);
  EXPECT_EQ(signals, 1);
  // Write-ahead mode commits into the -wal file.
  append(db + "-wal", "frame");
  linux_.runFor(1.0);
  EXPECT_EQ(signals, 2);
}

// Each snapshot says why the server cannot be reached, and the watch keeps
// asking, less and less often, so a server that comes later is found
// without a change signal.
TEST(EdsWatch, KeepsAskingWhileTheServerCannotBeReached) {
  using Clock = std::chrono::steady_clock;
  // A bus that is not there fails at once (no autolaunch, no waiting).
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/zv-no-bus", 1);
  std::mutex mutex;
  std::condition_variable grew;
  std::vector<Clock::time_point> seen;
  std::string firstProblem;
  {
    EdsWatch watch(
        10,
        [&](const EdsSnapshot& snap) {
          std::lock_guard lock(mutex);
          if (seen.empty()) firstProblem = snap.problem;
          seen.push_back(Clock::now());
          EXPECT_FALSE(snap.reachable);
          grew.notify_all();
        },
        0.05);
    std::unique_lock lock(mutex);  // released before the watch ends
    grew.wait_for(lock, std::chrono::seconds(10),
                  [&] { return seen.size() >= 4; });
  }
  ASSERT_GE(seen.size(), 4u);
  EXPECT_NE(firstProblem.find("not reachable"), std::string::npos)
      << firstProblem;
  // The waits double: 0.05, 0.1, then 0.2 s (timers never fire early).
  EXPECT_GE(seen[3] - seen[2], std::chrono::milliseconds(195));
}

}  // namespace
}  // namespace zv::platform
