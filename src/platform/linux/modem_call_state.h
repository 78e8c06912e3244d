// ModemManager's call states (MMCallState) as the platform's call status
// numbers: dialling and ringing-out 3, ringing-in and waiting 4, active 1,
// held 2, terminated 6 (the telephony passes through 5 on the way), and 0
// for a state that says nothing yet (unknown, or a value this code does
// not know).
#pragma once

#include <cstdint>

namespace zv::platform {

int32_t callStatusOfModemState(int state);

}  // namespace zv::platform
