// An address-book person record of the host (sdk::ABRecord) as the address
// book service sees one (ABPersonRecord). The record id and whether it has
// a picture are read when it is made, on the main thread; the picture's
// bytes are asked for when needed, from whichever thread loads the picture.
#pragma once

#include <memory>

#include "platform/runtime/object.h"
#include "search/address_book.h"

namespace zv {

class RuntimePersonRecord : public ABPersonRecord {
 public:
  // Null for a nil record or an object that is no record.
  static std::shared_ptr<const ABPersonRecord> wrap(const rt::Id& record);

  int32_t recordId() const override { return id_; }
  bool hasImageData() const override { return has_image_; }
  std::string copyImageData(int format) const override;

 private:
  RuntimePersonRecord(rt::Id record, int32_t id, bool hasImage)
      : record_(std::move(record)), id_(id), has_image_(hasImage) {}
  rt::Id record_;
  int32_t id_;
  bool has_image_;
};

}  // namespace zv
