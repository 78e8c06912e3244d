// The window's input on a simulated Phone app: touches land on what the
// window shows there (keypad keys, the pager, its delete and list, the
// match menu, the tab bar, an alert's buttons), drags turn the pager's
// pages, and keyboard keys type, delete and call, or fill a text alert.
#include "tools/zorvel/window/phone_input.h"

#include <glib.h>
#include <gtest/gtest.h>

#include "dialer/keypad_controller.h"
#include "support/device_people.h"
#include "support/world.h"

namespace zv {
namespace {

ui::Point centre(const ui::Rect& r) {
  return {r.origin.x + r.size.width / 2, r.origin.y + r.size.height / 2};
}

class PhoneInputTest : public testing::World, public window::PhoneInput::Port {
 protected:
  PhoneInputTest() {
    installChinaDatabase();
    testing::writeDevicePeople(
        root_, {testing::deviceContact(1, "Mary", "Jones", "13801700000"),
                testing::deviceContact(2, "Wei", "Zhang", "13912345678")});
    writeDevicePlist("/var/mobile/Library/Preferences/zorvel.keypad.plist",
                     {{"EnableSearch", true}});
    proc_ = &start(hosts::phoneHost());
    app_ = proc_->run([] { return hosts::PhoneApplication::shared(); });
    input_ = std::make_unique<window::PhoneInput>(*app_, *this);
  }

  std::shared_ptr<ui::UIWindow> window() override {
    return hosts::keyWindow(*proc_);
  }
  void changed() override { ++changes_; }
  void closed() override {}

  void tapAt(ui::Point p) {
    in(*proc_, [&] {
      input_->pointerDown(p);
      input_->pointerUp(p);
    });
  }
  // Holds the finger still until the long press fires, then lifts it.
  void holdAt(ui::Point p) {
    in(*proc_, [&] {
      input_->pointerDown(p);
      const gint64 end = g_get_monotonic_time() +
                         window::PhoneInput::kLongPressSeconds * 1.5e6;
      while (g_get_monotonic_time() < end)
        g_main_context_iteration(nullptr, FALSE);
      input_->pointerUp(p);
    });
  }
  void dragFrom(ui::Point p, double dx) {
    in(*proc_, [&] {
      input_->pointerDown(p);
      input_->pointerMoved({p.x + dx / 2, p.y});
      input_->pointerUp({p.x + dx, p.y});
    });
  }
  // The keypad key's place on screen, as the window lays it out.
  ui::Rect key(char k) {
    return proc_->run([&] {
      window();
      for (const auto& pk : app_->dialer->dialerView()->pad->keys())
        if (pk->key == k) return onScreen(pk);
      ADD_FAILURE() << "no key " << k;
      return ui::Rect{};
    });
  }
  ui::Point tabCentre(int tab) {
    return proc_->run(
        [&] { return centre(onScreen(window()->tabBar()->buttons()[tab])); });
  }
  // The number typed so far (the extension's keypad holds it).
  std::string display() { return controller()->inputNumber(); }
  std::shared_ptr<ZVKeypadController> controller() {
    return proc_->run(
        [] { return platform::Process::current().slot<ZVKeypadController>(); });
  }
  // Where `view` is on screen (no scrolled or scaled view above it).
  static ui::Rect onScreen(std::shared_ptr<ui::UIView> view) {
    ui::Rect r{{0, 0}, view->frame().size};
    for (; view; view = view->superview()) {
      r.origin.x += view->frame().origin.x;
      r.origin.y += view->frame().origin.y;
    }
    return r;
  }
  ui::Point pagerCentre() {
    return centre(onScreen(controller()->keypadView()));
  }

  platform::SimProcess* proc_ = nullptr;
  std::shared_ptr<hosts::PhoneApplication> app_;
  std::unique_ptr<window::PhoneInput> input_;
  int changes_ = 0;
};

TEST_F(PhoneInputTest, TouchesPressTheKeysAndButtonsTheWindowShows) {
  tapAt(centre(key('6')));
  tapAt(centre(key('5')));
  EXPECT_EQ(display(), "65");
  EXPECT_EQ(changes_, 2);
  // Between keys nothing is pressed.
  const ui::Rect one = key('1');
  tapAt({one.origin.x + one.size.width + 2, one.origin.y + 2});
  EXPECT_EQ(display(), "65");
  // Holding 0 types "+".
  holdAt(centre(key('0')));
  EXPECT_EQ(display(), "65+");
  // The pager's delete button, then the call button dials.
  auto pager = controller()->keypadView();
  ASSERT_TRUE(pager && pager->isVisible());
  tapAt(centre(onScreen(pager->deleteButton())));
  EXPECT_EQ(display(), "65");
  tapAt(centre(proc_->run([&] {
    window();
    return onScreen(app_->dialer->dialerView()->pad->callButton());
  })));
  ASSERT_EQ(app_->dialled.size(), 1u);
  // The tab bar: Recents, then back to the keypad.
  for (int tab :
       {hosts::PhoneApplication::kRecents, hosts::PhoneApplication::kKeypad}) {
    tapAt(tabCentre(tab));
    EXPECT_EQ(app_->tabBar->selectedIndex(), tab);
  }
}

TEST_F(PhoneInputTest, PagerSwipesListsAndOpensItsMenuByTouch) {
  in(*proc_, [&] {
    for (char k : {'6', '5'}) input_->type("", k);
  });
  auto pager = controller()->keypadView();
  ASSERT_TRUE(pager && pager->isVisible());
  ASSERT_EQ(pager->getCount(), 2);
  EXPECT_EQ(pager->getCurIndex(), 0);
  // A swipe to the left shows the next match, a short one too.
  dragFrom(pagerCentre(), -60);
  EXPECT_EQ(pager->getCurIndex(), 1);
  dragFrom(pagerCentre(), 60);
  EXPECT_EQ(pager->getCurIndex(), 0);
  // Holding the match opens its menu; a touch on its cancel button closes it.
  holdAt(pagerCentre());
  auto sheet = proc_->run([] { return ui::UIActionSheet::presented(); });
  ASSERT_TRUE(sheet);
  const ui::Point cancel = proc_->run([&] {
    window();
    return centre(onScreen(sheet->subviews().at(sheet->cancelButtonIndex())));
  });
  // Keys do not reach the keypad under the sheet.
  proc_->run([&] { EXPECT_FALSE(input_->type("5", '5')); });
  tapAt(cancel);
  EXPECT_FALSE(proc_->run([] { return ui::UIActionSheet::presented(); }));
  // A tap on the match opens the list of all matches.
  tapAt(pagerCentre());
  ASSERT_TRUE(controller()->listView());
  EXPECT_FALSE(controller()->listView()->isHidden());
}

TEST_F(PhoneInputTest, KeyboardTypesDeletesAndCalls) {
  struct Key {
    std::string name;
    uint32_t character;
    bool taken;
  } keys[] = {{"KP_1", '1', true},       {"3", '3', true},
              {"numbersign", '#', true}, {"a", 'a', false},
              {"plus", '+', true},       {"BackSpace", 0, true},
              {"F1", 0, false},          {"asterisk", '*', true}};
  proc_->run([&] {
    for (const auto& k : keys)
      EXPECT_EQ(input_->type(k.name, k.character), k.taken) << k.name;
  });
  EXPECT_EQ(display(), "13#*");
  in(*proc_, [&] { input_->key("Return", '\r'); });
  ASSERT_EQ(app_->dialled.size(), 1u);
  EXPECT_EQ(app_->dialled[0].number, "13#*");
}

TEST_F(PhoneInputTest, TextAlertTakesTheKeyboardAndItsButtonsTaps) {
  std::vector<std::pair<int, std::string>> pressed;
  auto alert = proc_->run([&] {
    auto a = ui::make<ui::UIAlertView>();
    a->title = "Name";
    a->cancelButtonTitle = "Cancel";
    a->otherButtonTitles = {"Save"};
    a->alertViewStyle = ui::AlertViewStyle::PlainTextInput;
    a->delegate = [&pressed](ui::UIAlertView& v, int i) {
      pressed.emplace_back(i, v.inputText);
    };
    a->show();
    return a;
  });
  proc_->run([&] {
    for (uint32_t c : {U'W', U'é', U'i', U'5'}) input_->type("", c);
    input_->type("BackSpace", 0);
    EXPECT_EQ(display(), "");  // the keypad under the alert got nothing
  });
  // A touch beside the panel does nothing; one on "Save" presses it.
  tapAt({5, 100});
  EXPECT_TRUE(pressed.empty());
  const ui::Point save = proc_->run([&] {
    auto w = window();
    return centre(onScreen(w->subviews().back()->subviews().at(1)));
  });
  tapAt(save);
  ASSERT_EQ(pressed.size(), 1u);
  EXPECT_EQ(pressed[0], std::make_pair(1, std::string("Wéi")));
  EXPECT_FALSE(proc_->openAlert());
}

}  // namespace
}  // namespace zv
