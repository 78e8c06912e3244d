// The keypad controller end to end on the simulated Phone app: where its
// views sit on each screen, what going to the background clears, holding
// 0 while searching, and the menu's Send Message and Reload.
#include <gtest/gtest.h>

#include <filesystem>

#include "devicegen/device_image.h"
#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/phone/app.h"
#include "platform/plist.h"
#include "platform/ui/sheets.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using hosts::PhoneApplication;

class KeypadE2ETest : public testing::SimTest {
 protected:
  KeypadE2ETest() {
    DevicePeople people;
    people.labels = {"_$!<Mobile>!$_"};
    people.contacts = {person(1, "Mary", "Jones", "13801700000"),
                       person(2, "John", "Smith", "13800138000")};
    writeBook(people);
    keypad_ = Dict{{"EnableSearch", true}};
  }
  static DeviceContact person(int64_t id, std::string first, std::string last,
                              std::string number) {
    DeviceContact c;
    c.recordId = id;
    c.first = std::move(first);
    c.last = std::move(last);
    c.phones.push_back({number, number, 1});
    return c;
  }
  void writeBook(const DevicePeople& people) {
    auto book = root_ + "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";
    std::filesystem::create_directories(
        std::filesystem::path(book).parent_path());
    std::filesystem::remove(book);
    writeAddressBook(book, people, 1);
  }
  // Launches a Phone app with the extension on a device of these facts.
  platform::SimProcess& start(platform::DeviceFacts facts = {}) {
    // What the previous phone held goes away inside its own process.
    if (proc_)
      proc_->run([&] {
        app_.reset();
        controller_.reset();
      });
    const std::string prefs = root_ + "/var/mobile/Library/Preferences/";
    std::filesystem::create_directories(prefs);
    EXPECT_TRUE(plist::writeFile(prefs + "zorvel.plist", Value(settings_)));
    EXPECT_TRUE(
        plist::writeFile(prefs + "zorvel.keypad.plist", Value(keypad_)));
    auto& proc = world_.launch("com.apple.mobilephone", facts);
    app_ = proc.run([] {
      return std::static_pointer_cast<PhoneApplication>(
          hosts::launch(hosts::phoneHost(), ZorvelInitializer));
    });
    world_.advance(0);
    controller_ = proc.run(
        [] { return platform::Process::current().slot<ZVKeypadController>(); });
    proc_ = &proc;
    return proc;
  }
  template <typename F>
  auto run(F&& f) {
    auto done = [&] { world_.advance(0); };
    if constexpr (std::is_void_v<decltype(f())>) {
      proc_->run(std::forward<F>(f));
      done();
    } else {
      auto result = proc_->run(std::forward<F>(f));
      done();
      return result;
    }
  }
  void type(const std::string& keys) {
    run([&] {
      for (char c : keys) app_->dialer->dialerView()->pad->pressKey(c);
    });
  }
  // Long-presses the pager and presses menu button `index`.
  void menu(int index) {
    run([&] {
      controller_->keypadView()->lcdViews()[1]->perform(ui::Gesture::LongPress);
    });
    run([&] {
      ui::UIActionSheet::presented()->dismissWithClickedButtonIndex(index);
    });
  }

  Dict settings_{{"Enable", true}, {"DialerFormatPhoneNubmer", false}};
  Dict keypad_;
  platform::SimProcess* proc_ = nullptr;
  std::shared_ptr<PhoneApplication> app_;
  std::shared_ptr<ZVKeypadController> controller_;
};

TEST_F(KeypadE2ETest, ViewsSitWhereTheScreenAndSystemSay) {
  struct Case {
    const char* name;
    platform::Size points, pixels;
    const char* version;
    double pagerTop, pagerHeight, listTop, listHeight, buttonTop;
  };
  const Case cases[] = {
      {"3.5-inch", {320, 480}, {640, 960}, "8.1", 12, 70, 75, 290, 20},
      {"4-inch", {320, 568}, {640, 1136}, "8.1", 21, 80, 89, 335, 20},
      {"4.7-inch", {375, 667}, {750, 1334}, "8.1", 45, 80, 142, 356, 20},
      {"5.5-inch", {414, 736}, {1242, 2208}, "8.1", 55, 100, 170, 380, 25},
      {"other", {768, 1024}, {1536, 2048}, "8.1", 16, 80, 89, 80, 20},
      {"3.5-inch on 7.0", {320, 480}, {640, 960}, "7.0", 20, 70, 87, 290, 20},
      {"4-inch on 7.0", {320, 568}, {640, 1136}, "7.0", 20, 80, 98, 335, 20},
  };
  for (const Case& c : cases) {
    platform::DeviceFacts facts;
    facts.screenPoints = c.points;
    facts.screenPixels = c.pixels;
    facts.systemVersion = c.version;
    start(facts);
    ASSERT_TRUE(controller_) << c.name;
    auto pager = controller_->keypadView();
    auto list = controller_->listView();
    auto button = controller_->onoffButton();
    ASSERT_TRUE(pager && list && button) << c.name;
    EXPECT_EQ(pager->frame().origin.y, c.pagerTop) << c.name;
    EXPECT_EQ(pager->frame().size.height, c.pagerHeight) << c.name;
    EXPECT_EQ(list->frame().origin.y, c.listTop) << c.name;
    EXPECT_EQ(list->frame().size.height, c.listHeight) << c.name;
    EXPECT_EQ(button->frame().origin.y, c.buttonTop) << c.name;
    EXPECT_EQ(button->frame().size, (platform::Size{70, 35})) << c.name;
    world_.terminate(*proc_);
  }
}

TEST_F(KeypadE2ETest, GoingToTheBackgroundClearsOnlyWhenAutoClearIsOn) {
  start();
  type("65");
  run([&] { app_->enterBackground(); });
  EXPECT_EQ(controller_->inputNumber(), "65");
  world_.terminate(*proc_);

  settings_["DialerAutoClearNumber"] = true;
  start();
  type("1380");
  run([&] {
    controller_->keypadView()->lcdViews()[1]->perform(ui::Gesture::TouchEnded);
  });
  ASSERT_FALSE(controller_->listView()->isHidden());
  run([&] { app_->enterBackground(); });
  EXPECT_EQ(controller_->inputNumber(), "");
  EXPECT_TRUE(controller_->listView()->isHidden());
  EXPECT_EQ(controller_->onoffButton()->alpha(), 1);
  EXPECT_EQ(controller_->keypadView()->getCount(), 0u);
}

TEST_F(KeypadE2ETest, HoldingZeroReplacesTheLastTypedDigitWhileSearching) {
  start();
  // Holding 0 types 0, then replaces it with "+".
  run([&] { app_->dialer->dialerView()->pad->holdZero(); });
  EXPECT_EQ(controller_->inputNumber(), "+");
  type("86138017");
  EXPECT_EQ(controller_->inputNumber(), "+86138017");
  // The host's display stays empty: the digits are the controller's.
  EXPECT_EQ(app_->dialer->displayNumber(), "");
}

TEST_F(KeypadE2ETest, SendMessageOpensTheMessageURLAndReloadReadsContacts) {
  start();
  type("13801700000");
  menu(1);  // Copy, Send Message (no prefix number set)
  auto opened = world_.events("openURL");
  ASSERT_FALSE(opened.empty());
  EXPECT_EQ(opened.back().detail, "sms:13801700000");

  // A contact added after start-up is found once Reload has run.
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  DevicePeople people;
  people.labels = {"_$!<Mobile>!$_"};
  people.contacts = {person(1, "Mary", "Jones", "13801700000"),
                     person(2, "John", "Smith", "13800138000"),
                     person(3, "Wei", "Zhou", "13912345678")};
  writeBook(people);
  type("94");  // W Z
  EXPECT_EQ(controller_->keypadView()->getNumber(), "94");
  run([&] { controller_->keypadViewDeleteButtonLongPress(); });
  menu(1);  // Paste, Reload
  type("94");
  EXPECT_EQ(controller_->keypadView()->getNumber(), "13912345678");
}

}  // namespace
}  // namespace zv
