// What a ModemManager call object says about itself, read from its D-Bus
// properties (org.freedesktop.ModemManager1.Call: State "i", Direction "i",
// Number "s") as they arrive, whoever sent them: a property that is
// missing, or of another type than the interface gives it, says nothing.
//
// The state becomes the platform's call status number: dialling and
// ringing-out 3, ringing-in and waiting 4, active 1, held 2, terminated 6
// (the telephony passes through 5 on the way), and 0 for a state that says
// nothing yet (unknown, or a value this code does not know). The number is
// kept only as non-empty UTF-8 text; anything else is a withheld caller.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

typedef struct _GVariant GVariant;
typedef struct _GDBusProxy GDBusProxy;

namespace zv::platform {

int32_t callStatusOfModemState(int state);

struct ModemCallProperties {
  int32_t status = 0;
  bool outgoing = false;
  std::optional<std::string> number;

  bool operator==(const ModemCallProperties&) const = default;
};

// From a property dictionary ("a{sv}": a GetAll reply, InterfacesAdded,
// PropertiesChanged). Anything else reads as a call that says nothing.
ModemCallProperties modemCallProperties(GVariant* properties);
// From a call proxy's cached properties.
ModemCallProperties modemCallProperties(GDBusProxy* call);

}  // namespace zv::platform
