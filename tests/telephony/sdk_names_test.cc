// Every message of the typed host header is one the platform defines, with
// the header's signature: a host or hook that sends it never meets an
// unknown selector or a signature mismatch.
#include "hostsdk/telephony.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

template <typename Sig>
void expectOneDefined(const rt::Message<Sig>& message) {
  SCOPED_TRACE(std::string(message.cls) + " " + std::string(message.sel));
  rt::Class* cls = message.target();
  ASSERT_NE(cls, nullptr);
  EXPECT_NE(rt::lookup<Sig>(cls, message.sel), nullptr);
}
template <typename... Messages>
void expectDefined(const Messages&... messages) {
  (expectOneDefined(messages), ...);
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
