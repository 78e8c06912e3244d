#include "hosts/contacts/records.h"

#include "hostsdk/contacts.h"
#include "platform/runtime/message.h"
#include "platform/ui/view.h"

namespace zv::hosts {

using ui::self;

void registerRecordClasses() {
  rt::registerClass<HostRecord>(sdk::ABRecord::kName);
  rt::define(sdk::ABRecord::recordID,
             [](const rt::Id& s) { return self<HostRecord>(s).recordId; });
  rt::define(sdk::ABRecord::hasImageData,
             [](const rt::Id& s) { return self<HostRecord>(s).hasImage; });
  // The database is read afresh on every call, so that any thread may ask.
  rt::define(sdk::ABRecord::copyImageDataWithFormat, [](const rt::Id& s, int) {
    return contactImageData(self<HostRecord>(s).recordId);
  });

  rt::registerClass<ModelPerson>(sdk::ABModelPerson::kName);
  rt::define(sdk::ABModelPerson::name,
             [](const rt::Id& s) { return self<ModelPerson>(s).name; });
  rt::define(sdk::ABModelPerson::record, [](const rt::Id& s) {
    return rt::Id(self<ModelPerson>(s).record);
  });

  rt::registerClass<ContactObject>(sdk::ABContact::kName);
  rt::define(sdk::ABContact::recordID, [](const rt::Id& s) {
    return self<ContactObject>(s).contact.recordId;
  });
}

std::shared_ptr<HostRecord> makeRecord(const Contact& contact) {
  if (contact.recordId == -1) return nullptr;
  auto record = std::dynamic_pointer_cast<HostRecord>(
      rt::alloc(rt::getClass(sdk::ABRecord::kName)));
  record->recordId = contact.recordId;
  record->hasImage = contact.hasImage;
  return record;
}

}  // namespace zv::hosts
