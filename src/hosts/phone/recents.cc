#include "hosts/phone/recents.h"

#include <algorithm>
#include <cmath>

#include "hosts/contacts/text_sizes.h"
#include "hostsdk/contacts.h"
#include "hostsdk/phone.h"
#include "platform/platform.h"
#include "platform/runtime/message.h"
#include "platform/ui/application.h"
#include "platform/ui/messages.h"
#include "platform/ui/text_metrics.h"

namespace zv::hosts {
namespace {

using ui::self;
using VC = sdk::PHRecentsViewController;
using Cell = sdk::PHRecentsCell;
using Manager = sdk::PHRecentsManager;

constexpr char kDatabaseChanged[] = "kCallHistoryDatabaseChangedNotification";
// The texts start after the call-type icon's column (the icon 13 points
// before them).
constexpr double kTextLeft = 38;
constexpr double kEditingShift = 38;

bool modern() { return systemVersion() >= 8.0f; }
bool smallScreen() {
  return platform::current().device().screenPoints.width < 375;
}
double rowHeight() { return modern() ? 56 : 44; }
// Default rungs of the name and detail ladders (hosts/contacts/text_sizes.h).
int nameRung() { return modern() && smallScreen() ? 2 : 3; }
int labelRung() {
  if (!modern()) return 1;
  return smallScreen() ? 2 : 3;
}

std::string localized(const char* key) {
  return platform::current().localizedString(key, "Localizable");
}

// Distance from (x, y) to the segment from a to b.
double segmentDistance(double x, double y, ui::Point a, ui::Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  double t = ((x - a.x) * dx + (y - a.y) * dy) / (dx * dx + dy * dy);
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(x - a.x - t * dx, y - a.y - t * dy);
}

// The small arrow drawn beside dialled calls: grey, pointing up and right,
// 10 points square at scale 2.
ui::ImagePtr dialledIcon() {
  static const ui::ImagePtr icon = [] {
    constexpr int kSide = 20;
    const ui::Point strokes[][2] = {
        {{4, 16}, {15, 5}}, {{15, 5}, {8, 5}}, {{15, 5}, {15, 12}}};
    std::vector<uint8_t> rgba(kSide * kSide * 4, 0);
    for (int y = 0; y < kSide; ++y)
      for (int x = 0; x < kSide; ++x) {
        double d = 1e9;
        for (const auto& s : strokes)
          d = std::min(d, segmentDistance(x + 0.5, y + 0.5, s[0], s[1]));
        const double cover = std::clamp(2.0 - d, 0.0, 1.0);
        uint8_t* p = &rgba[(y * kSide + x) * 4];
        p[0] = 142, p[1] = 142, p[2] = 147;
        p[3] = static_cast<uint8_t>(cover * 255);
      }
    return std::make_shared<const ui::Image>(kSide, kSide, 2, std::move(rgba));
  }();
  return icon;
}

Value occurrences(const RecentCall& call, const char* dateKey,
                  const char* durationKey) {
  Array list;
  for (size_t i = 0; i < call.dates.size(); ++i)
    list.push_back(
        Dict{{dateKey, Date{call.dates[i]}}, {durationKey, call.durations[i]}});
  return list;
}

Value newestDate(const RecentCall& call) {
  return call.dates.empty() ? Value() : Value(Date{call.dates.front()});
}

RecentCallObject& callOf(const rt::Id& s) {
  auto* call = dynamic_cast<RecentCallObject*>(s.get());
  if (!call)
    throw rt::Exception("NSInvalidArgumentException", "not a recent call");
  return *call;
}

void registerCalls() {
  rt::registerClass<RecentCallObject>(sdk::CHRecentCall::kName);
  rt::define(sdk::CHRecentCall::callOccurrences, [](const rt::Id& s) {
    return occurrences(callOf(s).call, "kCHCallOccurrenceDateKey",
                       "kCHCallOccurrenceDurationKey");
  });
  rt::define(sdk::CHRecentCall::date,
             [](const rt::Id& s) { return newestDate(callOf(s).call); });
  rt::define(sdk::CHRecentCall::callerId,
             [](const rt::Id& s) { return callOf(s).call.number; });
  rt::define(sdk::CHRecentCall::addressBookRecordId, [](const rt::Id& s) {
    const int32_t id = callOf(s).call.contactId;
    return id == -1 ? Value() : Value(id);
  });
  rt::define(sdk::CHRecentCall::phoneBookManager, [](const rt::Id& s) {
    auto manager = std::dynamic_pointer_cast<PhoneBookManager>(
        rt::alloc(rt::getClass(PhoneBookManager::kClassName)));
    manager->record = callOf(s).record;
    return rt::Id(manager);
  });
  rt::registerClass<PhoneBookManager>(PhoneBookManager::kClassName);
  rt::define(sdk::PHPhoneBookManager::getABRecordRef, [](const rt::Id& s) {
    return rt::Id(self<PhoneBookManager>(s).record);
  });

  rt::registerClass<RecentCallObject>(sdk::RecentCall::kName);
  rt::define(sdk::RecentCall::callOccurrences, [](const rt::Id& s) {
    return occurrences(callOf(s).call, "RecentCallDate", "RecentCallDuration");
  });
  rt::define(sdk::RecentCall::date,
             [](const rt::Id& s) { return newestDate(callOf(s).call); });
  rt::define(sdk::RecentCall::destination,
             [](const rt::Id& s) { return callOf(s).call.number; });
  rt::define(sdk::RecentCall::uid,
             [](const rt::Id& s) { return callOf(s).call.contactId; });
  rt::define(sdk::RecentCall::addressBookRecord,
             [](const rt::Id& s) { return rt::Id(callOf(s).record); });
}

void registerCell() {
  rt::registerClass<RecentsCell>(Cell::kName, "UITableViewCell");
  rt::define(Cell::call,
             [](const rt::Id& s) { return rt::Id(self<RecentsCell>(s).call); });
  rt::define(Cell::allViews, [](const rt::Id& s) {
    auto& c = self<RecentsCell>(s);
    std::map<std::string, rt::Id> views{{"Name", c.nameLabel},
                                        {"Label", c.label},
                                        {"CallTypeIcon", c.callTypeIcon}};
    if (!modern()) views["Count"] = c.countLabel;
    return views;
  });
  rt::define(Cell::count, [](const rt::Id& s) -> int64_t {
    auto& c = self<RecentsCell>(s);
    return c.call ? static_cast<int64_t>(c.call->call.rows.size()) : 0;
  });
  rt::define(Cell::isEditing,
             [](const rt::Id& s) { return self<RecentsCell>(s).editing; });
  rt::define(Cell::layoutSubviews,
             [](const rt::Id& s) { self<RecentsCell>(s).layOut(); });
}

void registerManager() {
  rt::registerClass<RecentsManager>(Manager::kName);
  rt::define(Manager::deleteAllCalls, [](const rt::Id& s) {
    auto& m = self<RecentsManager>(s);
    if (deleteAllRecentCalls(modern())) m.calls.clear();
  });
  rt::define(Manager::deleteCall, [](const rt::Id& s, rt::Id call) {
    auto& m = self<RecentsManager>(s);
    auto* c = dynamic_cast<RecentCallObject*>(call.get());
    if (!c || !deleteRecentCall(c->call, modern())) return;
    std::erase_if(m.calls, [&](const auto& x) { return x.get() == c; });
  });
  rt::define(Manager::callHistorySignificantChangeNotification,
             [](const rt::Id& s) {
               auto& m = self<RecentsManager>(s);
               m.reload();
               if (auto vc = m.controller.lock()) vc->refresh();
             });
}

void registerController() {
  rt::registerClass<RecentsViewController>(VC::kName, "UIViewController");
  rt::define(VC::table, [](const rt::Id& s) {
    return rt::Id(self<RecentsViewController>(s).table());
  });
  rt::define(VC::recentsManager, [](const rt::Id& s) {
    return rt::Id(self<RecentsViewController>(s).manager);
  });
  // The list is read afresh whenever it comes on screen.
  rt::define(VC::viewWillAppear, [](const rt::Id& s, bool) {
    auto& vc = self<RecentsViewController>(s);
    vc.manager->reload();
    vc.refresh();
  });
  rt::define(
      VC::tableViewCellForRowAtIndexPath,
      [](const rt::Id& s, rt::Id tableView, ui::IndexPath path) -> rt::Id {
        auto& vc = self<RecentsViewController>(s);
        const auto& calls = vc.manager->calls;
        if (path.row < 0 || static_cast<size_t>(path.row) >= calls.size())
          return nullptr;
        auto table = std::dynamic_pointer_cast<ui::UITableView>(tableView);
        auto cell = std::dynamic_pointer_cast<RecentsCell>(
            table ? table->dequeueReusableCellWithIdentifier("recents")
                  : nullptr);
        if (!cell) {
          cell = std::dynamic_pointer_cast<RecentsCell>(
              rt::alloc(rt::getClass(Cell::kName)));
          cell->build();
        }
        cell->setFrame(
            {{0, 0}, {table ? table->frame().size.width : 320, rowHeight()}});
        cell->editing = vc.editing;
        cell->show(calls[static_cast<size_t>(path.row)]);
        return cell;
      });
  rt::define(VC::clearButtonTapped, [](const rt::Id& s, rt::Id) {
    auto& vc = self<RecentsViewController>(s);
    rt::send(vc.manager, Manager::deleteAllCalls);
    vc.refresh();
  });
  rt::define(VC::tableViewCommitEditingStyleForRowAtIndexPath,
             [](const rt::Id& s, rt::Id, int64_t style, ui::IndexPath path) {
               auto& vc = self<RecentsViewController>(s);
               const auto& calls = vc.manager->calls;
               if (style != 1 || path.row < 0 ||
                   static_cast<size_t>(path.row) >= calls.size())
                 return;
               rt::send(vc.manager, Manager::deleteCall,
                        rt::Id(calls[static_cast<size_t>(path.row)]));
               vc.refresh();
             });
}

}  // namespace

void RecentsCell::layoutSubviews() {
  rt::send(rt::Id(shared_from_this()), Cell::layoutSubviews);
}

void RecentsCell::build() {
  setUp(ui::CellStyle::Default, "recents");
  nameLabel = ui::make<ui::UILabel>();
  nameLabel->setFont({"Helvetica", nameFontSize(nameRung())});
  label = ui::make<ui::UILabel>();
  label->setFont({"Helvetica", detailFontSize(labelRung())});
  label->setTextColor({0.56, 0.56, 0.58, 1});
  countLabel = ui::make<ui::UILabel>();
  countLabel->setFont(nameLabel->font());
  callTypeIcon = ui::make<ui::UIImageView>();
  for (auto view : std::vector<std::shared_ptr<ui::UIView>>{
           nameLabel, label, countLabel, callTypeIcon})
    contentView()->addSubview(view);
  imageView()->setHidden(true);
}

void RecentsCell::show(const std::shared_ptr<RecentCallObject>& c) {
  call = c;
  const RecentCall& data = c->call;
  nameLabel->setText(c->name.empty() ? data.number : c->name);
  nameLabel->setTextColor(data.kind == CallKind::Missed
                              ? ui::Color{1, 0.23, 0.19, 1}
                              : ui::Color{0, 0, 0, 1});
  label->setText(c->name.empty() ? localized("unknown") : c->label);
  const size_t grouped = data.rows.size();
  countLabel->setText(grouped >= 2 ? "(" + std::to_string(grouped) + ")" : "");
  callTypeIcon->setImage(data.kind == CallKind::Dialled ? dialledIcon()
                                                        : nullptr);
  callTypeIcon->setHidden(data.kind != CallKind::Dialled);
  callTypeIcon->setAlpha(1);
  imageView()->setImage(nullptr);
  imageView()->setHidden(true);
  layOut();
}

void RecentsCell::layOut() {
  // The standard parts first (a picture put in the image view sits at the
  // left, where the call-type icon is); the texts start after the icon.
  UITableViewCell::layoutSubviews();
  const double left = kTextLeft + (editing ? kEditingShift : 0);
  const double width = frame().size.width - left - 90;
  const double nameHeight = ui::lineHeight(nameLabel->font());
  const double top =
      (frame().size.height - nameHeight - ui::lineHeight(label->font())) / 2;
  nameLabel->setFrame({{left, top}, {width, nameHeight}});
  label->setFrame(
      {{left, top + nameHeight}, {width, ui::lineHeight(label->font())}});
  countLabel->setFrame(
      {{left + ui::textWidth(nameLabel->text(), nameLabel->font()) + 4, top},
       {ui::textWidth(countLabel->text(), countLabel->font()), nameHeight}});
  callTypeIcon->setFrame({{left - 13, top + (nameHeight - 10) / 2}, {10, 10}});
}

void RecentsManager::reload() {
  const bool isModern = modern();
  std::vector<RecentCall> list = loadRecentCalls(isModern);
  // Only the list's own numbers are looked up: reading and sorting the
  // whole address book made every reload cost the size of the book.
  std::vector<std::string> numbers;
  for (const RecentCall& data : list) numbers.push_back(data.number);
  const std::vector<Contact> contacts = loadContactsOwning(numbers);
  const NumberOwners owners(contacts);
  calls.clear();
  rt::Class* cls = rt::getClass(isModern ? sdk::CHRecentCall::kName
                                         : sdk::RecentCall::kName);
  for (RecentCall& data : list) {
    auto call = std::dynamic_pointer_cast<RecentCallObject>(rt::alloc(cls));
    // The number's owner names the row; on 8.x, whose calls store no
    // contact, it is the row's contact too.
    if (auto owner = owners.find(data.number)) {
      call->name = owner->contact.name;
      call->label = labelText(owner->contact.phones[owner->phone].label);
      call->record = makeRecord(owner->contact);
      if (data.contactId == -1) data.contactId = owner->contact.recordId;
    }
    call->call = std::move(data);
    calls.push_back(std::move(call));
  }
}

std::shared_ptr<RecentsViewController> RecentsViewController::make() {
  auto vc = std::dynamic_pointer_cast<RecentsViewController>(
      rt::alloc(rt::getClass(VC::kName)));
  vc->title = "recents";
  vc->manager = std::dynamic_pointer_cast<RecentsManager>(
      rt::alloc(rt::getClass(Manager::kName)));
  vc->manager->controller = vc;
  if (modern()) {
    // The call-history service tells the app that its calls changed.
    std::weak_ptr<RecentsViewController> weak = vc;
    platform::current().observe(
        kDatabaseChanged,
        [weak] {
          auto self = weak.lock();
          if (!self) return;
          self->manager->reload();
          self->refresh();
        },
        platform::Scope::Process);
  }
  return vc;
}

std::shared_ptr<ui::UIView> RecentsViewController::loadView() {
  auto table = ui::make<ui::UITableView>();
  table->setFrame({{0, 64}, platform::current().device().screenPoints});
  std::weak_ptr<RecentsViewController> weak =
      std::static_pointer_cast<RecentsViewController>(shared_from_this());
  table->numberOfRows = [weak] {
    auto vc = weak.lock();
    return vc ? vc->manager->calls.size() : 0;
  };
  table->heightForRow = [](size_t) { return rowHeight(); };
  table->cellForRow = [weak](ui::UITableView& t, size_t row) {
    auto vc = weak.lock();
    if (!vc) return std::shared_ptr<ui::UITableViewCell>();
    return std::dynamic_pointer_cast<ui::UITableViewCell>(
        rt::send(vc, VC::tableViewCellForRowAtIndexPath, t.shared_from_this(),
                 ui::IndexPath{0, static_cast<int64_t>(row)}));
  };
  // A tap on a row calls its number back.
  table->didSelectRow = [weak](ui::UITableView&, size_t row) {
    auto vc = weak.lock();
    if (!vc || row >= vc->manager->calls.size()) return;
    const RecentCall& call = vc->manager->calls[row]->call;
    rt::trySend(
        ui::UIApplication::shared(), sdk::PhoneApplication::dialPhoneNumber,
        call.number,
        call.contactId == -1 ? std::string() : std::to_string(call.contactId),
        0, false, false);
  };
  return table;
}

std::shared_ptr<ui::UITableView> RecentsViewController::table() {
  return std::dynamic_pointer_cast<ui::UITableView>(view());
}

void RecentsViewController::refresh() {
  auto t = table();
  rt::send(t, ui::msg::UITableView::reloadData);
  // Rows on screen are laid out once they are shown.
  for (const auto& [row, cell] : t->visibleCells())
    rt::send(rt::Id(cell), Cell::layoutSubviews);
}

void RecentsViewController::setEditing(bool on) {
  editing = on;
  for (const auto& [row, cell] : table()->visibleCells()) {
    if (auto c = std::dynamic_pointer_cast<RecentsCell>(cell)) c->editing = on;
    rt::send(rt::Id(cell), Cell::layoutSubviews);
  }
}

bool RecentsViewController::deleteRow(size_t row) {
  if (row >= manager->calls.size()) return false;
  rt::send(shared_from_this(), VC::tableViewCommitEditingStyleForRowAtIndexPath,
           rt::Id(table()), int64_t{1},
           ui::IndexPath{0, static_cast<int64_t>(row)});
  return true;
}

void RecentsViewController::clearAll() {
  rt::send(shared_from_this(), VC::clearButtonTapped, rt::Id());
}

void registerRecentsClasses() {
  registerCalls();
  registerCell();
  registerManager();
  registerController();
}

}  // namespace zv::hosts
