#include "tools/zorvel/screens/phone_screen.h"

#include "callscreens/in_call_controller.h"
#include "dialer/keypad_controller.h"
#include "platform/process.h"
#include "platform/ui/sheets.h"
#include "tools/zorvel/screens/list_screens.h"

namespace zv::cli {
namespace {

using json = nlohmann::ordered_json;

// A line of three labels as text, the highlighted run in brackets.
json line(const std::array<std::shared_ptr<ui::UILabel>, 3>& labels) {
  json out;
  out["text"] = labels[0]->text() + labels[1]->text() + labels[2]->text();
  out["marked"] = labels[1]->text().empty()
                      ? out["text"].get<std::string>()
                      : labels[0]->text() + "[" + labels[1]->text() + "]" +
                            labels[2]->text();
  return out;
}

json page(const ZVKeypadLCDView& v) {
  return json{{"name", line(v.nameLabels())},
              {"number", line(v.numberLabels())},
              {"avatar", v.avatar() != nullptr}};
}

json listRows(ZVKeypadListView& list) {
  json rows = json::array();
  for (const auto& [row, cell] : list.tableView()->visibleCells()) {
    auto c = std::dynamic_pointer_cast<ZVKeypadListCell>(cell);
    if (!c) continue;
    auto marked = [](const ZVLabel& l) {
      const std::string& mid = l.labelCenter()->text();
      return mid.empty() ? l.text
                         : l.labelLeft()->text() + "[" + mid + "]" +
                               l.labelRight()->text();
    };
    rows.push_back(json{{"row", row + 1},
                        {"name", marked(*c->nameLabel)},
                        {"number", marked(*c->numberLabel)},
                        {"type", c->typeLabel->text()}});
  }
  return rows;
}

}  // namespace

json PhoneScreen::capture() {
  json s;
  s["tab"] = hosts::PhoneApplication::tabName(app_.tabBar->selectedIndex());
  if (app_.tabBar->selectedIndex() == hosts::PhoneApplication::kRecents)
    s["recents"] = recentsRows(*app_.recents);
  auto view = app_.dialer->dialerView();
  s["display"] = view->lcd->number;
  s["nameLabel"] = view->nameLabel->name.empty() ? view->nameLabel->label
                   : view->nameLabel->label.empty()
                       ? view->nameLabel->name
                       : view->nameLabel->name + " " + view->nameLabel->label;
  if (!view->addContact->isHidden())
    s["addToContacts"] = view->addContact->label->text();

  json buttons = json::array();
  auto controller = platform::Process::current().slot<ZVKeypadController>();
  auto pager = controller ? controller->keypadView() : nullptr;
  if (pager && pager->isVisible() && pager->superview() == view) {
    json pages = json::array();
    for (const auto& p : pager->lcdViews()) pages.push_back(page(*p));
    s["pager"] =
        json{{"previous", pages[0]}, {"current", pages[1]}, {"next", pages[2]}};
    if (pager->getCount() > 0)
      s["counter"] = std::to_string(pager->getCurIndex() + 1) + "/" +
                     std::to_string(pager->getCount());
    if (pager->deleteButton()->isVisible()) buttons.push_back("delete");
    if (pager->addButton()->isVisible()) buttons.push_back("add");
  }
  if (controller && controller->onoffButton() &&
      controller->onoffButton()->isVisible())
    buttons.push_back(controller->onoffButton()->accessibilityLabel());
  s["buttons"] = buttons;
  if (controller && controller->listView() &&
      !controller->listView()->isHidden())
    s["list"] = listRows(*controller->listView());
  if (auto sheet = ui::UIActionSheet::presented()) {
    json menu = json::array();
    for (const auto& b : sheet->buttons()) menu.push_back(b);
    s["menu"] = menu;
  }

  if (app_.inCall && app_.inCall->isShown()) {
    auto lcd = app_.inCall->lcd();
    json call{{"number", lcd->textLabel->text()},
              {"label", lcd->statusLabel->text()}};
    if (auto own = std::dynamic_pointer_cast<ui::UILabel>(
            lcd->viewWithTag(ZVInCallController::kOwnLabelTag)))
      call["ownLabel"] = own->text();
    s["inCall"] = call;
  }

  json dialled = json::array();
  for (; dialled_ < app_.dialled.size(); ++dialled_)
    dialled.push_back(app_.dialled[dialled_].number);
  if (!dialled.empty()) s["dialled"] = dialled;
  const auto& events = process_.world().events();
  json opened = json::array(), copied = json::array(), alerts = json::array(),
       vibrations = json::array();
  for (; events_ < events.size(); ++events_) {
    const auto& e = events[events_];
    if (e.kind == "openURL") opened.push_back(e.detail);
    if (e.kind == "pasteboard") copied.push_back(e.detail);
    if (e.kind == "alert") alerts.push_back(e.detail);
    if (e.kind == "vibrate") vibrations.push_back(e.detail);
  }
  if (!opened.empty()) s["opened"] = opened;
  if (!copied.empty()) s["copied"] = copied;
  if (!alerts.empty()) s["alert"] = alerts;
  if (!vibrations.empty()) s["vibrate"] = vibrations;
  const auto& adds = app_.dialer->addContactRequests;
  if (add_contacts_ < adds.size()) s["addContact"] = adds.back();
  add_contacts_ = adds.size();
  return s;
}

std::string PhoneScreen::render(const json& s) {
  std::string out;
  auto add = [&](const std::string& key, const std::string& value) {
    out += "  " + key + ": " + value + "\n";
  };
  add("tab", s["tab"].get<std::string>());
  if (s.contains("recents")) out += renderRecents(s["recents"]);
  add("display", "\"" + s["display"].get<std::string>() + "\"");
  if (!s["nameLabel"].get<std::string>().empty())
    add("name label", s["nameLabel"].get<std::string>());
  if (s.contains("addToContacts"))
    add("add to contacts", s["addToContacts"].get<std::string>());
  if (s.contains("pager")) {
    for (const char* which : {"previous", "current", "next"}) {
      const json& p = s["pager"][which];
      add(std::string("page ") + which,
          p["name"]["marked"].get<std::string>() + " | " +
              p["number"]["marked"].get<std::string>() +
              (p["avatar"].get<bool>() ? " (avatar)" : ""));
    }
  }
  if (s.contains("counter")) add("counter", s["counter"].get<std::string>());
  std::string buttons;
  for (const auto& b : s["buttons"])
    buttons += (buttons.empty() ? "" : ", ") + b.get<std::string>();
  add("buttons", buttons.empty() ? "(none)" : buttons);
  if (s.contains("list")) {
    add("list", std::to_string(s["list"].size()) + " rows shown");
    for (const auto& r : s["list"])
      out += "    " + std::to_string(r["row"].get<size_t>()) + ". " +
             r["name"].get<std::string>() + " | " +
             r["number"].get<std::string>() + " | " +
             r["type"].get<std::string>() + "\n";
  }
  if (s.contains("menu")) {
    std::string menu;
    for (size_t i = 0; i < s["menu"].size(); ++i)
      menu += (i ? " " : "") + ("[" + std::to_string(i + 1) + "] ") +
              s["menu"][i].get<std::string>();
    add("menu", menu);
  }
  if (s.contains("inCall")) {
    const json& call = s["inCall"];
    add("in call", call["number"].get<std::string>() + " | " +
                       call["label"].get<std::string>());
    if (call.contains("ownLabel"))
      add("own label", call["ownLabel"].get<std::string>());
  }
  for (const char* key : {"dialled", "opened", "copied", "alert", "vibrate"})
    if (s.contains(key))
      for (const auto& v : s[key]) add(key, v.get<std::string>());
  if (s.contains("addContact"))
    add("add contact", s["addContact"].get<std::string>());
  return out;
}

}  // namespace zv::cli
