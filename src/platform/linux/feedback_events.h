// Sounds and vibration on a Linux phone through feedbackd, the feedback
// daemon of Phosh ("org.sigxcpu.Feedback" on the session bus): each
// trigger asks it to run one event of the user's feedback theme (which
// vibrates, plays or blinks as the theme and the user's profile say).
//
// A trigger never waits: the call is sent and its answer read later on the
// main loop. Without the daemon (not installed, not running) nothing
// fails; the first failure is reported once through onProblem.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>

namespace zv::platform {

class FeedbackEvents {
 public:
  // The events this system triggers. A vibration alone is asked for with
  // the "quiet" profile (haptic only); a sound with the "full" profile and
  // the sound file as the event's sound, which daemons that know the
  // "sound-file" hint play instead of the theme's.
  static constexpr char kBlockedCall[] = "notification-missed-generic";
  static constexpr char kCallConnected[] = "button-pressed";

  explicit FeedbackEvents(GDBusConnection* session,
                          std::string appId = "org.zorvel.Callerd");
  ~FeedbackEvents();
  FeedbackEvents(const FeedbackEvents&) = delete;
  FeedbackEvents& operator=(const FeedbackEvents&) = delete;

  void vibrate(const char* event);
  void play(const char* event, const std::string& soundFile);
  void onProblem(std::function<void(const std::string&)> handler);

 private:
  void trigger(const char* event, const char* profile,
               const std::string& soundFile);
  static void answered(GObject* source, GAsyncResult* result, gpointer call);

  GDBusConnection* bus_;
  std::string app_id_;
  std::function<void(const std::string&)> on_problem_;
  bool reported_ = false;
  // Answers still on their way hold this alive-flag, not the object.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace zv::platform
