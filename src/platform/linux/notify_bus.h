// System-wide notifications between real processes: a folder of Unix
// datagram sockets, one per listening process. send() writes the name to
// every socket in the folder (removing sockets of processes that are gone);
// a listening bus reads names on a background thread and hands each one to
// its callback.
#pragma once

#include <atomic>
#include <functional>
#include <string>
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

 private:
  std::string folder_, socket_path_;
  std::function<void(const std::string&)> on_name_;
  int fd_ = -1;
  int wake_[2] = {-1, -1};
  std::thread thread_;
};

}  // namespace zv::platform
