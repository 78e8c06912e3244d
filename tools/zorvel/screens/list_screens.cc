#include "tools/zorvel/screens/list_screens.h"

#include "hosts/contacts/card.h"

namespace zv::cli {
namespace {

using json = nlohmann::ordered_json;

std::string trimmed(const std::string& s) {
  const size_t start = s.find_first_not_of(' ');
  return start == std::string::npos ? "" : s.substr(start);
}

// The avatar an image view shows: the record its tag names when that record
// has a picture, else the placeholder; null when no avatar is shown.
json avatarOf(const ui::UIImageView& view,
              const std::shared_ptr<hosts::HostRecord>& record) {
  if (view.isHidden() || !view.image()) return nullptr;
  if (record && record->hasImage &&
      view.tag() == static_cast<int>(static_cast<uint32_t>(record->recordId) |
                                     0x80000000u))
    return "record " + std::to_string(record->recordId);
  return "placeholder";
}

std::string point(const ui::Rect& r) {
  char text[64];
  std::snprintf(text, sizeof text, "%.0f,%.0f", r.origin.x, r.origin.y);
  return text;
}

}  // namespace

json recentsRows(hosts::RecentsViewController& recents) {
  json rows = json::array();
  for (const auto& [row, cell] : recents.table()->visibleCells()) {
    auto c = std::dynamic_pointer_cast<hosts::RecentsCell>(cell);
    if (!c || !c->call) continue;
    json r{{"row", row + 1},
           {"name", c->nameLabel->text()},
           {"label", c->label->text()}};
    if (!c->countLabel->text().empty()) r["count"] = c->countLabel->text();
    r["avatar"] = avatarOf(*c->imageView(), c->call->record);
    auto moved = c->contentView()->viewWithTag(10086);
    if (moved && moved->isVisible())
      r["icon"] = point(moved->frame());
    else if (c->callTypeIcon->isVisible())
      r["icon"] = "host";
    r["inset"] = c->separatorInset().left;
    rows.push_back(r);
  }
  return rows;
}

json contactsScreen(ui::UINavigationController& navigation) {
  auto top = navigation.topViewController();
  if (auto card =
          std::dynamic_pointer_cast<hosts::ContactViewController>(top)) {
    json phones = json::array();
    for (const auto& cell : card->phoneCells)
      phones.push_back(json{{"label", cell->labelLabel->text()},
                            {"number", cell->valueLabel->text()}});
    return json{{"screen", "card"},
                {"name", card->contact->contact.name},
                {"id", card->contact->contact.recordId},
                {"phones", phones}};
  }
  json rows = json::array();
  auto list = std::dynamic_pointer_cast<hosts::MembersViewController>(top);
  if (list) {
    auto table = list->table();
    for (const auto& [row, cell] : table->visibleCells()) {
      auto c = std::dynamic_pointer_cast<hosts::MemberCell>(cell);
      if (!c || !c->person) continue;
      const std::string shown = c->nameView->isVisible()
                                    ? c->nameView->nameLabel->text()
                                    : c->textLabel()->text();
      rows.push_back(
          json{{"row", row + 1},
               {"name", shown},
               {"avatar", avatarOf(*c->imageView(), c->person->record)},
               {"inset", c->separatorInset().left}});
    }
    return json{{"screen", "list"},
                {"separators", table->separatorStyle == 1},
                {"rows", rows}};
  }
  return json{{"screen", "list"}, {"rows", rows}};
}

std::string renderRecents(const json& rows) {
  std::string out = "  recents: " + std::to_string(rows.size()) + " rows\n";
  for (const auto& r : rows) {
    out += "    " + std::to_string(r["row"].get<size_t>()) + ". " +
           trimmed(r["name"].get<std::string>());
    if (r.contains("count")) out += " " + r["count"].get<std::string>();
    out += " | " + trimmed(r["label"].get<std::string>());
    if (!r["avatar"].is_null())
      out += " | avatar " + r["avatar"].get<std::string>();
    if (r.contains("icon")) out += " | icon " + r["icon"].get<std::string>();
    out += "\n";
  }
  return out;
}

std::string renderContacts(const json& s) {
  std::string out;
  if (s["screen"] == "card") {
    out += "  card: " + s["name"].get<std::string>() + " (id " +
           std::to_string(s["id"].get<int>()) + ")\n";
    for (const auto& p : s["phones"])
      out += "    " + p["label"].get<std::string>() + ": " +
             p["number"].get<std::string>() + "\n";
    return out;
  }
  out += "  contacts: " + std::to_string(s["rows"].size()) + " rows shown\n";
  for (const auto& r : s["rows"]) {
    out += "    " + std::to_string(r["row"].get<size_t>()) + ". " +
           trimmed(r["name"].get<std::string>());
    if (!r["avatar"].is_null())
      out += " | avatar " + r["avatar"].get<std::string>();
    out += "\n";
  }
  return out;
}

}  // namespace zv::cli
