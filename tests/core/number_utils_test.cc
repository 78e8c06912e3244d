#include "core/number_utils.h"

#include <gtest/gtest.h>

#include "platform/phone_number_class.h"
#include "platform/runtime/object.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

TEST(KeypadString, KeepsOnlyKeypadCharactersOfTheFirst255Bytes) {
  EXPECT_EQ(keypadString("+86 (139) 1234-5678"), "+8613912345678");
  EXPECT_EQ(keypadString("abc"), "");
  EXPECT_EQ(keypadString(""), "");
  EXPECT_EQ(keypadString("1,2;3#*"), "1,2;3#*");
  // Every byte of a non-ASCII character goes, even full-width digits.
  EXPECT_EQ(keypadString("电话１３９ 10086"), "10086");
  EXPECT_EQ(keypadString(std::string(254, 'x') + "12"), "1");
}

TEST(IndexOfPhoneNumber, IndexOfTheFirstMatchingPattern) {
  struct Case {
    std::vector<std::string> patterns;
    std::string number;
    size_t index;
  };
  const Case cases[] = {
      // Longer patterns are skipped without counting.
      {{"1234567890123", "138####"}, "13812345", 0},
      {{"999", "1234567890123", "138####"}, "13812345", 1},
      // Lengths are counted in characters, not bytes: two characters (six
      // bytes) against five digits are tested, fail and count.
      {{"电话", "10086"}, "10086", 1},
      {{"电#", "1#"}, "10086", 1},
      {{"*电*", "*0*"}, "10086", 1},
      // Six characters are still longer than five digits.
      {{"电话电话电话", "1*"}, "10086", 0},
      // Only the first inner "*" is a wildcard.
      {{"1*3*5"}, "193*5", 0},
      {{"1*3*5"}, "19335", kNotFound},
      // "1#*" fails as a hash pattern (position 2 must be "*") and is not
      // then read as the prefix pattern "1#".
      {{"1#*"}, "13912345678", kNotFound},
      {{"1#*"}, "13*", 0},
      // The number is normalised, the patterns are not.
      {{"139-1234", "1391234*"}, "139-1234-5678", 1},
      {{"10086"}, "abc", kNotFound},
      {{}, "10086", kNotFound},
      {{"1", "2", "10086"}, "10086", 2},
  };
  for (const Case& c : cases)
    EXPECT_EQ(indexOfPhoneNumber(c.patterns, c.number), c.index)
        << c.number << " against " << ::testing::PrintToString(c.patterns);
  const std::string n = "13912345678";
  for (const char* p : {"*5678", "139*", "*1234*", "139*678", "1#9",
                        "13912345678", "###########"})
    EXPECT_EQ(indexOfPhoneNumber({p}, n), 0u) << p;
  for (const char* p : {"139", "*5679", "138*", "*4321*", "139*677", "1#8", "*",
                        "**", "", "13*9*8"})
    EXPECT_EQ(indexOfPhoneNumber({p}, n), kNotFound) << p;
}

class FormattedStringValueTest : public testing::SimTest {};

TEST_F(FormattedStringValueTest, GivesWhatThePlatformFormatterGives) {
  auto& phone = world_.launch("com.apple.mobilephone");
  phone.run([] {
    // Unchanged without the number class.
    EXPECT_EQ(formattedStringValue("13912345678"), "13912345678");
    // A formatter that makes nothing of the text: its empty answer is
    // shown, not the input.
    rt::Class* cls = rt::registerClass("CNPhoneNumber");
    rt::addMethod<rt::Id(std::string)>(
        cls->metaClass(), "phoneNumberWithStringValue:",
        [cls](const rt::Id&, std::string) { return rt::create(cls); });
    rt::addMethod<std::string()>(cls, "formattedStringValue",
                                 [](const rt::Id&) { return std::string(); });
    EXPECT_EQ(formattedStringValue("13912345678"), "");
    EXPECT_EQ(formattedStringValue("139"), "139");
  });
  // The platform's own number class.
  platform::DeviceFacts facts;
  facts.locale = "zh_CN";
  auto& china = world_.launch("com.apple.mobilephone", facts);
  platform::registerPhoneNumberClass(china.context().runtime());
  china.run([] {
    EXPECT_EQ(formattedStringValue("13912345678"), "139 1234 5678");
    EXPECT_EQ(formattedStringValue("+8613912345678"), "+86 139 1234 5678");
    // Short texts are never handed to the platform.
    EXPECT_EQ(formattedStringValue("139"), "139");
    EXPECT_EQ(formattedStringValue("电话"), "电话");
  });
}

}  // namespace
}  // namespace zv
