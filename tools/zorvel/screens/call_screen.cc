#include "tools/zorvel/screens/call_screen.h"

#include <map>
#include <sstream>

#include "platform/plist.h"

namespace zv::cli {
namespace {

using nlohmann::ordered_json;

constexpr const char* kRingDurationsPath =
    "/var/mobile/Library/Preferences/zorvel.missed.plist";

// The ring durations saved on the device, by call date.
std::map<std::string, int64_t> ringDurations(const std::string& root) {
  std::map<std::string, int64_t> out;
  auto file = plist::readFile(root + kRingDurationsPath);
  if (!file || !file->dict()) return out;
  for (const auto& [date, seconds] : *file->dict())
    out[date] = seconds.longLongValue();
  return out;
}

std::string joined(const ordered_json& lines) {
  std::string out;
  for (const auto& l : lines) {
    if (!out.empty()) out += " / ";
    out += l.get<std::string>();
  }
  return out;
}

// The id and the file of every sound made from a file so far.
std::map<std::string, std::string> soundFiles(
    const std::vector<platform::SimEvent>& events) {
  std::map<std::string, std::string> files;
  for (const auto& e : events) {
    if (e.kind != "soundCreate") continue;
    auto blank = e.detail.find(' ');
    if (blank != std::string::npos)
      files[e.detail.substr(0, blank)] = e.detail.substr(blank + 1);
  }
  return files;
}

// One recorded side effect as the session shows it; null for kinds a
// person does not notice (notification posts, sounds being made).
ordered_json effectOf(const platform::SimEvent& e,
                      const std::map<std::string, std::string>& files) {
  if (e.kind == "disconnect")
    return {{"type", "disconnect"}, {"number", e.detail}};
  if (e.kind == "disconnectAll") return {{"type", "disconnectAll"}};
  if (e.kind == "sound") {
    ordered_json s{{"type", "sound"}, {"id", std::stoul(e.detail)}};
    if (auto f = files.find(e.detail); f != files.end()) s["file"] = f->second;
    return s;
  }
  if (e.kind == "vibrate")
    return {{"type", "vibration"}, {"pattern", e.detail}};
  if (e.kind == "log") return {{"type", "log"}, {"line", e.detail}};
  if (e.kind == "alert") return {{"type", "alert"}, {"text", e.detail}};
  if (e.kind == "bulletin") {
    auto bar = e.detail.find(" | ");
    return {{"type", "bulletin"},
            {"title",
             bar == std::string::npos ? e.detail : e.detail.substr(bar + 3)}};
  }
  return nullptr;
}

}  // namespace

const char* statusName(int32_t status) {
  switch (status) {
    case platform::kCallActive:
      return "active";
    case platform::kCallHeld:
      return "held";
    case platform::kCallDialling:
      return "dialling";
    case platform::kCallRinging:
      return "ringing";
    case platform::kCallEnding:
      return "ending";
    default:
      return "ended";
  }
}

void CallScreen::skipEvents() {
  seen_ = world_.events().size();
  ring_durations_ = ringDurations(world_.root());
}

ordered_json CallScreen::capture() {
  ordered_json out;
  ordered_json calls = ordered_json::array();
  for (const auto& c : host_.screenedCalls()) {
    calls.push_back({{"number", c.number ? ordered_json(*c.number) : nullptr},
                     {"direction", c.outgoing ? "outgoing" : "incoming"},
                     {"status", statusName(c.status)},
                     {"blocked", c.screenBlocked},
                     {"ringtone", c.ringtone}});
  }
  out["calls"] = calls;
  if (auto labels = host_.screenLabels()) {
    ordered_json s{{"name", labels->name}};
    if (labels->companyName) s["companyName"] = *labels->companyName;
    if (labels->label) s["label"] = *labels->label;
    if (auto text = host_.screenText()) {
      s["labelLines"] = text->labelLines;
      s["info"] = text->infoLines;
      s["labels"] = text->extraLabels;
      s["declineButton"] = text->declineButton;
    }
    out["screen"] = s;
  } else {
    out["screen"] = nullptr;
  }
  const auto& events = world_.events();
  out["carrier"] = nullptr;
  for (const auto& e : events)
    if (e.kind == "carrier") out["carrier"] = e.detail;
  const auto files = soundFiles(events);
  ordered_json effects = ordered_json::array();
  for (size_t i = seen_; i < events.size(); ++i)
    if (auto e = effectOf(events[i], files); !e.is_null()) effects.push_back(e);
  seen_ = events.size();
  auto durations = ringDurations(world_.root());
  for (const auto& [date, seconds] : durations) {
    auto before = ring_durations_.find(date);
    if (before == ring_durations_.end() || before->second != seconds)
      effects.push_back(
          {{"type", "ringDuration"}, {"seconds", seconds}, {"date", date}});
  }
  ring_durations_ = std::move(durations);
  out["effects"] = effects;
  return out;
}

std::string CallScreen::render(const ordered_json& s) {
  std::ostringstream out;
  for (const auto& c : s["calls"]) {
    out << "  call "
        << (c["number"].is_null() ? "(hidden)" : c["number"].get<std::string>())
        << ": " << c["direction"].get<std::string>() << ", "
        << c["status"].get<std::string>();
    if (c["blocked"].get<bool>()) out << ", blocked";
    if (c["ringtone"].get<bool>()) out << ", rang";
    out << "\n";
  }
  if (s["screen"].is_null()) {
    out << "  screen: none\n";
  } else {
    const auto& sc = s["screen"];
    out << "  screen: " << sc["name"].get<std::string>();
    if (sc.contains("companyName"))
      out << " / " << sc["companyName"].get<std::string>();
    if (sc.contains("label"))
      out << " (" << sc["label"].get<std::string>() << ")";
    out << "\n";
    if (sc.contains("labelLines") && sc["labelLines"].size() > 1)
      out << "    label lines: " << joined(sc["labelLines"]) << "\n";
    if (sc.contains("info") && !sc["info"].empty())
      out << "    info: " << joined(sc["info"]) << "\n";
    if (sc.contains("labels") && !sc["labels"].empty())
      out << "    labels: " << joined(sc["labels"]) << "\n";
    if (sc.value("declineButton", false)) out << "    decline button\n";
  }
  if (!s["carrier"].is_null())
    out << "  carrier: " << s["carrier"].get<std::string>() << "\n";
  for (const auto& e : s["effects"]) {
    const std::string type = e["type"];
    out << "  " << type;
    for (const auto& [key, value] : e.items()) {
      if (key == "type") continue;
      out << " "
          << (value.is_string()
                  ? value.get<std::string>()
                  : value.dump(
                        -1, ' ', false,
                        nlohmann::ordered_json::error_handler_t::replace));
    }
    out << "\n";
  }
  return out.str();
}

}  // namespace zv::cli
