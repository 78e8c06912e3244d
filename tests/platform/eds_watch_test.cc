// The watch on Evolution Data Server when the server cannot be reached:
// each snapshot says why, and the watch keeps asking, less and less often,
// so a server that comes later is found without a change signal.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "platform/linux/eds_address_book.h"

namespace zv::platform {
namespace {

using Clock = std::chrono::steady_clock;

TEST(EdsWatch, KeepsAskingWhileTheServerCannotBeReached) {
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
