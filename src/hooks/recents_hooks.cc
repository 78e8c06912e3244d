// zvrecents_init: areas, ring times and avatars on the Phone app's Recents
// rows, and the call-history backup kept in step with the list. The
// controller reaches the Recents screen through RuntimeRecentsHost, which
// sends the host's own selectors.
#include "core/device.h"
#include "core/hook.h"
#include "core/settings_catalogue.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hooks/person_record.h"
#include "hostsdk/phone.h"
#include "lists/recents_controller.h"
#include "platform/ui/table_view.h"
#include "search/call_history.h"

namespace zv {
namespace {

using VC = sdk::PHRecentsViewController;
using Cell = sdk::PHRecentsCell;
using Manager = sdk::PHRecentsManager;
using Modern = sdk::CHRecentCall;
using Legacy = sdk::RecentCall;

bool isModern() { return UIDevice::OSVersion() >= 8.0f; }

class RuntimeRecentsHost : public RecentsHost {
 public:
  rt::Id call(const rt::Id& cell) override {
    return rt::trySend(cell, Cell::call);
  }
  std::shared_ptr<ui::UIView> cellView(const rt::Id& cell,
                                       const std::string& key) override {
    const auto views = rt::trySend(cell, Cell::allViews);
    auto it = views.find(key);
    return it == views.end()
               ? nullptr
               : std::dynamic_pointer_cast<ui::UIView>(it->second);
  }
  int64_t count(const rt::Id& cell) override {
    return rt::trySend(cell, Cell::count);
  }
  bool isEditing(const rt::Id& cell) override {
    return rt::trySend(cell, Cell::isEditing);
  }
  bool isRecentsCell(const rt::Id& cell) override {
    rt::Class* cls = rt::getClass(Cell::kName);
    return cell && cls && cell->isa()->isSubclassOf(cls);
  }
  Value callOccurrences(const rt::Id& call) override {
    return isModern() ? rt::trySend(call, Modern::callOccurrences)
                      : rt::trySend(call, Legacy::callOccurrences);
  }
  Value date(const rt::Id& call) override {
    return isModern() ? rt::trySend(call, Modern::date)
                      : rt::trySend(call, Legacy::date);
  }
  std::string callerId(const rt::Id& call) override {
    return rt::trySend(call, Modern::callerId);
  }
  std::string destination(const rt::Id& call) override {
    return rt::trySend(call, Legacy::destination);
  }
  Value addressBookRecordId(const rt::Id& call) override {
    return rt::trySend(call, Modern::addressBookRecordId);
  }
  int32_t uid(const rt::Id& call) override {
    return rt::respondsTo(call, Legacy::uid) ? rt::send(call, Legacy::uid) : -1;
  }
  std::shared_ptr<const ABPersonRecord> phoneBookRecord(
      const rt::Id& call) override {
    rt::Id manager = rt::trySend(call, Modern::phoneBookManager);
    return RuntimePersonRecord::wrap(
        rt::trySend(manager, sdk::PHPhoneBookManager::getABRecordRef));
  }
  std::shared_ptr<const ABPersonRecord> addressBookRecord(
      const rt::Id& call) override {
    return RuntimePersonRecord::wrap(
        rt::trySend(call, Legacy::addressBookRecord));
  }
  rt::Id cellForRow(const rt::Id& viewController, int64_t row) override {
    auto table = std::dynamic_pointer_cast<ui::UITableView>(
        rt::trySend(viewController, VC::table));
    if (!table || row < 0) return nullptr;
    return table->cellForRowAtIndex(static_cast<size_t>(row));
  }
  void callHistorySignificantChangeNotification(
      const rt::Id& viewController) override {
    rt::trySend(rt::trySend(viewController, VC::recentsManager),
                Manager::callHistorySignificantChangeNotification);
  }
};

}  // namespace

void zvrecents_init() {
  runStartup("zvrecents_init", [] {
    auto s = ZVPhoneSettings::sharedInstance();
    if (!s) return;
    if (!s->EnableArea() && !s->EnableAvatar() &&
        !s->CallHistoryRingDuration() &&
        s->CallHistoryLimit() < ZVCallHistory::kSyncLimitMinimum)
      return;
    auto c = ZVRecentsController::sharedInstance();
    if (!c) return;
    c->setHost(std::make_shared<RuntimeRecentsHost>());
    const auto k = GuardKind::Alert;
    using namespace hook;
    using Id = const rt::Id&;
    // clang-format off
    hostFirst(k, VC::tableViewCellForRowAtIndexPath, [c](Id, rt::Id& cell, rt::Id, ui::IndexPath) { c->areaCell(cell); c->ringCell(cell); c->avatarCell(cell); });
    systemFirst(k, VC::viewWillAppear, [c](Id self, bool) { c->syncDeletedCalls(self); });
    hostFirst(k, Cell::layoutSubviews, [c](Id self) { c->avatarLayoutCell(self); });
    if (isModern()) {
      hostFirst(k, VC::clearButtonTapped, [c](Id, rt::Id) { c->deleteAllCalls(); });
      systemFirst(k, VC::tableViewCommitEditingStyleForRowAtIndexPath, [c](Id self, rt::Id table, int64_t style, ui::IndexPath path) { c->deleteRecents(self, table, style, path.row); });
    } else {
      hostFirst(k, Manager::deleteAllCalls, [c](Id) { c->deleteAllCalls(); });
      hostFirst(k, Manager::deleteCall, [c](Id, rt::Id call) { c->deleteCall(call); });
    }
    // clang-format on
  });
}

}  // namespace zv
