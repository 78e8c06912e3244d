#include "platform/telephony/core_telephony.h"

#include "platform/platform.h"
#include "platform/telephony/call_objects.h"

namespace zv::platform {

void CTCallDisconnect(const rt::Id& call) {
  if (!call || call->className() != msg::CTCall::kName) return;
  if (auto info = callInfo(call)) current().telephony().disconnect(info->id);
}

void CTCallListDisconnectAll() { current().telephony().disconnectAll(); }

bool CTCellularDataPlanGetIsEnabled() {
  return current().telephony().cellularDataEnabled();
}

void CTCellularDataPlanSetIsEnabled(bool enabled) {
  current().telephony().setCellularDataEnabled(enabled);
}

}  // namespace zv::platform
