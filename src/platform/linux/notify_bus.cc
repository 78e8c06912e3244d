#include "platform/linux/notify_bus.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/utf8.h"

namespace zv::platform {
namespace {

// A socket address for `file` in `folder`. A Unix socket path holds at most
// 107 bytes, less than a device root in a deep temporary folder may need;
// then the address goes through an open handle of the folder
// ("/proc/self/fd/N/file"), which the caller closes once done with it.
class SocketAddress {
 public:
  SocketAddress(const std::string& folder, const std::string& file) {
    std::memset(&addr_, 0, sizeof addr_);
    addr_.sun_family = AF_UNIX;
    std::string path = folder + "/" + file;
    if (path.size() >= sizeof addr_.sun_path) {
      dir_ = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
      if (dir_ < 0) return;
      path = "/proc/self/fd/" + std::to_string(dir_) + "/" + file;
      if (path.size() >= sizeof addr_.sun_path) return;
    }
    std::memcpy(addr_.sun_path, path.c_str(), path.size() + 1);
    ok_ = true;
  }
  ~SocketAddress() {
    if (dir_ >= 0) ::close(dir_);
  }
  SocketAddress(const SocketAddress&) = delete;
  SocketAddress& operator=(const SocketAddress&) = delete;

  bool ok() const { return ok_; }
  const sockaddr* get() const {
    return reinterpret_cast<const sockaddr*>(&addr_);
  }
  socklen_t size() const { return sizeof addr_; }

 private:
  sockaddr_un addr_;
  int dir_ = -1;
  bool ok_ = false;
};

}  // namespace

NotifyBus::NotifyBus(std::string folder,
                     std::function<void(const std::string&)> onName)
    : folder_(std::move(folder)), on_name_(std::move(onName)) {}

NotifyBus::~NotifyBus() {
  if (thread_.joinable()) {
    char c = 0;
    (void)!::write(wake_[1], &c, 1);
    thread_.join();
  }
  if (fd_ >= 0) ::close(fd_);
  for (int fd : wake_)
    if (fd >= 0) ::close(fd);
  if (!socket_path_.empty()) ::unlink(socket_path_.c_str());
}

void NotifyBus::listen() {
  if (fd_ >= 0) return;
  std::error_code ec;
  std::filesystem::create_directories(folder_, ec);
  const std::string file = std::to_string(::getpid()) + ".sock";
  SocketAddress addr(folder_, file);
  if (!addr.ok()) return;
  socket_path_ = folder_ + "/" + file;
  ::unlink(socket_path_.c_str());
  fd_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd_ < 0) return;
  if (::bind(fd_, addr.get(), addr.size()) != 0 ||
      ::pipe2(wake_, O_CLOEXEC) != 0) {
    ::close(fd_);
    fd_ = -1;
    return;
  }
  thread_ = std::thread([this] {
    pollfd fds[2] = {{fd_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
    for (;;) {
      if (::poll(fds, 2, -1) < 0) {
        if (errno == EINTR) continue;
        return;
      }
      if (fds[1].revents) return;
      if (auto name = receiveName(fd_)) on_name_(*name);
    }
  });
}

bool NotifyBus::isName(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > kMaxName || !isValidUtf8(bytes))
    return false;
  for (unsigned char c : bytes)
    if (c < 0x20 || c == 0x7f) return false;
  return true;
}

std::optional<std::string> NotifyBus::receiveName(int fd) {
  char buf[kMaxName + 1];
  // MSG_TRUNC: the datagram's whole length, so a longer one is seen as
  // such rather than as its first bytes.
  const ssize_t n = ::recv(fd, buf, sizeof buf, MSG_TRUNC | MSG_DONTWAIT);
  if (n <= 0 || static_cast<size_t>(n) > kMaxName) return std::nullopt;
  std::string_view bytes(buf, static_cast<size_t>(n));
  if (!isName(bytes)) return std::nullopt;
  return std::string(bytes);
}

void NotifyBus::send(const std::string& folder, const std::string& name) {
  if (!isName(name)) return;
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return;
  int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) {
    ::closedir(dir);
    return;
  }
  while (dirent* entry = ::readdir(dir)) {
    std::string file = entry->d_name;
    if (file.size() < 6 || file.compare(file.size() - 5, 5, ".sock") != 0)
      continue;
    SocketAddress addr(folder, file);
    if (!addr.ok()) continue;
    if (::sendto(fd, name.data(), name.size(), MSG_DONTWAIT, addr.get(),
                 addr.size()) < 0 &&
        errno == ECONNREFUSED) {
      ::unlink((folder + "/" + file).c_str());  // its process is gone
    }
  }
  ::close(fd);
  ::closedir(dir);
}

}  // namespace zv::platform
