// The simulated Phone app on its own, with no extension loaded: it must
// behave like the platform's keypad, and its variants must lack exactly the
// capabilities they say.
#include <gtest/gtest.h>

#include "hosts/phone/app.h"
#include "support/sim_fixture.h"

namespace zv::hosts {
namespace {

class PhoneHostTest : public testing::SimTest {
 protected:
  std::shared_ptr<PhoneApplication> start(PhoneHostOptions options = {}) {
    return proc_.run([&] {
      return std::static_pointer_cast<PhoneApplication>(
          launch(phoneHost(options)));
    });
  }
  platform::SimProcess& proc_ = world_.launch("com.apple.mobilephone");
};

TEST_F(PhoneHostTest, KeypadTypesDeletesAndDialsItsDisplay) {
  auto app = start();
  proc_.run([&] {
    auto pad = app->dialer->dialerView()->pad;
    for (char c : std::string("0101")) pad->pressKey(c);
    pad->pressDelete();
    pad->holdZero();
    EXPECT_EQ(app->dialer->displayNumber(), "010+");
    auto v = app->dialer->dialerView();
    EXPECT_FALSE(v->addContact->isHidden());
    pad->pressDelete();
    pad->pressKey('5');
    pad->pressCall();
    ASSERT_EQ(app->dialled.size(), 1u);
    EXPECT_EQ(app->dialled[0].number, "0105");
    EXPECT_EQ(app->dialer->displayNumber(), "");
    EXPECT_TRUE(v->addContact->isHidden());
    // Call on an empty keypad recalls the last number instead of dialling.
    pad->pressCall();
    EXPECT_EQ(app->dialer->displayNumber(), "0105");
    EXPECT_EQ(app->dialled.size(), 1u);
  });
}

TEST_F(PhoneHostTest, NameLabelAddContactAndURLs) {
  auto app = start();
  proc_.run([&] {
    app->dialer->knownNumbers["10086"] = {"China Mobile", "work"};
    auto v = app->dialer->dialerView();
    for (char c : std::string("10086")) v->pad->pressKey(c);
    EXPECT_EQ(v->nameLabel->name, "China Mobile");
    EXPECT_EQ(v->nameLabel->label, "work");
    rt::send<void>(app->dialer, "_addButtonClicked:", rt::Id(v->addContact));
    EXPECT_EQ(app->dialer->addContactRequests,
              std::vector<std::string>{"10086"});
    EXPECT_EQ(rt::send<rt::Id>(v->addContact, "addToContactsLabel"),
              rt::Id(v->addContact->label));

    EXPECT_TRUE(app->openURL("tel://02012345678?x=1"));
    EXPECT_TRUE(app->openURL("tel:123"));
    EXPECT_TRUE(app->openURL("sms:123"));
    ASSERT_EQ(app->dialled.size(), 2u);
    EXPECT_EQ(app->dialled[0].number, "02012345678");
    EXPECT_EQ(app->dialled[1].number, "123");
    EXPECT_EQ(app->openedURLs, std::vector<std::string>{"sms:123"});
  });
  ASSERT_EQ(world_.events("openURL").size(), 1u);
}

TEST_F(PhoneHostTest, VariantsLackTheirCapabilities) {
  auto app = start({.settableDisplay = false,
                    .readableDisplay = true,
                    .addContactButton = false});
  proc_.run([&] {
    auto view = rt::send<rt::Id>(app->dialer, "dialerView");
    EXPECT_FALSE(rt::respondsTo(view, "addContactButton"));
    auto lcd = rt::send<rt::Id>(view, "lcdView");
    EXPECT_FALSE(rt::respondsTo(lcd, "setText:needsFormat:"));
    EXPECT_TRUE(rt::respondsTo(lcd, "text"));
    // The keypad still works on its own.
    app->dialer->dialerView()->pad->pressKey('7');
    EXPECT_EQ(rt::send<std::string>(lcd, "text"), "7");
  });
}

TEST_F(PhoneHostTest, RebuiltViewKeepsTheNumberButNotForeignSubviews) {
  auto app = start();
  proc_.run([&] {
    auto old = app->dialer->dialerView();
    old->pad->pressKey('3');
    auto marker = ui::make<ui::UIView>();
    marker->setTag(10086);
    old->addSubview(marker);
    app->dialer->rebuildView();
    auto fresh = rt::send<rt::Id>(app->dialer, "view");
    EXPECT_NE(fresh, rt::Id(old));
    EXPECT_EQ(rt::send<rt::Id>(fresh, "viewWithTag:", 10086), nullptr);
    EXPECT_EQ(app->dialer->displayNumber(), "3");
  });
}

}  // namespace
}  // namespace zv::hosts
