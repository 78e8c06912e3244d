// "ZVBlacklistChanged" between two real processes on the Linux platform:
// the settings pane's process rewrites the blacklist and posts; the call
// screen's process drops its lists and decides the next call on the new
// file.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "blocking_fixture.h"
#include "platform/linux/linux_platform.h"
#include "platform/plist.h"

namespace zv::testing {
namespace {

using C = ZVIncomingCallController;
using Policy = CallBlockingPolicy;

bool readByte(int fd, double seconds) {
  pollfd p{fd, POLLIN, 0};
  char c;
  return ::poll(&p, 1, static_cast<int>(seconds * 1000)) == 1 &&
         ::read(fd, &c, 1) == 1;
}

void writeList(const std::string& root, const std::string& number) {
  writePlist(root + Policy::kBlacklistPath, {{number, true}});
}

// The call screen's process. Exit status 0 when the first call was blocked
// by the old file and, after the notification, the old number rings and the
// new one is blocked.
int callScreenProcess(const std::string& root, int readyFd) {
  platform::LinuxPlatform linux;
  linux.setRoot(root);
  linux.deviceFacts().systemVersion = "8.1";
  platform::Process process(&linux);
  platform::Process::Scope scope(process);
  auto controller = C::sharedInstance();
  auto host = std::make_shared<FakeCallHost>();
  controller->setHost(host);
  rt::Class* cls = rt::registerClass("FakeCall");
  auto call = [&](const char* number) {
    auto c = rt::create<FakeCall>(cls);
    c->destinationID = number;
    return controller->blockCall(c);
  };
  if (!call("10010") || call("10086")) return 1;
  (void)!::write(readyFd, "r", 1);
  for (int i = 0; i < 400 && controller->blacklist(); ++i) linux.runFor(0.05);
  if (controller->blacklist()) return 2;
  if (call("10010") || !call("10086")) return 3;
  return 0;
}

TEST(BlockingLinuxTest, ChangedNotificationFromAnotherProcessReloadsTheList) {
  TempRoot temp;
  const std::string& root = temp.path();
  writePlist(root + "/var/mobile/Library/Preferences/zorvel.plist",
             {{"EnableBlacklist", true}, {"BlacklistBlockMode", 0}});
  writeList(root, "10010");

  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::close(ready[0]);
    ::_exit(callScreenProcess(root, ready[1]));
  }
  ::close(ready[1]);
  ASSERT_TRUE(readByte(ready[0], 20));
  ::close(ready[0]);

  // The settings pane's process is this one.
  writeList(root, "10086");
  platform::LinuxPlatform pane;
  pane.setRoot(root);
  pane.post(C::kChangedNotification, platform::Scope::System);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace zv::testing
