// Sends arbitrary bytes as one datagram to a notification socket (anyone
// who can write to the notify folder can) and reads it the way a listening
// process does: a name is delivered only when the datagram is a whole
// name, byte for byte (never the first bytes of a longer datagram), and
// every name a process may post arrives.
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/notify_bus.h"
#include "platform/utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using zv::platform::NotifyBus;
  static int fds[2] = {-1, -1};
  if (fds[0] < 0 &&
      ::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, fds) != 0)
    std::abort();
  const std::string_view sent(reinterpret_cast<const char*>(data), size);
  // (An empty datagram is a datagram too.)
  if (::send(fds[0], data, size, MSG_DONTWAIT) != static_cast<ssize_t>(size))
    return 0;  // larger than the socket takes: never arrives at all
  const auto received = NotifyBus::receiveName(fds[1]);
  bool isName =
      size > 0 && size <= NotifyBus::kMaxName && zv::isValidUtf8(sent);
  for (unsigned char c : sent)
    if (c < 0x20 || c == 0x7f) isName = false;
  if (received.has_value() != isName) std::abort();
  if (received && *received != sent) std::abort();
  return 0;
}
