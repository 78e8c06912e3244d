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

class FakeCallHost : public IncomingCallHost {
 public:
  int32_t abUID(const rt::Id& c) override { return call(c).abUID; }
  bool contactUnknown(const rt::Id& c) override {
    return call(c).contactUnknown;
  }
  bool isBlocked(const rt::Id& c) override { return call(c).isBlocked; }
  std::optional<std::string> destinationID(const rt::Id& c) override {
    return call(c).destinationID;
  }
  bool isOutgoing(const rt::Id& c) override { return call(c).isOutgoing; }
  rt::Id callHandle(const rt::Id& c) override { return call(c).handle; }
  rt::Id alertActivationCall(const rt::Id& vc) override {
    auto it = alertCalls.find(vc.get());
    return it == alertCalls.end() ? nullptr : it->second;
  }
  rt::Id incomingCall() override { return incoming; }
  rt::Id incomingVideoCall() override { return incomingVideo; }
  void disconnect(const rt::Id& handle) override {
    actions.push_back("disconnect " + handleName(handle));
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
  int32_t status(const rt::Id& c) override { return call(c).status; }
  rt::Id notificationObject(const rt::Id& n) override {
    return notifications.count(n.get()) ? notifications[n.get()] : nullptr;
  }
  std::optional<std::string> incomingCallNumber(const rt::Id& s) override {
    return screenCall(s) ? call(screenCall(s)).destinationID : std::nullopt;
  }
  int32_t incomingCallerABUID(const rt::Id& s) override {
    return screenCall(s) ? call(screenCall(s)).abUID : -1;
  }
  std::shared_ptr<ui::UIView> topLCDView(const rt::Id&) override { return lcd; }
  bool shouldCenterText(const rt::Id&) override { return centerText; }
  void ringOrVibrate(const rt::Id&) override { actions.push_back("ring"); }
  std::shared_ptr<ui::UIView> participantsView(const rt::Id&) override {
    return participants;
  }
  std::vector<rt::Id> callGroups(const rt::Id&) override { return groups; }
  std::vector<rt::Id> groupCalls(const rt::Id& g) override {
    return {g};  // each group is its one call
  }
  rt::Id callParticipantsViewController(const rt::Id& a) override { return a; }
  std::string bulletinSectionID(const rt::Id&) override { return section; }
  std::optional<std::string> bulletinContactInfo(const rt::Id&) override {
    return contactInfo;
  }
  std::optional<double> bulletinDate(const rt::Id&) override {
    return bulletinDateValue;
  }
  bool installIncomingCallScreenHooks() override {
    actions.push_back("install");
    return screenClassExists;
  }

  std::string handleName(const rt::Id& handle) {
    auto it = handleNames.find(handle.get());
    return it == handleNames.end() ? "?" : it->second;
  }

  std::vector<std::string> actions;
  std::map<const rt::Object*, rt::Id> alertCalls;
  std::map<const rt::Object*, std::string> handleNames;
  rt::Id incoming, incomingVideo;
  std::map<const rt::Object*, rt::Id> screenCalls, notifications;
  std::shared_ptr<ui::UIView> lcd, participants;
  bool centerText = true;
  std::vector<rt::Id> groups;
  std::string section = "com.apple.mobilephone";
  std::optional<std::string> contactInfo;
  std::optional<double> bulletinDateValue;
  bool screenClassExists = false;
  bool refuseSounds = false;
  uint32_t nextSoundID = 7001;

 private:
  static FakeCall& call(const rt::Id& c) {
    return *std::dynamic_pointer_cast<FakeCall>(c);
  }
  rt::Id screenCall(const rt::Id& s) {
    auto it = screenCalls.find(s.get());
    return it == screenCalls.end() ? nullptr : it->second;
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
  std::string readDeviceFile(const std::string& devicePath) {
    return readFile(root_ + devicePath);
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
    c->handle = rt::create(callClass_);
    host_->handleNames[c->handle.get()] = c->destinationID.value_or("hidden");
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
