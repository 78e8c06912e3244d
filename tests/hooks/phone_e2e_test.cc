// The dialler end to end: a simulated Phone app on a device with contacts,
// the China area database and settings; ZorvelInitializer installs the
// hooks; the test presses keys as a user would and looks at what the host
// shows and dials.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "area/area_compiler.h"
#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/plist.h"
#include "platform/ui/sheets.h"
#include "search/device_image.h"
#include "sim_fixture.h"

namespace zv {
namespace {

using hosts::PhoneApplication;

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// The compiled China database, made once for the whole suite.
const std::string& chinaDatabase() {
  static const std::string bytes = area::compile(area::parseSource(
      readFile(ZV_SOURCE_DIR "/data/area/China.txt"), "China"));
  return bytes;
}

DeviceContact contact(int64_t id, std::string first, std::string last,
                      std::string number) {
  DeviceContact c;
  c.recordId = id;
  c.first = std::move(first);
  c.last = std::move(last);
  c.phones.push_back({number, number, 1});
  return c;
}

class PhoneE2ETest : public testing::SimTest {
 protected:
  PhoneE2ETest() {
    write("/Library/Zorvel/Area/China", chinaDatabase());
    DevicePeople people;
    people.labels = {"_$!<Mobile>!$_"};
    // Beijing and Shanghai mobiles, a Guangzhou fixed line.
    people.contacts = {contact(1, "John", "Smith", "13800138000"),
                       contact(2, "Mary", "Jones", "13801700000"),
                       contact(3, "Anna", "Lopez", "02087654321")};
    auto book = root_ + "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";
    std::filesystem::create_directories(
        std::filesystem::path(book).parent_path());
    writeAddressBook(book, people, 1);
    settings_ = Dict{{"Enable", true},
                     {"DialerFormatPhoneNubmer", false},
                     {"PrefixNumber", "17951"},
                     {"PrefixLocalAreaCode", "010"}};
    keypadFlags_ = Dict{{"EnableSearch", true}};
  }

  void write(const std::string& devicePath, const std::string& bytes) {
    auto path = std::filesystem::path(root_ + devicePath);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }
  void writePlist(const std::string& devicePath, const Dict& dict) {
    auto path = std::filesystem::path(root_ + devicePath);
    std::filesystem::create_directories(path.parent_path());
    ASSERT_TRUE(plist::writeFile(path.string(), Value(dict)));
  }

  // Starts the Phone app with the extension loaded.
  void start(hosts::PhoneHostOptions options = {}) {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist", settings_);
    writePlist("/var/mobile/Library/Preferences/zorvel.keypad.plist",
               keypadFlags_);
    app_ = proc_.run([&] {
      return std::static_pointer_cast<PhoneApplication>(
          hosts::launch(hosts::phoneHost(options), ZorvelInitializer));
    });
    world_.advance(0);
    controller_ = proc_.run(
        [] { return platform::Process::current().slot<ZVKeypadController>(); });
  }

  // Runs f in the Phone process, then lets queued main-queue work run.
  template <typename F>
  auto run(F&& f) {
    if constexpr (std::is_void_v<decltype(f())>) {
      proc_.run(std::forward<F>(f));
      world_.advance(0);
    } else {
      auto result = proc_.run(std::forward<F>(f));
      world_.advance(0);
      return result;
    }
  }
  void type(const std::string& keys) {
    run([&] {
      for (char c : keys) app_->dialer->dialerView()->pad->pressKey(c);
    });
  }
  void press(const std::function<void(hosts::PhonePad&)>& f) {
    run([&] { f(*app_->dialer->dialerView()->pad); });
  }
  std::shared_ptr<ZVKeypadView> pager() { return controller_->keypadView(); }
  // The current page's name and number lines as shown.
  std::string shownName() {
    auto& l = pager()->lcdViews()[1]->nameLabels();
    return l[0]->text() + l[1]->text() + l[2]->text();
  }
  std::string shownNumber() {
    auto& l = pager()->lcdViews()[1]->numberLabels();
    return l[0]->text() + l[1]->text() + l[2]->text();
  }
  std::vector<std::string> dialled() {
    std::vector<std::string> out;
    for (auto& d : app_->dialled) out.push_back(d.number);
    return out;
  }

  platform::SimProcess& proc_ = world_.launch("com.apple.mobilephone");
  Dict settings_, keypadFlags_;
  std::shared_ptr<PhoneApplication> app_;
  std::shared_ptr<ZVKeypadController> controller_;
};

TEST_F(PhoneE2ETest, OneDigitShowsTheTypedEntryAndDeletingShowsTheSwitch) {
  start();
  ASSERT_TRUE(controller_);
  EXPECT_TRUE(controller_->onoffButton()->isVisible());
  type("1");
  EXPECT_EQ(app_->dialer->displayNumber(), "");  // consumed by the search
  ASSERT_EQ(pager()->getCount(), 1u);
  EXPECT_EQ(pager()->getNumber(), "1");
  EXPECT_EQ(shownNumber(), "1");
  EXPECT_FALSE(controller_->onoffButton()->isVisible());
  press([](hosts::PhonePad& p) { p.pressDelete(); });
  EXPECT_EQ(controller_->inputNumber(), "");
  EXPECT_EQ(pager()->getNumber(), "");
  EXPECT_TRUE(controller_->onoffButton()->isVisible());
  EXPECT_TRUE(pager()->deleteButton()->isHidden());
}

TEST_F(PhoneE2ETest, InitialsFindTheContactFirstAndCallDialsIt) {
  start();
  type("57");  // J(ohn) S(mith)
  ASSERT_GE(pager()->getCount(), 1u);
  EXPECT_EQ(pager()->getNumber(), "13800138000");
  EXPECT_NE(shownName().find("John"), std::string::npos) << shownName();
  EXPECT_FALSE(pager()->lcdViews()[1]->nameLabels()[1]->text().empty())
      << "the matched characters are highlighted";
  press([](hosts::PhonePad& p) { p.pressCall(); });
  EXPECT_EQ(dialled(), std::vector<std::string>{"13800138000"});
  EXPECT_EQ(controller_->inputNumber(), "");
}

TEST_F(PhoneE2ETest, PrefixDiallingOutsideTheLocalAreaAndTheExcludeList) {
  settings_["EnablePrefix"] = true;
  start();
  type("57");  // John Smith, a Beijing mobile: local, no prefix
  press([](hosts::PhonePad& p) { p.pressCall(); });
  type("65");  // Mary Jones, a Shanghai mobile
  press([](hosts::PhonePad& p) { p.pressCall(); });
  EXPECT_EQ(dialled(),
            (std::vector<std::string>{"13800138000", "1795113801700000"}));
  // Through a tel: URL too, its query dropped.
  run([&] { app_->openURL("tel://13801700000?x=1"); });
  EXPECT_EQ(dialled().back(), "1795113801700000");
}

TEST_F(PhoneE2ETest, ExcludedNumbersArePrefixedOnlyFromTheMenu) {
  settings_["EnablePrefix"] = true;
  writePlist("/var/mobile/Library/Preferences/zorvel.exclude.plist",
             Dict{{"13801700000", true}});
  start();
  type("65");
  press([](hosts::PhonePad& p) { p.pressCall(); });
  EXPECT_EQ(dialled().back(), "13801700000");
  type("65");
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::LongPress); });
  auto sheet = run([] { return ui::UIActionSheet::presented(); });
  ASSERT_TRUE(sheet);
  EXPECT_EQ(sheet->tag(), ZVKeypadController::kMenuCopyPrefixMessage);
  EXPECT_EQ(sheet->buttons(),
            (std::vector<std::string>{"Copy", "17951 Prefix Dial",
                                      "Send Message", "Cancel"}));
  run([&] { sheet->dismissWithClickedButtonIndex(1); });
  EXPECT_EQ(dialled().back(), "1795113801700000");
}

TEST_F(PhoneE2ETest, ListOpensWithTwoResultsAndPutsTheTypedNumberFirst) {
  start();
  type("1380");  // both 1380... mobiles by number, then the typed row
  const size_t n = pager()->getCount();
  ASSERT_GE(n, 3u);
  EXPECT_TRUE(pager()->persons().back()->priority() & ZVPerson::kTypedNumber);
  EXPECT_NE(shownName().find("(1/" + std::to_string(n) + ")"),
            std::string::npos);
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::TouchEnded); });
  auto list = controller_->listView();
  ASSERT_FALSE(list->isHidden());
  auto first = std::dynamic_pointer_cast<ZVKeypadListCell>(
      list->tableView()->cellForRowAtIndex(0));
  ASSERT_TRUE(first);
  EXPECT_EQ(first->numberLabel->text, "1380");
  EXPECT_EQ(first->typeLabel->text(), "Call");
  // Choosing the second row shows the first search result on the pager.
  run([&] { list->tableView()->selectRow(1); });
  EXPECT_EQ(pager()->index(), 0u);
  EXPECT_FALSE(list->isHidden());

  // One result: the list does not open.
  press([](hosts::PhonePad& p) { p.pressDelete(); });
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  type("9");
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::TouchEnded); });
  EXPECT_TRUE(list->isHidden());
}

TEST_F(PhoneE2ETest, OneMenuAtATimeAndPasteNeedsDialableText) {
  start();
  auto longPress = [&] {
    run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::LongPress); });
  };
  longPress();
  auto sheet = run([] { return ui::UIActionSheet::presented(); });
  ASSERT_TRUE(sheet);
  EXPECT_EQ(sheet->tag(), ZVKeypadController::kMenuPasteReload);
  longPress();
  EXPECT_EQ(run([] { return ui::UIActionSheet::presented(); }), sheet);
  run([] { ui::UIPasteboard::setString("call me!"); });
  run([&] { sheet->dismissWithClickedButtonIndex(0); });  // Paste
  EXPECT_EQ(controller_->inputNumber(), "");
  // Now a text with digits pastes them as typed keys.
  longPress();
  run([] { ui::UIPasteboard::setString("tel 138-0013"); });
  run([] { ui::UIActionSheet::presented()->dismissWithClickedButtonIndex(0); });
  EXPECT_EQ(controller_->inputNumber(), "1380013");
  EXPECT_EQ(pager()->getNumber(), "13800138000");
}

TEST_F(PhoneE2ETest, SearchOffTypesIntoTheHostWithAreasOnItsLabels) {
  keypadFlags_["EnableSearch"] = false;
  start();
  type("13801700000");
  EXPECT_EQ(app_->dialer->displayNumber(), "13801700000");
  EXPECT_TRUE(pager()->isHidden());
  auto view = app_->dialer->dialerView();
  EXPECT_EQ(view->addContact->label->text(), "Add to Contacts 上海市");
  EXPECT_EQ(view->nameLabel->label, "上海市");
  press([](hosts::PhonePad& p) { p.pressCall(); });
  EXPECT_EQ(dialled(), std::vector<std::string>{"13801700000"});
}

TEST_F(PhoneE2ETest, TheSwitchIsStoredThreeSecondsAfterTheLastPress) {
  start();
  auto flag = [&] {
    return plist::readDictionary(
               root_ + "/var/mobile/Library/Preferences/zorvel.keypad.plist")
        .value()["EnableSearch"]
        .boolValue();
  };
  run([&] { controller_->onoffButton()->touch(); });
  world_.advance(2);
  run([&] { controller_->onoffButton()->touch(); });
  run([&] { controller_->onoffButton()->touch(); });
  EXPECT_FALSE(controller_->isSearchEnabled());
  world_.advance(2.9);
  EXPECT_TRUE(flag());  // not stored yet
  world_.advance(0.2);
  EXPECT_FALSE(flag());
}

TEST_F(PhoneE2ETest, AnExceptionShowsOneAlertAndLeavesKeysToTheHost) {
  start();
  // The host's display starts failing when the controller clears it.
  proc_.run([] {
    rt::hookMessage<void(std::string, bool)>(
        rt::getClass("PHHandsetDialerLCDView"),
        "setText:needsFormat:", [](const rt::Id&, std::string, bool) {
          throw rt::Exception("NSRangeException", "display gone");
        });
  });
  type("12");
  auto alerts = world_.events("alert");
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_EQ(alerts[0].detail.substr(0, 16), "Zorvel Exception");
  EXPECT_NE(alerts[0].detail.find("NSRangeException display gone"),
            std::string::npos);
  // The failed key and every later one went to the host.
  EXPECT_EQ(app_->dialer->displayNumber(), "12");
  EXPECT_EQ(controller_->inputNumber(), "");
  press([](hosts::PhonePad& p) { p.pressDelete(); });
  EXPECT_EQ(app_->dialer->displayNumber(), "1");
  EXPECT_EQ(world_.events("alert").size(), 1u);
}

TEST_F(PhoneE2ETest,
       WithoutADisplaySetterKeysAreClearedAndTypedThroughTheHost) {
  start({.settableDisplay = false});
  type("57");
  EXPECT_EQ(app_->dialer->displayNumber(), "");
  press([](hosts::PhonePad& p) { p.pressCall(); });
  EXPECT_EQ(dialled(), std::vector<std::string>{"13800138000"});
}

TEST_F(PhoneE2ETest, ARebuiltKeypadLeavesKeysToTheHostUntilItReappears) {
  start();
  run([&] { app_->dialer->rebuildView(); });
  type("5");
  EXPECT_EQ(app_->dialer->displayNumber(), "5");
  press([](hosts::PhonePad& p) { p.pressDelete(); });
  run([&] {
    app_->selectTab(PhoneApplication::kRecents);
    app_->selectTab(PhoneApplication::kKeypad);
  });
  type("5");
  EXPECT_EQ(app_->dialer->displayNumber(), "");
  EXPECT_EQ(controller_->inputNumber(), "5");
  EXPECT_EQ(app_->dialer->dialerView()->viewWithTag(10086), pager());
}

}  // namespace
}  // namespace zv
