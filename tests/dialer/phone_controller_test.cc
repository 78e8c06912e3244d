// Prefix dialling rules of ZVPhoneController on the China area database.
#include "dialer/phone_controller.h"

#include <gtest/gtest.h>

#include "support/phone_process.h"

namespace zv {
namespace {

class PhoneControllerTest : public testing::PhoneProcessTest {
 protected:
  // Runs f with the controller of a fresh Phone process on the prefix
  // settings with `changes`.
  template <typename F>
  void with(const Dict& changes, F&& f) {
    Dict s{{"EnablePrefix", true},
           {"PrefixNumber", "17951"},
           {"PrefixLocalAreaCode", "010"}};
    for (const auto& [key, value] : changes) s[key] = value;
    launch(s).run([&] { f(*ZVPhoneController::sharedInstance()); });
  }
};

TEST_F(PhoneControllerTest, PrefixesOnlyKnownNumbersOutsideTheLocalArea) {
  writePlist(ZVPhoneController::kDefaultExcludePath,
             Dict{{"02087654321", true}});
  // Two blanks: the empty token is skipped.
  const Dict exclude{{"PrefixExcludeArea", "上海  0755"}};
  struct Case {
    Dict changes;
    const char* number;
    bool due;
  } cases[] = {
      {{}, "138 0170 0000", true},      // Shanghai mobile
      {{}, "020-12345678", true},       // Guangzhou fixed line
      {{}, "13800138000", false},       // Beijing: local
      {{}, "01087654321", false},       // Beijing fixed line
      {{}, "1795113801700000", false},  // already prefixed
      {{}, "+14155550100", false},      // area unknown
      {{}, "", false},
      {{}, "020 8765 4321", false},  // on the default list
      {{{"EnablePrefix", false}}, "13801700000", false},
      {{{"PrefixNumber", ""}}, "13801700000", false},
      // A local code that the database does not know skips the local test.
      {{{"PrefixLocalAreaCode", "999"}}, "13800138000", true},
      {exclude, "13801700000", false},   // area contains 上海
      {exclude, "075512345678", false},  // digits begin with 0755
      {exclude, "02012345678", true},
  };
  for (const Case& c : cases)
    with(c.changes, [&](ZVPhoneController& p) {
      EXPECT_EQ(p.needsPrefixDial(c.number), c.due) << c.number;
    });
  // The user's own list wins over the shipped default.
  writePlist(ZVPhoneController::kExcludePath, Dict{{"02012345678", true}});
  with({}, [](ZVPhoneController& c) {
    EXPECT_TRUE(c.needsPrefixDial("02087654321"));
    EXPECT_FALSE(c.needsPrefixDial("02012345678"));
  });
}

TEST_F(PhoneControllerTest, ChinaNumbersLoseTheCountryCode) {
  with({}, [](ZVPhoneController& c) {
    EXPECT_EQ(c.addPrefixNumber("+8613800138000"), "1795113800138000");
    // A fixed line gets its trunk 0 back in front of the area code.
    EXPECT_EQ(c.addPrefixNumber("+86 20 1234 5678"), "1795102012345678");
    EXPECT_EQ(c.addPrefixNumber("+8602012345678"), "1795102012345678");
    EXPECT_EQ(c.addPrefixNumber("138-0013-8000"), "1795113800138000");
  });
  with({{"AreaDatabase", "Other"}}, [](ZVPhoneController& c) {
    // Any other database: the number exactly as the app handed it over.
    EXPECT_EQ(c.addPrefixNumber("+86 138-0013"), "17951+86 138-0013");
  });
}

TEST_F(PhoneControllerTest, TelURLsAndTabs) {
  with({}, [](ZVPhoneController& c) {
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
  const Dict all{{"PrefixFavorites", true},
                 {"PrefixCallHistory", true},
                 {"PrefixContacts", true},
                 {"PrefixKeypad", true}};
  with(all, [](ZVPhoneController& c) {
    // Every tab on: no need to ask the app at all.
    EXPECT_TRUE(c.isInAutoPrefixDialView(nullptr));
  });
}

}  // namespace
}  // namespace zv
