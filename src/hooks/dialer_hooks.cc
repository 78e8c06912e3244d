// zvphone_init: prefix dialling in the Phone app. Every number the app
// dials, through a "tel:" URL or its own dial operation, passes through
// ZVPhoneController first.
#include <optional>

#include "dialer/phone_controller.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hooks/rewrite_hook.h"

namespace zv {
namespace {

// The Phone app's tab on screen: its current view controller is the tab
// bar, whose selected index counts favourites, recents, contacts, keypad.
std::optional<int> currentTab(const rt::Id& app) {
  if (!rt::respondsTo(app, "currentViewController")) return std::nullopt;
  rt::Id tabs = rt::send<rt::Id>(app, "currentViewController");
  if (!tabs || !rt::respondsTo(tabs, "selectedIndex")) return std::nullopt;
  return rt::send<int>(tabs, "selectedIndex");
}

}  // namespace

void zvphone_init() {
  runStartup("zvphone_init", [] {
    auto settings = ZVPhoneSettings::sharedInstance();
    if (!settings || !settings->EnablePrefix()) return;
    auto controller = ZVPhoneController::sharedInstance();
    if (!controller) return;
    controller->setTabQuery(currentTab);
    hook::Rewrite<bool(std::string)>::install(
        GuardKind::Alert, "PhoneApplication",
        "openURL:", [controller](const rt::Id& app, std::string& url) {
          url = controller->openURL(url, app);
        });
    hook::Rewrite<void(std::string, std::string, int, bool, bool)>::install(
        GuardKind::Alert, "PhoneApplication",
        "dialPhoneNumber:forUID:service:dialAssist:wasAlreadyAssisted:",
        [controller](const rt::Id& app, std::string& number, std::string&, int&,
                     bool&, bool&) {
          number = controller->dialPhoneNumber(number, app);
        });
  });
}

}  // namespace zv
