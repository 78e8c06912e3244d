#include "hosts/springboard/controlcenter.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "hosts/springboard/controlcenter_parts.h"
#include "hostsdk/springboard_controlcenter.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/canvas.h"
#include "platform/ui/view.h"

namespace zv::hosts {
namespace {

using ui::self;
using Button = sdk::SBControlCenterButton;
using QuickLaunch = sdk::SBCCQuickLaunchSectionController;
using Settings = sdk::SBCCSettingsSectionController;
using CC = sdk::SBControlCenterViewController;

struct Glyphs {
  std::map<std::string, ui::ImagePtr> images;
};

// The quick-launch buttons: name, application (or the torch) and the
// instance variable a 7.x section keeps the button in.
struct QuickLaunchButton {
  const char* name;
  const char* application;
  rt::IvarName<rt::Id> ivar;
};
constexpr QuickLaunchButton kQuickLaunch[] = {
    {"torch", "com.apple.flashlight", QuickLaunch::torchButton},
    {"clock", "com.apple.mobiletimer", QuickLaunch::clockButton},
    {"calculator", "com.apple.calculator", QuickLaunch::calculatorButton},
    {"camera", "com.apple.camera", QuickLaunch::cameraButton},
};
constexpr const char* kToggles[] = {"airplane", "wifi", "bluetooth"};

std::string toggleTitle(const std::string& name) {
  if (name == "wifi") return "Wi-Fi";
  if (name == "bluetooth") return "Bluetooth";
  return "Airplane Mode";
}

void showHostGlyphs(const std::shared_ptr<ControlCenterButton>& b) {
  ui::ImagePtr g = hostGlyph(b->name);
  rt::send(b, Button::setGlyphImage, g);
  rt::send(b, Button::setSourceGlyphImage, g);
  rt::send(b, Button::setSelectedGlyphImage, g);
}

// Flips a toggle's radio; answers the new state.
bool flipRadio(const std::string& name) {
  auto& radios = ControlCenterRadios::current();
  bool on = false;
  if (name == "bluetooth") {
    rt::Id manager = bluetoothManager();
    on = !rt::send(manager, sdk::BluetoothManager::powered);
    rt::send(manager, sdk::BluetoothManager::setPowered, on);
    return on;
  }
  bool& state = name == "wifi" ? radios.wifi : radios.airplane;
  state = on = !state;
  ControlCenterEffects::record(name + (on ? ":on" : ":off"));
  return on;
}

bool radioState(const std::string& name) {
  if (name == "bluetooth") {
    rt::Id manager = bluetoothManager();
    return rt::send(manager, sdk::BluetoothManager::powered);
  }
  auto& radios = ControlCenterRadios::current();
  return name == "wifi" ? radios.wifi : radios.airplane;
}

void registerButton() {
  rt::registerClass<ControlCenterButton>(Button::kName, "UIButton");
  rt::registerClass<ControlCenterRow>(ControlCenterRow::kClassName, "UIView");
  rt::registerClass<ControlCenterPanel>(ControlCenterPanel::kClassName,
                                        "UIView");
  rt::define(Button::identifier, [](const rt::Id& s) {
    return self<ControlCenterButton>(s).identifier;
  });
  rt::define(Button::setIdentifier, [](const rt::Id& s, std::string id) {
    self<ControlCenterButton>(s).identifier = std::move(id);
  });
  rt::define(Button::glyphImage, [](const rt::Id& s) {
    return self<ControlCenterButton>(s).glyph;
  });
  rt::define(Button::setGlyphImage, [](const rt::Id& s, ui::ImagePtr g) {
    self<ControlCenterButton>(s).glyph = std::move(g);
  });
  rt::define(Button::sourceGlyphImage, [](const rt::Id& s) {
    return self<ControlCenterButton>(s).sourceGlyph;
  });
  rt::define(Button::setSourceGlyphImage, [](const rt::Id& s, ui::ImagePtr g) {
    self<ControlCenterButton>(s).sourceGlyph = std::move(g);
  });
  rt::define(Button::selectedGlyphImage, [](const rt::Id& s) {
    return self<ControlCenterButton>(s).selectedGlyph;
  });
  rt::define(Button::setSelectedGlyphImage,
             [](const rt::Id& s, ui::ImagePtr g) {
               self<ControlCenterButton>(s).selectedGlyph = std::move(g);
             });
  rt::define(Button::isSelected, [](const rt::Id& s) {
    return self<ControlCenterButton>(s).selected;
  });
  rt::define(Button::setSelected, [](const rt::Id& s, bool on) {
    self<ControlCenterButton>(s).selected = on;
  });
}

// Below 8.0 the sections own their buttons and handle their taps.
void registerSections() {
  rt::registerClass<QuickLaunchSection>(QuickLaunch::kName, "UIViewController");
  rt::registerClass<SettingsSection>(Settings::kName, "UIViewController");
  if (controlCenterIsModular()) return;
  // The torch shows whether it is on; the app buttons are never selected.
  rt::define(QuickLaunch::viewWillAppear, [](const rt::Id& s, bool) {
    auto& q = self<QuickLaunchSection>(s);
    rt::send(q.buttons[0], Button::setSelected,
             ControlCenterRadios::current().torch);
  });
  rt::define(QuickLaunch::buttonTapped, [](const rt::Id& s, rt::Id b) {
    for (const auto& k : kQuickLaunch) {
      if (rt::ivar(s, k.ivar).value_or(nullptr) != b) continue;
      if (std::string(k.name) == "torch") {
        bool& torch = ControlCenterRadios::current().torch;
        torch = !torch;
        rt::send(b, Button::setSelected, torch);
        ControlCenterEffects::record(torch ? "torch:on" : "torch:off");
      } else {
        rt::send(b, Button::setSelected, false);
        ControlCenterEffects::record(std::string("launch:") + k.application);
      }
    }
  });
  // Each toggle shows its radio's state; a tap flips the radio.
  rt::define(Settings::viewWillAppear, [](const rt::Id& s, bool) {
    for (const auto& [id, b] :
         rt::ivar(s, Settings::buttonsByID).value_or(Settings::ButtonsByID{}))
      rt::send(b, Button::setSelected, radioState(id));
  });
  rt::define(Settings::buttonTapped, [](const rt::Id& s, rt::Id b) {
    std::string id = rt::send(b, Button::identifier);
    auto buttons =
        rt::ivar(s, Settings::buttonsByID).value_or(Settings::ButtonsByID{});
    auto it = buttons.find(id);
    if (it == buttons.end() || it->second != b) return;
    rt::send(b, Button::setSelected, flipRadio(id));
  });
}

void registerViewController() {
  rt::registerClass<ControlCenterViewController>(CC::kName, "UIViewController");
  rt::define(CC::viewWillAppear, [](const rt::Id& s, bool animated) {
    auto& cc = self<ControlCenterViewController>(s);
    if (!controlCenterIsModular()) {
      ui::sendWillAppear(cc.quickLaunch, animated);
      ui::sendWillAppear(cc.settings, animated);
      return;
    }
    refreshModules(cc);
  });
  rt::define(CC::viewWillDisappear, [](const rt::Id& s, bool) {
    auto& cc = self<ControlCenterViewController>(s);
    if (controlCenterIsModular()) deactivateModules(cc);
  });
}

// 7.x: the buttons are the sections' own, kept in instance variables.
void buildSections(ControlCenterViewController& cc) {
  rt::Id quick = cc.quickLaunch;
  for (const auto& k : kQuickLaunch) {
    auto b = makeControlCenterButton(k.name, k.application);
    showHostGlyphs(b);
    rt::setIvar(quick, k.ivar, rt::Id(b));
    std::weak_ptr<rt::Object> section = cc.quickLaunch;
    b->addTarget(ui::kTouchUpInside, [section](const rt::Id& sender) {
      if (auto s = section.lock())
        rt::send(s, QuickLaunch::buttonTapped, sender);
    });
    cc.quickLaunch->buttons.push_back(b);
  }
  Settings::ButtonsByID byID;
  for (const char* name : kToggles) {
    auto b = makeControlCenterButton(name, name);
    showHostGlyphs(b);
    b->title = toggleTitle(name);
    byID[name] = b;
    std::weak_ptr<rt::Object> section = cc.settings;
    b->addTarget(ui::kTouchUpInside, [section](const rt::Id& sender) {
      if (auto s = section.lock()) rt::send(s, Settings::buttonTapped, sender);
    });
    cc.settings->buttons.push_back(b);
  }
  rt::setIvar(rt::Id(cc.settings), Settings::buttonsByID, std::move(byID));
}

}  // namespace

std::shared_ptr<ControlCenterButton> makeControlCenterButton(
    const std::string& name, const std::string& identifier) {
  auto b = std::dynamic_pointer_cast<ControlCenterButton>(
      rt::alloc(rt::getClass(Button::kName)));
  b->name = name;
  b->setSize(50, 50);
  rt::send(b, Button::setIdentifier, identifier);
  return b;
}

ControlCenterEffects& ControlCenterEffects::current() {
  auto& slot = platform::Process::current().slot<ControlCenterEffects>();
  if (!slot) slot = std::make_shared<ControlCenterEffects>();
  return *slot;
}

ControlCenterRadios& ControlCenterRadios::current() {
  auto& slot = platform::Process::current().slot<ControlCenterRadios>();
  if (!slot) slot = std::make_shared<ControlCenterRadios>();
  return *slot;
}

bool controlCenterIsModular() {
  const std::string& v = platform::current().device().systemVersion;
  try {
    return std::stod(v) >= 8.0;
  } catch (const std::exception&) {
    return false;
  }
}

ui::ImagePtr hostGlyph(const std::string& name) {
  auto& slot = platform::Process::current().slot<Glyphs>();
  if (!slot) slot = std::make_shared<Glyphs>();
  auto& image = slot->images[name];
  if (!image) {
    // The host's artwork: a grey square whose shade names the button.
    uint8_t shade =
        static_cast<uint8_t>(100 + std::hash<std::string>{}(name) % 100);
    image = std::make_shared<const ui::Image>(
        ui::Image::filled(56, 56, 2, {shade, shade, shade, 255}));
  }
  return image;
}

void registerControlCenterClasses() {
  registerButton();
  registerSections();
  registerModules();
  registerTargets();
  registerViewController();
}

std::shared_ptr<ControlCenterViewController>
ControlCenterViewController::make() {
  auto cc = std::dynamic_pointer_cast<ControlCenterViewController>(
      rt::alloc(rt::getClass(CC::kName)));
  cc->quickLaunch = std::dynamic_pointer_cast<QuickLaunchSection>(
      rt::alloc(rt::getClass(QuickLaunch::kName)));
  cc->settings = std::dynamic_pointer_cast<SettingsSection>(
      rt::alloc(rt::getClass(Settings::kName)));
  cc->view()->addSubview(cc->quickLaunch->view());
  cc->view()->addSubview(cc->settings->view());
  auto panel = std::static_pointer_cast<ControlCenterPanel>(cc->view());
  panel->settingsRow = cc->settings->view();
  panel->quickLaunchRow = cc->quickLaunch->view();
  cc->view()->setHidden(true);
  if (controlCenterIsModular())
    buildModules(*cc);
  else
    buildSections(*cc);
  for (const auto& b : cc->quickLaunch->buttons)
    cc->quickLaunch->view()->addSubview(b);
  for (const auto& b : cc->settings->buttons)
    cc->settings->view()->addSubview(b);
  return cc;
}

void ControlCenterViewController::present() {
  if (presented) return;
  presented = true;
  view()->setHidden(false);
  ui::sendWillAppear(
      std::dynamic_pointer_cast<ui::UIViewController>(shared_from_this()),
      true);
}

void ControlCenterViewController::dismiss() {
  if (!presented) return;
  presented = false;
  ui::sendWillDisappear(
      std::dynamic_pointer_cast<ui::UIViewController>(shared_from_this()),
      true);
  view()->setHidden(true);
}

std::shared_ptr<ControlCenterButton> ControlCenterViewController::button(
    const std::string& name) const {
  for (const auto* list : {&quickLaunch->buttons, &settings->buttons})
    for (const auto& b : *list)
      if (b->name == name) return b;
  return nullptr;
}

namespace {

constexpr double kPanelHeight = 330, kButtonSide = 56;
const ui::Color kButtonDark{0.25, 0.25, 0.27, 1};

// The host's artwork for a button, drawn in `c` in a 56-point square.
void drawHostGlyph(ui::Canvas& canvas, const std::string& name,
                   const ui::Color& c) {
  const double m = kButtonSide / 2;
  if (name == "torch") {
    canvas.path({{m - 6, 16},
                 {m + 6, 16},
                 {m + 4, 26},
                 {m + 4, 40},
                 {m - 4, 40},
                 {m - 4, 26}},
                c, 2, true);
  } else if (name == "clock") {
    canvas.strokeRect({{m - 13, m - 13}, {26, 26}}, c, 2, 13);
    canvas.path({{m, m - 8}, {m, m}, {m + 6, m}}, c, 2);
  } else if (name == "calculator") {
    canvas.strokeRect({{m - 10, m - 13}, {20, 26}}, c, 2, 3);
    for (int i = 0; i < 6; ++i)
      canvas.fill({{m - 6 + (i % 3) * 5, m - 3 + (i / 3) * 6}, {3, 3}}, c);
  } else if (name == "camera") {
    canvas.strokeRect({{m - 14, m - 8}, {28, 19}}, c, 2, 3);
    canvas.strokeRect({{m - 5, m - 4}, {10, 10}}, c, 2, 5);
  } else if (name == "airplane") {
    canvas.path({{m, m - 14},
                 {m + 2, m - 4},
                 {m + 13, m + 2},
                 {m + 2, m},
                 {m + 2, m + 8},
                 {m + 6, m + 12},
                 {m - 6, m + 12},
                 {m - 2, m + 8},
                 {m - 2, m},
                 {m - 13, m + 2},
                 {m - 2, m - 4}},
                c, 1, true, true);
  } else if (name == "wifi") {
    for (int i = 1; i <= 3; ++i) {
      std::vector<ui::Point> arc;
      const double r = 5.0 * i;
      for (int k = -4; k <= 4; ++k) {
        const double a = -M_PI / 2 + k * M_PI / 16;
        arc.push_back({m + r * std::cos(a), m + 8 + r * std::sin(a)});
      }
      canvas.path(arc, c, 2);
    }
    canvas.fill({{m - 2, m + 6}, {4, 4}}, c, 2);
  } else if (name == "bluetooth") {
    canvas.path({{m - 7, m - 7},
                 {m + 7, m + 6},
                 {m, m + 13},
                 {m, m - 13},
                 {m + 7, m - 6},
                 {m - 7, m + 7}},
                c, 2);
  } else {
    canvas.strokeRect({{m - 12, m - 12}, {24, 24}}, c, 2, 5);
  }
}

}  // namespace

void ControlCenterButton::draw(ui::Canvas& canvas) const {
  const auto size = frame().size;
  const ui::Color disc = selected ? ui::Color{1, 1, 1, 1} : kButtonDark;
  const ui::Color ink =
      selected ? ui::Color{0, 0, 0, 1} : ui::Color{1, 1, 1, 1};
  canvas.fill({{0, 0}, size}, disc, size.width / 2);
  const ui::ImagePtr& g = selected && selectedGlyph ? selectedGlyph : glyph;
  if (!g || g == hostGlyph(name) || g->empty()) {
    drawHostGlyph(canvas, name, ink);
    return;
  }
  platform::Size s = g->size();
  const double k =
      std::min({1.0, size.width * 0.7 / s.width, size.height * 0.7 / s.height});
  s = {s.width * k, s.height * k};
  const ui::Rect r{{(size.width - s.width) / 2, (size.height - s.height) / 2},
                   s};
  // Glyphs are drawn as masks: in the ink of the disc they sit on.
  canvas.mask(r, *g, ink);
}

void ControlCenterRow::layoutSubviews() {
  const auto& buttons = subviews();
  const double w = frame().size.width,
               n = static_cast<double>(std::max<size_t>(buttons.size(), 1));
  const double gap = (w - n * kButtonSide) / (n + 1);
  for (size_t i = 0; i < buttons.size(); ++i)
    buttons[i]->setFrame(
        {{gap + i * (kButtonSide + gap), 0}, {kButtonSide, kButtonSide}});
}

void ControlCenterPanel::layoutSubviews() {
  const double w = frame().size.width;
  if (auto row = settingsRow.lock()) row->setFrame({{0, 20}, {w, kButtonSide}});
  if (auto row = quickLaunchRow.lock())
    row->setFrame(
        {{0, kPanelHeight - 20 - kButtonSide - 34}, {w, kButtonSide}});
}

std::shared_ptr<ui::UIView> ControlCenterViewController::loadView() {
  const auto screen = platform::current().device().screenPoints;
  auto v = ui::makeAs<ControlCenterPanel>(
      rt::getClass(ControlCenterPanel::kClassName));
  v->setFrame(
      {{0, screen.height - kPanelHeight}, {screen.width, kPanelHeight}});
  v->setBackgroundColor(ui::Color{0.1, 0.1, 0.12, 0.85});
  return v;
}

std::shared_ptr<ui::UIView> QuickLaunchSection::loadView() {
  return ui::makeAs<ControlCenterRow>(
      rt::getClass(ControlCenterRow::kClassName));
}

std::shared_ptr<ui::UIView> SettingsSection::loadView() {
  return ui::makeAs<ControlCenterRow>(
      rt::getClass(ControlCenterRow::kClassName));
}

}  // namespace zv::hosts
