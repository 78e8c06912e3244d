#include "tools/zorvel/window/modem_dialer.h"

#include <gio/gio.h>

#include <string>

namespace zv::window {
namespace {

constexpr char kService[] = "org.freedesktop.ModemManager1";
constexpr char kRoot[] = "/org/freedesktop/ModemManager1";
constexpr char kVoice[] = "org.freedesktop.ModemManager1.Modem.Voice";
constexpr char kCall[] = "org.freedesktop.ModemManager1.Call";

// One dial on its way through the three requests; it holds the bus and
// the dialler's cancellable itself, so it may outlive the dialler.
struct Dial {
  Dial(GDBusConnection* b, GCancellable* c, std::string n,
       std::function<void(const std::string&)> d)
      : bus(G_DBUS_CONNECTION(g_object_ref(b))),
        cancellable(G_CANCELLABLE(g_object_ref(c))),
        number(std::move(n)),
        done(std::move(d)) {}
  ~Dial() {
    g_object_unref(cancellable);
    g_object_unref(bus);
  }
  Dial(const Dial&) = delete;
  Dial& operator=(const Dial&) = delete;

  GDBusConnection* bus;
  GCancellable* cancellable;
  std::string number;
  std::function<void(const std::string&)> done;

  void call(const char* path, const char* interface, const char* method,
            GVariant* args, const char* reply, GAsyncReadyCallback next) {
    g_dbus_connection_call(bus, kService, path, interface, method, args,
                           G_VARIANT_TYPE(reply), G_DBUS_CALL_FLAGS_NONE, -1,
                           cancellable, next, this);
  }
};

// The reply of a request; null after reporting the failure (or quietly,
// when the dialler went away) and ending the dial.
GVariant* replyOf(GObject* source, GAsyncResult* result, Dial* dial,
                  const char* what) {
  GError* error = nullptr;
  GVariant* reply =
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
  if (reply) return reply;
  if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
    g_dbus_error_strip_remote_error(error);
    dial->done(std::string("cannot call ") + dial->number + ": " + what +
               " failed: " + error->message);
  }
  g_error_free(error);
  delete dial;
  return nullptr;
}

void started(GObject* source, GAsyncResult* result, gpointer data) {
  auto* dial = static_cast<Dial*>(data);
  GVariant* reply = replyOf(source, result, dial, "Call.Start");
  if (!reply) return;
  g_variant_unref(reply);
  dial->done("");
  delete dial;
}

void created(GObject* source, GAsyncResult* result, gpointer data) {
  auto* dial = static_cast<Dial*>(data);
  GVariant* reply = replyOf(source, result, dial, "Voice.CreateCall");
  if (!reply) return;
  const gchar* path = nullptr;
  g_variant_get(reply, "(&o)", &path);
  dial->call(path, kCall, "Start", nullptr, "()", started);
  g_variant_unref(reply);
}

void listed(GObject* source, GAsyncResult* result, gpointer data) {
  auto* dial = static_cast<Dial*>(data);
  GVariant* reply = replyOf(source, result, dial, "finding a modem");
  if (!reply) return;
  std::string modem;
  GVariant* objects = g_variant_get_child_value(reply, 0);
  GVariantIter iter;
  g_variant_iter_init(&iter, objects);
  const gchar* path = nullptr;
  GVariant* interfaces = nullptr;
  while (modem.empty() &&
         g_variant_iter_next(&iter, "{&o@a{sa{sv}}}", &path, &interfaces)) {
    if (GVariant* voice = g_variant_lookup_value(interfaces, kVoice, nullptr)) {
      modem = path;
      g_variant_unref(voice);
    }
    g_variant_unref(interfaces);
  }
  g_variant_unref(objects);
  g_variant_unref(reply);
  if (modem.empty()) {
    dial->done("cannot call " + dial->number + ": no modem with voice calls");
    delete dial;
    return;
  }
  GVariantBuilder properties;
  g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&properties, "{sv}", "number",
                        g_variant_new_string(dial->number.c_str()));
  dial->call(modem.c_str(), kVoice, "CreateCall",
             g_variant_new("(a{sv})", &properties), "(o)", created);
}

}  // namespace

ModemDialer::ModemDialer(GDBusConnection* bus)
    : bus_(G_DBUS_CONNECTION(g_object_ref(bus))),
      cancellable_(g_cancellable_new()) {}

ModemDialer::~ModemDialer() {
  g_cancellable_cancel(cancellable_);
  g_object_unref(cancellable_);
  g_object_unref(bus_);
}

void ModemDialer::dial(const std::string& number,
                       std::function<void(const std::string&)> done) {
  auto* d = new Dial(bus_, cancellable_, number, std::move(done));
  d->call(kRoot, "org.freedesktop.DBus.ObjectManager", "GetManagedObjects",
          nullptr, "(a{oa{sa{sv}}})", listed);
}

}  // namespace zv::window
