// The window's input on a simulated Phone app: touches land on what the
// picture shows there (keypad keys, the pager, its delete and list, the
// match menu, the tab bar), drags turn the pager's pages, and keyboard keys
// type, delete and call.
#include "tools/zorvel/window/phone_input.h"

#include <glib.h>
#include <gtest/gtest.h>

#include "dialer/keypad_controller.h"
#include "hooks/modules.h"
#include "hosts/kit/host_kit.h"
#include "platform/render/chrome_layout.h"
#include "platform/sim/device_presets.h"
#include "support/device_files.h"
#include "support/device_people.h"
#include "support/sim_fixture.h"
#include "tools/zorvel/screens/scenes.h"

namespace zv {
namespace {

ui::Point centre(const ui::Rect& r) {
  return {r.origin.x + r.size.width / 2, r.origin.y + r.size.height / 2};
}

class PhoneInputTest : public testing::SimTest,
                       public window::PhoneInput::Port {
 protected:
  PhoneInputTest() {
    testing::writeFile(root_ + "/Library/Zorvel/Area/China",
                       testing::chinaDatabase());
    testing::writeDevicePeople(
        root_, {testing::deviceContact(1, "Mary", "Jones", "13801700000"),
                testing::deviceContact(2, "Wei", "Zhang", "13912345678")});
    testing::writePlist(
        root_ + "/var/mobile/Library/Preferences/zorvel.keypad.plist",
        Dict{{"EnableSearch", true}});
    proc_ = &hosts::launchSimulated(world_, hosts::phoneHost(),
                                    *platform::simulatedDevice("8.1", "4.7"),
                                    ZorvelInitializer);
    world_.advance(0);
    app_ = proc_->run([] { return hosts::PhoneApplication::shared(); });
    input_ = std::make_unique<window::PhoneInput>(*app_, *this);
  }

  render::Scene scene() override { return cli::phoneScene(*proc_, *app_); }
  void pressAlertButton(int index) override { proc_->pressAlertButton(index); }
  void changed() override { ++changes_; }
  void closed() override {}

  void tapAt(ui::Point p) {
    proc_->run([&] {
      input_->pointerDown(p);
      input_->pointerUp(p);
    });
    world_.advance(0);
  }
  // Holds the finger still until the long press fires, then lifts it.
  void holdAt(ui::Point p) {
    proc_->run([&] {
      input_->pointerDown(p);
      const gint64 end = g_get_monotonic_time() +
                         window::PhoneInput::kLongPressSeconds * 1.5e6;
      while (g_get_monotonic_time() < end)
        g_main_context_iteration(nullptr, FALSE);
      input_->pointerUp(p);
    });
    world_.advance(0);
  }
  void dragFrom(ui::Point p, double dx) {
    proc_->run([&] {
      input_->pointerDown(p);
      input_->pointerMoved({p.x + dx / 2, p.y});
      input_->pointerUp({p.x + dx, p.y});
    });
    world_.advance(0);
  }
  // The keypad key's centre on screen (the dialer view fills the screen).
  ui::Point key(char k) {
    for (const auto& pk : cli::padKeys(screen()))
      if (pk.key == k) return centre(pk.rect);
    ADD_FAILURE() << "no key " << k;
    return {};
  }
  platform::Size screen() { return proc_->device().screenPoints; }
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

TEST_F(PhoneInputTest, TouchesPressTheKeysAndButtonsThePictureShows) {
  tapAt(key('6'));
  tapAt(key('5'));
  EXPECT_EQ(display(), "65");
  EXPECT_EQ(changes_, 2);
  // Between keys nothing is pressed.
  const auto keys = cli::padKeys(screen());
  tapAt({keys[0].rect.origin.x - 1, keys[0].rect.origin.y - 1});
  EXPECT_EQ(display(), "65");
  // Holding 0 types "+".
  holdAt(key('0'));
  EXPECT_EQ(display(), "65+");
  // The pager's delete button, then the call button dials.
  auto pager = controller()->keypadView();
  ASSERT_TRUE(pager && pager->isVisible());
  tapAt(centre(onScreen(pager->deleteButton())));
  EXPECT_EQ(display(), "65");
  tapAt(key(cli::kCallKey));
  ASSERT_EQ(app_->dialled.size(), 1u);
  // The tab bar: Recents, then back to the keypad.
  const auto tabs = render::tabPlaces(screen(), 5);
  tapAt(centre(tabs[hosts::PhoneApplication::kRecents].rect));
  EXPECT_EQ(app_->tabBar->selectedIndex(), hosts::PhoneApplication::kRecents);
  tapAt(centre(tabs[hosts::PhoneApplication::kKeypad].rect));
  EXPECT_EQ(app_->tabBar->selectedIndex(), hosts::PhoneApplication::kKeypad);
}

TEST_F(PhoneInputTest, PagerSwipesListsAndOpensItsMenuByTouch) {
  proc_->run([&] {
    for (const char* k : {"6", "5"}) input_->type("", k[0]);
  });
  world_.advance(0);
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
  const auto layout = render::sheetLayout(screen(), *sheet);
  tapAt(centre(layout.buttons.back().rect));
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
  proc_->run([&] { input_->key("Return", '\r'); });
  world_.advance(0);
  ASSERT_EQ(app_->dialled.size(), 1u);
  EXPECT_EQ(app_->dialled[0].number, "13#*");
}

}  // namespace
}  // namespace zv
