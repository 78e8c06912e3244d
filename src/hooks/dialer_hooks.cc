// zvphone_init: prefix dialling in the Phone app. Every number the app
// dials, through a "tel:" URL or its own dial operation, passes through
// ZVPhoneController first.
#include <optional>

#include "core/hook.h"
#include "dialer/phone_controller.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/phone.h"
#include "platform/ui/messages.h"

namespace zv {
namespace {

// The Phone app's tab on screen: its current view controller is the tab
// bar, whose selected index counts favourites, recents, contacts, keypad.
std::optional<int> currentTab(const rt::Id& app) {
  rt::Id tabs = rt::trySend(app, sdk::PhoneApplication::currentViewController);
  if (!rt::respondsTo(tabs, ui::msg::UITabBarController::selectedIndex))
    return std::nullopt;
  return rt::send(tabs, ui::msg::UITabBarController::selectedIndex);
}

}  // namespace

void zvphone_init() {
  runStartup("zvphone_init", [] {
    auto settings = ZVPhoneSettings::sharedInstance();
    if (!settings || !settings->EnablePrefix()) return;
    auto controller = ZVPhoneController::sharedInstance();
    if (!controller) return;
    controller->setTabQuery(currentTab);
    const auto k = GuardKind::Alert;
    using Id = const rt::Id&;
    using App = sdk::PhoneApplication;
    // clang-format off
    hook::rewriteArgs(k, App::openURL, [controller](Id app, std::string& url) { url = controller->openURL(url, app); });
    hook::rewriteArgs(k, App::dialPhoneNumber, [controller](Id app, std::string& number, std::string&, int&, bool&, bool&) { number = controller->dialPhoneNumber(number, app); });
    // clang-format on
  });
}

}  // namespace zv
