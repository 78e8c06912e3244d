#include "tools/zorvel/phone_setup/phone_services.h"

#include "callscreens/call_blocking_policy.h"
#include "platform/linux/linux_platform.h"

namespace zv::cli {

PhoneServices::PhoneServices(GDBusConnection* session, const Options& options,
                             std::function<void()> soundPlayed,
                             std::function<void(const std::string&)> log) {
  auto& platform = platform::LinuxPlatform::instance();
  if (options.feedback) {
    feedback_ = std::make_unique<platform::FeedbackEvents>(session);
    feedback_->onProblem(log);
  }
  platform::FeedbackEvents* feedback = feedback_.get();
  platform.onSystemSound([feedback, soundPlayed, &platform](uint32_t id) {
    if (soundPlayed) soundPlayed();
    if (!feedback) return;
    // The only sounds the call hosts play are the block reminder's.
    if (id == CallBlockingPolicy::kVibrateSoundID) {
      feedback->vibrate(platform::FeedbackEvents::kBlockedCall);
    } else if (const std::string file = platform.soundFile(id); !file.empty()) {
      feedback->play(platform::FeedbackEvents::kBlockedCall, file);
    }
  });
  platform.onVibration([feedback](uint32_t, const Dict&) {
    if (feedback) feedback->vibrate(platform::FeedbackEvents::kCallConnected);
  });
  if (options.contacts)
    contacts_ = std::make_unique<ContactsFollower>(
        platform.root(), [log](std::string line) { log(line); });
}

PhoneServices::~PhoneServices() {
  auto& platform = platform::LinuxPlatform::instance();
  platform.onSystemSound(nullptr);
  platform.onVibration(nullptr);
  contacts_.reset();
}

}  // namespace zv::cli
