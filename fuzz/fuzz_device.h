// Shared by the fuzz targets that need a device: one simulated world on a
// temporary root and one Phone process, made on first use and kept for the
// whole run (a process per input would cost more than the input itself).
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/sim/sim_platform.h"

namespace zv::fuzz {

struct Device {
  std::string root;
  platform::SimWorld* world;
  platform::SimProcess* phone;
};

inline Device& device() {
  // Never destroyed: the fuzzer exits from inside a run, and the clean-up
  // below still needs it then.
  static Device* d = [] {
    std::string root = (std::filesystem::temp_directory_path() /
                        ("zvfuzz." + std::to_string(::getpid())))
                           .string();
    std::filesystem::create_directories(root);
    auto* world = new platform::SimWorld(root);
    auto* out =
        new Device{root, world, &world->launch("com.apple.mobilephone")};
    std::atexit([] {
      std::error_code ec;
      std::filesystem::remove_all(device().root, ec);
    });
    return out;
  }();
  return *d;
}

// Reads fuzz bytes front to back; past the end every read gives zero/empty.
class Bytes {
 public:
  Bytes(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool empty() const { return at_ >= size_; }
  uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
  int64_t int64() {
    uint64_t v = 0;
    for (int i = 0; i < 8; ++i) v = v << 8 | byte();
    return static_cast<int64_t>(v);
  }
  std::string_view text(size_t max) {
    size_t n =
        std::min<size_t>(byte() % (max + 1), size_ - std::min(at_, size_));
    std::string_view out(reinterpret_cast<const char*>(data_) + at_, n);
    at_ += n;
    return out;
  }
  // The next `n` bytes (fewer at the end).
  std::string_view take(size_t n) {
    const size_t left = size_ - std::min(at_, size_);
    std::string_view out(reinterpret_cast<const char*>(data_) + at_,
                         std::min(n, left));
    at_ += out.size();
    return out;
  }
  // Everything not read yet.
  std::string_view rest() { return take(size_); }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

}  // namespace zv::fuzz
