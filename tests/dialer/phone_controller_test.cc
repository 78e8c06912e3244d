// Prefix dialling rules of ZVPhoneController on the China area database.
#include "dialer/phone_controller.h"

#include <gtest/gtest.h>

#include "support/phone_process.h"

namespace zv {
namespace {

class PhoneControllerTest : public testing::PhoneProcessTest {
 protected:
  Dict base() {
    return Dict{{"EnablePrefix", true},
                {"PrefixNumber", "17951"},
                {"PrefixLocalAreaCode", "010"}};
  }
  // Runs f with the controller of a fresh Phone process on `settings`.
  template <typename F>
  void with(const Dict& settings, F&& f) {
    launch(settings).run([&] { f(*ZVPhoneController::sharedInstance()); });
  }
};

TEST_F(PhoneControllerTest, PrefixesOnlyKnownNumbersOutsideTheLocalArea) {
  with(base(), [](ZVPhoneController& c) {
    EXPECT_TRUE(c.needsPrefixDial("138 0170 0000"));  // Shanghai mobile
    EXPECT_TRUE(c.needsPrefixDial("020-87654321"));   // Guangzhou fixed line
    EXPECT_FALSE(c.needsPrefixDial("13800138000"));   // Beijing: local
    EXPECT_FALSE(c.needsPrefixDial("01087654321"));   // Beijing fixed line
    EXPECT_FALSE(c.needsPrefixDial("1795113801700000"));  // already prefixed
    EXPECT_FALSE(c.needsPrefixDial("+14155550100"));      // area unknown
    EXPECT_FALSE(c.needsPrefixDial(""));
  });
}

TEST_F(PhoneControllerTest, SwitchesPrefixAndUnknownLocalArea) {
  Dict off = base();
  off["EnablePrefix"] = false;
  with(off, [](ZVPhoneController& c) {
    EXPECT_FALSE(c.needsPrefixDial("13801700000"));
  });
  Dict empty = base();
  empty["PrefixNumber"] = "";
  with(empty, [](ZVPhoneController& c) {
    EXPECT_FALSE(c.needsPrefixDial("13801700000"));
  });
  // A local code that the database does not know skips the local test.
  Dict unknown = base();
  unknown["PrefixLocalAreaCode"] = "999";
  with(unknown, [](ZVPhoneController& c) {
    EXPECT_TRUE(c.needsPrefixDial("13800138000"));
  });
}

TEST_F(PhoneControllerTest, ExcludedAreasDigitsAndList) {
  Dict s = base();
  s["PrefixExcludeArea"] =
      "上海  0755";  // two blanks: the empty token is skipped
  writePlist(ZVPhoneController::kDefaultExcludePath,
             Dict{{"02087654321", true}});
  with(s, [](ZVPhoneController& c) {
    EXPECT_FALSE(c.needsPrefixDial("13801700000"));    // area contains 上海
    EXPECT_FALSE(c.needsPrefixDial("075512345678"));   // digits begin with 0755
    EXPECT_FALSE(c.needsPrefixDial("020 8765 4321"));  // on the default list
    EXPECT_TRUE(c.needsPrefixDial("02012345678"));
    ASSERT_TRUE(c.exclude());
  });
  // The user's own list wins over the shipped default.
  writePlist(ZVPhoneController::kExcludePath, Dict{{"02012345678", true}});
  with(s, [](ZVPhoneController& c) {
    EXPECT_TRUE(c.needsPrefixDial("02087654321"));
    EXPECT_FALSE(c.needsPrefixDial("02012345678"));
  });
}

TEST_F(PhoneControllerTest, ChinaNumbersLoseTheCountryCode) {
  with(base(), [](ZVPhoneController& c) {
    EXPECT_EQ(c.addPrefixNumber("+8613800138000"), "1795113800138000");
    // A fixed line gets its trunk 0 back in front of the area code.
    EXPECT_EQ(c.addPrefixNumber("+86 20 1234 5678"), "1795102012345678");
    EXPECT_EQ(c.addPrefixNumber("+8602012345678"), "1795102012345678");
    EXPECT_EQ(c.addPrefixNumber("138-0013-8000"), "1795113800138000");
  });
  Dict other = base();
  other["AreaDatabase"] = "Other";
  with(other, [](ZVPhoneController& c) {
    // Any other database: the number exactly as the app handed it over.
    EXPECT_EQ(c.addPrefixNumber("+86 138-0013"), "17951+86 138-0013");
  });
}

TEST_F(PhoneControllerTest, TelURLsAndTabs) {
  with(base(), [](ZVPhoneController& c) {
    std::optional<int> tab = 3;
    c.setTabQuery([&](const rt::Id&) { return tab; });
    EXPECT_EQ(c.openURL("tel://02012345678?x=1", nullptr),
              "tel://1795102012345678");
    EXPECT_EQ(c.openURL("tel:13801700000", nullptr), "tel:1795113801700000");
    EXPECT_EQ(c.openURL("tel://13800138000?x=1", nullptr),
              "tel://13800138000?x=1");  // not due: query kept
    EXPECT_EQ(c.openURL("TEL:13801700000", nullptr), "TEL:13801700000");
    EXPECT_EQ(c.openURL("sms:13801700000", nullptr), "sms:13801700000");
    EXPECT_EQ(c.dialPhoneNumber("13801700000", nullptr), "1795113801700000");
    // Only the keypad tab prefixes by default.
    tab = 1;
    EXPECT_FALSE(c.isInAutoPrefixDialView(nullptr));
    EXPECT_EQ(c.dialPhoneNumber("13801700000", nullptr), "13801700000");
    tab = 4;
    EXPECT_FALSE(c.isInAutoPrefixDialView(nullptr));
    tab.reset();
    EXPECT_FALSE(c.isInAutoPrefixDialView(nullptr));
  });
  Dict all = base();
  for (const char* k : {"PrefixFavorites", "PrefixCallHistory",
                        "PrefixContacts", "PrefixKeypad"})
    all[k] = true;
  with(all, [](ZVPhoneController& c) {
    // Every tab on: no need to ask the app at all.
    EXPECT_TRUE(c.isInAutoPrefixDialView(nullptr));
  });
}

}  // namespace
}  // namespace zv
