// Every message of the typed host header is one the platform defines, with
// the header's signature: a host or hook that sends it never meets an
// unknown selector or a signature mismatch.
#include "hostsdk/telephony.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

template <typename Sig>
void expectDefined(const rt::Message<Sig>& message) {
  SCOPED_TRACE(std::string(message.cls) + " " + std::string(message.sel));
  rt::Class* cls = message.target();
  ASSERT_NE(cls, nullptr);
  EXPECT_NE(rt::lookup<Sig>(cls, message.sel), nullptr);
}

TEST_F(TelephonyTest, TheHostHeaderMatchesThePlatformsClasses) {
  auto& springboard = launch("com.apple.springboard");
  in(springboard, [] {
    ui::registerBulletinClass(rt::runtime());
    rt::makeNotification("x", nullptr);
    expectDefined(sdk::TUCallCenter::sharedInstance);
    expectDefined(sdk::TUCallCenter::incomingCall);
    expectDefined(sdk::TUCallCenter::incomingVideoCall);
    expectDefined(sdk::TUCall::status);
    expectDefined(sdk::TUCall::destinationID);
    expectDefined(sdk::TUCall::abUID);
    expectDefined(sdk::TUCall::isBlocked);
    expectDefined(sdk::TUCall::isOutgoing);
    expectDefined(sdk::TUCall::call);
    expectDefined(sdk::TUCall::localizedLabel);
    EXPECT_NE(rt::getClass(sdk::CTCall::kName), nullptr);
    expectDefined(sdk::BBBulletin::title);
    expectDefined(sdk::BBBulletin::sectionID);
    expectDefined(sdk::BBBulletin::context);
    expectDefined(sdk::BBBulletin::date);
    expectDefined(sdk::NSNotification::name);
    expectDefined(sdk::NSNotification::object);
    EXPECT_EQ(sdk::NSNotification::kCallStatusChanged,
              "TUCallCenterCallStatusChangedNotification");
  });
}

}  // namespace
}  // namespace zv::testing
