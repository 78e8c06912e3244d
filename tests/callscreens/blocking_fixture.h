// A springboard or in-call service process with a fake host for
// ZVIncomingCallController that records every platform action in order.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "callscreens/incoming_call_controller.h"
#include "core/settings_catalogue.h"
#include "platform/plist.h"
#include "platform/ui/view.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

struct FakeCall : rt::Object {
  using rt::Object::Object;
  int32_t abUID = -1;
  bool contactUnknown = false;
  bool isBlocked = false;
  std::optional<std::string> destinationID;
  bool isOutgoing = false;
  int32_t status = 4;
  rt::Id handle;
};

// The host: calls are FakeCalls; a screen, alert or notification shows the
// call `calls` holds for it; a call's handle is named by its number.
class FakeCallHost : public IncomingCallHost {
 public:
  using Id = rt::Id;
  using View = std::shared_ptr<ui::UIView>;
  int32_t abUID(const Id& c) override { return call(c).abUID; }
  bool contactUnknown(const Id& c) override { return call(c).contactUnknown; }
  bool isBlocked(const Id& c) override { return call(c).isBlocked; }
  std::optional<std::string> destinationID(const Id& c) override {
    return call(c).destinationID;
  }
  bool isOutgoing(const Id& c) override { return call(c).isOutgoing; }
  int32_t status(const Id& c) override { return call(c).status; }
  Id callHandle(const Id& c) override { return call(c).handle; }
  Id alertActivationCall(const Id& vc) override { return callOf(vc); }
  Id notificationObject(const Id& n) override { return callOf(n); }
  std::optional<std::string> incomingCallNumber(const Id& s) override {
    return callOf(s) ? call(callOf(s)).destinationID : std::nullopt;
  }
  int32_t incomingCallerABUID(const Id& s) override {
    return callOf(s) ? call(callOf(s)).abUID : -1;
  }
  Id incomingCall() override { return incoming; }
  Id incomingVideoCall() override { return incomingVideo; }
  void disconnect(const Id& h) override {
    auto c = rt::as<FakeCall>(h);
    actions.push_back("disconnect " + (c ? *c->destinationID : "?"));
  }
  void disconnectAll() override { actions.push_back("disconnectAll"); }
  void playSystemSound(uint32_t id) override {
    actions.push_back("sound " + std::to_string(id));
  }
  std::optional<uint32_t> createSystemSound(std::string_view path) override {
    actions.push_back("create " + std::string(path));
    if (refuseSounds) return std::nullopt;
    return nextSoundID++;
  }
  void disposeSystemSound(uint32_t id) override {
    actions.push_back("dispose " + std::to_string(id));
  }
  View topLCDView(const Id&) override { return lcd; }
  bool shouldCenterText(const Id&) override { return centerText; }
  void ringOrVibrate(const Id&) override { actions.push_back("ring"); }
  View participantsView(const Id&) override { return participants; }
  std::vector<Id> callGroups(const Id&) override { return groups; }
  std::vector<Id> groupCalls(const Id& g) override { return {g}; }
  Id callParticipantsViewController(const Id& a) override { return a; }
  std::string bulletinSectionID(const Id&) override { return section; }
  std::optional<std::string> bulletinContactInfo(const Id&) override {
    return contactInfo;
  }
  std::optional<double> bulletinDate(const Id&) override {
    return bulletinDateValue;
  }
  bool installIncomingCallScreenHooks() override {
    actions.push_back("install");
    return screenClassExists;
  }

  std::vector<std::string> actions;
  std::map<const rt::Object*, rt::Id> calls;
  rt::Id incoming, incomingVideo;
  std::shared_ptr<ui::UIView> lcd, participants;
  bool centerText = true, screenClassExists = false, refuseSounds = false;
  std::vector<rt::Id> groups;
  std::string section = "com.apple.mobilephone";
  std::optional<std::string> contactInfo;
  std::optional<double> bulletinDateValue;
  uint32_t nextSoundID = 7001;

 private:
  static FakeCall& call(const rt::Id& c) { return *rt::as<FakeCall>(c); }
  rt::Id callOf(const rt::Id& o) {
    auto it = calls.find(o.get());
    return it == calls.end() ? nullptr : it->second;
  }
};

class BlockingTest : public SimTest {
 protected:
  static constexpr const char* kSettingsPath =
      "/var/mobile/Library/Preferences/zorvel.plist";
  static constexpr const char* kAreaPath =
      "/var/mobile/Library/Preferences/zorvel.area.plist";

  // Areas the area service answers (through the user's overrides), so that
  // tests need no database.
  BlockingTest() {
    writePlist(
        kAreaPath,
        Dict{{"1391234", "江苏南京"}, {"0755", "广东深圳"}, {"1860", "北京"}});
  }

  void writePlist(const std::string& devicePath, const Dict& dict) {
    testing::writePlist(root_ + devicePath, dict);
  }
  // A list file whose keys are `numbers`.
  void writeList(const char* devicePath, std::vector<std::string> numbers) {
    Dict dict;
    for (auto& n : numbers) dict[n] = Value(true);
    writePlist(devicePath, dict);
  }

  // Starts the process with EnableBlacklist on plus `settings`, makes its
  // controller with the fake host, and stays in its context.
  void start(Dict settings, std::string version = "8.1",
             const char* bundle = "com.apple.InCallService") {
    if (!settings.count("EnableBlacklist"))
      settings["EnableBlacklist"] = Value(true);
    writePlist(kSettingsPath, settings);
    platform::DeviceFacts facts;
    facts.systemVersion = version;
    process_ = &world_.launch(bundle, facts);
    scope_.emplace(process_->context());
    callClass_ = rt::registerClass("FakeCall");
    controller_ = ZVIncomingCallController::make();
    host_ = std::make_shared<FakeCallHost>();
    controller_->setHost(host_);
  }

  ~BlockingTest() override {
    controller_.reset();
    scope_.reset();
  }

  // An incoming call from `number` (nullopt: hidden caller).
  rt::Id call(std::optional<std::string> number, int32_t abUID = -1,
              bool platformBlocked = false) {
    auto c = rt::create<FakeCall>(callClass_);
    c->destinationID = std::move(number);
    c->abUID = abUID;
    c->isBlocked = platformBlocked;
    auto handle = rt::create<FakeCall>(callClass_);
    handle->destinationID = c->destinationID.value_or("hidden");
    c->handle = handle;
    return c;
  }
  bool blocks(std::optional<std::string> number, int32_t abUID = -1) {
    return controller_->blockCall(call(std::move(number), abUID));
  }
  std::vector<std::string> takeActions() {
    return std::exchange(host_->actions, {});
  }

  platform::SimProcess* process_ = nullptr;
  std::optional<platform::Process::Scope> scope_;
  rt::Class* callClass_ = nullptr;
  std::shared_ptr<ZVIncomingCallController> controller_;
  std::shared_ptr<FakeCallHost> host_;
};

}  // namespace zv::testing
