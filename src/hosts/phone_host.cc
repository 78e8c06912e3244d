#include "hosts/phone_host.h"

#include "platform/platform.h"
#include "platform/process.h"

namespace zv::hosts {
namespace {

using ui::self;

constexpr const char* kAppendSel = "phonePad:appendString:";
constexpr const char* kReplaceSel = "phonePad:replaceLastDigitWithString:";
constexpr const char* kDeleteSel = "phonePadDeleteLastDigit:";
constexpr const char* kCallSel = "_callButtonPressed:";
constexpr const char* kDialSel =
    "dialPhoneNumber:forUID:service:dialAssist:wasAlreadyAssisted:";

// The display's number as the host itself keeps it (whatever the variant
// exposes to others).
std::string& numberOf(DialerController& d) {
  return d.dialerView()->lcd->number;
}

void registerViews(const PhoneHostOptions& options) {
  rt::Class* lcd = rt::registerClass(PhoneLCDView::kClassName, "UIView");
  if (options.readableDisplay)
    rt::addMethod<std::string()>(lcd, "text", [](const rt::Id& s) {
      return self<PhoneLCDView>(s).number;
    });
  if (options.settableDisplay)
    rt::addMethod<void(std::string, bool)>(
        lcd, "setText:needsFormat:",
        [](const rt::Id& s, std::string text, bool format) {
          auto& v = self<PhoneLCDView>(s);
          v.number = std::move(text);
          v.formatted = format;
        });

  rt::Class* name = rt::registerClass(PhoneNameLabelView::kClassName, "UIView");
  rt::addMethod<void(std::string, std::string, bool)>(
      name, "showName:label:animated:",
      [](const rt::Id& s, std::string n, std::string l, bool) {
        auto& v = self<PhoneNameLabelView>(s);
        v.name = std::move(n);
        v.label = std::move(l);
      });

  rt::Class* add =
      rt::registerClass(PhoneAddContactButton::kClassName, "UIButton");
  rt::addMethod<rt::Id()>(add, "addToContactsLabel", [](const rt::Id& s) {
    return rt::Id(self<PhoneAddContactButton>(s).label);
  });

  rt::registerClass(PhonePad::kClassName, "UIView");
  rt::Class* dv = rt::registerClass(PhoneDialerView::kClassName, "UIView");
  rt::addMethod<rt::Id()>(dv, "lcdView", [](const rt::Id& s) {
    return rt::Id(self<PhoneDialerView>(s).lcd);
  });
  if (options.addContactButton)
    rt::addMethod<rt::Id()>(dv, "addContactButton", [](const rt::Id& s) {
      return rt::Id(self<PhoneDialerView>(s).addContact);
    });
}

void registerDialer() {
  rt::Class* dc =
      rt::registerClass(DialerController::kClassName, "UIViewController");
  rt::addMethod<rt::Id()>(dc, "dialerView", [](const rt::Id& s) {
    return rt::Id(self<DialerController>(s).dialerView());
  });
  rt::addMethod<void(bool)>(dc, "viewWillAppear:", [](const rt::Id& s, bool) {
    self<DialerController>(s).hostDisplayChanged();
  });
  rt::addMethod<void(bool)>(dc,
                            "viewWillDisappear:", [](const rt::Id&, bool) {});
  rt::addMethod<void(rt::Id, std::string)>(
      dc, kAppendSel, [](const rt::Id& s, rt::Id, std::string text) {
        auto& d = self<DialerController>(s);
        numberOf(d) += text;
        d.hostDisplayChanged();
      });
  rt::addMethod<void(rt::Id, std::string)>(
      dc, kReplaceSel, [](const rt::Id& s, rt::Id, std::string text) {
        auto& d = self<DialerController>(s);
        std::string& n = numberOf(d);
        if (!n.empty()) n.pop_back();
        n += text;
        d.hostDisplayChanged();
      });
  rt::addMethod<void(rt::Id)>(dc, kDeleteSel, [](const rt::Id& s, rt::Id) {
    auto& d = self<DialerController>(s);
    std::string& n = numberOf(d);
    if (!n.empty()) n.pop_back();
    d.hostDisplayChanged();
  });
  rt::addMethod<void(rt::Id)>(dc, kCallSel, [](const rt::Id& s, rt::Id) {
    auto& d = self<DialerController>(s);
    std::string& n = numberOf(d);
    if (n.empty()) {
      // An empty keypad recalls the last number dialled instead of dialling.
      n = d.lastDialled;
      d.hostDisplayChanged();
      return;
    }
    auto app = PhoneApplication::shared();
    d.lastDialled = n;
    std::string number = n;
    n.clear();
    d.hostDisplayChanged();
    if (app)
      rt::send<void>(app, kDialSel, number, std::string(), 0, false, false);
  });
  rt::addMethod<void(rt::Id)>(
      dc, "_addButtonClicked:", [](const rt::Id& s, rt::Id) {
        auto& d = self<DialerController>(s);
        d.addContactRequests.push_back(numberOf(d));
      });
}

void registerApplication() {
  rt::registerClass("UIApplication");
  rt::Class* app =
      rt::registerClass(PhoneApplication::kClassName, "UIApplication");
  rt::addMethod<rt::Id()>(app, "currentViewController", [](const rt::Id& s) {
    return rt::Id(self<PhoneApplication>(s).tabBar);
  });
  rt::addMethod<bool(std::string)>(
      app, "openURL:", [](const rt::Id& s, std::string url) {
        auto& a = self<PhoneApplication>(s);
        std::string number;
        if (url.rfind("tel://", 0) == 0)
          number = url.substr(6);
        else if (url.rfind("tel:", 0) == 0)
          number = url.substr(4);
        else {
          a.openedURLs.push_back(url);
          return platform::current().openURL(url);
        }
        if (auto q = number.find('?'); q != std::string::npos) number.resize(q);
        if (number.empty()) return false;
        a.dialled.push_back({number, "", 0, false, false});
        return true;
      });
  rt::addMethod<void(std::string, std::string, int, bool, bool)>(
      app, kDialSel,
      [](const rt::Id& s, std::string number, std::string uid, int service,
         bool assist, bool assisted) {
        self<PhoneApplication>(s).dialled.push_back(
            {std::move(number), std::move(uid), service, assist, assisted});
      });
  rt::addMethod<void(rt::Id)>(
      app, "applicationDidEnterBackground:", [](const rt::Id& s, rt::Id) {
        self<PhoneApplication>(s).inBackground = true;
      });
}

struct RunningPhone {
  std::shared_ptr<PhoneApplication> app;
};

}  // namespace

void registerPhoneClasses(const PhoneHostOptions& options) {
  ui::registerClasses(platform::Process::current().runtime());
  registerViews(options);
  registerDialer();
  registerApplication();
  // The app's own classes are in place: an extension mapped before now
  // (preloaded) may install its hooks.
  platform::Process::current().finishLaunching();
}

void PhonePad::pressKey(char key) {
  if (auto d = delegate.lock())
    rt::send<void>(d, kAppendSel, shared_from_this(), std::string(1, key));
}

void PhonePad::holdZero() {
  pressKey('0');
  if (auto d = delegate.lock())
    rt::send<void>(d, kReplaceSel, shared_from_this(), std::string("+"));
}

void PhonePad::pressDelete() {
  if (auto d = delegate.lock())
    rt::send<void>(d, kDeleteSel, shared_from_this());
}

void PhonePad::pressCall() {
  if (auto d = delegate.lock()) rt::send<void>(d, kCallSel, shared_from_this());
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
  rt::send<void>(v->nameLabel, "showName:label:animated:", name, label, false);
}

const char* PhoneApplication::tabName(int tab) {
  static const char* names[] = {"favorites", "recents", "contacts", "keypad",
                                "voicemail"};
  return tab >= 0 && tab < 5 ? names[tab] : "";
}

std::shared_ptr<PhoneApplication> PhoneApplication::launch() {
  auto app = ui::makeAs<PhoneApplication>(rt::getClass(kClassName));
  app->tabBar = ui::make<ui::UITabBarController>();
  app->dialer =
      ui::makeAs<DialerController>(rt::getClass(DialerController::kClassName));
  std::vector<std::shared_ptr<ui::UIViewController>> tabs;
  for (int i = 0; i < 5; ++i) {
    if (i == kKeypad) {
      tabs.push_back(app->dialer);
    } else {
      auto nav = ui::make<ui::UINavigationController>();
      nav->title = tabName(i);
      tabs.push_back(nav);
    }
  }
  app->tabBar->setViewControllers(tabs);
  auto& running = platform::Process::current().slot<RunningPhone>();
  running = std::make_shared<RunningPhone>(RunningPhone{app});
  // The app opens on the keypad.
  app->selectTab(kKeypad);
  return app;
}

std::shared_ptr<PhoneApplication> PhoneApplication::shared() {
  auto& running = platform::Process::current().slot<RunningPhone>();
  return running ? running->app : nullptr;
}

void PhoneApplication::selectTab(int tab) {
  rt::send<void>(tabBar, "setSelectedIndex:", tab);
}

void PhoneApplication::enterBackground() {
  rt::send<void>(shared_from_this(),
                 "applicationDidEnterBackground:", shared_from_this());
}

bool PhoneApplication::openURL(const std::string& url) {
  return rt::send<bool>(shared_from_this(), "openURL:", url);
}

}  // namespace zv::hosts
