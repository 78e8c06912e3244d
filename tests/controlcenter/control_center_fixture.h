// A springboard process with a fake Control Centre host: buttons, sections
// and setting modules are plain runtime objects, and every action the
// controller takes is recorded in order.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "controlcenter/control_center_controller.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

// A Control Centre button: glyph images and selected state.
struct FakeButton : rt::Object {
  using rt::Object::Object;
  std::string identifier;
  ui::ImagePtr normal, source, selected;
  bool isSelected = true;
};

// A setting or shortcut module.
struct FakeModule : rt::Object {
  using rt::Object::Object;
  std::string identifier;
  bool enabled = false;
};

class FakeControlCenterHost : public ControlCenterHost {
 public:
  std::vector<std::string> actions;
  bool cellular = true;

  void pressHomeButton() override { actions.push_back("home"); }
  void toggleSwitcher() override { actions.push_back("switcher"); }
  void lockButtonUp(int source) override {
    actions.push_back("lockButtonUp:" + std::to_string(source));
  }
  void lockButtonUpFromSource(int source) override {
    actions.push_back("lockButtonUpFromSource:" + std::to_string(source));
  }
  bool cellularDataPlanIsEnabled() override { return cellular; }
  void setCellularDataPlanEnabled(bool enabled) override {
    cellular = enabled;
    actions.push_back(enabled ? "cellular:on" : "cellular:off");
  }
  rt::Id objectIvar(const rt::Id& object, std::string_view name) override {
    return rt::getIvar<rt::Id>(object, name).value_or(nullptr);
  }
  rt::Id settingsButton(const rt::Id& section,
                        std::string_view identifier) override {
    auto map =
        rt::getIvar<std::map<std::string, rt::Id>>(section, "_buttonsByID");
    if (!map) return nullptr;
    auto it = map->find(std::string(identifier));
    return it == map->end() ? nullptr : it->second;
  }
  bool isControlCenterButton(const rt::Id& object) override {
    return rt::as<FakeButton>(object) != nullptr;
  }
  std::string identifier(const rt::Id& object) override {
    if (auto b = rt::as<FakeButton>(object)) return b->identifier;
    if (auto m = rt::as<FakeModule>(object)) return m->identifier;
    return "";
  }
  void setGlyphImages(const rt::Id& button, ui::ImagePtr normal,
                      ui::ImagePtr source, ui::ImagePtr selected) override {
    auto b = rt::as<FakeButton>(button);
    b->normal = normal;
    b->source = source;
    b->selected = selected;
  }
  void setSelected(const rt::Id& button, bool selected) override {
    rt::as<FakeButton>(button)->isSelected = selected;
  }
  bool isEnabled(const rt::Id& module) override {
    return rt::as<FakeModule>(module)->enabled;
  }
  void setEnabled(const rt::Id& module, bool enabled) override {
    rt::as<FakeModule>(module)->enabled = enabled;
  }
};

// The glyph files, each one colour so that tests can tell them apart.
inline const std::map<std::string, ui::Pixel>& glyphColours() {
  static const auto colours = [] {
    std::map<std::string, ui::Pixel> m;
    uint8_t r = 0;
    for (std::string n : {"home", "home5s", "switcher", "lock", "cellular"}) {
      r += 10;  // home 10 and 11, home5s 20 and 21, ...
      m[n + "_normal"] = {r, 0, 0, 255};
      m[n + "_selected"] = {static_cast<uint8_t>(r + 1), 0, 0, 255};
    }
    return m;
  }();
  return colours;
}

// The colour's red value names the file an image came from (0: no image).
inline int glyphTag(const ui::ImagePtr& image) {
  return image ? image->pixel(0, 0).r : 0;
}
inline int tagOf(const std::string& name) { return glyphColours().at(name).r; }

class ControlCenterTest : public SimTest {
 protected:
  void writeGlyphs() {
    for (const auto& [name, colour] : glyphColours())
      writeDeviceFile("/Library/Zorvel/" + name + ".png",
                      ui::Image::filled(4, 4, 2, colour).encodePng());
  }
  void writeSettings(const Dict& dict) {
    writePlist(root_ + "/var/mobile/Library/Preferences/zorvel.plist", dict);
  }
  // Starts the springboard on `version` (hardware and screen of an
  // iPhone 6 unless changed) and gives its controller the fake host.
  platform::SimProcess& start(const Dict& settings, std::string version = "8.1",
                              platform::DeviceFacts facts = {}) {
    writeSettings(settings);
    facts.systemVersion = version;
    auto& p = world_.launch("com.apple.springboard", facts);
    p.run([&] {
      buttonClass_ = rt::registerClass("SBControlCenterButton");
      objectClass_ = rt::registerClass("NSObject");
      ZVControlCenterController::sharedInstance()->setHost(host_);
    });
    process_ = &p;
    return p;
  }
  template <typename F>
  auto run(F&& f) {
    return process_->run(
        [&] { return f(*ZVControlCenterController::sharedInstance()); });
  }
  std::shared_ptr<FakeButton> button(std::string identifier = "") {
    auto b =
        process_->run([&] { return rt::create<FakeButton>(buttonClass_); });
    b->identifier = std::move(identifier);
    return b;
  }
  std::shared_ptr<FakeModule> module(std::string identifier) {
    auto m =
        process_->run([&] { return rt::create<FakeModule>(objectClass_); });
    m->identifier = std::move(identifier);
    return m;
  }
  rt::Id object() {
    return process_->run([&] { return rt::create(objectClass_); });
  }

  std::shared_ptr<FakeControlCenterHost> host_ =
      std::make_shared<FakeControlCenterHost>();
  platform::SimProcess* process_ = nullptr;
  rt::Class* buttonClass_ = nullptr;
  rt::Class* objectClass_ = nullptr;
};

}  // namespace zv::testing
