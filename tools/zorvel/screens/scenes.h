// What each simulated host shows, as a picture scene (platform/render/
// scene.h): the view tree of the controller on top (presented, then the top
// of a navigation stack, then the selected tab), the bars around it, the
// open alert or action sheet, the device's screen size and carrier. Host
// views that hold their content in fields (the keypad display and pad, the
// Control Centre buttons, the call screen's labels) are drawn by painters
// made here from that content. Call in the host's process; nothing in the
// host changes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/contacts/contacts_app.h"
#include "hosts/kit/call_screens.h"
#include "hosts/messages/app.h"
#include "hosts/phone/app.h"
#include "hosts/springboard/app.h"
#include "platform/render/scene.h"
#include "platform/sim/sim_platform.h"

namespace zv::cli {

render::Scene phoneScene(platform::SimProcess& process,
                         hosts::PhoneApplication& app);
// The same for a Phone app on another platform (the window's), with what
// the system shows besides: the carrier name and the open alert.
render::Scene phoneScene(const platform::DeviceFacts& device,
                         const std::string& carrier,
                         std::shared_ptr<const platform::Alert> alert,
                         hosts::PhoneApplication& app);

// Where the keypad's painter puts its keys in the dialer view of `size`:
// the twelve keys in order 1-9, *, 0, #, then the call button (kCallKey).
struct PadKey {
  char key;
  ui::Rect rect;
};
inline constexpr char kCallKey = '\n';
std::vector<PadKey> padKeys(platform::Size size);
render::Scene contactsScene(platform::SimProcess& process,
                            hosts::ContactsApplication& app);
render::Scene messagesScene(platform::SimProcess& process,
                            hosts::MessagesApplication& app);
render::Scene controlCenterScene(platform::SimProcess& process,
                                 hosts::SpringBoardApplication& app);
// The springboard's incoming-call screen (7.x) or the in-call service's
// call screen (8.x) over the lock screen; the lock screen alone when no
// call screen is up.
render::Scene callScene(platform::SimProcess& process,
                        hosts::CallScreenHost& host);

}  // namespace zv::cli
