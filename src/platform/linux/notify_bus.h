// System-wide notifications between real processes: a folder of Unix
// datagram sockets, one per listening process. send() writes the name to
// every socket in the folder (removing sockets of processes that are gone);
// a listening bus reads names on a background thread and hands each one to
// its callback.
//
// Anyone who can write to the folder can send anything: a datagram counts
// only when it is a whole name (1 to kMaxName bytes of UTF-8 text without
// control characters); a longer datagram is not cut down to one, and other
// bytes are dropped unseen. send() sends nothing that is not a name.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace zv::platform {

class NotifyBus {
 public:
  NotifyBus(std::string folder, std::function<void(const std::string&)> onName);
  ~NotifyBus();
  NotifyBus(const NotifyBus&) = delete;
  NotifyBus& operator=(const NotifyBus&) = delete;

  // Starts listening (once); later calls do nothing.
  void listen();
  static void send(const std::string& folder, const std::string& name);

  static constexpr size_t kMaxName = 255;
  static bool isName(std::string_view bytes);
  // Reads one datagram from `fd` (which has one waiting): the name it
  // carries, or nullopt.
  static std::optional<std::string> receiveName(int fd);

 private:
  std::string folder_, socket_path_;
  std::function<void(const std::string&)> on_name_;
  int fd_ = -1;
  int wake_[2] = {-1, -1};
  std::thread thread_;
};

}  // namespace zv::platform
