// zvkeypad_init: the dial-pad search on the Phone app's keypad. The host's
// key handlers ask ZVKeypadController first (it consumes the keys while
// search is on); the controller reaches the host keypad through
// RuntimeKeypadHost, which sends the host's own selectors and calls the
// host's own key handlers kept from before the replacement.
#include "core/hook.h"
#include "dialer/keypad_controller.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hooks/rewrite_hook.h"

namespace zv {
namespace {

constexpr const char* kDialer = "DialerController";
constexpr const char* kAppend = "phonePad:appendString:";
constexpr const char* kReplace = "phonePad:replaceLastDigitWithString:";
constexpr const char* kDelete = "phonePadDeleteLastDigit:";
constexpr const char* kCall = "_callButtonPressed:";

using KeyImp = rt::Imp<void(rt::Id, std::string)>;
using PadImp = rt::Imp<void(rt::Id)>;

class RuntimeKeypadHost : public KeypadHost {
 public:
  explicit RuntimeKeypadHost(rt::Class* dialer)
      : append_(rt::lookup<void(rt::Id, std::string)>(dialer, kAppend)),
        replace_(rt::lookup<void(rt::Id, std::string)>(dialer, kReplace)),
        delete_(rt::lookup<void(rt::Id)>(dialer, kDelete)),
        call_(rt::lookup<void(rt::Id)>(dialer, kCall)) {}

  bool hasAddContactButton(const rt::Id& dialer) override {
    return rt::respondsTo(dialerView(dialer), "addContactButton");
  }
  bool canSetDisplay(const rt::Id& dialer) override {
    return rt::respondsTo(lcd(dialer), "setText:needsFormat:");
  }
  bool canReadDisplay(const rt::Id& dialer) override {
    return rt::respondsTo(lcd(dialer), "text");
  }
  std::string displayText(const rt::Id& dialer) override {
    return rt::send<std::string>(lcd(dialer), "text");
  }
  void setDisplayText(const rt::Id& dialer, const std::string& text,
                      bool needsFormat) override {
    rt::send<void>(lcd(dialer), "setText:needsFormat:", text, needsFormat);
  }
  rt::Id addContactButton(const rt::Id& dialer) override {
    rt::Id view = dialerView(dialer);
    if (!rt::respondsTo(view, "addContactButton")) return nullptr;
    return rt::send<rt::Id>(view, "addContactButton");
  }
  std::shared_ptr<ui::UILabel> addToContactsLabel(
      const rt::Id& button) override {
    if (!rt::respondsTo(button, "addToContactsLabel")) return nullptr;
    return std::dynamic_pointer_cast<ui::UILabel>(
        rt::send<rt::Id>(button, "addToContactsLabel"));
  }
  bool canAddToContacts(const rt::Id& dialer) override {
    return rt::respondsTo(dialer, "_addButtonClicked:");
  }
  void addButtonClicked(const rt::Id& dialer, const rt::Id& button) override {
    rt::send<void>(dialer, "_addButtonClicked:", button);
  }
  std::shared_ptr<ui::UIView> view(const rt::Id& dialer) override {
    if (!rt::respondsTo(dialer, "view")) return nullptr;
    return std::dynamic_pointer_cast<ui::UIView>(
        rt::send<rt::Id>(dialer, "view"));
  }
  void appendString(const rt::Id& dialer, const rt::Id& pad,
                    const std::string& text) override {
    if (append_) (*append_)(dialer, pad, text);
  }
  void replaceLastDigit(const rt::Id& dialer, const rt::Id& pad,
                        const std::string& text) override {
    if (replace_) (*replace_)(dialer, pad, text);
  }
  void deleteLastDigit(const rt::Id& dialer, const rt::Id& pad) override {
    if (delete_) (*delete_)(dialer, pad);
  }
  void callButtonPressed(const rt::Id& dialer, const rt::Id& pad) override {
    if (call_) (*call_)(dialer, pad);
  }

 private:
  static rt::Id dialerView(const rt::Id& dialer) {
    if (!rt::respondsTo(dialer, "dialerView")) return nullptr;
    return rt::send<rt::Id>(dialer, "dialerView");
  }
  static rt::Id lcd(const rt::Id& dialer) {
    rt::Id view = dialerView(dialer);
    if (!rt::respondsTo(view, "lcdView")) return nullptr;
    return rt::send<rt::Id>(view, "lcdView");
  }
  std::shared_ptr<const KeyImp> append_, replace_;
  std::shared_ptr<const PadImp> delete_, call_;
};

}  // namespace

void zvkeypad_init() {
  runStartup("zvkeypad_init", [] {
    auto settings = ZVPhoneSettings::sharedInstance();
    if (!settings || !settings->EnableDialer()) return;
    auto c = ZVKeypadController::sharedInstance();
    if (!c) return;
    rt::Class* dialer = rt::getClass(kDialer);
    // The host's own key handlers, kept before they are replaced.
    if (dialer) c->setHost(std::make_shared<RuntimeKeypadHost>(dialer));
    const auto kind = GuardKind::Alert;
    using Appear = hook::Hook<void(bool)>;
    using Key = hook::Hook<void(rt::Id, std::string)>;
    using Pad = hook::Hook<void(rt::Id)>;
    Appear::systemFirst(kind, kDialer,
                        "viewWillAppear:", [c](const rt::Id& self, bool) {
                          c->viewWillAppear(self);
                        });
    Appear::systemFirst(kind, kDialer, "viewWillDisappear:",
                        [c](const rt::Id&, bool) { c->viewWillDisappear(); });
    Key::systemDecides(kind, kDialer, kAppend,
                       [c](const rt::Id&, rt::Id pad, std::string text) {
                         return c->phonePadAppendString(pad, text);
                       });
    Key::systemDecides(kind, kDialer, kReplace,
                       [c](const rt::Id&, rt::Id pad, std::string text) {
                         return c->phonePadReplaceLastDigitWithString(pad,
                                                                      text);
                       });
    Pad::systemDecides(kind, kDialer, kDelete, [c](const rt::Id&, rt::Id pad) {
      return c->phonePadDeleteLastDigit(pad);
    });
    Pad::systemDecides(kind, kDialer, kCall, [c](const rt::Id&, rt::Id pad) {
      return c->phonePadCallButtonPressed(pad);
    });
    hook::Rewrite<void(std::string, std::string, bool)>::install(
        kind, "PHHandsetDialerNameLabelView", "showName:label:animated:",
        [c](const rt::Id&, std::string&, std::string& label, bool&) {
          label = c->areaNameLabel(label);
        });
    Pad::hostFirst(kind, "PhoneApplication", "applicationDidEnterBackground:",
                   [c](const rt::Id&, rt::Id) { c->suspend(); });
  });
}

}  // namespace zv
