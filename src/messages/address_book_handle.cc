#include "messages/address_book_handle.h"

#include "platform/db/phone_labels.h"
#include "platform/db/platform_schema.h"
#include "platform/platform.h"
#include "search/searcher_encode.h"

namespace zv {
namespace {

constexpr char kCountQuery[] = "SELECT COUNT(*) FROM ABPerson";
constexpr char kGroupsQuery[] = "SELECT ROWID,Name FROM ABGroup ORDER BY ROWID";
// Members that are people (member type 0), skipping ids with no person.
constexpr char kMembersQuery[] =
    "SELECT member_id FROM ABGroupMembers JOIN ABPerson ON "
    "ABPerson.ROWID=member_id WHERE group_id=? AND member_type=0 ORDER BY UID";
constexpr char kPeopleQuery[] = "SELECT ROWID FROM ABPerson ORDER BY ROWID";
constexpr char kPersonQuery[] =
    "SELECT First,Last,Organization FROM ABPerson WHERE ROWID=?";
constexpr char kPhonesQuery[] =
    "SELECT ABMultiValue.value,ABMultiValueLabel.value FROM ABMultiValue "
    "LEFT JOIN ABMultiValueLabel ON ABMultiValueLabel.ROWID=ABMultiValue.label "
    "WHERE record_id=? AND property=? ORDER BY identifier,UID";

}  // namespace

std::unique_ptr<ABAddressBookHandle> ABAddressBookHandle::create() {
  auto handle = std::make_unique<ABAddressBookHandle>(
      platform::current().path(platform_schema::kAddressBookPath));
  // An unreadable file opens lazily in SQLite; ask it for the people once.
  sql::Statement probe(handle->db_, kCountQuery);
  if (!handle->db_.ok() || !probe.ok() || !probe.step()) return nullptr;
  return handle;
}

ABAddressBookHandle::ABAddressBookHandle(const std::string& hostPath)
    : db_(hostPath) {}

int ABAddressBookHandle::personCount() const {
  sql::Statement q(db_, kCountQuery);
  return q.step() ? static_cast<int>(q.int64(0)) : 0;
}

std::vector<ABAddressBookHandle::Group> ABAddressBookHandle::groups() const {
  std::vector<Group> out;
  sql::Statement q(db_, kGroupsQuery);
  while (q.step()) {
    Group g;
    g.name = q.text(1).value_or("");
    sql::Statement members(db_, kMembersQuery);
    members.bind(1, q.int64(0));
    while (members.step())
      g.members.push_back(static_cast<int32_t>(members.int64(0)));
    out.push_back(std::move(g));
  }
  return out;
}

std::vector<int32_t> ABAddressBookHandle::allPeople() const {
  std::vector<int32_t> out;
  sql::Statement q(db_, kPeopleQuery);
  while (q.step()) out.push_back(static_cast<int32_t>(q.int64(0)));
  return out;
}

std::vector<std::vector<std::string>> ABAddressBookHandle::phoneEntries(
    const std::vector<int32_t>& people) const {
  std::vector<std::vector<std::string>> out;
  const bool lastFirst = platform::current().device().nameOrderLastFirst;
  for (int32_t id : people) {
    sql::Statement person(db_, kPersonQuery);
    person.bind(1, int64_t{id});
    if (!person.step()) continue;
    const std::string first = person.text(0).value_or("");
    const std::string last = person.text(1).value_or("");
    // Names in Chinese characters read family name first, as the platform
    // composes them.
    auto wide = [](const std::string& t) {
      return t.empty() || static_cast<unsigned char>(t[0]) >= 0x80;
    };
    std::string name = composeDisplayName(
        first, last, nullptr, lastFirst || (wide(first) && wide(last)));
    if (name.empty()) name = person.text(2).value_or("");
    sql::Statement phones(db_, kPhonesQuery);
    phones.bind(1, int64_t{id});
    phones.bind(2, platform_schema::kPhoneProperty);
    while (phones.step()) {
      auto number = phones.text(0);
      if (!number || number->empty()) continue;
      auto label = phones.text(1);
      out.push_back({*number, name, label ? copyLocalizedLabel(*label) : ""});
    }
  }
  return out;
}

}  // namespace zv
