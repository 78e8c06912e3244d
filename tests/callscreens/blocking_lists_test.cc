// The black and white list files: lazy reading, damaged files, the
// "ZVBlacklistChanged" notification.
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>

#include "blocking_fixture.h"
#include "platform/platform.h"

namespace zv::testing {
namespace {

using C = ZVIncomingCallController;
using Policy = CallBlockingPolicy;

std::string binaryPlist(const Dict& dict) {
  plist_t root = plist_new_dict();
  for (const auto& [key, value] : dict)
    plist_dict_set_item(root, key.c_str(), plist_new_bool(value.boolValue()));
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string out(bytes, length);
  free(bytes);
  plist_free(root);
  return out;
}

// A later change of the file is seen neither through a cached verdict nor
// through the kept list until "ZVBlacklistChanged", posted by another
// process, drops both.
TEST_F(BlockingTest, ListsAndVerdictsAreKeptUntilAnotherProcessDropsThem) {
  start({{"BlacklistBlockMode", 0}});
  controller_ = C::sharedInstance();
  controller_->setHost(host_);
  // Binary list files are read as well as XML ones.
  writeDeviceFile(Policy::kBlacklistPath,
                  binaryPlist({{"10010", true}, {"10011", true}}));
  EXPECT_FALSE(controller_->blacklist());  // read on first use
  EXPECT_TRUE(blocks("10010"));
  ASSERT_TRUE(controller_->blacklist());
  EXPECT_EQ(*controller_->blacklist(),
            (std::vector<std::string>{"10010", "10011"}));
  writeList(Policy::kBlacklistPath, {"10086"});
  EXPECT_TRUE(blocks("10010"));
  EXPECT_FALSE(blocks("10086"));
  world_.launch("com.apple.Preferences").run([] {
    platform::current().post(C::kChangedNotification);
  });
  world_.advance(0);
  EXPECT_TRUE(controller_->lastBlockedNumber().empty());
  EXPECT_FALSE(controller_->blacklist());
  EXPECT_FALSE(blocks("10010"));
  EXPECT_TRUE(blocks("10086"));
  // One subscription per process, however often the controller is asked.
  C::sharedInstance();
  EXPECT_EQ(world_.observerCount(C::kChangedNotification), 1u);
}

// A damaged file is an empty list: blacklist mode blocks nothing, whitelist
// mode blocks everything; nothing crashes, the file keeps its bytes, and
// the read is tried again on the next call, so a repaired file counts at
// once. One file of each way a list fails to read; the parser's own faults
// are the plist tests' and the block_lists fuzz target's (its corpus replays
// in tests/hooks/fuzz_corpus_test.cc).
TEST_F(BlockingTest, ADamagedListIsAnEmptyListThatIsNeverWritten) {
  std::string xml = plist::toXml(Value(Dict{{"10010", true}, {"10011", 1}}));
  std::string bin = binaryPlist({{"10010", true}, {"10011", true}});
  // The trailer's offset-table position points past the end of the file.
  std::string badOffsets = bin;
  for (size_t i = badOffsets.size() - 8; i < badOffsets.size(); ++i)
    badOffsets[i] = '\xff';
  const std::pair<const char*, std::string> files[] = {
      {"empty", ""},
      {"truncated XML", xml.substr(0, xml.size() / 2)},
      {"truncated binary", bin.substr(0, bin.size() - 10)},
      {"binary, bad offsets", badOffsets},
      {"an array", plist::toXml(Value(Array{Value("10010")}))},
  };
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    start({{"BlacklistBlockMode", 0}});
    writeDeviceFile(Policy::kBlacklistPath, bytes);
    writeDeviceFile(Policy::kWhitelistPath, bytes);
    EXPECT_FALSE(blocks("10010"));
    EXPECT_FALSE(controller_->blacklist());
    EXPECT_FALSE(controller_->isInWhitelist("10010"));
    EXPECT_FALSE(controller_->whitelist());
    EXPECT_TRUE(controller_->lastBlockedNumber().empty());
    EXPECT_EQ(readFile(root_ + Policy::kBlacklistPath), bytes);
    writeList(Policy::kBlacklistPath, {"10010"});
    EXPECT_TRUE(blocks("10010"));
    start({{"BlacklistBlockMode", 1}});
    EXPECT_TRUE(blocks("10010"));
    EXPECT_EQ(readFile(root_ + Policy::kWhitelistPath), bytes);
  }
}

TEST_F(BlockingTest, ADirectoryInPlaceOfTheListIsAnEmptyList) {
  start({{"BlacklistBlockMode", 0}});
  std::filesystem::create_directories(root_ + Policy::kBlacklistPath);
  EXPECT_FALSE(blocks("10010"));
  EXPECT_TRUE(std::filesystem::is_directory(root_ + Policy::kBlacklistPath));
}

TEST_F(BlockingTest, ChangedNotificationWithoutAControllerDoesNothing) {
  start({});
  C::ZVBlacklistChanged();
  EXPECT_FALSE(platform::Process::current().slot<C>());
}

}  // namespace
}  // namespace zv::testing
