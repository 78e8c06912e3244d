#include "tools/zorvel/phone_setup/contacts_sync.h"

#include <stdexcept>

#include "platform/linux/eds_address_book.h"
#include "platform/platform.h"
#include "platform/plist.h"
#include "search/searcher.h"
#include "tools/zorvel/command.h"

namespace zv::cli {

platform_schema::StoreSummary storeAndMark(
    const std::string& root,
    const std::vector<platform_schema::ExternalContact>& contacts,
    const std::function<bool(const std::string&)>& mayRemove) {
  platform_schema::StoreSummary s;
  try {
    s = platform_schema::storeContacts(root, contacts, mayRemove);
  } catch (const std::runtime_error& e) {
    throw CommandError(e.what());
  }
  if (s.added + s.updated + s.removed == 0) return s;
  // As the searcher's own setObject:forKey:file: would: the other flags
  // are kept; a flags file that does not parse is started afresh, since
  // it only ever holds these switches.
  const std::string flags = root + ZVSearcher::kKeypadFlagsPath;
  Dict dict = plist::readDictionary(flags).value_or(Dict{});
  dict[ZVSearcher::kChangedKey] = true;
  if (!plist::writeFile(flags, Value(dict)))
    throw CommandError("cannot write " + flags);
  return s;
}

std::string summaryText(const platform_schema::StoreSummary& s) {
  return std::to_string(s.added) + " added, " + std::to_string(s.updated) +
         " updated, " + std::to_string(s.removed) + " removed, " +
         std::to_string(s.unchanged) + " unchanged";
}

ContactsFollower::ContactsFollower(std::string root,
                                   std::function<void(std::string)> log) {
  auto say = [log](std::string line) {
    platform::current().dispatchMain(
        [log, line = std::move(line)] { log(line); });
  };
  auto lastProblem = std::make_shared<std::string>();
  watch_ = std::make_unique<platform::EdsWatch>(
      kSettle, [root, say, lastProblem](const platform::EdsSnapshot& snap) {
        if (snap.problem != *lastProblem) {
          *lastProblem = snap.problem;
          if (!snap.problem.empty()) say("contacts: " + snap.problem);
        }
        if (!snap.reachable) return;
        try {
          auto s = storeAndMark(
              root, snap.contacts,
              [&snap](const std::string& id) { return snap.gone(id); });
          if (s.added + s.updated + s.removed)
            say("contacts from Evolution Data Server: " + summaryText(s));
        } catch (const std::exception& e) {
          // The next change tries again; the book keeps what it had.
          say(std::string("contacts not stored: ") + e.what());
        }
      });
}

ContactsFollower::~ContactsFollower() = default;

}  // namespace zv::cli
