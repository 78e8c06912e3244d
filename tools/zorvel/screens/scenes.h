// What each simulated host shows, as a picture scene (platform/render/
// scene.h): the key window of the host's process (hosts/kit/host_kit.h
// keyWindow), at the device's scale. The hosts build their own view trees
// (bars, alerts and panels included); nothing here draws. Call in the
// host's process; only the window's layout changes.
#pragma once

#include "hosts/contacts/contacts_app.h"
#include "hosts/kit/call_screens.h"
#include "hosts/messages/app.h"
#include "hosts/phone/app.h"
#include "hosts/springboard/app.h"
#include "platform/render/scene.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

// The key window of the application running in `process`.
render::Scene windowScene(platform::SimProcess& process);

// The same, named by the host the session drives.
inline render::Scene phoneScene(platform::SimProcess& process,
                                hosts::PhoneApplication&) {
  return windowScene(process);
}
inline render::Scene contactsScene(platform::SimProcess& process,
                                   hosts::ContactsApplication&) {
  return windowScene(process);
}
inline render::Scene messagesScene(platform::SimProcess& process,
                                   hosts::MessagesApplication&) {
  return windowScene(process);
}
inline render::Scene controlCenterScene(platform::SimProcess& process,
                                        hosts::SpringBoardApplication&) {
  return windowScene(process);
}
// The springboard's incoming-call screen (7.x) or the in-call service's
// call screen (8.x) over the lock screen; the lock screen alone when no
// call screen is up.
inline render::Scene callScene(platform::SimProcess& process,
                               hosts::CallScreenHost&) {
  return windowScene(process);
}

}  // namespace zv::cli
