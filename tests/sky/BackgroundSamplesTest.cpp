#include <gtest/gtest.h>

#include <cmath>

#include "sky/BackgroundSamples.h"

namespace qv::sky {
namespace {

// Every pixel has its face, column and row in its colour, as far as bytes go.
const CubeFaces& Marked() {
  static const CubeFaces* const faces = [] {
    auto* made = new CubeFaces;
    for (int face = 0; face < 6; ++face) {
      auto& pixels = made->pixels[static_cast<std::size_t>(face)];
      for (int row = 0; row < 1024; ++row) {
        for (int column = 0; column < 1024; ++column) {
          const int blue = face * 40;
          pixels.insert(pixels.end(),
                        {static_cast<std::uint8_t>(blue), static_cast<std::uint8_t>(row / 4),
                         static_cast<std::uint8_t>(column / 4), 255});
        }
      }
    }
    return made;
  }();
  return *faces;
}

TEST(BackgroundSamples, SwapsRedAndBlue) {
  // u = 0.75, v = 0.625 on face 3: column trunc(1023 * 0.75) = 767, row trunc(1023 * 0.375) = 383.
  const Vec3 plain = SampleBackground(Marked(), {2, -1, 0.5f}, false);
  EXPECT_FLOAT_EQ(plain.x(), 191 / 255.0f);
  EXPECT_FLOAT_EQ(plain.y(), 95 / 255.0f);
  EXPECT_FLOAT_EQ(plain.z(), 120 / 255.0f);
  EXPECT_EQ(SampleBackground(Marked(), {2, -1, 0.5f}, true), Vec3(plain.reverse()));
}

TEST(BackgroundSamples, GoOverAnglesThatCountAsRadians) {
  std::vector<float> samples{-1};
  CollectBackgroundSamples(Marked(), samples);
  ASSERT_EQ(samples.size(), 1 + 3u * 181 * 361) << "appended to what was there";
  EXPECT_EQ(samples[0], -1);
  const auto sample = [&](int i, int j) {
    const float* at =
        &samples[1 + 3 * (static_cast<std::size_t>(90 - i) * 361 + static_cast<std::size_t>(j))];
    return Vec3(at[0], at[1], at[2]);
  };
  // i = 0, j = 0 looks along +y, the middle of face 0: column and row 511.
  EXPECT_EQ(sample(0, 0), Vec3(0, 127 / 255.0f, 127 / 255.0f));
  // i = 90, j = 0: cos 90 = -0.44807, sin 90 = 0.89400, so z rules and u = 0.5,
  // v = 0.5 + 0.44807 / 1.78800 = 0.75060: column 511, row trunc(1023 * 0.24940) = 255 of face 4.
  EXPECT_EQ(sample(90, 0), Vec3(160 / 255.0f, 63 / 255.0f, 127 / 255.0f));

  // All others by the plain formula; next to the edge of a pixel a rounding may decide.
  int different = 0;
  for (int i = 90; i >= -90; --i) {
    for (int j = 0; j <= 360; ++j) {
      const double a = i, b = j;
      const Vec3 direction(static_cast<float>(-std::sin(b) * std::cos(a)),
                           static_cast<float>(std::cos(b) * std::cos(a)),
                           static_cast<float>(std::sin(a)));
      different += sample(i, j) != SampleBackground(Marked(), direction, true);
    }
  }
  EXPECT_LT(different, 181 * 361 / 100);
}

}  // namespace
}  // namespace qv::sky
