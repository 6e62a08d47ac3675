#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "render/image/ComposeImage.h"
#include "render/image/PixelOps.h"

namespace qv {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(ComposeImage, AdjustsBrightnessContrastAndGamma) {
  struct Case {
    float color, brightness, contrast, gamma;
    int byte;
  };
  // Contrast, then brightness, then gamma; truncated.
  for (const Case& c :
       {Case{0.5f, 0, 0, 1, 127}, Case{3, 0, 0, 1, 255}, Case{-1, 0, 0, 1, 0},
        Case{0.75f, 0, 0.5f, 1, 255}, Case{0.6f, 0, 0.5f, 1, 178}, Case{1, 0, -0.5f, 1, 191},
        Case{0, 0.2f, 0, 1, 51}, Case{0, 0.1f, 0.5f, 1, 0}, Case{0.5f, 0.1f, 0.5f, 1, 153},
        Case{0.25f, 0, 0, 2, 127}, Case{0.5f, 0, 0, 0.5f, 63}, Case{0.3f, -0.9f, 0, 0.5f, 0},
        Case{kNan, 0, 0, 1, 0}, Case{kInfinity, 0, 0, 2.2f, 255}}) {
    EXPECT_EQ(Adjustment(c.brightness, c.contrast, c.gamma).AdjustToByte(c.color), c.byte)
        << c.color << ' ' << c.brightness << ' ' << c.contrast << ' ' << c.gamma;
  }
}

// Rows are converted with vectors and tables; with every instruction set of this processor they
// give the bytes of the single values.
TEST(ComposeImage, ConvertsRowsLikeSingleValues) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> value(-0.3f, 1.5f);
  std::vector<float> in(3000);
  for (float& c : in) c = value(random);
  for (const float special : {kNan, kInfinity, -kInfinity, 1e30f, -1e30f, 1e-40f, -0.0f, 8421504.0f,
                              8421505.0f, -8421505.0f}) {
    in.push_back(special);
  }
  std::shuffle(in.begin(), in.end(), random);
  const auto lowByte = [](float c) {
    const double v = c * 255.0f;
    return std::abs(v) < 2147483648.0 ? static_cast<std::uint8_t>(static_cast<std::int64_t>(v)) : 0;
  };
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{37}, in.size()}) {
      std::vector<std::uint8_t> out(count + 1, 77);
      for (const float gamma : {1.0f, 2.2f, 0.45f, 0.5f, 50.0f, 0.01f, 0.0f, -1.0f, kInfinity}) {
        const Adjustment adjustment(0.03f, 0.3f, gamma);
        adjustment.AdjustRow(in.data(), count, out.data());
        for (std::size_t i = 0; i < count; ++i) {
          ASSERT_EQ(out[i], adjustment.AdjustToByte(in[i])) << in[i] << " with gamma " << gamma;
        }
      }
      TakeLowBytes(in.data(), count, out.data());
      for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(out[i], lowByte(in[i])) << in[i];
      EXPECT_EQ(out[count], 77) << "nothing is written past the row";
    }
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace
}  // namespace qv
