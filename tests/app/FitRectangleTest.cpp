#include <gtest/gtest.h>

#include "app/FitRectangle.h"

namespace qv {
namespace {

// Expected values worked out by hand.

TEST(FitRectangle, FillsAPanelOfTheSameProportions) {
  EXPECT_EQ(FitRectangle(640, 480, 640, 480), (PixelRectangle{0, 0, 640, 480}));
  EXPECT_EQ(FitRectangle(640, 480, 320, 240), (PixelRectangle{0, 0, 320, 240}));
  EXPECT_EQ(FitRectangle(3, 7, 999, 2331), (PixelRectangle{0, 0, 999, 2331}));
}

TEST(FitRectangle, CentresBetweenLeftAndRightInAWiderPanel) {
  // 480 / 480 of 640 leaves 360 beside it.
  EXPECT_EQ(FitRectangle(640, 480, 1000, 480), (PixelRectangle{180, 0, 640, 480}));
  // 100 * 31 / 40 = 77.5, (101 - 77.5) / 2 = 11.75.
  EXPECT_EQ(FitRectangle(100, 40, 101, 31), (PixelRectangle{11, 0, 77, 31}));
}

TEST(FitRectangle, CentresBetweenTopAndBottomInATallerPanel) {
  EXPECT_EQ(FitRectangle(640, 480, 640, 1000), (PixelRectangle{0, 260, 640, 480}));
  // 40 * 33 / 100 = 13.2, (31 - 13.2) / 2 = 8.9.
  EXPECT_EQ(FitRectangle(100, 40, 33, 31), (PixelRectangle{0, 8, 33, 13}));
}

TEST(FitRectangle, IsEmptyWithoutAnArea) {
  EXPECT_EQ(FitRectangle(0, 480, 640, 480), PixelRectangle{});
  EXPECT_EQ(FitRectangle(640, 480, 640, -1), PixelRectangle{});
}

}  // namespace
}  // namespace qv
