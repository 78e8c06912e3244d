// The dialler end to end in the Phone app with the extension loaded: keys
// pressed as a user would, what the host shows and dials, where the keypad's
// views sit on each screen, and what going to the background clears.
#include <gtest/gtest.h>

#include <filesystem>

#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/plist.h"
#include "platform/ui/sheets.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv {
namespace {

using hosts::PhoneApplication;
using testing::deviceContact;

constexpr char kKeypadPlist[] =
    "/var/mobile/Library/Preferences/zorvel.keypad.plist";

class PhoneE2ETest : public testing::World {
 protected:
  PhoneE2ETest() {
    installChinaDatabase();
    writeContacts({});
    settings_ = Dict{{"Enable", true},
                     {"DialerFormatPhoneNubmer", false},
                     {"PrefixNumber", "17951"},
                     {"PrefixLocalAreaCode", "010"}};
    keypadFlags_ = Dict{{"EnableSearch", true}};
  }

  // Beijing and Shanghai mobiles, a Guangzhou fixed line, then `more`.
  void writeContacts(std::vector<DeviceContact> more) {
    std::vector<DeviceContact> all{
        deviceContact(1, "John", "Smith", "13800138000"),
        deviceContact(2, "Mary", "Jones", "13801700000"),
        deviceContact(3, "Anna", "Lopez", "02087654321")};
    all.insert(all.end(), more.begin(), more.end());
    testing::writeDevicePeople(root_, all);
  }

  // Starts a Phone app with the extension in a new process.
  void start(hosts::PhoneHostOptions options = {},
             platform::DeviceFacts facts = {}) {
    // What the previous phone held goes away inside its own process.
    if (proc_)
      proc_->run([&] {
        app_.reset();
        controller_.reset();
      });
    writeSettings(settings_);
    writeDevicePlist(kKeypadPlist, keypadFlags_);
    proc_ = &world_.launch("com.apple.mobilephone", facts);
    app_ = proc_->run([&] {
      return std::static_pointer_cast<PhoneApplication>(
          hosts::launch(hosts::phoneHost(options), ZorvelInitializer));
    });
    world_.advance(0);
    controller_ = proc_->run(
        [] { return platform::Process::current().slot<ZVKeypadController>(); });
  }

  // Runs f in the Phone process, then lets queued main-queue work run.
  template <typename F>
  auto run(F&& f) {
    return in(*proc_, std::forward<F>(f));
  }
  // Presses keys: a digit, C (call), D (delete) or + (0 held).
  void type(const std::string& keys) {
    run([&] {
      auto& pad = *app_->dialer->dialerView()->pad;
      for (char c : keys)
        c == 'C'   ? pad.pressCall()
        : c == 'D' ? pad.pressDelete()
        : c == '+' ? pad.holdZero()
                   : pad.pressKey(c);
    });
  }
  // Long-presses the pager: its menu, if one is not up already.
  std::shared_ptr<ui::UIActionSheet> longPress() {
    run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::LongPress); });
    return run([] { return ui::UIActionSheet::presented(); });
  }
  // Presses button `index` of the pager's menu.
  void menu(int index) {
    auto sheet = longPress();
    run([&] { sheet->dismissWithClickedButtonIndex(index); });
  }
  std::shared_ptr<ZVKeypadView> pager() { return controller_->keypadView(); }
  // The current page's name (or number) lines as shown.
  std::string shown(bool number = false) {
    auto page = pager()->lcdViews()[1];
    auto& l = number ? page->numberLabels() : page->nameLabels();
    return l[0]->text() + l[1]->text() + l[2]->text();
  }
  std::vector<std::string> dialled() {
    std::vector<std::string> out;
    for (auto& d : app_->dialled) out.push_back(d.number);
    return out;
  }

  platform::SimProcess* proc_ = nullptr;
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
  EXPECT_EQ(shown(true), "1");
  EXPECT_FALSE(controller_->onoffButton()->isVisible());
  type("D");
  EXPECT_EQ(controller_->inputNumber(), "");
  EXPECT_EQ(pager()->getNumber(), "");
  EXPECT_TRUE(controller_->onoffButton()->isVisible());
  EXPECT_TRUE(pager()->deleteButton()->isHidden());
  type("+86138017");  // holding 0 types "+" into the search too
  EXPECT_EQ(controller_->inputNumber(), "+86138017");
  EXPECT_EQ(app_->dialer->displayNumber(), "");
}

TEST_F(PhoneE2ETest, InitialsFindTheContactFirstAndCallDialsIt) {
  start();
  type("57");  // J(ohn) S(mith)
  ASSERT_GE(pager()->getCount(), 1u);
  EXPECT_EQ(pager()->getNumber(), "13800138000");
  EXPECT_NE(shown().find("John"), std::string::npos) << shown();
  EXPECT_FALSE(pager()->lcdViews()[1]->nameLabels()[1]->text().empty())
      << "the matched characters are highlighted";
  type("C");
  EXPECT_EQ(dialled(), std::vector<std::string>{"13800138000"});
  EXPECT_EQ(controller_->inputNumber(), "");
}

// Numbers outside the local area are prefixed, from the keypad and through
// a tel: URL (its query dropped); an excluded one only from the menu. With
// one tab left out the host's current tab decides.
TEST_F(PhoneE2ETest, PrefixDiallingAndTheMenuForExcludedNumbers) {
  settings_["EnablePrefix"] = true;
  settings_["PrefixContacts"] = false;
  writeDevicePlist("/var/mobile/Library/Preferences/zorvel.exclude.plist",
                   Dict{{"13801700000", true}});
  start();
  // Anna Lopez, a Guangzhou fixed line; Mary Jones, a Shanghai mobile on
  // the exclude list.
  type("25C65C");
  run([&] { app_->openURL("tel://02087654321?x=1"); });
  EXPECT_EQ(dialled(),
            (std::vector<std::string>{"1795102087654321", "13801700000",
                                      "1795102087654321"}));
  type("65");
  auto sheet = longPress();
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
  EXPECT_NE(shown().find("(1/" + std::to_string(n) + ")"), std::string::npos);
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::TouchEnded); });
  auto list = controller_->listView();
  ASSERT_FALSE(list->isHidden());
  auto first = std::dynamic_pointer_cast<ZVKeypadListCell>(
      list->tableView()->cellForRowAtIndex(0));
  ASSERT_TRUE(first);
  EXPECT_EQ(first->numberLabel->text, "1380");
  EXPECT_EQ(first->typeLabel->text(), "Call");
  // Choosing a row shows its result on the pager and leaves the list up:
  // the typed row is first, so row 2 is result 1 and row 0 the last.
  run([&] { list->tableView()->selectRow(2); });
  EXPECT_EQ(pager()->index(), 1u);
  EXPECT_FALSE(list->isHidden());
  run([&] { list->tableView()->selectRow(0); });
  EXPECT_EQ(pager()->index(), n - 1);

  // One result: the list does not open.
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  type("9");
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::TouchEnded); });
  EXPECT_TRUE(list->isHidden());
}

TEST_F(PhoneE2ETest, OneMenuAtATimeAndPasteNeedsDialableText) {
  start();
  auto sheet = longPress();
  ASSERT_TRUE(sheet);
  EXPECT_EQ(sheet->tag(), ZVKeypadController::kMenuPasteReload);
  EXPECT_EQ(longPress(), sheet);
  run([] { ui::UIPasteboard::setString("call me!"); });
  run([&] { sheet->dismissWithClickedButtonIndex(0); });  // Paste
  EXPECT_EQ(controller_->inputNumber(), "");
  // Now a text with digits pastes them as typed keys.
  run([] { ui::UIPasteboard::setString("tel 138-0013"); });
  menu(0);
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
  type("C");
  EXPECT_EQ(dialled(), std::vector<std::string>{"13801700000"});
}

TEST_F(PhoneE2ETest, TheSwitchIsStoredThreeSecondsAfterTheLastPress) {
  start();
  auto flag = [&] {
    return plist::readDictionary(devicePath(kKeypadPlist))
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
  // A switch that cannot be stored (a folder where the file belongs) goes
  // back to what the file holds, nothing here: off.
  const std::string file = devicePath(kKeypadPlist);
  std::filesystem::remove(file);
  std::filesystem::create_directories(file);
  run([&] { controller_->onoffButton()->touch(); });
  EXPECT_TRUE(controller_->isSearchEnabled());
  world_.advance(3.1);
  EXPECT_FALSE(controller_->isSearchEnabled());
}

TEST_F(PhoneE2ETest, AnExceptionShowsOneAlertAndLeavesKeysToTheHost) {
  start();
  // The host's display starts failing when the controller clears it.
  proc_->run([] {
    rt::hookMessage<void(std::string, bool)>(
        rt::getClass("PHHandsetDialerLCDView"),
        "setText:needsFormat:", [](const rt::Id&, std::string, bool) {
          throw rt::Exception("NSRangeException", "display gone");
        });
  });
  type("12");
  auto alerts = world_.events("alert");
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_NE(alerts[0].detail.find("NSRangeException display gone"),
            std::string::npos);
  // The failed key and every later one went to the host.
  EXPECT_EQ(app_->dialer->displayNumber(), "12");
  EXPECT_EQ(controller_->inputNumber(), "");
  type("D");
  EXPECT_EQ(app_->dialer->displayNumber(), "1");
  EXPECT_EQ(world_.events("alert").size(), 1u);
}

TEST_F(PhoneE2ETest,
       WithoutADisplaySetterKeysAreClearedAndTypedThroughTheHost) {
  start({.settableDisplay = false});
  type("57");
  EXPECT_EQ(app_->dialer->displayNumber(), "");
  type("C");
  EXPECT_EQ(dialled(), std::vector<std::string>{"13800138000"});
}

TEST_F(PhoneE2ETest, ARebuiltKeypadLeavesKeysToTheHostUntilItReappears) {
  start();
  run([&] { app_->dialer->rebuildView(); });
  type("5");
  EXPECT_EQ(app_->dialer->displayNumber(), "5");
  type("D");
  run([&] {
    app_->selectTab(PhoneApplication::kRecents);
    app_->selectTab(PhoneApplication::kKeypad);
  });
  type("5");
  EXPECT_EQ(app_->dialer->displayNumber(), "");
  EXPECT_EQ(controller_->inputNumber(), "5");
  EXPECT_EQ(app_->dialer->dialerView()->viewWithTag(10086), pager());
}

TEST_F(PhoneE2ETest, ViewsSitWhereTheScreenAndSystemSay) {
  // The pager's top and height, the list's, and the switch's top.
  const struct {
    const char* version;
    platform::Size points, pixels;
    std::vector<double> geometry;
  } cases[] = {
      {"8.1", {320, 480}, {640, 960}, {12, 70, 75, 290, 20}},
      {"8.1", {320, 568}, {640, 1136}, {21, 80, 89, 335, 20}},
      {"8.1", {375, 667}, {750, 1334}, {45, 80, 142, 356, 20}},
      {"8.1", {414, 736}, {1242, 2208}, {55, 100, 170, 380, 25}},
      {"8.1", {768, 1024}, {1536, 2048}, {16, 80, 89, 80, 20}},  // no phone's
      {"7.0", {320, 480}, {640, 960}, {20, 70, 87, 290, 20}},
      {"7.0", {320, 568}, {640, 1136}, {20, 80, 98, 335, 20}},
  };
  for (const auto& c : cases) {
    platform::DeviceFacts facts;
    facts.systemVersion = c.version;
    facts.screenPoints = c.points;
    facts.screenPixels = c.pixels;
    start({}, facts);
    ASSERT_TRUE(controller_) << c.version << " " << c.points.height;
    auto pad = pager()->frame(), list = controller_->listView()->frame(),
         button = controller_->onoffButton()->frame();
    EXPECT_EQ((std::vector<double>{pad.origin.y, pad.size.height, list.origin.y,
                                   list.size.height, button.origin.y}),
              c.geometry)
        << c.version << " " << c.points.height;
    EXPECT_EQ(button.size, (platform::Size{70, 35}));
    world_.terminate(*proc_);
  }
}

TEST_F(PhoneE2ETest, GoingToTheBackgroundClearsOnlyWhenAutoClearIsOn) {
  start();
  type("1380");
  run([&] { app_->enterBackground(); });
  EXPECT_EQ(controller_->inputNumber(), "1380");
  settings_["DialerAutoClearNumber"] = true;
  start();
  type("1380");
  run([&] { pager()->lcdViews()[1]->perform(ui::Gesture::TouchEnded); });
  ASSERT_FALSE(controller_->listView()->isHidden());
  run([&] { app_->enterBackground(); });
  EXPECT_EQ(controller_->inputNumber(), "");
  EXPECT_TRUE(controller_->listView()->isHidden());
  EXPECT_EQ(controller_->onoffButton()->alpha(), 1);
  EXPECT_EQ(pager()->getCount(), 0u);
}

TEST_F(PhoneE2ETest, SendMessageOpensTheMessageURLAndReloadReadsContacts) {
  settings_.erase("PrefixNumber");
  start();
  type("13801700000");
  menu(1);  // Copy, Send Message (no prefix number set)
  auto opened = world_.events("openURL");
  ASSERT_FALSE(opened.empty());
  EXPECT_EQ(opened.back().detail, "sms:13801700000");

  // A contact added after start-up is found once Reload has run.
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  writeContacts({deviceContact(4, "Wei", "Zhou", "13912345678")});
  type("94");  // W Z
  EXPECT_EQ(pager()->getNumber(), "94");
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  menu(1);  // Paste, Reload
  type("94");
  EXPECT_EQ(pager()->getNumber(), "13912345678");
}

}  // namespace
}  // namespace zv
