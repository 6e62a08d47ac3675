#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "render/frame/EdgeMask.h"

namespace qv {
namespace {

ScreenImage GreyScreen(int width, int height) {
  ScreenImage screen;
  screen.Resize(width, height);
  for (int y = 0; y < height; ++y) std::fill_n(screen.Row(y), 3 * width, std::uint8_t{100});
  return screen;
}

using Pixels = std::set<std::pair<int, int>>;

Pixels MarkedIn(const ScreenImage& screen) {
  EdgeMask mask;
  mask.Resize(screen.width, screen.height);
  mask.Mark(screen);
  Pixels marked;
  for (int y = 0; y < screen.height; ++y) {
    for (int x = 0; x < screen.width; ++x) {
      if (mask.At(x, y)) marked.insert({x, y});
    }
  }
  return marked;
}

TEST(EdgeMask, MarksPairsThatDifferBySixteenInOneChannel) {
  ScreenImage screen = GreyScreen(6, 5);
  screen.Row(2)[10] = 115;
  EXPECT_TRUE(MarkedIn(screen).empty());
  screen.Row(2)[10] = 116;
  // The pixel with its neighbours to the right and above, and those of which it is one.
  const Pixels around{{3, 2}, {4, 2}, {3, 3}, {4, 3}, {2, 2}, {3, 1}, {2, 1}};
  EXPECT_EQ(MarkedIn(screen), around);
  screen.Row(2)[10] = 84;
  EXPECT_EQ(MarkedIn(screen), around);
  screen.Row(2)[10] = 100;
  screen.Row(2)[9] = 84;
  EXPECT_EQ(MarkedIn(screen), around);
  screen.Row(2)[9] = 100;
  screen.Row(2)[11] = 116;
  EXPECT_EQ(MarkedIn(screen), around);
}

TEST(EdgeMask, BeginsNoPairInTheLastColumnAndRow) {
  ScreenImage screen = GreyScreen(4, 4);
  screen.Row(3)[0] = 0;  // top left: met from below only, (1, 3) begins no pair with it
  EXPECT_EQ(MarkedIn(screen), (Pixels{{0, 3}, {0, 2}}));
  ScreenImage line = GreyScreen(5, 1);
  line.Row(0)[6] = 0;
  EXPECT_TRUE(MarkedIn(line).empty());
}

TEST(EdgeMask, ForgetsOldMarksAndClipsRectangles) {
  ScreenImage screen = GreyScreen(10, 9);
  screen.Row(8)[27] = 0;
  EdgeMask mask;
  mask.Resize(10, 9);
  mask.Mark(screen);
  EXPECT_TRUE(mask.At(9, 8) && mask.At(8, 7));
  EXPECT_TRUE(mask.AnyIn(8, 8, 4, 4));
  EXPECT_FALSE(mask.AnyIn(4, 4, 4, 3));
  EXPECT_EQ(mask.Row(8)[9], ~0u);
  mask.Mark(GreyScreen(10, 9));
  EXPECT_FALSE(mask.AnyIn(0, 0, 10, 9));
}

}  // namespace
}  // namespace qv
