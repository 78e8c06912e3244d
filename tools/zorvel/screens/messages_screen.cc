#include "tools/zorvel/screens/messages_screen.h"

#include <sstream>

#include "hosts/messages/composer.h"
#include "messages/group_view_controller.h"
#include "messages/sms_controller.h"
#include "search/address_book.h"
#include "search/avatar_loader.h"

namespace zv::cli {
namespace {

using json = nlohmann::ordered_json;

// Which picture an image view shows: a contact's, the placeholder, none.
std::string listPicture(const ui::UIImageView& view) {
  if (!view.image()) return "";
  auto placeholder = ZVAddressBook::sharedInstance()->getNullAvatarWithsize(
      {ZVSMSController::kListAvatarSize, ZVSMSController::kListAvatarSize});
  if (view.image() == placeholder || view.tag() == -1) return "placeholder";
  return "contact " + std::to_string(avatarViewRecord(view.tag()));
}

json listScreen(hosts::ConversationListController& list) {
  json rows = json::array();
  for (size_t r = 0; r < list.conversations.size(); ++r) {
    auto cell = std::dynamic_pointer_cast<hosts::ConversationListCell>(
        list.visibleCell({0, r}));
    if (!cell) continue;
    auto area = std::dynamic_pointer_cast<ui::UILabel>(
        cell->contentView()->viewWithTag(ZVSMSController::kAreaLabelTag));
    json row{{"row", r + 1},
             {"sender", cell->fromLabel->text()},
             {"area", area ? area->text() : ""},
             {"areaWidth", area ? area->frame().size.width : 0.0},
             {"summary", cell->summaryLabel->text()},
             {"date", cell->dateLabel->text()},
             {"picture", listPicture(*cell->imageView())},
             {"unread", !cell->unreadIndicator->isHidden()}};
    rows.push_back(row);
  }
  return json{{"screen", "list"}, {"rows", rows}};
}

json buttons(ui::UIViewController& vc) {
  auto item = vc.navigationItem();
  return json{
      {"title", item->title.empty() ? vc.title : item->title},
      {"left", item->leftBarButtonItem ? item->leftBarButtonItem->title : ""},
      {"right",
       item->rightBarButtonItem ? item->rightBarButtonItem->title : ""}};
}

json transcriptScreen(hosts::TranscriptController& t) {
  json out{{"screen", t.isNewRecipient() ? "composer" : "conversation"}};
  out.update(buttons(t));
  if (t.isNewRecipient()) {
    json to = json::array();
    for (const auto& r : t.toField->recipients)
      to.push_back(json{{"address", r->address},
                        {"name", r->compositeName},
                        {"label", r->label}});
    out["recipients"] = to;
    return out;
  }
  json messages = json::array();
  for (const auto& cell : t.collection->cells) {
    std::string picture;
    if (cell->contactImage && cell->wantsContactImageLayout)
      picture = cell->orientation != 0 ? "mine" : "contact";
    messages.push_back(json{{"from", cell->orientation != 0 ? "me" : "them"},
                            {"text", cell->bubble->text()},
                            {"picture", picture}});
  }
  out["messages"] = messages;
  return out;
}

json groupScreen(ZVSMSGroupViewController& g) {
  json out{{"screen", "group"}};
  out.update(buttons(g));
  auto& table = *g.tableView();
  json sections = json::array();
  for (size_t s = 0; s < g.numberOfSectionsInTableView(table); ++s) {
    json rows = json::array();
    for (size_t r = 0; r < g.numberOfRowsInSection(table, s); ++r) {
      auto cell = g.visibleCell({s, r});
      if (!cell) continue;
      rows.push_back(json{{"row", r + 1},
                          {"text", cell->textLabel()->text()},
                          {"detail", cell->detailTextLabel()->text()}});
    }
    sections.push_back(rows);
  }
  out["sections"] = sections;
  out["editing"] = g.isEditing();
  return out;
}

json checklistScreen(ZVSMSSelectContactsViewController& c) {
  json out{{"screen", "checklist"}};
  out.update(buttons(c));
  json rows = json::array();
  for (size_t r = 0; r < c.list().size(); ++r) {
    auto cell = c.visibleCell({0, r});
    if (!cell) continue;
    rows.push_back(json{{"row", r + 1},
                        {"text", cell->textLabel()->text()},
                        {"detail", cell->detailTextLabel()->text()},
                        {"checked", c.selects().contains(c.list()[r][0])}});
  }
  out["rows"] = rows;
  return out;
}

}  // namespace

json MessagesScreen::capture() {
  json s;
  auto top = app_.topController();
  if (auto list =
          std::dynamic_pointer_cast<hosts::ConversationListController>(top))
    s = listScreen(*list);
  else if (auto t = std::dynamic_pointer_cast<hosts::TranscriptController>(top))
    s = transcriptScreen(*t);
  else if (auto g = std::dynamic_pointer_cast<ZVSMSGroupViewController>(top))
    s = groupScreen(*g);
  else if (auto c =
               std::dynamic_pointer_cast<ZVSMSSelectContactsViewController>(
                   top))
    s = checklistScreen(*c);
  else
    s = json{{"screen", "unknown"}};
  if (auto alert = process_.openAlert())
    s["alert"] = json{{"title", alert->title},
                      {"buttons", alert->buttons()},
                      {"textInput", alert->textInput}};
  json shown = json::array();
  const auto& alerts = process_.alerts();
  for (size_t i = alerts_; i < alerts.size(); ++i)
    if (alerts[i] != process_.openAlert())
      shown.push_back(alerts[i]->title + ": " + alerts[i]->message);
  alerts_ = alerts.size();
  if (!shown.empty()) s["alertsShown"] = shown;
  return s;
}

std::string MessagesScreen::render(const json& s) {
  std::ostringstream out;
  const std::string screen = s.value("screen", "");
  if (s.contains("title"))
    out << "[" << screen << "] " << s["title"].get<std::string>()
        << (s["left"].get<std::string>().empty()
                ? ""
                : "   <" + s["left"].get<std::string>() + ">")
        << (s["right"].get<std::string>().empty()
                ? ""
                : "   <" + s["right"].get<std::string>() + ">")
        << "\n";
  else
    out << "[" << screen << "]\n";
  if (screen == "list") {
    for (const auto& r : s["rows"]) {
      out << "  " << r["row"].get<size_t>() << ". "
          << (r["unread"].get<bool>() ? "* " : "")
          << r["sender"].get<std::string>();
      const std::string area = r["area"];
      if (!area.empty())
        out << "  (" << area
            << (r["areaWidth"].get<double>() <= 0 ? ", hidden: no room" : "")
            << ")";
      out << "  " << r["date"].get<std::string>();
      if (!r["picture"].get<std::string>().empty())
        out << "  [picture: " << r["picture"].get<std::string>() << "]";
      out << "\n     " << r["summary"].get<std::string>() << "\n";
    }
  } else if (screen == "conversation") {
    for (const auto& m : s["messages"]) {
      out << "  " << (m["from"] == "me" ? "   me: " : "them: ")
          << m["text"].get<std::string>();
      if (!m["picture"].get<std::string>().empty())
        out << "  [picture: " << m["picture"].get<std::string>() << "]";
      out << "\n";
    }
  } else if (screen == "composer") {
    out << "  To:";
    for (const auto& r : s["recipients"]) {
      out << " " << r["address"].get<std::string>();
      if (!r["name"].get<std::string>().empty())
        out << " (" << r["name"].get<std::string>()
            << (r["label"].get<std::string>().empty()
                    ? ""
                    : ", " + r["label"].get<std::string>())
            << ")";
      out << ";";
    }
    out << "\n";
  } else if (screen == "group") {
    const char* names[] = {"Sources", "Saved", "Save"};
    size_t i = 0;
    for (const auto& rows : s["sections"]) {
      out << "  " << (i < 3 ? names[i] : "") << ":\n";
      for (const auto& r : rows) {
        out << "    " << r["row"].get<size_t>() << ". "
            << r["text"].get<std::string>();
        if (!r["detail"].get<std::string>().empty())
          out << "  (" << r["detail"].get<std::string>() << ")";
        out << "\n";
      }
      ++i;
    }
  } else if (screen == "checklist") {
    for (const auto& r : s["rows"])
      out << "  " << (r["checked"].get<bool>() ? "[x] " : "[ ] ")
          << r["row"].get<size_t>() << ". " << r["text"].get<std::string>()
          << "  " << r["detail"].get<std::string>() << "\n";
  }
  if (s.contains("alert")) {
    out << "  alert: " << s["alert"]["title"].get<std::string>();
    for (const auto& b : s["alert"]["buttons"])
      out << " [" << b.get<std::string>() << "]";
    out << "\n";
  }
  if (s.contains("alertsShown"))
    for (const auto& a : s["alertsShown"])
      out << "  alert shown: " << a.get<std::string>() << "\n";
  return out.str();
}

}  // namespace zv::cli
