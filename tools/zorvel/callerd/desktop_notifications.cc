#include "tools/zorvel/callerd/desktop_notifications.h"

#include <gio/gio.h>

#include <memory>

namespace zv::cli {
namespace {

constexpr char kService[] = "org.freedesktop.Notifications";
constexpr char kPath[] = "/org/freedesktop/Notifications";
constexpr char kAppName[] = "Zorvel";

struct Pending {
  DesktopNotifications* self;
  uint64_t key;
  GCancellable* cancellable;
};

}  // namespace

DesktopNotifications::DesktopNotifications(GDBusConnection* session)
    : session_(G_DBUS_CONNECTION(g_object_ref(session))) {
  cancellable_ = g_cancellable_new();
}

DesktopNotifications::~DesktopNotifications() {
  g_cancellable_cancel(cancellable_);
  g_object_unref(cancellable_);
  g_object_unref(session_);
}

void DesktopNotifications::show(const DesktopNotification& n, uint64_t key) {
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
  int32_t timeout = -1;
  switch (n.kind) {
    case DesktopNotification::Kind::kCall:
      g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(2));
      g_variant_builder_add(&hints, "{sv}", "category",
                            g_variant_new_string("call.incoming"));
      timeout = 0;  // it goes when the call stops ringing
      break;
    case DesktopNotification::Kind::kReminder:
      g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(0));
      g_variant_builder_add(&hints, "{sv}", "suppress-sound",
                            g_variant_new_boolean(TRUE));
      g_variant_builder_add(&hints, "{sv}", "transient",
                            g_variant_new_boolean(TRUE));
      break;
    case DesktopNotification::Kind::kMissed:
      g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(1));
      g_variant_builder_add(&hints, "{sv}", "category",
                            g_variant_new_string("call.missed"));
      g_variant_builder_add(&hints, "{sv}", "resident",
                            g_variant_new_boolean(TRUE));
      timeout = 0;  // stays until dismissed
      break;
  }
  uint32_t replaces = 0;
  if (auto it = ids_.find(key); key && it != ids_.end()) replaces = it->second;
  if (key) ids_.emplace(key, 0);
  GVariant* args = g_variant_new("(susssasa{sv}i)", kAppName, replaces, "",
                                 n.summary.c_str(), n.body.c_str(), nullptr,
                                 &hints, timeout);
  g_dbus_connection_call(
      session_, kService, kPath, kService, "Notify", args,
      G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable_,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        std::unique_ptr<Pending> p(static_cast<Pending*>(data));
        GError* error = nullptr;
        GVariant* reply = g_dbus_connection_call_finish(
            G_DBUS_CONNECTION(source), result, &error);
        if (g_cancellable_is_cancelled(p->cancellable)) {
          if (reply) g_variant_unref(reply);
          if (error) g_error_free(error);
          g_object_unref(p->cancellable);
          return;
        }
        g_object_unref(p->cancellable);
        p->self->answered(p->key, reply, error);
      },
      new Pending{this, key, G_CANCELLABLE(g_object_ref(cancellable_))});
}

void DesktopNotifications::answered(uint64_t key, GVariant* reply,
                                    GError* error) {
  if (error) {
    if (problem_)
      problem_(std::string("the desktop notification was not shown: ") +
               error->message);
    g_error_free(error);
    ids_.erase(key);
    close_when_shown_.erase(key);
    return;
  }
  uint32_t id = 0;
  g_variant_get(reply, "(u)", &id);
  g_variant_unref(reply);
  if (!key) return;
  if (close_when_shown_.erase(key)) {
    ids_.erase(key);
    closeId(id);
    return;
  }
  if (auto it = ids_.find(key); it != ids_.end()) it->second = id;
}

void DesktopNotifications::close(uint64_t key) {
  auto it = ids_.find(key);
  if (it == ids_.end()) return;
  if (it->second == 0) {
    close_when_shown_[key] = true;  // the server has not answered yet
    return;
  }
  closeId(it->second);
  ids_.erase(it);
}

void DesktopNotifications::closeId(uint32_t id) {
  g_dbus_connection_call(session_, kService, kPath, kService,
                         "CloseNotification", g_variant_new("(u)", id), nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, cancellable_, nullptr,
                         nullptr);
}

}  // namespace zv::cli
