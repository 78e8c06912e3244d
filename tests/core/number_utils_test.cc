#include "core/number_utils.h"

#include <gtest/gtest.h>

#include "platform/phone_number_class.h"
#include "platform/runtime/object.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

TEST(KeypadString, KeepsOnlyKeypadCharacters) {
  EXPECT_EQ(keypadString("+86 (139) 1234-5678"), "+8613912345678");
  EXPECT_EQ(keypadString("abc"), "");
  EXPECT_EQ(keypadString(""), "");
  EXPECT_EQ(keypadString("1,2;3#*"), "1,2;3#*");
  // Every byte of a non-ASCII character goes, even full-width digits.
  EXPECT_EQ(keypadString("电话１３９ 10086"), "10086");
}

TEST(KeypadString, LooksAtTheFirst255BytesOnly) {
  std::string text(254, 'x');
  text += "12";
  EXPECT_EQ(keypadString(text), "1");
}

TEST(IndexOfPhoneNumber, LongerPatternsAreSkippedWithoutCounting) {
  EXPECT_EQ(indexOfPhoneNumber({"1234567890123", "138####"}, "13812345"), 0u);
  EXPECT_EQ(indexOfPhoneNumber({"999", "1234567890123", "138####"}, "13812345"),
            1u);
}

TEST(IndexOfPhoneNumber, LengthsAreCountedInCharactersNotBytes) {
  // Two characters (six bytes) against five digits: tested, failed and
  // counted, so the match after it has index 1.
  EXPECT_EQ(indexOfPhoneNumber({"电话", "10086"}, "10086"), 1u);
  EXPECT_EQ(indexOfPhoneNumber({"电#", "1#"}, "10086"), 1u);
  EXPECT_EQ(indexOfPhoneNumber({"*电*", "*0*"}, "10086"), 1u);
  // Six characters are still longer than five digits.
  EXPECT_EQ(indexOfPhoneNumber({"电话电话电话", "1*"}, "10086"), 0u);
}

TEST(IndexOfPhoneNumber, WildcardRules) {
  const std::string n = "13912345678";
  for (const char* p : {"*5678", "139*", "*1234*", "139*678", "1#9",
                        "13912345678", "###########"}) {
    EXPECT_EQ(indexOfPhoneNumber({p}, n), 0u) << p;
  }
  for (const char* p : {"139", "*5679", "138*", "*4321*", "139*677", "1#8", "*",
                        "**", "", "13*9*8"}) {
    EXPECT_EQ(indexOfPhoneNumber({p}, n), kNotFound) << p;
  }
  // Only the first inner "*" is a wildcard.
  EXPECT_EQ(indexOfPhoneNumber({"1*3*5"}, "193*5"), 0u);
  EXPECT_EQ(indexOfPhoneNumber({"1*3*5"}, "19335"), kNotFound);
}

TEST(IndexOfPhoneNumber, FailedHashPatternDoesNotTryStars) {
  // "1#*" fails as a hash pattern (position 2 must be "*") and is not then
  // read as the prefix pattern "1#".
  EXPECT_EQ(indexOfPhoneNumber({"1#*"}, "13912345678"), kNotFound);
  EXPECT_EQ(indexOfPhoneNumber({"1#*"}, "13*"), 0u);
}

TEST(IndexOfPhoneNumber, NormalisesTheNumberButNotThePatterns) {
  EXPECT_EQ(indexOfPhoneNumber({"139-1234", "1391234*"}, "139-1234-5678"), 1u);
  EXPECT_EQ(indexOfPhoneNumber({"10086"}, "abc"), kNotFound);
  EXPECT_EQ(indexOfPhoneNumber({}, "10086"), kNotFound);
  EXPECT_EQ(indexOfPhoneNumber({"1", "2", "10086"}, "10086"), 2u);
}

class FormattedStringValueTest : public testing::SimTest {};

TEST_F(FormattedStringValueTest, UnchangedWithoutTheNumberClass) {
  auto& phone = world_.launch("com.apple.mobilephone");
  phone.run(
      [] { EXPECT_EQ(formattedStringValue("13912345678"), "13912345678"); });
}

TEST_F(FormattedStringValueTest, GivesWhatThePlatformFormatterGives) {
  auto& phone = world_.launch("com.apple.mobilephone");
  phone.run([] {
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
}

TEST_F(FormattedStringValueTest, FormatsThroughTheNumberClass) {
  platform::DeviceFacts facts;
  facts.locale = "zh_CN";
  auto& phone = world_.launch("com.apple.mobilephone", facts);
  platform::registerPhoneNumberClass(phone.context().runtime());
  phone.run([] {
    EXPECT_EQ(formattedStringValue("13912345678"), "139 1234 5678");
    EXPECT_EQ(formattedStringValue("+8613912345678"), "+86 139 1234 5678");
    // Short texts are never handed to the platform.
    EXPECT_EQ(formattedStringValue("139"), "139");
    EXPECT_EQ(formattedStringValue("电话"), "电话");
  });
}

}  // namespace
}  // namespace zv
