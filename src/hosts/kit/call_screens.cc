#include "hosts/kit/call_screens.h"

#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"

namespace zv::hosts {
namespace {

struct PersonNames {
  std::string first, last, organization;
};

std::optional<PersonNames> readPerson(int64_t recordId) {
  sql::Database db(platform::current().path(platform_schema::kAddressBookPath));
  sql::Statement st(
      db, "SELECT First, Last, Organization FROM ABPerson WHERE ROWID = ?");
  st.bind(1, recordId);
  if (!st.step()) return std::nullopt;
  return PersonNames{st.text(0).value_or(""), st.text(1).value_or(""),
                     st.text(2).value_or("")};
}

}  // namespace

CallScreenLabels callerLabels(const platform::CallInfo& call) {
  CallScreenLabels labels;
  if (call.abUID != -1) {
    if (auto person = readPerson(call.abUID)) {
      const bool lastFirst = platform::current().device().nameOrderLastFirst;
      const std::string& a = lastFirst ? person->last : person->first;
      const std::string& b = lastFirst ? person->first : person->last;
      labels.name = a.empty() ? b : b.empty() ? a : a + " " + b;
      if (labels.name.empty()) {
        labels.name = person->organization;
      } else if (!person->organization.empty()) {
        labels.companyName = person->organization;
      }
      if (!call.contactLabel.empty())
        labels.label = copyLocalizedLabel(call.contactLabel);
    }
  }
  if (labels.name.empty())
    labels.name = call.destinationID.value_or(
        platform::current().localizedString("Unknown", "InCallService"));
  return labels;
}

}  // namespace zv::hosts
