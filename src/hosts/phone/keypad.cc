#include "hosts/phone/keypad.h"

#include <cstring>

#include "hosts/phone/app.h"
#include "hostsdk/phone.h"
#include "platform/platform.h"
#include "platform/process.h"
#include "platform/ui/canvas.h"

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
  rt::registerClass<PhonePadKey>(PhonePadKey::kClassName, "UIButton");
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

namespace {

constexpr const char* kKeys = "123456789*0#";
const ui::Color kKeyGrey{0.9, 0.9, 0.92, 1};
const ui::Color kBlack{0, 0, 0, 1};
const ui::Color kCallGreen{0.3, 0.85, 0.39, 1};

}  // namespace

void PhoneLCDView::draw(ui::Canvas& canvas) const {
  canvas.text({{10, 20}, {frame().size.width - 20, 60}}, number,
              {"HelveticaNeue-Light", 36}, kBlack, ui::TextAlignment::Center,
              ui::LineBreakMode::TruncateHead);
}

void PhoneNameLabelView::draw(ui::Canvas& canvas) const {
  const std::string text =
      name.empty() || label.empty() ? name + label : name + "  " + label;
  canvas.text({{10, 0}, {frame().size.width - 20, frame().size.height}}, text,
              {"Helvetica", 15}, kBlack, ui::TextAlignment::Center);
}

void PhonePadKey::draw(ui::Canvas& canvas) const {
  static const char* letters[] = {"",     "ABC", "DEF",  "GHI", "JKL", "MNO",
                                  "PQRS", "TUV", "WXYZ", "",    "+",   ""};
  const double d = frame().size.width;
  const char* at = std::strchr(kKeys, key);
  const size_t i = at ? static_cast<size_t>(at - kKeys) : 10;
  canvas.fill({{0, 0}, {d, d}}, kKeyGrey, d / 2);
  canvas.text({{0, d * 0.12}, {d, d * 0.5}}, std::string(1, key),
              {"HelveticaNeue-Thin", d * 0.42}, kBlack,
              ui::TextAlignment::Center);
  canvas.text({{0, d * 0.58}, {d, d * 0.22}}, letters[i],
              {"Helvetica-Bold", d * 0.13}, kBlack, ui::TextAlignment::Center);
}

void PhonePad::build() {
  if (!keys_.empty()) return;
  std::weak_ptr<PhonePad> weak =
      std::static_pointer_cast<PhonePad>(shared_from_this());
  for (const char* k = kKeys; *k; ++k) {
    auto key = ui::makeAs<PhonePadKey>(rt::getClass(PhonePadKey::kClassName));
    key->key = *k;
    key->setAccessibilityLabel(std::string(1, *k));
    const char c = *k;
    key->addTarget(ui::kTouchUpInside, [weak, c](const rt::Id&) {
      if (auto pad = weak.lock()) pad->pressKey(c);
    });
    if (c == '0')
      key->onGesture(ui::Gesture::LongPress, [weak](ui::UIView&) {
        if (auto pad = weak.lock()) pad->holdZero();
      });
    keys_.push_back(key);
    addSubview(key);
  }
  call_button_ = ui::make<ui::UIButton>();
  call_button_->setBackgroundColor(kCallGreen);
  call_button_->setTitle("Call");
  call_button_->setTitleFont({"Helvetica-Bold", 15});
  call_button_->setTitleColor({1, 1, 1, 1});
  call_button_->addTarget(ui::kTouchUpInside, [weak](const rt::Id&) {
    if (auto pad = weak.lock()) pad->pressCall();
  });
  addSubview(call_button_);
}

void PhonePad::layoutSubviews() {
  const double w = frame().size.width, h = frame().size.height;
  // The keys take the upper three quarters of the pad, in four rows 0.18
  // of a key apart; the call button is centred in the rest.
  const double keysHeight = h * 0.74;
  const double d = std::max(0.0, std::min(78.0, keysHeight / 4 / 1.18));
  const double gap = d * 0.3, row = d * 1.18;
  const double left = (w - 3 * d - 2 * gap) / 2;
  const double top = (keysHeight - 4 * row + d * 0.18) / 2;
  for (size_t i = 0; i < keys_.size(); ++i)
    keys_[i]->setFrame(
        {{left + (i % 3) * (d + gap), top + (i / 3) * row}, {d, d}});
  if (call_button_) {
    call_button_->setFrame(
        {{(w - d) / 2, keysHeight + (h - keysHeight - d) / 2}, {d, d}});
    call_button_->setCornerRadius(d / 2);
  }
}

void PhoneDialerView::layoutSubviews() {
  if (!pad || !deleteButton) return;
  if (auto call = pad->callButton()) {
    const ui::Rect c = call->frame();
    deleteButton->setFrame({{pad->frame().origin.x + c.origin.x + c.size.width +
                                 c.size.width * 0.3,
                             pad->frame().origin.y + c.origin.y},
                            c.size});
  }
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
  v->addContact->label->setFont({"Helvetica", 15});
  v->addContact->label->setTextColor(ui::kTintColor);
  v->addContact->label->setTextAlignment(ui::TextAlignment::Center);
  v->addContact->setFrame({{0, 120}, {size.width, 24}});
  v->addContact->label->setFrame({{0, 0}, {size.width, 24}});
  v->deleteButton = ui::make<ui::UIButton>();
  v->deleteButton->setTitle("Delete");
  v->deleteButton->setTitleFont({"Helvetica", 15});
  v->deleteButton->setTitleColor({0.45, 0.45, 0.47, 1});
  v->deleteButton->addTarget(
      ui::kTouchUpInside,
      [weak = std::weak_ptr<PhoneDialerView>(v)](const rt::Id&) {
        if (auto me = weak.lock()) me->pad->pressDelete();
      });
  v->deleteButton->setHidden(true);
  v->pad = ui::makeAs<PhonePad>(rt::getClass(PhonePad::kClassName));
  v->pad->delegate = shared_from_this();
  // Below the display, the name and the add-contact button, above the
  // tab bar.
  v->pad->setFrame(
      {{0, 146}, {size.width, std::max(0.0, size.height - 146 - 49)}});
  v->pad->build();
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
