// Feeds arbitrary bytes as a ModemManager call's property dictionary (a
// serialised "a{sv}", as a GetAll reply or InterfacesAdded carries it) to
// the reader callerd decides calls by. Whatever the sender put there, the
// state must be one of the platform's call status numbers, a number must be
// non-empty UTF-8 without NUL bytes, and the same dictionary must read the
// same after GLib's normalisation and after a trip through a D-Bus message
// (as a PropertiesChanged signal).
#include <gio/gio.h>
#include <glib.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/linux/modem_call_state.h"

namespace {

void checkSaid(const zv::platform::ModemCallProperties& said) {
  switch (said.status) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 6:
      break;
    default:
      std::abort();
  }
  if (said.number &&
      (said.number->empty() ||
       std::memchr(said.number->data(), 0, said.number->size()) ||
       !g_utf8_validate(said.number->data(),
                        static_cast<gssize>(said.number->size()), nullptr)))
    std::abort();
}

// The dictionary as the body of a PropertiesChanged signal, written to the
// wire and read back; null when D-Bus cannot carry it.
GVariant* throughMessage(GVariant* normal) {
  GDBusMessage* out = g_dbus_message_new_signal(
      "/org/freedesktop/ModemManager1/Call/1",
      "org.freedesktop.DBus.Properties", "PropertiesChanged");
  g_dbus_message_set_body(
      out, g_variant_new("(s@a{sv}@as)", "org.freedesktop.ModemManager1.Call",
                         normal, g_variant_new_strv(nullptr, 0)));
  gsize size = 0;
  guchar* blob =
      g_dbus_message_to_blob(out, &size, G_DBUS_CAPABILITY_FLAGS_NONE, nullptr);
  g_object_unref(out);
  if (!blob) return nullptr;
  GDBusMessage* in = g_dbus_message_new_from_blob(
      blob, size, G_DBUS_CAPABILITY_FLAGS_NONE, nullptr);
  g_free(blob);
  if (!in) return nullptr;
  GVariant* body = g_dbus_message_get_body(in);
  GVariant* dict = body && g_variant_n_children(body) == 3
                       ? g_variant_get_child_value(body, 1)
                       : nullptr;
  g_object_unref(in);
  return dict;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  GBytes* bytes = g_bytes_new(data, size);
  GVariant* dict = g_variant_ref_sink(
      g_variant_new_from_bytes(G_VARIANT_TYPE_VARDICT, bytes, FALSE));
  g_bytes_unref(bytes);
  const auto said = zv::platform::modemCallProperties(dict);
  checkSaid(said);
  GVariant* normal = g_variant_get_normal_form(dict);
  if (!(zv::platform::modemCallProperties(normal) == said)) std::abort();
  if (GVariant* received = throughMessage(normal)) {
    if (!(zv::platform::modemCallProperties(received) == said)) std::abort();
    g_variant_unref(received);
  }
  g_variant_unref(normal);
  g_variant_unref(dict);
  return 0;
}
