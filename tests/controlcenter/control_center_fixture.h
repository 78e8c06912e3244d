// A springboard process with a fake Control Centre host: buttons, sections
// and setting modules are plain runtime objects, and every action the
// controller takes is recorded in order.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "controlcenter/control_center_controller.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

// A Control Centre button (glyph images, selected state) or a setting or
// shortcut module (enabled state).
struct FakeButton : rt::Object {
  using rt::Object::Object;
  std::string identifier;
  ui::ImagePtr normal, source, selected;
  bool isSelected = true, enabled = false, module = false;
};

class FakeControlCenterHost : public ControlCenterHost {
 public:
  std::vector<std::string> actions;
  bool cellular = true;

  void pressHomeButton() override { actions.push_back("home"); }
  void toggleSwitcher() override { actions.push_back("switcher"); }
  void lockButtonUp(int source) override { act("lockButtonUp:", source); }
  void lockButtonUpFromSource(int source) override {
    act("lockButtonUpFromSource:", source);
  }
  bool cellularDataPlanIsEnabled() override { return cellular; }
  void setCellularDataPlanEnabled(bool on) override {
    actions.push_back(on ? "cellular:on" : "cellular:off");
    cellular = on;
  }
  rt::Id objectIvar(const rt::Id& object, std::string_view name) override {
    return rt::getIvar<rt::Id>(object, name).value_or(nullptr);
  }
  // No section here holds its buttons by identifier.
  rt::Id settingsButton(const rt::Id&, std::string_view) override {
    return nullptr;
  }
  bool isControlCenterButton(const rt::Id& object) override {
    return b(object) && !b(object)->module;
  }
  std::string identifier(const rt::Id& object) override {
    return b(object) ? b(object)->identifier : "";
  }
  void setGlyphImages(const rt::Id& button, ui::ImagePtr normal,
                      ui::ImagePtr source, ui::ImagePtr selected) override {
    auto* f = b(button);
    std::tie(f->normal, f->source, f->selected) =
        std::tie(normal, source, selected);
  }
  void setSelected(const rt::Id& button, bool on) override {
    b(button)->isSelected = on;
  }
  bool isEnabled(const rt::Id& module) override { return b(module)->enabled; }
  void setEnabled(const rt::Id& module, bool on) override {
    b(module)->enabled = on;
  }

 private:
  static FakeButton* b(const rt::Id& object) {
    return rt::as<FakeButton>(object).get();
  }
  void act(const std::string& what, int n) {
    actions.push_back(what + std::to_string(n));
  }
};

// The glyph files; each is filled with its own red value, 10 apart, so that
// tests can tell which one an image came from.
inline const std::vector<std::string> kGlyphFiles{
    "home_normal",     "home_selected",     "home5s_normal", "home5s_selected",
    "switcher_normal", "switcher_selected", "lock_normal",   "lock_selected",
    "cellular_normal", "cellular_selected"};
// The file an image was read from ("" for none).
inline std::string glyphFile(const ui::ImagePtr& image) {
  return image ? kGlyphFiles.at(image->pixel(0, 0).r / 10 - 1) : "";
}

class ControlCenterTest : public SimTest {
 protected:
  void writeGlyphs() {
    for (size_t i = 0; i < kGlyphFiles.size(); ++i) {
      const ui::Pixel red{static_cast<uint8_t>(10 * (i + 1)), 0, 0, 255};
      writeDeviceFile("/Library/Zorvel/" + kGlyphFiles[i] + ".png",
                      ui::Image::filled(4, 4, 2, red).encodePng());
    }
  }
  // Starts the springboard on `version` (hardware and screen of an
  // iPhone 6 unless changed) and gives its controller the fake host.
  platform::SimProcess& start(const Dict& settings, std::string version = "8.1",
                              platform::DeviceFacts facts = {}) {
    writePlist(root_ + "/var/mobile/Library/Preferences/zorvel.plist",
               settings);
    facts.systemVersion = version;
    process_ = &world_.launch("com.apple.springboard", facts);
    process_->run([&] {
      buttonClass_ = rt::registerClass("SBControlCenterButton");
      objectClass_ = rt::registerClass("NSObject");
      ZVControlCenterController::sharedInstance()->setHost(host_);
    });
    return *process_;
  }
  template <typename F>
  auto run(F&& f) {
    return process_->run(
        [&] { return f(*ZVControlCenterController::sharedInstance()); });
  }
  // A button, or a module when `module`.
  std::shared_ptr<FakeButton> button(std::string id = "", bool module = false) {
    auto b = process_->run([&] {
      return rt::create<FakeButton>(module ? objectClass_ : buttonClass_);
    });
    b->identifier = std::move(id);
    b->module = module;
    return b;
  }
  std::shared_ptr<FakeButton> module(std::string id) {
    return button(std::move(id), true);
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
