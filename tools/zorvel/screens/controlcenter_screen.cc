#include "tools/zorvel/screens/controlcenter_screen.h"

#include <filesystem>

#include "platform/platform.h"

namespace zv::cli {
namespace {

using json = nlohmann::ordered_json;

// The effects in words.
std::string describe(const std::string& effect) {
  static const std::map<std::string, std::string> words = {
      {"home", "home press"},
      {"switcher:shown", "app switcher shown"},
      {"switcher:hidden", "app switcher hidden"},
      {"lock", "lock"},
      {"bluetooth:on", "Bluetooth on"},
      {"bluetooth:off", "Bluetooth off"},
      {"wifi:on", "Wi-Fi on"},
      {"wifi:off", "Wi-Fi off"},
      {"airplane:on", "airplane mode on"},
      {"airplane:off", "airplane mode off"},
      {"torch:on", "torch on"},
      {"torch:off", "torch off"}};
  if (auto it = words.find(effect); it != words.end()) return it->second;
  if (effect.starts_with("launch:")) return "open " + effect.substr(7);
  return effect;
}

}  // namespace

ControlCenterScreen::ControlCenterScreen(platform::SimProcess& process,
                                         hosts::SpringBoardApplication& app)
    : process_(process), app_(app) {
  process_.run([&] {
    auto& p = platform::current();
    std::error_code ec;
    for (const auto& entry :
         std::filesystem::directory_iterator(p.path("/Library/Zorvel"), ec)) {
      if (entry.path().extension() != ".png") continue;
      if (auto image = ui::Image::fromFile(entry.path().string(),
                                           p.device().screenScale))
        files_[entry.path().filename().string()] = image;
    }
  });
}

std::string ControlCenterScreen::fileOf(const ui::ImagePtr& image,
                                        const std::string& button) {
  if (!image) return "(none)";
  if (image == hosts::hostGlyph(button)) return "(host)";
  for (const auto& [name, file] : files_)
    if (file->pixelWidth() == image->pixelWidth() &&
        file->rgba() == image->rgba())
      return name;
  return "(other)";
}

json ControlCenterScreen::capture() {
  json s;
  auto& cc = *app_.controlCenter;
  s["open"] = cc.presented;
  json buttons = json::array();
  for (const auto* list : {&cc.quickLaunch->buttons, &cc.settings->buttons}) {
    for (const auto& b : *list) {
      buttons.push_back(
          json{{"name", b->name},
               {"glyph", fileOf(b->glyph, b->name)},
               {"sourceGlyph", fileOf(b->sourceGlyph, b->name)},
               {"selectedGlyph", fileOf(b->selectedGlyph, b->name)},
               {"selected", b->selected}});
    }
  }
  s["buttons"] = buttons;
  if (auto toggle = cc.button("bluetooth"))
    s["toggle"] = json{{"title", toggle->title}, {"on", toggle->selected}};

  json effects = json::array();
  const auto& done = hosts::ControlCenterEffects::current().effects;
  for (; effects_ < done.size(); ++effects_)
    effects.push_back(describe(done[effects_]));
  const auto& events = process_.world().events();
  for (; events_ < events.size(); ++events_)
    if (events[events_].kind == "cellularData")
      effects.push_back("cellular data " + events[events_].detail);
  s["effects"] = effects;
  return s;
}

std::string ControlCenterScreen::render(const json& s) {
  std::string out;
  auto add = [&](const std::string& key, const std::string& value) {
    out += "  " + key + ": " + value + "\n";
  };
  add("control centre", s["open"].get<bool>() ? "open" : "closed");
  for (const auto& b : s["buttons"]) {
    std::string looks = b["glyph"].get<std::string>();
    if (b["sourceGlyph"] != b["glyph"])
      looks += ", source " + b["sourceGlyph"].get<std::string>();
    if (b["selectedGlyph"] != b["glyph"])
      looks += ", selected " + b["selectedGlyph"].get<std::string>();
    add(b["name"].get<std::string>(),
        looks + (b["selected"].get<bool>() ? " [selected]" : ""));
  }
  if (s.contains("toggle"))
    add("toggle", "\"" + s["toggle"]["title"].get<std::string>() + "\" " +
                      (s["toggle"]["on"].get<bool>() ? "on" : "off"));
  std::string effects;
  for (const auto& e : s["effects"])
    effects += (effects.empty() ? "" : ", ") + e.get<std::string>();
  add("effects", effects.empty() ? "(none)" : effects);
  return out;
}

}  // namespace zv::cli
