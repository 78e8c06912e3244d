// Every message of the typed host header is one the platform defines, with
// the header's signature: a host or hook that sends it never meets an
// unknown selector or a signature mismatch.
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

// "class selector; " for each message the platform lacks.
template <typename... Sigs>
std::string undefined(const rt::Message<Sigs>&... m) {
  std::string out;
  ((m.target() && rt::lookup<Sigs>(m.target(), m.sel)
        ? out
        : out += std::string(m.cls) + " " + std::string(m.sel) + "; "),
   ...);
  return out;
}

TEST_F(TelephonyTest, TheHostHeaderMatchesThePlatformsClasses) {
  auto& springboard = launch("com.apple.springboard");
  springboard.run([] {
    ui::registerBulletinClass(rt::runtime());
    rt::makeNotification("x", nullptr);
    EXPECT_EQ(
        undefined(sdk::TUCallCenter::sharedInstance,
                  sdk::TUCallCenter::incomingCall,
                  sdk::TUCallCenter::incomingVideoCall, sdk::TUCall::status,
                  sdk::TUCall::destinationID, sdk::TUCall::abUID,
                  sdk::TUCall::isBlocked, sdk::TUCall::isOutgoing,
                  sdk::TUCall::call, sdk::TUCall::localizedLabel,
                  sdk::BBBulletin::title, sdk::BBBulletin::sectionID,
                  sdk::BBBulletin::context, sdk::BBBulletin::date,
                  sdk::NSNotification::name, sdk::NSNotification::object),
        "");
    EXPECT_NE(rt::getClass(sdk::CTCall::kName), nullptr);
    EXPECT_EQ(sdk::NSNotification::kCallStatusChanged,
              "TUCallCenterCallStatusChangedNotification");
  });
}

}  // namespace
}  // namespace zv::testing
