#include "platform/linux/modem_call_state.h"

#include <libmm-glib.h>

#include "platform/telephony/telephony.h"

namespace zv::platform {
namespace {

// Reads the three properties through `lookup` (a new reference or null per
// name): the dictionary and the proxy cache differ only there.
template <typename Lookup>
ModemCallProperties read(Lookup lookup) {
  ModemCallProperties out;
  auto take = [&](const char* name, const char* type, auto use) {
    GVariant* value = lookup(name);
    if (!value) return;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE(type))) use(value);
    g_variant_unref(value);
  };
  take("State", "i", [&](GVariant* v) {
    out.status = callStatusOfModemState(g_variant_get_int32(v));
  });
  take("Direction", "i", [&](GVariant* v) {
    out.outgoing = g_variant_get_int32(v) == MM_CALL_DIRECTION_OUTGOING;
  });
  take("Number", "s", [&](GVariant* v) {
    gsize length = 0;
    const char* text = g_variant_get_string(v, &length);
    // (GVariant strings hold no NUL; a serialised one that is not UTF-8
    // reads as "".)
    if (length > 0 &&
        g_utf8_validate(text, static_cast<gssize>(length), nullptr))
      out.number = std::string(text, length);
  });
  return out;
}

}  // namespace

int32_t callStatusOfModemState(int state) {
  switch (state) {
    case MM_CALL_STATE_DIALING:
    case MM_CALL_STATE_RINGING_OUT:
      return kCallDialling;
    case MM_CALL_STATE_RINGING_IN:
    case MM_CALL_STATE_WAITING:
      return kCallRinging;
    case MM_CALL_STATE_ACTIVE:
      return kCallActive;
    case MM_CALL_STATE_HELD:
      return kCallHeld;
    case MM_CALL_STATE_TERMINATED:
      return kCallEnded;
    default:
      return 0;
  }
}

ModemCallProperties modemCallProperties(GVariant* properties) {
  if (!properties || !g_variant_is_of_type(properties, G_VARIANT_TYPE_VARDICT))
    return {};
  return read([properties](const char* name) {
    return g_variant_lookup_value(properties, name, nullptr);
  });
}

ModemCallProperties modemCallProperties(GDBusProxy* call) {
  return read([call](const char* name) {
    return g_dbus_proxy_get_cached_property(call, name);
  });
}

}  // namespace zv::platform
