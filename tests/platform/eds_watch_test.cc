// The watch on Evolution Data Server when the server cannot be reached:
// each snapshot says why, and the watch keeps asking, less and less often,
// so a server that comes later is found without a change signal.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/linux/eds_address_book.h"

namespace zv::platform {
namespace {

using Clock = std::chrono::steady_clock;

TEST(EdsWatch, KeepsAskingWhileTheServerCannotBeReached) {
  // A bus that is not there fails at once (no autolaunch, no waiting).
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/zv-no-bus", 1);
  std::mutex mutex;
  std::vector<Clock::time_point> seen;
  std::vector<std::string> problems;
  {
    EdsWatch watch(
        10,
        [&](const EdsSnapshot& snap) {
          std::lock_guard lock(mutex);
          seen.push_back(Clock::now());
          problems.push_back(snap.problem);
          EXPECT_FALSE(snap.reachable);
        },
        0.05);
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (Clock::now() < end) {
      {
        std::lock_guard lock(mutex);
        if (seen.size() >= 4) break;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
  std::lock_guard lock(mutex);
  ASSERT_GE(seen.size(), 4u);
  EXPECT_NE(problems[0].find("not reachable"), std::string::npos)
      << problems[0];
  // The waits double: 0.05, 0.1, then 0.2 s (timers never fire early).
  EXPECT_GE(seen[3] - seen[2], std::chrono::milliseconds(195));
}

}  // namespace
}  // namespace zv::platform
