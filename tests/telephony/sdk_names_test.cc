// The typed header's names and signatures are the ones the platform
// registers: a host or hook that sends them as declared never meets an
// unknown selector or a signature mismatch.
#include "hostsdk/telephony.h"
#include "platform/runtime/notification.h"
#include "platform/ui/bulletin.h"
#include "telephony_fixture.h"

namespace zv::testing {
namespace {

template <typename Sig>
void expectMethod(std::string_view cls, std::string_view sel,
                  bool classMethod = false) {
  SCOPED_TRACE(std::string(cls) + " " + std::string(sel));
  rt::Class* c = rt::getClass(cls);
  ASSERT_NE(c, nullptr);
  if (classMethod) c = c->metaClass();
  EXPECT_NE(rt::lookup<Sig>(c, sel), nullptr);
}

TEST_F(TelephonyTest, TheHostHeaderMatchesThePlatformsClasses) {
  auto& springboard = launch("com.apple.springboard");
  in(springboard, [] {
    ui::registerBulletinClass(rt::runtime());
    rt::makeNotification("x", nullptr);
    using C = sdk::TUCallCenter;
    expectMethod<rt::Id()>(C::kName, C::sharedInstance, true);
    expectMethod<rt::Id()>(C::kName, C::incomingCall);
    expectMethod<rt::Id()>(C::kName, C::incomingVideoCall);
    using T = sdk::TUCall;
    expectMethod<int()>(T::kName, T::status);
    expectMethod<std::optional<std::string>()>(T::kName, T::destinationID);
    expectMethod<int()>(T::kName, T::abUID);
    expectMethod<bool()>(T::kName, T::isBlocked);
    expectMethod<bool()>(T::kName, T::isOutgoing);
    expectMethod<rt::Id()>(T::kName, T::call);
    expectMethod<std::optional<std::string>()>(T::kName, T::localizedLabel);
    EXPECT_NE(rt::getClass(sdk::CTCall::kName), nullptr);
    using B = sdk::BBBulletin;
    expectMethod<std::string()>(B::kName, B::title);
    expectMethod<std::string()>(B::kName, B::sectionID);
    expectMethod<Dict()>(B::kName, B::context);
    expectMethod<std::optional<Date>()>(B::kName, B::date);
    using N = sdk::NSNotification;
    expectMethod<std::string()>(N::kName, N::name);
    expectMethod<rt::Id()>(N::kName, N::object);
    EXPECT_EQ(N::kCallStatusChanged, platform::kCallStatusChangedNotification);
  });
}

}  // namespace
}  // namespace zv::testing
