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

namespace zv::platform {
namespace {

bool fillAddress(const std::string& path, sockaddr_un& addr) {
  std::memset(&addr, 0, sizeof addr);
  addr.sun_family = AF_UNIX;
  if (path.size() >= sizeof addr.sun_path) return false;
  std::memcpy(addr.sun_path, path.c_str(), path.size() + 1);
  return true;
}

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
  socket_path_ = folder_ + "/" + std::to_string(::getpid()) + ".sock";
  sockaddr_un addr;
  if (!fillAddress(socket_path_, addr)) return;
  ::unlink(socket_path_.c_str());
  fd_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd_ < 0) return;
  if (::bind(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0 ||
      ::pipe2(wake_, O_CLOEXEC) != 0) {
    ::close(fd_);
    fd_ = -1;
    return;
  }
  thread_ = std::thread([this] {
    pollfd fds[2] = {{fd_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
    char buf[512];
    for (;;) {
      if (::poll(fds, 2, -1) < 0) {
        if (errno == EINTR) continue;
        return;
      }
      if (fds[1].revents) return;
      ssize_t n = ::recv(fd_, buf, sizeof buf, 0);
      if (n > 0) on_name_(std::string(buf, static_cast<size_t>(n)));
    }
  });
}

void NotifyBus::send(const std::string& folder, const std::string& name) {
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
    std::string path = folder + "/" + file;
    sockaddr_un addr;
    if (!fillAddress(path, addr)) continue;
    if (::sendto(fd, name.data(), name.size(), MSG_DONTWAIT,
                 reinterpret_cast<sockaddr*>(&addr), sizeof addr) < 0 &&
        errno == ECONNREFUSED) {
      ::unlink(path.c_str());  // its process is gone
    }
  }
  ::close(fd);
  ::closedir(dir);
}

}  // namespace zv::platform
