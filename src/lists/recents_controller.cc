#include "lists/recents_controller.h"

#include <cstdio>

#include "area/area_loader.h"
#include "core/area_label.h"
#include "core/device.h"
#include "core/settings_catalogue.h"
#include "platform/platform.h"
#include "search/address_book.h"
#include "search/call_history.h"

namespace zv {
namespace {

// Seconds from 1970-01-01 to 2001-01-01, the platform's reference date.
constexpr double kReferenceDateSince1970 = 978307200.0;

bool isModern() { return UIDevice::OSVersion() >= 8.0f; }

std::shared_ptr<ui::UILabel> labelView(RecentsHost& host, const rt::Id& cell,
                                       const char* key) {
  return std::dynamic_pointer_cast<ui::UILabel>(host.cellView(cell, key));
}

// The dates of a call's occurrences under `key`, as stored (seconds since
// 2001-01-01).
template <typename Each>
void forEachOccurrenceDate(const Value& occurrences, const char* key,
                           Each each) {
  const Array* list = occurrences.array();
  if (!list) return;
  for (const Value& occurrence : *list) {
    const Dict* fields = occurrence.dict();
    if (!fields) continue;
    auto it = fields->find(key);
    if (it == fields->end()) continue;
    if (const Date* date = it->second.date()) each(date->seconds);
  }
}

}  // namespace

std::shared_ptr<ZVRecentsController> ZVRecentsController::sharedInstance() {
  return platform::Process::current().singleton<ZVRecentsController>(
      [] { return std::make_shared<ZVRecentsController>(); });
}

ZVRecentsController::ZVRecentsController()
    : _settings(ZVPhoneSettings::sharedInstance()),
      _area(ZVAreaLoader::sharedInstance()),
      _addressbook(ZVAddressBook::sharedInstance()),
      _callhistory(ZVCallHistory::sharedInstance()) {
  ZVCallHistory::regisiterChangedCallback();
}

std::optional<double> ZVRecentsController::callTime(const Value& date) {
  const Date* d = date.date();
  if (!d) return std::nullopt;
  return isModern() ? d->seconds : d->seconds + kReferenceDateSince1970;
}

std::string ZVRecentsController::number(const rt::Id& call) const {
  return isModern() ? host_->callerId(call) : host_->destination(call);
}

int32_t ZVRecentsController::contactId(const rt::Id& call) const {
  if (!isModern()) return host_->uid(call);
  const Value id = host_->addressBookRecordId(call);
  return id.isNull() ? ZVAddressBook::kNoContact : id.intValue();
}

// --- Area --------------------------------------------------------------------

void ZVRecentsController::areaCell(const rt::Id& cell) {
  if (!host_ || !_settings->EnableArea() || !_settings->AreaNameCallHistory())
    return;
  rt::Id call = host_->call(cell);
  if (!call) return;
  const int32_t id = contactId(call);
  const bool contact = id != ZVAddressBook::kNoContact;
  if (_settings->AreaOnlyStrangers() && contact) return;
  auto area = _area->getArea(number(call), _settings->AreaNameCallHistory(),
                             _settings->AreaTypeCallHistory());
  if (!area) return;
  auto label = labelView(*host_, cell, "Label");
  if (!label) return;
  const std::string& text = label->text();
  if (contact && !text.empty()) {
    // A reused cell already holds the area.
    if (text.find(*area) != std::string::npos) return;
    if (!_settings->AreaReplaceTextCallHistory() &&
        area->find(text) == std::string::npos) {
      label->setText(joinArea(text, *area, AreaGap::kOne));
      return;
    }
  }
  // Strangers, empty labels, replacement on, or a label the area already
  // says more fully.
  label->setText(*area);
}

// --- Ring time ---------------------------------------------------------------

int64_t ZVRecentsController::ringSeconds(const rt::Id& call) const {
  int64_t sum = 0;
  auto add = [&](double time) {
    const int64_t seconds = _callhistory->getRingDuration(time);
    if (seconds > 0) sum += seconds;
  };
  const Value occurrences = host_->callOccurrences(call);
  if (occurrences.array()) {
    const bool modern = isModern();
    forEachOccurrenceDate(
        occurrences, modern ? kOccurrenceDateKey : kLegacyOccurrenceDateKey,
        [&](double seconds) {
          add(modern ? seconds : seconds + kReferenceDateSince1970);
        });
  } else if (auto time = callTime(host_->date(call))) {
    add(*time);
  }
  return sum;
}

void ZVRecentsController::ringCell(const rt::Id& cell) {
  if (!host_ || !_settings->CallHistoryRingDuration()) return;
  rt::Id call = host_->call(cell);
  if (!call) return;
  const int64_t sum = ringSeconds(call);
  if (sum < 1) return;
  char ring[64];
  std::snprintf(ring, sizeof ring, "(%d%s)", static_cast<int>(sum),
                platform::current().localizedString("sec", "Zorvel").c_str());
  auto label = labelView(*host_, cell, "Label");
  if (!label) return;
  const std::string joined = appendArea(label->text(), ring, AreaGap::kOne);
  if (joined != label->text()) label->setText(joined);
}

// --- Separator ---------------------------------------------------------------

void ZVRecentsController::avatarLayoutCell(const rt::Id& cell) {
  if (!host_ || !_settings->EnableAvatar() || !_settings->AvatarCallHistory())
    return;
  auto table = std::dynamic_pointer_cast<ui::UITableViewCell>(cell);
  if (!table) return;
  ui::EdgeInsets inset = table->separatorInset();
  inset.left =
      host_->isEditing(cell) ? kEditingSeparatorInset : kSeparatorInset;
  table->setSeparatorInset(inset);
}

// --- History backup ----------------------------------------------------------

bool ZVRecentsController::syncActive() const {
  return _settings->CallHistoryLimit() >= ZVCallHistory::kSyncLimitMinimum;
}

void ZVRecentsController::syncDeletedCalls(const rt::Id& viewController) {
  if (!host_ || !syncActive()) return;
  if (_callhistory->syncHistory(_settings->CallHistoryLimit()) < 1) return;
  if (isModern()) {
    platform::current().post(kDatabaseChangedNotification,
                             platform::Scope::Process);
  } else {
    host_->callHistorySignificantChangeNotification(viewController);
  }
}

void ZVRecentsController::deleteAllCalls() {
  if (syncActive()) _callhistory->deleteAllSyncHistory();
}

void ZVRecentsController::deleteCall(const rt::Id& call) {
  if (!host_ || !call || !syncActive()) return;
  // The 7.x backup keys calls by their date in seconds since 1970.
  forEachOccurrenceDate(
      host_->callOccurrences(call), kLegacyOccurrenceDateKey,
      [&](double seconds) {
        _callhistory->deleteSyncHistory(seconds + kReferenceDateSince1970);
      });
}

void ZVRecentsController::deleteRecents(const rt::Id& viewController,
                                        const rt::Id& tableView,
                                        int64_t editingStyle, int64_t row) {
  if (!host_ || !syncActive() || editingStyle != kDeleteEditingStyle) return;
  rt::Id cell = host_->cellForRow(viewController, row);
  if (!cell || !host_->isRecentsCell(cell)) return;
  rt::Id call = host_->call(cell);
  if (!call) return;
  // The 8.x backup keys calls by ZDATE, seconds since 2001.
  forEachOccurrenceDate(
      host_->callOccurrences(call), kOccurrenceDateKey,
      [&](double seconds) { _callhistory->deleteSyncHistory(seconds); });
}

}  // namespace zv
