#include "search/address_book.h"

#include "core/settings_catalogue.h"
#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/process.h"
#include "search/long_date.h"

namespace zv {
namespace {

constexpr char kInfoQuery[] =
    "SELECT Organization,Department,JobTitle,Nickname,Birthday,Note FROM "
    "ABPerson WHERE ROWID = ?";
constexpr char kLabelQuery[] =
    "SELECT ROWID,value FROM ABMultiValueLabel ORDER BY ROWID ASC";
constexpr int kBirthdayColumn = 4;

sql::Database openAddressBook() {
  return sql::Database(
      platform::current().path(platform_schema::kAddressBookPath));
}

}  // namespace

std::shared_ptr<ZVAddressBook> ZVAddressBook::sharedInstance() {
  return platform::Process::current().singleton<ZVAddressBook>(
      [] { return std::make_shared<ZVAddressBook>(); });
}

ZVAddressBook::ZVAddressBook()
    : _settings(ZVGeneralSettings::sharedInstance()) {}

std::optional<std::string> ZVAddressBook::getAddressBookInfo(int32_t recordId,
                                                             int mask) {
  if (recordId == kNoContact || mask == 0) return std::nullopt;
  sql::Database db = openAddressBook();
  sql::Statement query(db, kInfoQuery);
  if (!query.bind(1, recordId) || !query.step()) return std::nullopt;
  std::string info;
  // Column i answers mask bit 1 << i.
  for (int column = 0; column < 6; ++column) {
    if (!(mask & (1 << column)) || query.isNull(column)) continue;
    std::string value;
    if (column == kBirthdayColumn) {
      std::optional<std::string> raw = query.text(column);
      if (raw->empty()) continue;
      value = formatLongDate(query.real(column),
                             platform::current().device().locale);
    } else {
      value = *query.text(column);
    }
    if (value.empty()) continue;
    if (!info.empty()) info += '\n';
    info += value;
  }
  if (info.empty()) return std::nullopt;
  return info;
}

void ZVAddressBook::loadPhoneTypeLables() {
  std::map<int64_t, std::string> labels;
  sql::Database db = openAddressBook();
  sql::Statement query(db, kLabelQuery);
  while (query.step()) {
    if (query.isNull(1)) continue;
    labels[query.int64(0)] = copyLocalizedLabel(*query.text(1));
  }
  std::lock_guard lock(_loadLock);
  _phoneTypeLabels = std::move(labels);
}

std::optional<std::string> ZVAddressBook::getPhoneTypeLabel(int32_t labelId) {
  if (labelId == -1) return std::nullopt;
  bool loaded;
  {
    std::lock_guard lock(_loadLock);
    loaded = _phoneTypeLabels.has_value();
  }
  if (!loaded) loadPhoneTypeLables();
  std::lock_guard lock(_loadLock);
  auto it = _phoneTypeLabels->find(labelId);
  if (it == _phoneTypeLabels->end()) return std::nullopt;
  return it->second;
}

}  // namespace zv
