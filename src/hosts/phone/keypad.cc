#include "hosts/phone/keypad.h"

#include "hosts/phone/app.h"
#include "hostsdk/phone.h"
#include "platform/platform.h"
#include "platform/process.h"

namespace zv::hosts {
namespace {

using ui::self;

// The display's number as the host itself keeps it (whatever the variant
// exposes to others).
std::string& numberOf(DialerController& d) {
  return d.dialerView()->lcd->number;
}

void registerViews(const PhoneHostOptions& options) {
  rt::registerClass<PhoneLCDView>(PhoneLCDView::kClassName, "UIView");
  if (options.readableDisplay)
    rt::define(sdk::PHHandsetDialerLCDView::text,
               [](const rt::Id& s) { return self<PhoneLCDView>(s).number; });
  if (options.settableDisplay)
    rt::define(sdk::PHHandsetDialerLCDView::setTextNeedsFormat,
               [](const rt::Id& s, std::string text, bool format) {
                 auto& v = self<PhoneLCDView>(s);
                 v.number = std::move(text);
                 v.formatted = format;
               });

  rt::registerClass<PhoneNameLabelView>(PhoneNameLabelView::kClassName,
                                        "UIView");
  rt::define(sdk::PHHandsetDialerNameLabelView::showNameLabelAnimated,
             [](const rt::Id& s, std::string n, std::string l, bool) {
               auto& v = self<PhoneNameLabelView>(s);
               v.name = std::move(n);
               v.label = std::move(l);
             });

  rt::registerClass<PhoneAddContactButton>(PhoneAddContactButton::kClassName,
                                           "UIButton");
  rt::define(sdk::PHAddContactButton::addToContactsLabel, [](const rt::Id& s) {
    return rt::Id(self<PhoneAddContactButton>(s).label);
  });

  rt::registerClass<PhonePad>(PhonePad::kClassName, "UIView");
  rt::registerClass<PhoneDialerView>(PhoneDialerView::kClassName, "UIView");
  rt::define(sdk::PHHandsetDialerView::lcdView, [](const rt::Id& s) {
    return rt::Id(self<PhoneDialerView>(s).lcd);
  });
  if (options.addContactButton)
    rt::define(sdk::PHHandsetDialerView::addContactButton, [](const rt::Id& s) {
      return rt::Id(self<PhoneDialerView>(s).addContact);
    });
}

void registerDialer() {
  rt::registerClass<DialerController>(DialerController::kClassName,
                                      "UIViewController");
  rt::define(sdk::DialerController::dialerView, [](const rt::Id& s) {
    return rt::Id(self<DialerController>(s).dialerView());
  });
  rt::define(sdk::DialerController::viewWillAppear, [](const rt::Id& s, bool) {
    self<DialerController>(s).hostDisplayChanged();
  });
  rt::define(sdk::DialerController::viewWillDisappear,
             [](const rt::Id&, bool) {});
  rt::define(sdk::DialerController::phonePadAppendString,
             [](const rt::Id& s, rt::Id, std::string text) {
               auto& d = self<DialerController>(s);
               numberOf(d) += text;
               d.hostDisplayChanged();
             });
  rt::define(sdk::DialerController::phonePadReplaceLastDigitWithString,
             [](const rt::Id& s, rt::Id, std::string text) {
               auto& d = self<DialerController>(s);
               std::string& n = numberOf(d);
               if (!n.empty()) n.pop_back();
               n += text;
               d.hostDisplayChanged();
             });
  rt::define(sdk::DialerController::phonePadDeleteLastDigit,
             [](const rt::Id& s, rt::Id) {
               auto& d = self<DialerController>(s);
               std::string& n = numberOf(d);
               if (!n.empty()) n.pop_back();
               d.hostDisplayChanged();
             });
  rt::define(sdk::DialerController::callButtonPressed,
             [](const rt::Id& s, rt::Id) {
               auto& d = self<DialerController>(s);
               std::string& n = numberOf(d);
               if (n.empty()) {
                 // An empty keypad recalls the last number dialled instead of
                 // dialling.
                 n = d.lastDialled;
                 d.hostDisplayChanged();
                 return;
               }
               auto app = ui::UIApplication::shared();
               d.lastDialled = n;
               std::string number = n;
               n.clear();
               d.hostDisplayChanged();
               if (app)
                 rt::send(app, sdk::PhoneApplication::dialPhoneNumber, number,
                          std::string(), 0, false, false);
             });
  rt::define(sdk::DialerController::addButtonClicked,
             [](const rt::Id& s, rt::Id) {
               auto& d = self<DialerController>(s);
               d.addContactRequests.push_back(numberOf(d));
             });
}

}  // namespace

void registerKeypadClasses(const PhoneHostOptions& options) {
  registerViews(options);
  registerDialer();
}

void PhonePad::pressKey(char key) {
  if (auto d = delegate.lock())
    rt::send(d, sdk::DialerController::phonePadAppendString, shared_from_this(),
             std::string(1, key));
}

void PhonePad::holdZero() {
  pressKey('0');
  if (auto d = delegate.lock())
    rt::send(d, sdk::DialerController::phonePadReplaceLastDigitWithString,
             shared_from_this(), std::string("+"));
}

void PhonePad::pressDelete() {
  if (auto d = delegate.lock())
    rt::send(d, sdk::DialerController::phonePadDeleteLastDigit,
             shared_from_this());
}

void PhonePad::pressCall() {
  if (auto d = delegate.lock())
    rt::send(d, sdk::DialerController::callButtonPressed, shared_from_this());
}

std::shared_ptr<ui::UIView> DialerController::loadView() {
  auto size = platform::current().device().screenPoints;
  auto v =
      ui::makeAs<PhoneDialerView>(rt::getClass(PhoneDialerView::kClassName));
  v->setFrame({{0, 0}, size});
  v->lcd = ui::makeAs<PhoneLCDView>(rt::getClass(PhoneLCDView::kClassName));
  v->lcd->setFrame({{0, 20}, {size.width, 80}});
  v->nameLabel = ui::makeAs<PhoneNameLabelView>(
      rt::getClass(PhoneNameLabelView::kClassName));
  v->nameLabel->setFrame({{0, 100}, {size.width, 20}});
  v->addContact = ui::makeAs<PhoneAddContactButton>(
      rt::getClass(PhoneAddContactButton::kClassName));
  v->addContact->label = ui::make<ui::UILabel>();
  v->addContact->label->setText("Add to Contacts");
  v->addContact->addSubview(v->addContact->label);
  v->addContact->setHidden(true);
  v->deleteButton = ui::make<ui::UIButton>();
  v->deleteButton->setHidden(true);
  v->pad = ui::makeAs<PhonePad>(rt::getClass(PhonePad::kClassName));
  v->pad->delegate = shared_from_this();
  for (auto view : std::initializer_list<std::shared_ptr<ui::UIView>>{
           v->lcd, v->nameLabel, v->addContact, v->deleteButton, v->pad})
    v->addSubview(view);
  return v;
}

std::shared_ptr<PhoneDialerView> DialerController::dialerView() {
  return std::static_pointer_cast<PhoneDialerView>(view());
}

void DialerController::rebuildView() {
  std::string number = numberOf(*this);
  setView(nullptr);
  numberOf(*this) = number;
  hostDisplayChanged();
}

std::string DialerController::displayNumber() { return numberOf(*this); }

void DialerController::hostDisplayChanged() {
  auto v = dialerView();
  const std::string& n = v->lcd->number;
  v->addContact->setHidden(n.empty());
  v->deleteButton->setHidden(n.empty());
  std::string name, label;
  if (auto it = knownNumbers.find(n); it != knownNumbers.end()) {
    name = it->second.first;
    label = it->second.second;
  }
  rt::send(v->nameLabel,
           sdk::PHHandsetDialerNameLabelView::showNameLabelAnimated, name,
           label, false);
}

}  // namespace zv::hosts
