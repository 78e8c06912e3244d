// 8.x: every Control Centre button is driven by a module that answers its
// glyph, its name and its state; taps go to the module.
#include "hosts/springboard/controlcenter_parts.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/ui/view.h"

namespace zv::hosts {
namespace {

using ui::self;
using Button = sdk::SBControlCenterButton;
using Shortcut = sdk::SBCCShortcutButtonController;
using Bluetooth = sdk::SBCCBluetoothSetting;

struct ShortcutKind {
  const char* name;
  const char* identifier;
};
constexpr ShortcutKind kShortcuts[] = {
    {"torch", "com.apple.flashlight"},
    {"clock", "com.apple.mobiletimer"},
    {"calculator", "com.apple.calculator"},
    {"camera", "com.apple.camera"},
};

std::string nameOf(const std::string& identifier) {
  for (const auto& k : kShortcuts)
    if (identifier == k.identifier) return k.name;
  return "";
}

void registerShortcut() {
  rt::registerClass<ShortcutModule>(Shortcut::kName);
  rt::define(Shortcut::identifier, [](const rt::Id& s) {
    return self<ShortcutModule>(s).identifier;
  });
  rt::define(Shortcut::glyphImageForState, [](const rt::Id& s, int64_t) {
    return hostGlyph(nameOf(self<ShortcutModule>(s).identifier));
  });
  // The torch switches; the others open their application.
  rt::define(Shortcut::buttonTapped, [](const rt::Id& s, rt::Id button) {
    const std::string& id = self<ShortcutModule>(s).identifier;
    if (id == "com.apple.flashlight") {
      bool& torch = ControlCenterRadios::current().torch;
      torch = !torch;
      rt::send(button, Button::setSelected, torch);
      ControlCenterEffects::record(torch ? "torch:on" : "torch:off");
      return;
    }
    rt::send(button, Button::setSelected, false);
    ControlCenterEffects::record("launch:" + id);
  });
}

void registerBluetooth() {
  rt::registerClass<BluetoothSettingModule>(Bluetooth::kName);
  rt::define(Bluetooth::identifier,
             [](const rt::Id&) { return std::string("bluetooth"); });
  rt::define(Bluetooth::glyphImageForState,
             [](const rt::Id&, int64_t) { return hostGlyph("bluetooth"); });
  rt::define(Bluetooth::displayName,
             [](const rt::Id&) { return std::string("Bluetooth"); });
  rt::define(Bluetooth::isEnabled, [](const rt::Id& s) {
    return self<BluetoothSettingModule>(s).enabled;
  });
  // The module's state is what its button shows.
  rt::define(Bluetooth::setEnabled, [](const rt::Id& s, bool on) {
    auto& m = self<BluetoothSettingModule>(s);
    m.enabled = on;
    if (m.button) rt::send(m.button, Button::setSelected, on);
  });
  rt::define(Bluetooth::updateState, [](const rt::Id& s) {
    rt::send(s, Bluetooth::setEnabled,
             rt::send(bluetoothManager(), sdk::BluetoothManager::powered));
  });
  rt::define(Bluetooth::toggleState, [](const rt::Id& s) {
    rt::Id manager = bluetoothManager();
    rt::send(manager, sdk::BluetoothManager::setPowered,
             !rt::send(manager, sdk::BluetoothManager::powered));
    rt::send(s, Bluetooth::updateState);
  });
  rt::define(Bluetooth::activate, [](const rt::Id& s) {
    self<BluetoothSettingModule>(s).active = true;
    rt::send(s, Bluetooth::updateState);
  });
  rt::define(Bluetooth::deactivate, [](const rt::Id& s) {
    self<BluetoothSettingModule>(s).active = false;
  });
}

// The module's look on its button.
void showModule(const rt::Id& module, const std::string& cls,
                const std::shared_ptr<ControlCenterButton>& b) {
  using Glyph = rt::Message<ui::ImagePtr(int64_t)>;
  const Glyph& glyph = cls == Bluetooth::kName ? Bluetooth::glyphImageForState
                                               : Shortcut::glyphImageForState;
  ui::ImagePtr normal = rt::send(module, glyph, 0);
  rt::send(b, Button::setGlyphImage, normal);
  rt::send(b, Button::setSourceGlyphImage, normal);
  rt::send(b, Button::setSelectedGlyphImage,
           rt::send(module, glyph, ui::kStateSelected));
}

}  // namespace

void registerModules() {
  if (!controlCenterIsModular()) return;
  registerShortcut();
  registerBluetooth();
}

void buildModules(ControlCenterViewController& cc) {
  for (const auto& k : kShortcuts) {
    auto m = std::dynamic_pointer_cast<ShortcutModule>(
        rt::alloc(rt::getClass(Shortcut::kName)));
    m->identifier = k.identifier;
    m->button = makeControlCenterButton(k.name, k.identifier);
    std::weak_ptr<rt::Object> module = m;
    m->button->addTarget(ui::kTouchUpInside, [module](const rt::Id& sender) {
      if (auto s = module.lock()) rt::send(s, Shortcut::buttonTapped, sender);
    });
    cc.quickLaunch->modules.push_back(m);
    cc.quickLaunch->buttons.push_back(m->button);
  }
  // Airplane mode and Wi-Fi keep their looks and switch their radios.
  for (const char* name : {"airplane", "wifi"}) {
    auto b = makeControlCenterButton(name, name);
    b->glyph = b->sourceGlyph = b->selectedGlyph = hostGlyph(name);
    b->title = name == std::string("wifi") ? "Wi-Fi" : "Airplane Mode";
    std::string radio = name;
    b->addTarget(ui::kTouchUpInside, [radio](const rt::Id& sender) {
      auto& radios = ControlCenterRadios::current();
      bool& state = radio == "wifi" ? radios.wifi : radios.airplane;
      state = !state;
      rt::send(sender, Button::setSelected, state);
      ControlCenterEffects::record(radio + (state ? ":on" : ":off"));
    });
    cc.settings->buttons.push_back(b);
  }
  auto bt = std::dynamic_pointer_cast<BluetoothSettingModule>(
      rt::alloc(rt::getClass(Bluetooth::kName)));
  bt->button = makeControlCenterButton("bluetooth", "bluetooth");
  std::weak_ptr<rt::Object> module = bt;
  bt->button->addTarget(ui::kTouchUpInside, [module](const rt::Id&) {
    if (auto s = module.lock()) rt::send(s, Bluetooth::toggleState);
  });
  cc.settings->bluetooth = bt;
  cc.settings->buttons.push_back(bt->button);
}

void refreshModules(ControlCenterViewController& cc) {
  for (const auto& m : cc.quickLaunch->modules)
    showModule(m, std::string(Shortcut::kName), m->button);
  auto& radios = ControlCenterRadios::current();
  for (const auto& b : cc.settings->buttons) {
    if (b->name == "wifi") rt::send(b, Button::setSelected, radios.wifi);
    if (b->name == "airplane")
      rt::send(b, Button::setSelected, radios.airplane);
  }
  if (auto bt = cc.settings->bluetooth) {
    showModule(bt, std::string(Bluetooth::kName), bt->button);
    bt->button->title = rt::send(rt::Id(bt), Bluetooth::displayName);
    rt::send(rt::Id(bt), Bluetooth::activate);
  }
}

void deactivateModules(ControlCenterViewController& cc) {
  if (auto bt = cc.settings->bluetooth)
    rt::send(rt::Id(bt), Bluetooth::deactivate);
}

}  // namespace zv::hosts
