// MappedFile: the bytes of a whole regular file, mapped read-only for as
// long as the object lives.
//
// ok() is false when the path cannot be opened or is not a regular file
// (a directory, say); an empty file is ok with no bytes. The mapping is
// private and populated up front, so reading it costs no copy and no fault
// per page. Files that are replaced by rename while mapped stay readable;
// one truncated in place under the mapping would fault, which is why every
// file that is read this way is written whole and renamed into place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zv::platform {

class MappedFile {
 public:
  explicit MappedFile(const std::string& path);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  bool ok() const { return ok_; }
  std::string_view bytes() const {
    return {static_cast<const char*>(data_), size_};
  }

 private:
  void* data_ = nullptr;
  size_t size_ = 0;
  bool ok_ = false;
};

}  // namespace zv::platform
