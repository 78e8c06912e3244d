// What the platform does when asked, and how the simulated platform records
// it: hanging calls up, the cellular-data switch, system sounds from files,
// bulletins, the carrier name; and the telephony of a computer with no
// modem.
#include "core/hook.h"
#include "hostsdk/telephony.h"
#include "platform/linux/no_modem_telephony.h"
#include "platform/platform.h"
#include "platform/telephony/core_telephony.h"
#include "platform/ui/bulletin.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

using platform::CallId;

TEST_F(TelephonyTest, DisconnectHangsUpOneCallByItsHandleOrAllOfThem) {
  auto& springboard = launch("com.apple.springboard", "7.1");
  const CallId blocked = network().incoming("13800138000");
  const CallId other = network().dial("10086");
  world_.advance(3);
  in(springboard, [&] {
    rt::Id call = platform::callObject(blocked);
    platform::CTCallDisconnect(rt::send(call, sdk::TUCall::call));
    // Not a handle, and nil: nothing happens.
    platform::CTCallDisconnect(call);
    platform::CTCallDisconnect(nullptr);
  });
  EXPECT_EQ(network().call(blocked)->status, platform::kCallEnded);
  EXPECT_EQ(network().call(other)->status, platform::kCallDialling);
  auto hangups = world_.events("disconnect");
  ASSERT_EQ(hangups.size(), 1u);
  EXPECT_EQ(hangups[0].process, "com.apple.springboard");
  EXPECT_EQ(hangups[0].detail, "13800138000");
  EXPECT_DOUBLE_EQ(hangups[0].time, 3);
  // The hung-up call is a missed call in the history.
  auto history = dbRows();
  ASSERT_EQ(history.size(), 1u);
  EXPECT_EQ(history[0].read, 0);

  // A stale handle of an ended call: recorded, nothing more happens.
  in(springboard, [&] {
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
  in(incall, [] { platform::CTCallListDisconnectAll(); });
  EXPECT_TRUE(network().calls().empty());
  EXPECT_EQ(dbRows().size(), 5u);
  auto all = world_.events("disconnectAll");
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all[0].process, "com.apple.InCallService");
}

TEST_F(TelephonyTest, CellularDataIsTheDevicesAndEverySwitchIsRecorded) {
  auto& springboard = launch("com.apple.springboard");
  auto& settings = launch("com.apple.Preferences");
  EXPECT_TRUE(in(springboard,
                 [] { return platform::CTCellularDataPlanGetIsEnabled(); }));
  in(springboard, [] { platform::CTCellularDataPlanSetIsEnabled(false); });
  EXPECT_FALSE(
      in(settings, [] { return platform::CTCellularDataPlanGetIsEnabled(); }));
  EXPECT_FALSE(network().cellularDataEnabled());
  in(springboard, [] { platform::CTCellularDataPlanSetIsEnabled(true); });
  auto switches = world_.events("cellularData");
  ASSERT_EQ(switches.size(), 2u);
  EXPECT_EQ(switches[0].detail, "off");
  EXPECT_EQ(switches[1].detail, "on");
  EXPECT_EQ(switches[1].process, "com.apple.springboard");
}

TEST_F(TelephonyTest, SystemSoundsAreMadeFromFilesThatExist) {
  auto& springboard = launch("com.apple.springboard");
  writeDeviceFile("/Library/Zorvel/block.caf", "caff");
  in(springboard, [] {
    auto& p = platform::current();
    EXPECT_EQ(p.createSystemSound("/Library/Zorvel/missing.caf"), std::nullopt);
    EXPECT_EQ(p.createSystemSound("/Library/Zorvel"), std::nullopt)
        << "a folder is no sound";
    auto first = p.createSystemSound("/Library/Zorvel/block.caf");
    auto second = p.createSystemSound("/Library/Zorvel/block.caf");
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_NE(*first, 0u);
    EXPECT_NE(*first, 4095u) << "not the vibration's id";
    p.playSystemSound(*first);
    p.disposeSystemSound(*first);
  });
  auto created = world_.events("soundCreate");
  ASSERT_EQ(created.size(), 2u);
  EXPECT_EQ(created[0].detail, "4096 /Library/Zorvel/block.caf");
  ASSERT_EQ(world_.events("sound").size(), 1u);
  EXPECT_EQ(world_.events("sound")[0].detail, "4096");
  ASSERT_EQ(world_.events("soundDispose").size(), 1u);
  EXPECT_EQ(world_.events("soundDispose")[0].detail, "4096");
}

TEST_F(TelephonyTest, ABulletinShowsTheTitleTheRuntimeAnswers) {
  auto& springboard = launch("com.apple.springboard", "7.1");
  in(springboard, [] {
    rt::Id bulletin = ui::makeBulletin(
        {"13800138000", "com.apple.mobilephone",
         Dict{{"contactInfo", Value("13800138000")}}, Date{438170400}});
    EXPECT_EQ(rt::send(bulletin, sdk::BBBulletin::context)["contactInfo"]
                  .stringValue(),
              "13800138000");
    EXPECT_EQ(rt::send(bulletin, sdk::BBBulletin::date), Date{438170400});
    ui::presentBulletin(bulletin);
    // A replaced title is what the banner shows.
    ASSERT_TRUE(hook::after(
        GuardKind::Log, sdk::BBBulletin::title,
        [](const rt::Id&, std::string& title) { title += "  北京"; }));
    ui::presentBulletin(bulletin);
    ui::presentBulletin(
        ui::makeBulletin({"Hi", "com.apple.MobileSMS", {}, {}}));
    ui::presentBulletin(nullptr);
  });
  auto banners = world_.events("bulletin");
  ASSERT_EQ(banners.size(), 3u);
  EXPECT_EQ(banners[0].detail, "com.apple.mobilephone | 13800138000");
  EXPECT_EQ(banners[1].detail, "com.apple.mobilephone | 13800138000  北京");
  EXPECT_EQ(banners[2].detail, "com.apple.MobileSMS | Hi  北京");
}

TEST_F(TelephonyTest, TheCarrierNameComesFromTheNetworkAndIsRecordedShown) {
  auto& springboard = launch("com.apple.springboard");
  network().setOperatorName("中国联通");
  in(springboard, [] {
    auto& p = platform::current();
    EXPECT_EQ(p.telephony().operatorName(), "中国联通");
    p.showCarrierName("Zorvel");
  });
  ASSERT_EQ(world_.events("carrier").size(), 1u);
  EXPECT_EQ(world_.events("carrier")[0].detail, "Zorvel");
}

TEST(NoModemTelephonyTest, HasNoCallsAndNoCellularData) {
  platform::NoModemTelephony telephony;
  bool heard = false;
  auto token =
      telephony.observeCalls([&](const platform::CallInfo&) { heard = true; });
  EXPECT_NE(token, 0u);
  EXPECT_TRUE(telephony.calls().empty());
  EXPECT_EQ(telephony.call(1), std::nullopt);
  telephony.disconnect(1);
  telephony.disconnectAll();
  telephony.setCellularDataEnabled(true);
  EXPECT_FALSE(telephony.cellularDataEnabled());
  EXPECT_EQ(telephony.operatorName(), "");
  telephony.removeCallObserver(token);
  EXPECT_FALSE(heard);
}

}  // namespace
}  // namespace zv::testing
