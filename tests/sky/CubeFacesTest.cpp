#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "sky/CubeFaces.h"

namespace qv::sky {
namespace {

constexpr int kFront = 0, kLeft = 1, kBack = 2, kRight = 3, kUp = 4, kDown = 5;

struct Case {
  Vec3 direction;
  CubeFaces::Texel texel;
};

void ExpectTexel(const Case& c) {
  const CubeFaces::Texel got = CubeFaces::TexelOf(c.direction);
  EXPECT_EQ(got.face, c.texel.face) << c.direction.transpose();
  EXPECT_EQ(got.column, c.texel.column) << c.direction.transpose();
  EXPECT_EQ(got.row, c.texel.row) << c.direction.transpose();
}

// Columns are trunc(1023 u), rows trunc(1023 (1 - v)), with u and v worked out by hand.
TEST(CubeFaces, TakesDirectionsToPixels) {
  const Case cases[] = {
      {{1, 0, 0}, {kRight, 511, 511}},  {{2, -1, 0.5f}, {kRight, 767, 383}},  // u = 0.75, v = 0.625
      {{-2, 1, -1}, {kLeft, 767, 767}},                                       // u = 0.75, v = 0.25
      {{2, 8, 1}, {kFront, 639, 447}},  // u = 0.625, v = 0.5625
      {{1, -4, 2}, {kBack, 383, 255}},  // u = 0.375, v = 0.75
      {{-3, 2, 8}, {kUp, 319, 639}},    // u = 0.3125, v = 0.375
      {{1, 2, -8}, {kDown, 575, 383}},  // u = 0.5625, v = 0.625
  };
  for (const Case& c : cases) ExpectTexel(c);
}

TEST(CubeFaces, SettlesTiesBetweenAxes) {
  const Case cases[] = {
      {{1, 1, 0}, {kFront, 1023, 511}},   // x and y: y
      {{-1, -1, 0}, {kBack, 1023, 511}},  //
      {{1, 0, 1}, {kUp, 1023, 511}},      // x and z: z
      {{0, 1, 1}, {kUp, 511, 1023}},      // y and z: z
      {{0, -3, -3}, {kDown, 511, 1023}},  //
      {{5, 5, 5}, {kUp, 1023, 1023}},     // all three: z
  };
  for (const Case& c : cases) ExpectTexel(c);
}

TEST(CubeFaces, GivesAPixelForEveryFloat) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInf = std::numeric_limits<float>::infinity();
  constexpr float kMax = std::numeric_limits<float>::max();
  constexpr float kMin = std::numeric_limits<float>::denorm_min();
  const float values[] = {0, -0.0f, 1, -1, kNan, kInf, -kInf, kMax, -kMax, kMin, -kMin};
  for (float x : values) {
    for (float y : values) {
      for (float z : values) {
        const CubeFaces::Texel texel = CubeFaces::TexelOf({x, y, z});
        ASSERT_TRUE(texel.face >= 0 && texel.face < 6) << x << ' ' << y << ' ' << z;
        ASSERT_TRUE(texel.column >= 0 && texel.column < 1024) << x << ' ' << y << ' ' << z;
        ASSERT_TRUE(texel.row >= 0 && texel.row < 1024) << x << ' ' << y << ' ' << z;
      }
    }
  }
}

TEST(CubeFaces, PixelsMapBackToThemselves) {
  for (int face = 0; face < 6; ++face) {
    for (int row = 0; row < 1023; row += 31) {
      for (int column = 0; column < 1023; column += 31) {
        const Vec3 direction = CubeFaces::DirectionOf({face, column, row});
        ExpectTexel({direction, {face, column, row}});
        ExpectTexel({direction * 37.5f, {face, column, row}});
      }
    }
  }
}

TEST(CubeFaces, SamplesRedGreenBlueOfItsPixel) {
  CubeFaces faces;
  faces.pixels[kLeft].assign(std::size_t{1024} * 1024 * 4, 0);
  std::uint8_t* pixel = &faces.pixels[kLeft][(std::size_t{767} * 1024 + 767) * 4];
  pixel[0] = 51;   // blue
  pixel[1] = 102;  // green
  pixel[2] = 255;  // red
  const Vec3 color = faces.Sample({-2, 1, -1});
  EXPECT_FLOAT_EQ(color.x(), 1.0f);
  EXPECT_FLOAT_EQ(color.y(), 0.4f);
  EXPECT_FLOAT_EQ(color.z(), 0.2f);
  EXPECT_EQ(faces.Sample({0, 0, 1}), Vec3(0, 0, 0)) << "a face without a picture";
}

}  // namespace
}  // namespace qv::sky
