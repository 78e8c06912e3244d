// zvkeypad_init: the dial-pad search on the Phone app's keypad. The host's
// key handlers ask ZVKeypadController first (it consumes the keys while
// search is on); the controller reaches the host keypad through
// RuntimeKeypadHost, which sends the host's own selectors and calls the
// host's own key handlers kept from before the replacement.
#include "core/hook.h"
#include "dialer/keypad_controller.h"
#include "hooks/module_trace.h"
#include "hooks/modules.h"
#include "hostsdk/phone.h"
#include "platform/ui/messages.h"

namespace zv {
namespace {

using Dialer = sdk::DialerController;
using DialerView = sdk::PHHandsetDialerView;
using Lcd = sdk::PHHandsetDialerLCDView;

template <typename Sig>
std::shared_ptr<const rt::Imp<Sig>> hostImp(rt::Class* cls,
                                            const rt::Message<Sig>& m) {
  return rt::lookup<Sig>(cls, m.sel);
}

using KeyImp = rt::Imp<void(rt::Id, std::string)>;
using PadImp = rt::Imp<void(rt::Id)>;

class RuntimeKeypadHost : public KeypadHost {
 public:
  explicit RuntimeKeypadHost(rt::Class* dialer)
      : append_(hostImp(dialer, Dialer::phonePadAppendString)),
        replace_(hostImp(dialer, Dialer::phonePadReplaceLastDigitWithString)),
        delete_(hostImp(dialer, Dialer::phonePadDeleteLastDigit)),
        call_(hostImp(dialer, Dialer::callButtonPressed)) {}

  bool hasAddContactButton(const rt::Id& dialer) override {
    return rt::respondsTo(dialerView(dialer), DialerView::addContactButton);
  }
  bool canSetDisplay(const rt::Id& dialer) override {
    return rt::respondsTo(lcd(dialer), Lcd::setTextNeedsFormat);
  }
  bool canReadDisplay(const rt::Id& dialer) override {
    return rt::respondsTo(lcd(dialer), Lcd::text);
  }
  std::string displayText(const rt::Id& dialer) override {
    return rt::send(lcd(dialer), Lcd::text);
  }
  void setDisplayText(const rt::Id& dialer, const std::string& text,
                      bool needsFormat) override {
    rt::send(lcd(dialer), Lcd::setTextNeedsFormat, text, needsFormat);
  }
  rt::Id addContactButton(const rt::Id& dialer) override {
    return rt::trySend(dialerView(dialer), DialerView::addContactButton);
  }
  std::shared_ptr<ui::UILabel> addToContactsLabel(
      const rt::Id& button) override {
    return std::dynamic_pointer_cast<ui::UILabel>(
        rt::trySend(button, sdk::PHAddContactButton::addToContactsLabel));
  }
  bool canAddToContacts(const rt::Id& dialer) override {
    return rt::respondsTo(dialer, Dialer::addButtonClicked);
  }
  void addButtonClicked(const rt::Id& dialer, const rt::Id& button) override {
    rt::send(dialer, Dialer::addButtonClicked, button);
  }
  std::shared_ptr<ui::UIView> view(const rt::Id& dialer) override {
    return std::dynamic_pointer_cast<ui::UIView>(
        rt::trySend(dialer, ui::msg::UIViewController::view));
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
    return rt::trySend(dialer, Dialer::dialerView);
  }
  static rt::Id lcd(const rt::Id& dialer) {
    return rt::trySend(dialerView(dialer), DialerView::lcdView);
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
    // The host's own key handlers, kept before they are replaced.
    if (rt::Class* dialer = rt::getClass(Dialer::kName))
      c->setHost(std::make_shared<RuntimeKeypadHost>(dialer));
    const auto k = GuardKind::Alert;
    using namespace hook;
    using Id = const rt::Id&;
    // clang-format off
    systemFirst(k, Dialer::viewWillAppear, [c](Id self, bool) { c->viewWillAppear(self); });
    systemFirst(k, Dialer::viewWillDisappear, [c](Id, bool) { c->viewWillDisappear(); });
    systemDecides(k, Dialer::phonePadAppendString, [c](Id, rt::Id pad, std::string text) { return c->phonePadAppendString(pad, text); });
    systemDecides(k, Dialer::phonePadReplaceLastDigitWithString, [c](Id, rt::Id pad, std::string text) { return c->phonePadReplaceLastDigitWithString(pad, text); });
    systemDecides(k, Dialer::phonePadDeleteLastDigit, [c](Id, rt::Id pad) { return c->phonePadDeleteLastDigit(pad); });
    systemDecides(k, Dialer::callButtonPressed, [c](Id, rt::Id pad) { return c->phonePadCallButtonPressed(pad); });
    rewriteArgs(k, sdk::PHHandsetDialerNameLabelView::showNameLabelAnimated, [c](Id, std::string&, std::string& label, bool&) { label = c->areaNameLabel(label); });
    hostFirst(k, sdk::PhoneApplication::applicationDidEnterBackground, [c](Id, rt::Id) { c->suspend(); });
    // clang-format on
  });
}

}  // namespace zv
