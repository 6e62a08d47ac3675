#include <gtest/gtest.h>

#include <limits>

#include "navigation/EyeHeight.h"

namespace qv {
namespace {

TEST(EyeHeight, StaysBetweenHalfAUnitAndTenExtentsAlongY) {
  const SceneBox box{{0, -2, 0}, {900, 8, 900}};
  EXPECT_EQ(LimitEyeHeight(0.2, box), 0.5f);
  EXPECT_EQ(LimitEyeHeight(99.5, box), 99.5f);
  EXPECT_EQ(LimitEyeHeight(101, box), 100.0f);
  EXPECT_EQ(LimitEyeHeight(99999, std::nullopt), 99999.0f);
  EXPECT_EQ(LimitEyeHeight(std::numeric_limits<double>::quiet_NaN(), box), 0.5f);
  const SceneBox flat{{0, 3, 0}, {900, 3, 900}};
  EXPECT_EQ(LimitEyeHeight(70, flat), 0.5f);
}

TEST(EyeHeight, StepsToMultiplesOfFour) {
  EXPECT_EQ(RaisedEyeHeight(70, std::nullopt), 76.0f);  // 17.5 is rounded to 18
  EXPECT_EQ(RaisedEyeHeight(69, std::nullopt), 72.0f);
  EXPECT_EQ(RaisedEyeHeight(70, SceneBox{{0, 0, 0}, {1, 7.5f, 1}}), 75.0f);
  EXPECT_EQ(LoweredEyeHeight(70), 68.0f);
  EXPECT_EQ(LoweredEyeHeight(5), 0.5f);
}

}  // namespace
}  // namespace qv
