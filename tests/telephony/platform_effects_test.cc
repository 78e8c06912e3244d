// What the platform does when asked, and how the simulated platform records
// it: hanging calls up, cellular data, system sounds from files. (Bulletins
// and the carrier name are seen through the hooks in tests/hooks.)
#include "platform/platform.h"
#include "platform/telephony/core_telephony.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

using platform::CallId;

TEST_F(TelephonyTest, DisconnectHangsUpOneCallByItsHandleOrAllOfThem) {
  auto& springboard = launch("com.apple.springboard", "7.1");
  const CallId blocked = network().incoming("13800138000");
  const CallId other = network().dial("10086");
  world_.advance(3);
  springboard.run([&] {
    rt::Id call = platform::callObject(blocked);
    platform::CTCallDisconnect(rt::send(call, sdk::TUCall::call));
    // Not a handle, and nil: nothing happens.
    platform::CTCallDisconnect(call);
    platform::CTCallDisconnect(nullptr);
  });
  EXPECT_EQ(network().call(blocked)->status, platform::kCallEnded);
  EXPECT_EQ(network().call(other)->status, platform::kCallDialling);
  EXPECT_EQ(effects("disconnect"),
            Lines{"3 com.apple.springboard 13800138000"});
  // The hung-up call is a missed call in the history.
  EXPECT_EQ(dbRows().at(0).read, 0);

  // A stale handle of an ended call: recorded, nothing more happens.
  springboard.run([&] {
    rt::Id handle = rt::send(platform::callObject(other), sdk::TUCall::call);
    network().remoteHangup(other);
    platform::CTCallDisconnect(handle);
  });
  EXPECT_EQ(world_.events("disconnect").size(), 2u);
  EXPECT_EQ(dbRows().size(), 2u);

  // Hanging up all of them, from another process.
  auto& incall = launch("com.apple.InCallService", "7.1");
  network().answer(network().incoming("13800138000"));
  network().incoming("13900139000");
  network().dial("10086");
  incall.run([] { platform::CTCallListDisconnectAll(); });
  EXPECT_TRUE(network().calls().empty());
  EXPECT_EQ(dbRows().size(), 5u);
  EXPECT_EQ(effects("disconnectAll"), Lines{"3 com.apple.InCallService "});
}

// The vibration's id and the created sounds' ids are the platform's (the
// sound's path is checked where the blocking reminder makes it); cellular
// data is the device's: switched in one process, seen in another (each
// switch recorded: the Control Centre's end-to-end tests).
TEST_F(TelephonyTest, SystemSoundsFromFilesThatExistAndTheDevicesCellularData) {
  auto& springboard = launch("com.apple.springboard");
  auto& settings = launch("com.apple.Preferences");
  springboard.run([] { platform::CTCellularDataPlanSetIsEnabled(false); });
  EXPECT_FALSE(
      settings.run([] { return platform::CTCellularDataPlanGetIsEnabled(); }));
  writeDeviceFile("/Library/Zorvel/block.caf", "caff");
  springboard.run([] {
    auto& p = platform::current();
    // A missing file and a folder are no sound; ids are distinct, not 0
    // nor the vibration's 4095.
    std::vector<std::optional<uint32_t>> ids;
    for (const char* path :
         {"/Library/Zorvel/missing.caf", "/Library/Zorvel",
          "/Library/Zorvel/block.caf", "/Library/Zorvel/block.caf"})
      ids.push_back(p.createSystemSound(path));
    EXPECT_EQ(ids, (std::vector<std::optional<uint32_t>>{
                       std::nullopt, std::nullopt, 4096, 4097}));
    p.disposeSystemSound(4096);
  });
  EXPECT_EQ(effects("soundDispose"), Lines{"0 com.apple.springboard 4096"});
}

}  // namespace
}  // namespace zv::testing
