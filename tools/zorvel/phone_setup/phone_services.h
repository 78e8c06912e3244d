// What zorvel callerd takes from a Linux phone's session besides
// ModemManager: the user's contacts, kept in step from Evolution Data
// Server while it runs (contacts_sync.h), and the platform's sounds and
// vibrations played through feedbackd (the block reminder's vibration and
// sound, the vibration when a call connects). Either may be missing; the
// service runs on without it and says so once in its log.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/feedback_events.h"
#include "tools/zorvel/phone_setup/contacts_sync.h"

namespace zv::cli {

class PhoneServices {
 public:
  struct Options {
    bool contacts = true;  // follow Evolution Data Server
    bool feedback = true;  // play through feedbackd
  };
  // `soundPlayed` runs for every system sound the hosts play, before it is
  // passed on; `log` gets the problems.
  PhoneServices(GDBusConnection* session, const Options& options,
                std::function<void()> soundPlayed,
                std::function<void(const std::string&)> log);
  ~PhoneServices();
  PhoneServices(const PhoneServices&) = delete;
  PhoneServices& operator=(const PhoneServices&) = delete;

 private:
  std::unique_ptr<platform::FeedbackEvents> feedback_;
  std::unique_ptr<ContactsFollower> contacts_;
};

}  // namespace zv::cli
