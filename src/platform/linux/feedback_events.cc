#include "platform/linux/feedback_events.h"

namespace zv::platform {
namespace {

constexpr char kService[] = "org.sigxcpu.Feedback";
constexpr char kPath[] = "/org/sigxcpu/Feedback";
// The daemon ends the event when its feedbacks are done.
constexpr int kTimeoutDefault = -1;

struct Pending {
  std::shared_ptr<bool> alive;
  FeedbackEvents* events;
};

}  // namespace

FeedbackEvents::FeedbackEvents(GDBusConnection* session, std::string appId)
    : bus_(session ? G_DBUS_CONNECTION(g_object_ref(session)) : nullptr),
      app_id_(std::move(appId)) {}

FeedbackEvents::~FeedbackEvents() {
  *alive_ = false;
  if (bus_) g_object_unref(bus_);
}

void FeedbackEvents::onProblem(
    std::function<void(const std::string&)> handler) {
  on_problem_ = std::move(handler);
}

void FeedbackEvents::vibrate(const char* event) { trigger(event, "quiet", ""); }

void FeedbackEvents::play(const char* event, const std::string& soundFile) {
  trigger(event, "full", soundFile);
}

void FeedbackEvents::trigger(const char* event, const char* profile,
                             const std::string& soundFile) {
  if (!bus_) return;
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&hints, "{sv}", "profile",
                        g_variant_new_string(profile));
  if (!soundFile.empty())
    g_variant_builder_add(&hints, "{sv}", "sound-file",
                          g_variant_new_string(soundFile.c_str()));
  g_dbus_connection_call(bus_, kService, kPath, kService, "TriggerFeedback",
                         g_variant_new("(ssa{sv}i)", app_id_.c_str(), event,
                                       &hints, kTimeoutDefault),
                         G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1,
                         nullptr, answered, new Pending{alive_, this});
}

void FeedbackEvents::answered(GObject* source, GAsyncResult* result,
                              gpointer call) {
  std::unique_ptr<Pending> pending(static_cast<Pending*>(call));
  GError* error = nullptr;
  GVariant* reply =
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
  if (reply) g_variant_unref(reply);
  if (!error) return;
  const std::string why = error->message;
  g_error_free(error);
  FeedbackEvents* self = pending->events;
  if (!*pending->alive || self->reported_) return;
  self->reported_ = true;
  if (self->on_problem_)
    self->on_problem_("no sounds or vibration through feedbackd: " + why);
}

}  // namespace zv::platform
