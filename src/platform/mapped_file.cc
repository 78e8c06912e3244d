#include "platform/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv::platform {

MappedFile::MappedFile(const std::string& path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return;
  struct stat st;
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return;
  }
  const size_t size = static_cast<size_t>(st.st_size);
  if (size > 0) {
    void* map =
        ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
    if (map == MAP_FAILED) {
      ::close(fd);
      return;
    }
    data_ = map;
    size_ = size;
  }
  ::close(fd);  // the mapping keeps the file
  ok_ = true;
}

MappedFile::~MappedFile() {
  if (data_) ::munmap(data_, size_);
}

}  // namespace zv::platform
