#include "platform/db/ab_person.h"

#include "platform/db/contact_lookup.h"
#include "platform/db/platform_schema.h"
#include "platform/db/sqlite_db.h"
#include "platform/platform.h"
#include "platform/process.h"

namespace zv::platform_schema {
namespace {

constexpr char kNameQuery[] =
    "SELECT First,Last,Organization FROM ABPerson WHERE ROWID=?";
constexpr char kImageQuery[] =
    "SELECT data FROM ABThumbnailImage WHERE record_id=? AND format>=? "
    "ORDER BY format ASC";

rt::Class* personClass() {
  rt::Runtime& runtime = platform::Process::current().runtime();
  if (rt::Class* c = runtime.getClass(ABPersonRef::kClassName)) return c;
  return runtime.registerClass(ABPersonRef::kClassName);
}

}  // namespace

bool ABPersonRef::hasImageData() const {
  return !copyImageData(kThumbnailFormat).empty();
}

std::string ABPersonRef::copyImageData(int format) const {
  sql::Database db(platform::current().path(kAddressBookImagesPath));
  sql::Statement q(db, kImageQuery);
  q.bind(1, int64_t{recordId});
  q.bind(2, format);
  while (q.step()) {
    std::string_view data = q.blob(0);
    if (!data.empty()) return std::string(data);
  }
  return "";
}

std::shared_ptr<ABPersonRef> personWithRecordId(int32_t recordId) {
  sql::Database db(platform::current().path(kAddressBookPath));
  sql::Statement q(db, kNameQuery);
  q.bind(1, int64_t{recordId});
  if (!q.step()) return nullptr;
  auto person = rt::create<ABPersonRef>(personClass());
  person->recordId = recordId;
  const std::string first = q.text(0).value_or("");
  const std::string last = q.text(1).value_or("");
  const bool lastFirst = platform::current().device().nameOrderLastFirst;
  const std::string& a = lastFirst ? last : first;
  const std::string& b = lastFirst ? first : last;
  // Names in Chinese characters read family name first, with no space.
  const bool cjk =
      (first.empty() || static_cast<unsigned char>(first[0]) >= 0x80) &&
      (last.empty() || static_cast<unsigned char>(last[0]) >= 0x80);
  if (cjk)
    person->compositeName = last + first;
  else
    person->compositeName = a.empty() ? b : b.empty() ? a : a + " " + b;
  if (person->compositeName.empty())
    person->compositeName = q.text(2).value_or("");
  return person;
}

std::shared_ptr<ABPersonRef> personForNumber(std::string_view number) {
  auto match =
      findContactByNumber(platform::current().path(kAddressBookPath), number);
  if (!match) return nullptr;
  auto person = personWithRecordId(static_cast<int32_t>(match->recordId));
  if (person) person->label = match->label;
  return person;
}

}  // namespace zv::platform_schema
