// The recent-number list and the priority list.
#include <filesystem>
#include <string>

#include "core/number_utils.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/plist.h"
#include "search/searcher.h"

namespace zv {

namespace {

constexpr char kStoreQuery[] =
    "SELECT DISTINCT ZADDRESS FROM ZCALLRECORD WHERE ZADDRESS!='' ORDER BY "
    "ZDATE DESC";
constexpr char kDbQuery[] =
    "SELECT DISTINCT address FROM call WHERE address!='' ORDER BY date DESC";

}  // namespace

void ZVSearcher::loadCallHistory() {
  callHistory_.clear();
  const bool store = isNewPlatform();
  sql::Database db(platform_.path(store ? platform_schema::kCallHistoryStorePath
                                        : platform_schema::kCallHistoryDbPath));
  sql::Statement stmt(db, store ? kStoreQuery : kDbQuery);
  while (stmt.step()) {
    std::string address = stmt.text(0).value_or("");
    std::string number = keypadString(address);
    if (number.empty()) continue;
    if (const PersonRef* found = personsDict_.find(persons_, number)) {
      // The same object as in the contacts list.
      callHistory_.push_back(*found);
      continue;
    }
    auto person = std::make_shared<ZVPerson>();
    person->setPriority(ZVPerson::kExcluded);
    person->setRecordId(-2);
    person->setPhoneNumber(address);
    callHistory_.push_back(std::move(person));
  }
}

void ZVSearcher::loadPriority() {
  priorityDict_.reset();
  for (const char* path : {kPriorityPath, kDefaultPriorityPath}) {
    std::string file = platform_.path(path);
    std::error_code ec;
    if (!std::filesystem::exists(file, ec)) continue;
    priorityDict_ = plist::readDictionary(file);
    return;
  }
}

void ZVSearcher::unloadPriority() { priorityDict_.reset(); }

}  // namespace zv
