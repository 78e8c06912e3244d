// Feeds arbitrary bytes as the black and white lists of a device
// ("zorvel.black.plist", "zorvel.white.plist") and asks the incoming-call
// controller whether numbers are on them: any file must read as a list of
// patterns (or none), and any pattern must match any number, its own keys
// included, without fault.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "callscreens/call_blocking_policy.h"
#include "callscreens/incoming_call_controller.h"
#include "fuzz/fuzz_device.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using zv::ZVIncomingCallController;
  auto& d = zv::fuzz::device();
  zv::fuzz::Bytes in(data, size);
  const std::string number(in.text(24));
  const auto bytes = in.rest();
  for (const char* path : {zv::CallBlockingPolicy::kBlacklistPath,
                           zv::CallBlockingPolicy::kWhitelistPath}) {
    const std::string file = d.root + path;
    std::filesystem::create_directories(
        std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
  }
  d.phone->run([&] {
    // One controller for the run: making one schedules its hook retries.
    static auto controller = ZVIncomingCallController::make();
    controller->unloadBlacklist();
    (void)controller->isInBlacklist(number);
    (void)controller->isInWhitelist(number);
    if (const auto& keys = controller->blacklist())
      for (const auto& key : *keys) (void)controller->isInWhitelist(key);
  });
  return 0;
}
