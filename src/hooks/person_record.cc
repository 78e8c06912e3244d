#include "hooks/person_record.h"

#include "hostsdk/contacts.h"
#include "platform/runtime/message.h"

namespace zv {

using Record = sdk::ABRecord;

std::shared_ptr<const ABPersonRecord> RuntimePersonRecord::wrap(
    const rt::Id& record) {
  if (!record || !rt::respondsTo(record, Record::recordID)) return nullptr;
  return std::shared_ptr<const ABPersonRecord>(
      new RuntimePersonRecord(record, rt::send(record, Record::recordID),
                              rt::trySend(record, Record::hasImageData)));
}

std::string RuntimePersonRecord::copyImageData(int format) const {
  return rt::trySend(record_, Record::copyImageDataWithFormat, format);
}

}  // namespace zv
