// Desktop notifications through the session's notification server
// (org.freedesktop.Notifications on the session bus, over GIO): what
// `zorvel callerd` shows of a call. Calls are asynchronous on the default
// main context; a server that is missing or answers with an error costs
// one line through the problem callback, never the service.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

typedef struct _GDBusConnection GDBusConnection;
typedef struct _GCancellable GCancellable;
typedef struct _GVariant GVariant;
typedef struct _GError GError;

namespace zv::cli {

struct DesktopNotification {
  enum class Kind {
    kCall,      // a call ringing now: urgent, until closed
    kReminder,  // a quiet note that a call was blocked
    kMissed,    // stays until the user dismisses it
  };
  Kind kind = Kind::kCall;
  std::string summary;
  std::string body;
};

class DesktopNotifications {
 public:
  // `session` is kept referenced.
  explicit DesktopNotifications(GDBusConnection* session);
  ~DesktopNotifications();
  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;

  void onProblem(std::function<void(const std::string&)> callback) {
    problem_ = std::move(callback);
  }
  // Shows `n` under our key; a later show or close with the same key
  // replaces or closes it (key 0: not kept).
  void show(const DesktopNotification& n, uint64_t key = 0);
  void close(uint64_t key);

 private:
  void answered(uint64_t key, GVariant* reply, GError* error);
  void closeId(uint32_t id);

  GDBusConnection* session_;
  GCancellable* cancellable_;
  // Our key to the server's id; 0 while the server has not answered.
  std::map<uint64_t, uint32_t> ids_;
  std::map<uint64_t, bool> close_when_shown_;
  std::function<void(const std::string&)> problem_;
};

}  // namespace zv::cli
