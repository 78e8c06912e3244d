// The simulated world's clock, its delayed work and its notifications
// between processes. (Its record of side effects, with time and process, is
// read by every end-to-end suite and by tests/telephony.)
#include <gtest/gtest.h>

#include "platform/platform.h"
#include "platform/process.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

class SimWorldTest : public testing::SimTest {};

TEST_F(SimWorldTest, DelayedCallsRunInTimeOrderWhenTheClockReachesThem) {
  auto& p = world_.launch("com.apple.springboard");
  std::string trace;
  int target = 0;
  p.run([&] {
    auto& platform = platform::current();
    platform.performAfterDelay(&target, "late", 2.0, [&] { trace += "L"; });
    platform.performAfterDelay(&target, "early", 1.0, [&] {
      trace += "E";
      // Work queued by work runs in the same advance when it falls due.
      platform::current().performAfterDelay(nullptr, "", 0.5,
                                            [&] { trace += "N"; });
    });
    platform.dispatchMain([&] { trace += "M"; });
  });
  for (double step : {0.0, 1.4, 0.6}) {
    trace += "|";
    world_.advance(step);
  }
  EXPECT_EQ(trace, "|M|E|NL");
  EXPECT_DOUBLE_EQ(world_.elapsed(), 2.0);
  EXPECT_EQ(world_.pending(), 0u);
}

TEST_F(SimWorldTest, CancelPreviousDropsOnlyThatTargetAndSelector) {
  auto& p = world_.launch("com.apple.springboard");
  auto& q = world_.launch("com.apple.mobilephone");
  int a = 0, b = 0;
  std::string trace;
  auto schedule = [&](platform::SimProcess& proc, const void* t,
                      const char* sel, const char* mark) {
    proc.run([&] {
      platform::current().performAfterDelay(t, sel, 3.0,
                                            [&trace, mark] { trace += mark; });
    });
  };
  schedule(p, &a, "reload", "1");
  schedule(p, &a, "store", "2");
  schedule(p, &b, "reload", "3");
  schedule(q, &a, "reload", "4");
  world_.advance(1);
  // A new request after cancelling restarts the wait.
  p.run([&] { platform::current().cancelPrevious(&a, "reload"); });
  schedule(p, &a, "reload", "5");
  for (double step : {2.5, 1.0}) {
    world_.advance(step);
    trace += "|";
  }
  EXPECT_EQ(trace, "234|5|");
}

TEST_F(SimWorldTest, NotificationsCrossProcessesUntilAProcessQuits) {
  auto& sb = world_.launch("com.apple.springboard");
  auto& phone = world_.launch("com.apple.mobilephone");
  std::string seen;
  auto watch = [&](platform::SimProcess& proc, const std::string& name,
                   platform::Scope scope) {
    return proc.run([&] {
      return platform::current().observe(
          name,
          [&seen, name] {
            seen += name + "@" + platform::current().device().bundleIdentifier +
                    " ";
          },
          scope);
    });
  };
  watch(sb, "ZVSettingsChanged", platform::Scope::System);
  auto removed = watch(phone, "ZVSettingsChanged", platform::Scope::System);
  watch(phone, "ZVT9Changed", platform::Scope::System);
  watch(sb, "local", platform::Scope::Process);
  watch(phone, "local", platform::Scope::Process);

  sb.run([] {
    platform::current().post("ZVSettingsChanged");
    platform::current().post("local", platform::Scope::Process);
  });
  // Delivery is asynchronous, and an observer removed before it gets none.
  EXPECT_EQ(seen, "");
  phone.run([&] { platform::current().removeObserver(removed); });
  world_.advance(0);
  EXPECT_EQ(seen,
            "ZVSettingsChanged@com.apple.springboard "
            "local@com.apple.springboard ");
  // The pasteboard is the device's.
  phone.run([] { platform::current().setPasteboard("10086"); });
  EXPECT_EQ(sb.run([] { return platform::current().pasteboard(); }), "10086");
  // A process that quit observes nothing and runs nothing any more, and
  // its singletons are gone.
  bool ran = false;
  sb.run([&] {
    platform::Process::current().slot<int>() = std::make_shared<int>(5);
    platform::current().performAfterDelay(nullptr, "", 1, [&] { ran = true; });
  });
  seen.clear();
  world_.terminate(sb);
  phone.run([] {
    platform::current().post("ZVSettingsChanged");
    platform::current().post("ZVT9Changed");
  });
  world_.advance(2);
  EXPECT_EQ(seen, "ZVT9Changed@com.apple.mobilephone ");
  EXPECT_FALSE(ran);
  sb.run([] { EXPECT_FALSE(platform::Process::current().slot<int>()); });
}

}  // namespace
}  // namespace zv
