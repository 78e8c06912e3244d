// Fills the address book's picture table with rows of any type and size
// taken from the input (the picture bytes themselves anything from a valid
// PNG or JPEG to garbage, a number or NULL), then loads every contact's
// picture as the lists do: through the record, through the avatar service at
// the lists' sizes, and the user's own picture.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "fuzz/fuzz_rows.h"
#include "platform/db/ab_person.h"
#include "platform/process.h"
#include "search/address_book.h"

namespace {

// The platform's record, as the hooks hand it to the service.
class FuzzPerson : public zv::ABPersonRecord {
 public:
  explicit FuzzPerson(std::shared_ptr<zv::platform_schema::ABPersonRef> ref)
      : ref_(std::move(ref)) {}
  int32_t recordId() const override { return ref_->recordId; }
  bool hasImageData() const override { return ref_->hasImageData(); }
  std::string copyImageData(int format) const override {
    return ref_->copyImageData(format);
  }

 private:
  std::shared_ptr<zv::platform_schema::ABPersonRef> ref_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  namespace ps = zv::platform_schema;
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  const std::string file = d.root + ps::kAddressBookImagesPath;
  std::filesystem::remove(file);
  if (ps::createDatabase(file, ps::Database::kAddressBookImages)) {
    zv::sql::Database db(file, zv::sql::Database::Mode::kReadWrite);
    zv::sql::Statement stmt(db,
                            "INSERT OR REPLACE INTO ABThumbnailImage"
                            "(record_id,format,data) VALUES(?,?,?)");
    for (int rows = in.byte() % 6; rows > 0 && !in.empty() && stmt.ok();
         --rows) {
      zv::fuzz::bindValue(stmt, 1, in);
      zv::fuzz::bindValue(stmt, 2, in, 4);
      // Mostly a picture of up to 64 KiB, sometimes a value of any type.
      if (in.byte() % 4 == 0) {
        zv::fuzz::bindValue(stmt, 3, in);
      } else {
        size_t length = size_t{in.byte()} << 8 | in.byte();
        stmt.bindBlob(3, in.take(length));
      }
      stmt.step();
      stmt.reset();
    }
  }
  d.phone->run([] {
    // A fresh service: the shared one would answer from its cache.
    zv::ZVAddressBook book;
    zv::rt::Runtime& runtime = zv::platform::Process::current().runtime();
    zv::rt::Class* cls = runtime.getClass(ps::ABPersonRef::kClassName);
    if (!cls) cls = runtime.registerClass(ps::ABPersonRef::kClassName);
    for (int32_t id = -3; id < 8; ++id) {
      auto ref = zv::rt::create<ps::ABPersonRef>(cls);
      ref->recordId = id;
      FuzzPerson person(ref);
      (void)book.getAvatar(id, nullptr, {40, 40}, true);
      (void)book.getAvatar(id, &person, {36, 36}, false);
      (void)book.getAvatar(id, {50, 50});
    }
    (void)book.getMyAvatarWithSize({44, 44});
  });
  return 0;
}
