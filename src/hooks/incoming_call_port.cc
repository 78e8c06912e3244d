#include "hooks/incoming_call_port.h"

#include "hostsdk/incallservice.h"
#include "hostsdk/springboard.h"
#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "platform/telephony/core_telephony.h"

namespace zv {
namespace {

using Screen = sdk::MPIncomingPhoneCallController;
using Participants = sdk::PHCallParticipantsViewController;

// Whether the object answers the message with the message's own signature:
// a property of another type counts as missing, as a value that is "not
// text" does for the number.
template <typename Sig>
bool answers(const rt::Id& object, const rt::Message<Sig>& m) {
  if (!object) return false;
  const rt::Method* method = object->isa()->findMethod(m.sel);
  return method && method->signature == typeid(Sig);
}

template <typename Sig, typename R = typename rt::Message<Sig>::Result>
R property(const rt::Id& object, const rt::Message<Sig>& m, R neutral) {
  return answers(object, m) ? rt::send(object, m) : neutral;
}

class RuntimeIncomingCallHost : public IncomingCallHost {
 public:
  int32_t abUID(const rt::Id& call) override {
    return property(call, sdk::TUCall::abUID, -1);
  }
  bool contactUnknown(const rt::Id& call) override {
    return property(call, sdk::TUCall::contactUnknown, false);
  }
  bool isBlocked(const rt::Id& call) override {
    return property(call, sdk::TUCall::isBlocked, false);
  }
  std::optional<std::string> destinationID(const rt::Id& call) override {
    return property(call, sdk::TUCall::destinationID,
                    std::optional<std::string>());
  }
  bool isOutgoing(const rt::Id& call) override {
    return property(call, sdk::TUCall::isOutgoing, false);
  }
  rt::Id callHandle(const rt::Id& call) override {
    return property(call, sdk::TUCall::call, rt::Id());
  }
  rt::Id alertActivationCall(const rt::Id& viewController) override {
    return property(viewController,
                    sdk::PHInCallRootViewController::alertActivationCall,
                    rt::Id());
  }
  rt::Id incomingCall() override {
    return property(callCenter(), sdk::TUCallCenter::incomingCall, rt::Id());
  }
  rt::Id incomingVideoCall() override {
    return property(callCenter(), sdk::TUCallCenter::incomingVideoCall,
                    rt::Id());
  }
  void disconnect(const rt::Id& handle) override {
    platform::CTCallDisconnect(handle);
  }
  void disconnectAll() override { platform::CTCallListDisconnectAll(); }
  void playSystemSound(uint32_t soundId) override {
    platform::current().playSystemSound(soundId);
  }
  std::optional<uint32_t> createSystemSound(
      std::string_view devicePath) override {
    return platform::current().createSystemSound(devicePath);
  }
  void disposeSystemSound(uint32_t soundId) override {
    platform::current().disposeSystemSound(soundId);
  }
  int32_t status(const rt::Id& call) override {
    return property(call, sdk::TUCall::status, 0);
  }
  rt::Id notificationObject(const rt::Id& notification) override {
    return property(notification, sdk::NSNotification::object, rt::Id());
  }
  std::optional<std::string> incomingCallNumber(const rt::Id& screen) override {
    return property(screen, Screen::incomingCallNumber,
                    std::optional<std::string>());
  }
  int32_t incomingCallerABUID(const rt::Id& screen) override {
    return property(screen, Screen::incomingCallerABUID,
                    std::optional<int32_t>())
        .value_or(-1);
  }
  std::shared_ptr<ui::UIView> topLCDView(const rt::Id& screen) override {
    return std::dynamic_pointer_cast<ui::UIView>(
        property(screen, Screen::topLCDView, rt::Id()));
  }
  bool shouldCenterText(const rt::Id& screen) override {
    return property(screen, Screen::shouldCenterText, false);
  }
  void ringOrVibrate(const rt::Id& screen) override {
    if (answers(screen, Screen::ringOrVibrate))
      rt::send(screen, Screen::ringOrVibrate);
  }
  std::shared_ptr<ui::UIView> participantsView(
      const rt::Id& participants) override {
    return std::dynamic_pointer_cast<ui::UIView>(
        property(participants, Participants::participantsView, rt::Id()));
  }
  std::vector<rt::Id> callGroups(const rt::Id& participants) override {
    return property(participants, Participants::callGroups,
                    std::vector<rt::Id>());
  }
  std::vector<rt::Id> groupCalls(const rt::Id& group) override {
    return property(group, sdk::TUCallGroup::calls, std::vector<rt::Id>());
  }
  rt::Id callParticipantsViewController(const rt::Id& audioCall) override {
    return property(
        audioCall,
        sdk::PHAudioCallViewController::callParticipantsViewController,
        rt::Id());
  }
  std::string bulletinSectionID(const rt::Id& bulletin) override {
    return property(bulletin, sdk::BBBulletin::sectionID, std::string());
  }
  std::optional<std::string> bulletinContactInfo(
      const rt::Id& bulletin) override {
    Dict context = property(bulletin, sdk::BBBulletin::context, Dict());
    auto it = context.find("contactInfo");
    if (it == context.end() || !it->second.string()) return std::nullopt;
    return *it->second.string();
  }
  std::optional<double> bulletinDate(const rt::Id& bulletin) override {
    auto date =
        property(bulletin, sdk::BBBulletin::date, std::optional<Date>());
    if (!date) return std::nullopt;
    return date->seconds;
  }
  bool installIncomingCallScreenHooks() override {
    return zvincomingcall_init2();
  }

 private:
  // TUCallCenter's sharedInstance; nil without the class.
  static rt::Id callCenter() {
    rt::Class* cls = rt::getClass(sdk::TUCallCenter::kName);
    if (!cls) return nullptr;
    return property(rt::classObject(cls), sdk::TUCallCenter::sharedInstance,
                    rt::Id());
  }
};

}  // namespace

std::shared_ptr<IncomingCallHost> makeRuntimeIncomingCallHost() {
  return std::make_shared<RuntimeIncomingCallHost>();
}

}  // namespace zv
