// ABRecordRef of a person, as the platform's frameworks hand it to an
// application (Messages' CKEntity abRecord, for example): the record id, the
// composite name, and the picture data the address book functions
// (ABRecordGetRecordID, ABPersonHasImageData, ABPersonCopyImageDataWithFormat)
// read. Made from the device's address-book and picture databases.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/runtime/object.h"

namespace zv::platform_schema {

class ABPersonRef : public rt::Object {
 public:
  static constexpr const char* kClassName = "ABPerson";
  explicit ABPersonRef(rt::Class* isa) : rt::Object(isa) {}

  int32_t recordId = -1;
  std::string compositeName;
  // The stored label of the number the person was found by ("" none).
  std::string label;

  bool hasImageData() const;
  // The picture of `format` or the next larger one; "" when none.
  std::string copyImageData(int format) const;
};

// The person whose phone number is `number` (see contact_lookup.h), or
// null when no contact holds it.
std::shared_ptr<ABPersonRef> personForNumber(std::string_view number);
// The person with that record id, or null.
std::shared_ptr<ABPersonRef> personWithRecordId(int32_t recordId);

}  // namespace zv::platform_schema
