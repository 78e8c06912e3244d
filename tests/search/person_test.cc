#include "search/person.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(PersonTest, PhoneNumberKeepsOnlyDialableCharacters) {
  ZVPerson p;
  p.setPhoneNumber("+86 (10) 8888-9999");
  EXPECT_STREQ(p.phoneNumber(), "+861088889999");
  EXPECT_EQ(p.phoneNumberLength(), 13u);
  p.setPhoneNumber("p,1;2#");
  EXPECT_STREQ(p.phoneNumber(), ",1;2#");
  p.setPhoneNumber("\xe7\x94\xb5 - ()");
  ASSERT_NE(p.phoneNumber(), nullptr);  // empty, not null
  EXPECT_STREQ(p.phoneNumber(), "");
  // The unfiltered setter stores the text as given.
  p.setPhoneNumberF("12 34");
  EXPECT_STREQ(p.phoneNumber(), "12 34");
}

TEST(PersonTest, SearchedFormsRunBackToBackInSearchOrder) {
  ZVPerson p;
  EXPECT_TRUE(p.searchedForms().empty());
  p.setNameFull("Ann Dee Go");  // not a searched form
  EXPECT_TRUE(p.searchedForms().empty());
  p.setNamePinYin("266");
  EXPECT_EQ(p.searchedForms(), "266");
  // Set out of order; laid out initials, words, reading, number.
  p.setPhoneNumber("139");
  p.setNameJianPin("23");
  EXPECT_EQ(p.searchedForms(), std::string_view("23\0"
                                                "266\0"
                                                "139",
                                                10));
  p.setNameEnglish("");
  EXPECT_EQ(p.searchedForms(), std::string_view("23\0\0"
                                                "266\0"
                                                "139",
                                                11));
  EXPECT_EQ(p.searchedForms().data(), p.nameJianPin());
  // Long texts move out of the person; the run moves with them.
  p.setNameFull(std::string(200, 'x'));
  EXPECT_EQ(p.searchedForms(), std::string_view("23\0\0"
                                                "266\0"
                                                "139",
                                                11));
}

TEST(PersonTest, GettersRejectInvalidUtf8AndNeverGiveNull) {
  ZVPerson p;
  EXPECT_EQ(p.recordId(), -1);  // no contact until one is set
  EXPECT_EQ(p.nameFull(), nullptr);
  EXPECT_EQ(p.getNameFull(), "");
  EXPECT_EQ(p.getPhoneNumber(), "");
  p.setNameFull("\xe5\xbc\xa0\xe5\xb0\x8f");  // 张小
  EXPECT_EQ(p.getNameFull(), "\xe5\xbc\xa0\xe5\xb0\x8f");
  p.setNameFull("\xe5\xbc");  // cut character
  EXPECT_STREQ(p.nameFull(), "\xe5\xbc");
  EXPECT_EQ(p.getNameFull(), "");
}

}  // namespace
}  // namespace zv
