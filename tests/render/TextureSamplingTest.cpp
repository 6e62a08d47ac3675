#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "render/material/TextureSampling.h"

namespace qv {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// A level with these blue, green, red, alpha bytes.
TextureMip MipOf(int width, int height, std::vector<std::uint8_t> bgra) {
  TextureMip mip;
  mip.width = width;
  mip.height = height;
  mip.pitch = width * 4;
  mip.invWidth = 1.0f / static_cast<float>(width);
  mip.invHeight = 1.0f / static_cast<float>(height);
  mip.pixels = std::move(bgra);
  return mip;
}

TEST(Log2Table, FollowsTheLogarithm) {
  const Log2Table& table = Log2Table::Instance();
  for (int i = 1; i < 102290; ++i) {
    const double v = 0.01 * i;
    EXPECT_NEAR(table(static_cast<float>(v)), std::log2(v), 2e-4) << v;
    // Half way between two entries the chord lies below by h^2 / (8 ln 2 v^2) at most.
    const double between = v + 0.005;
    EXPECT_NEAR(table(static_cast<float>(between)), std::log2(between), 2e-5 / (v * v) + 2e-4);
  }
}

TEST(Log2Table, EndsWhereTexturesEnd) {
  const Log2Table& table = Log2Table::Instance();
  EXPECT_EQ(table(0), 0);
  EXPECT_EQ(table(-5), 0);
  EXPECT_NEAR(table(0.005f), std::log2(0.01) / 2, 1e-4) << "half way from 0 to the first entry";
  for (const float v : {1022.9f, 1e9f, std::numeric_limits<float>::max(), kInfinity, kNan}) {
    EXPECT_NEAR(table(v), std::log2(1023.99), 1e-5) << v;
  }
}

TEST(SampleBilinear, StaysInsideForCoordinatesWithoutAFraction) {
  for (const auto& [width, height] : {std::pair{1, 1}, std::pair{3, 2}}) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width * height * 4), 9);
    bytes[0] = bytes[1] = bytes[2] = bytes[3] = 255;
    const TextureMip mip = MipOf(width, height, bytes);
    for (const float s : {kNan, kInfinity, -kInfinity, 1e30f, -1e30f, 3e38f}) {
      EXPECT_NEAR(SampleBilinear(mip, s, s).c[0], 1, 1e-6f) << s;
    }
    for (const float s : {-1e-9f, 0.99999997f, 16777215.5f, -0.5f, std::nextafter(1.0f, 0.0f)}) {
      const float sample = SampleBilinear(mip, s, s).c[0];
      EXPECT_TRUE(sample >= 9 / 255.0f - 1e-6f && sample <= 1.000001f) << s;
    }
  }
}

// Levels of one grey each: 0.2, 0.4 and 0.6.
TEST(SampleMips, BlendsTheTwoLevelsAroundTheFootprint) {
  RenderTexture texture;
  texture.mips.push_back(MipOf(4, 4, std::vector<std::uint8_t>(64, 51)));
  texture.mips.push_back(MipOf(2, 2, std::vector<std::uint8_t>(16, 102)));
  texture.mips.push_back(MipOf(1, 1, std::vector<std::uint8_t>(4, 153)));
  const auto greyAt = [&](float footprint) {
    const TexelColor color = SampleMips(texture, SelectMip(texture, footprint), 0.3f, 0.7f);
    EXPECT_NEAR(SampleAlphaMips(texture, footprint, 0.3f, 0.7f), color.c[3], 1e-6f);
    return color.c[0];
  };
  EXPECT_NEAR(greyAt(0), 0.2f, 1e-4f);
  EXPECT_NEAR(greyAt(2), 0.3f, 1e-4f) << "half a level above one texel";
  EXPECT_NEAR(greyAt(std::exp2(2.25f)), 0.55f, 1e-3f);
  for (const float far : {1e6f, kNan}) EXPECT_NEAR(greyAt(far), 0.6f, 1e-6f);
  texture.mips.resize(1);
  for (const float any : {0.0f, 1e6f}) EXPECT_NEAR(greyAt(any), 0.2f, 1e-6f);
}

}  // namespace
}  // namespace qv
