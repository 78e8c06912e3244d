#include "core/area_label.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(AreaLabelTest, JoinsWithOneOrTwoBlanks) {
  EXPECT_EQ(joinArea("Mobile", "北京", AreaGap::kOne), "Mobile 北京");
  EXPECT_EQ(joinArea("Mobile", "北京", AreaGap::kTwo), "Mobile  北京");
  // The plain join adds the area whatever the label holds.
  EXPECT_EQ(joinArea("", "北京", AreaGap::kOne), " 北京");
  EXPECT_EQ(joinArea("Mobile 北京", "北京", AreaGap::kOne), "Mobile 北京 北京");
}

TEST(AreaLabelTest, AppendingKeepsAReusedLabelThatHasTheAreaAlready) {
  for (AreaGap gap : {AreaGap::kOne, AreaGap::kTwo}) {
    EXPECT_EQ(appendArea("", "北京", gap), "北京");
    EXPECT_EQ(appendArea("Mobile 北京", "北京", gap), "Mobile 北京");
    EXPECT_EQ(appendArea("北京", "北京", gap), "北京");
  }
  EXPECT_EQ(appendArea("iPhone", "上海 Mobile", AreaGap::kTwo),
            "iPhone  上海 Mobile");
  // Only the end counts: an area inside the label is added again.
  EXPECT_EQ(appendArea("北京 home", "北京", AreaGap::kOne), "北京 home 北京");
}

TEST(AreaLabelTest, EndsWithComparesBytes) {
  EXPECT_TRUE(labelEndsWithArea("Mobile  北京", "北京"));
  EXPECT_FALSE(labelEndsWithArea("北", "北京"));
  EXPECT_FALSE(labelEndsWithArea("Mobile 北京市", "北京"));
}

}  // namespace
}  // namespace zv
