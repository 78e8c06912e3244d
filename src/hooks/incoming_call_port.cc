#include "hooks/incoming_call_port.h"

#include "hostsdk/incallservice.h"
#include "hostsdk/telephony.h"
#include "platform/platform.h"
#include "platform/telephony/core_telephony.h"

namespace zv {
namespace {

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
