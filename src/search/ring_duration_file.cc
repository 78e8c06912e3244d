#include "search/ring_duration_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/plist.h"
#include "platform/value.h"

namespace zv::ring_duration_file {
namespace {

// Holds an exclusive flock on "<path>.lock" for its lifetime. The lock file
// is never removed: deleting it while another process waits on it would
// let a third process lock a new file and run at the same time.
class FileLock {
 public:
  explicit FileLock(const std::string& path, bool wait = true) {
    std::error_code ec;
    std::filesystem::create_directories(
        std::filesystem::path(path).parent_path(), ec);
    fd_ = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd_ < 0) return;
    while (::flock(fd_, wait ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
      if (errno != EINTR) {
        busy_ = errno == EWOULDBLOCK;
        ::close(fd_);
        fd_ = -1;
        return;
      }
    }
  }
  ~FileLock() {
    if (fd_ >= 0) ::close(fd_);  // closing releases the lock
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  bool held() const { return fd_ >= 0; }
  // Not held because another process holds it (only without waiting).
  bool busy() const { return busy_; }

 private:
  int fd_ = -1;
  bool busy_ = false;
};

// The read-modify-write of storeFirst, under `lock`.
Stored storeLocked(const FileLock& lock, const std::string& path,
                   const std::string& key, int64_t seconds) {
  if (!lock.held()) return Stored::kNotWritten;
  Dict durations = plist::readDictionary(path).value_or(Dict{});
  auto it = durations.find(key);
  if (it != durations.end() && it->second.longLongValue() != 0)
    return Stored::kKept;
  durations[key] = Value(seconds);
  return plist::writeFile(path, Value(std::move(durations)))
             ? Stored::kWritten
             : Stored::kNotWritten;
}

}  // namespace

Stored storeFirst(const std::string& path, const std::string& key,
                  int64_t seconds) {
  return storeLocked(FileLock(path), path, key, seconds);
}

Stored storeFirstNow(const std::string& path, const std::string& key,
                     int64_t seconds) {
  FileLock lock(path, false);
  if (lock.busy()) return Stored::kBusy;
  return storeLocked(lock, path, key, seconds);
}

bool remove(const std::string& path, const std::vector<std::string>& keys) {
  FileLock lock(path);
  if (!lock.held()) return false;
  std::optional<Dict> durations = plist::readDictionary(path);
  if (!durations) return false;
  size_t removed = 0;
  for (const std::string& key : keys) removed += durations->erase(key);
  if (removed == 0) return false;
  return plist::writeFile(path, Value(std::move(*durations)));
}

}  // namespace zv::ring_duration_file
