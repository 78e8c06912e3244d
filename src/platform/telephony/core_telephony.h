// The core-telephony functions of the platform, on the current process's
// Telephony: hanging up one call by its CTCall handle (a TUCall's `call`),
// hanging up every call, and the cellular-data plan switch.
#pragma once

#include "platform/runtime/object.h"

namespace zv::platform {

// Hangs up the call of a CTCall handle; nothing for nil or another object.
void CTCallDisconnect(const rt::Id& call);
void CTCallListDisconnectAll();

bool CTCellularDataPlanGetIsEnabled();
void CTCellularDataPlanSetIsEnabled(bool enabled);

}  // namespace zv::platform
