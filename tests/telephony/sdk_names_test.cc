// Every message of the typed host header is one the platform defines, with
// the header's signature: a host or hook that sends it never meets an
// unknown selector or a signature mismatch.
#include "hostsdk/telephony.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

template <typename... Sigs>
void expectDefined(const rt::Message<Sigs>&... messages) {
  (
      [&] {
        SCOPED_TRACE(std::string(messages.cls) + " " +
                     std::string(messages.sel));
        ASSERT_NE(messages.target(), nullptr);
        EXPECT_NE(rt::lookup<Sigs>(messages.target(), messages.sel), nullptr);
      }(),
      ...);
}

TEST_F(TelephonyTest, TheHostHeaderMatchesThePlatformsClasses) {
  auto& springboard = launch("com.apple.springboard");
  springboard.run([] {
    ui::registerBulletinClass(rt::runtime());
    rt::makeNotification("x", nullptr);
    expectDefined(
        sdk::TUCallCenter::sharedInstance, sdk::TUCallCenter::incomingCall,
        sdk::TUCallCenter::incomingVideoCall, sdk::TUCall::status,
        sdk::TUCall::destinationID, sdk::TUCall::abUID, sdk::TUCall::isBlocked,
        sdk::TUCall::isOutgoing, sdk::TUCall::call, sdk::TUCall::localizedLabel,
        sdk::BBBulletin::title, sdk::BBBulletin::sectionID,
        sdk::BBBulletin::context, sdk::BBBulletin::date,
        sdk::NSNotification::name, sdk::NSNotification::object);
    EXPECT_NE(rt::getClass(sdk::CTCall::kName), nullptr);
    EXPECT_EQ(sdk::NSNotification::kCallStatusChanged,
              "TUCallCenterCallStatusChangedNotification");
  });
}

}  // namespace
}  // namespace zv::testing
