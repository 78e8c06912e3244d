// The simulated and the real platform are separate doors: inside a
// simulated world a thread that entered no simulated process gets an error,
// not the Linux platform (unless given an explicit default); a program
// without a world gets the Linux default.
#include "platform/process.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "platform/linux/linux_platform.h"
#include "platform/platform.h"
#include "support/sim_fixture.h"

namespace zv::platform {
namespace {

TEST(ProcessContextTest, ASimulatedWorldNeverFallsBackToTheLinuxPlatform) {
  zv::testing::TempRoot temp;
  {
    SimWorld world(temp.path());
    auto& phone = world.launch("com.apple.mobilephone");
    EXPECT_THROW(Process::current(), std::logic_error);
    EXPECT_THROW(current(), std::logic_error);
    std::thread([] {
      EXPECT_THROW(Process::current(), std::logic_error);
    }).join();
    // Inside the simulated process: its own context and platform.
    EXPECT_EQ(phone.run([] { return &Process::current(); }), &phone.context());
    EXPECT_EQ(phone.run([] { return &current(); }), &phone);
    // A thread without a scope is served by an explicit default.
    Process::setDefault(&phone.context());
    std::thread([&] { EXPECT_EQ(&current(), &phone); }).join();
    Process::setDefault(nullptr);
    EXPECT_THROW(current(), std::logic_error);
    {
      // Two worlds at once: the door stays shut until both are gone.
      SimWorld second(temp.path() + "/second");
      EXPECT_THROW(Process::current(), std::logic_error);
    }
    EXPECT_THROW(Process::current(), std::logic_error);
  }
  // A program on the real platform: the Linux default, the same each time.
  EXPECT_EQ(&Process::current(), &Process::linuxDefault());
  EXPECT_EQ(&current(), &LinuxPlatform::instance());
  EXPECT_EQ(&Process::current(), &Process::current());
}

}  // namespace
}  // namespace zv::platform
