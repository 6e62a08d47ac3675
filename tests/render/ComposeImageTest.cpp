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

int ByteOf(float c, const Adjustment& adjustment) {
  return adjustment.AdjustToByte(c);
}

TEST(ComposeImage, AdjustsBrightnessContrastAndGamma) {
  const Adjustment plain(0, 0, 1);
  EXPECT_EQ(ByteOf(0.5f, plain), 127) << "truncated";
  EXPECT_EQ(ByteOf(0, plain), 0);
  EXPECT_EQ(ByteOf(1, plain), 255);
  EXPECT_EQ(ByteOf(3, plain), 255);
  EXPECT_EQ(ByteOf(-1, plain), 0);

  const Adjustment steep(0, 0.5f, 1);
  EXPECT_EQ(ByteOf(0.75f, steep), 255);
  EXPECT_EQ(ByteOf(0.6f, steep), 178) << "0.7 of 255 is 178.5";
  EXPECT_EQ(ByteOf(0.1f, steep), 0);
  const Adjustment flat(0, -0.5f, 1);
  EXPECT_EQ(ByteOf(1, flat), 191) << "0.75 of 255 is 191.25";

  const Adjustment bright(0.2f, 0, 1);
  EXPECT_EQ(ByteOf(0, bright), 51);
  EXPECT_EQ(ByteOf(0, Adjustment(0.1f, 0.5f, 1)), 0) << "brightness is added after contrast";
  EXPECT_EQ(ByteOf(0.5f, Adjustment(0.1f, 0.5f, 1)), 153);

  EXPECT_EQ(ByteOf(0.25f, Adjustment(0, 0, 2)), 127) << "the root of 0.25 is 0.5";
  EXPECT_EQ(ByteOf(0.5f, Adjustment(0, 0, 0.5f)), 63);
}

TEST(ComposeImage, StoresZeroForWhatHasNoPower) {
  EXPECT_EQ(ByteOf(kNan, Adjustment(0, 0, 1)), 0);
  EXPECT_EQ(ByteOf(kInfinity, Adjustment(0, 0, 2.2f)), 255);
  EXPECT_EQ(ByteOf(-kInfinity, Adjustment(0, 0, 2.2f)), 0);
  // A gamma of a half and of a quarter raise to an even power, which must not lift what is below
  // zero above it again.
  for (const float gamma : {0.25f, 0.5f, 1.0f, 1.7f, 2.2f}) {
    EXPECT_EQ(ByteOf(0, Adjustment(0, 0.5f, gamma)), 0) << gamma;
    EXPECT_EQ(ByteOf(0.3f, Adjustment(-0.9f, 0, gamma)), 0) << gamma;
  }
}

void ExpectValuesLikeSingleOnes(const std::vector<float>& in, std::size_t count) {
  std::vector<float> values(count + 1, 77);
  for (const float gamma : {1.0f, 2.2f, 0.45f, 0.1f, 0.0f, -1.0f}) {
    const Adjustment adjustment(0.03f, 0.3f, gamma);
    adjustment.AdjustValues(in.data(), count, values.data());
    for (std::size_t i = 0; i < count; ++i) {
      const float single = adjustment.Adjust(in[i]);
      if (std::isnan(single)) {
        ASSERT_TRUE(std::isnan(values[i])) << in[i] << " with gamma " << gamma;
      } else {
        ASSERT_FLOAT_EQ(values[i], single) << in[i] << " with gamma " << gamma;
      }
    }
  }
  EXPECT_EQ(values[count], 77) << "nothing is written past the last one";
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
          ASSERT_EQ(out[i], ByteOf(in[i], adjustment)) << in[i] << " with gamma " << gamma;
        }
      }
      TakeLowBytes(in.data(), count, out.data());
      for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(out[i], lowByte(in[i])) << in[i];
      ExpectValuesLikeSingleOnes(in, count);
      EXPECT_EQ(out[count], 77) << "nothing is written past the row";
    }
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

TEST(ComposeImage, WrapsInThePreview) {
  RenderTarget base;
  ASSERT_TRUE(base.Resize(3, 2));
  const float row[9] = {0.5f, 1.0f, 1.1f, -0.5f, kNan, 1e30f, 2.0f, 0.0f, 0.25f};
  std::copy_n(row, 9, base.Row(1));
  ScreenImage screen;
  screen.Resize(3, 2);
  ComposePreview(base, 1, screen);
  EXPECT_EQ(screen.pitch, 12u);
  const std::uint8_t* shown = screen.Row(1);
  // 1.1 is 280.5, whose low byte is 24; -127 has the low byte 129; 510 has 254.
  const int expected[9] = {24, 255, 127, 0, 0, 129, 63, 0, 254};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(shown[i], expected[i]) << i;
  EXPECT_EQ(screen.Row(0)[0], 0);
}

TEST(ComposeImage, HasTheRowPitchOfABottomUpBitmap) {
  constexpr std::size_t kPitchOfWidth[] = {0, 4, 8, 12, 12, 16};
  for (int width = 1; width <= 5; ++width) {
    ScreenImage screen;
    screen.Resize(width, 1);
    EXPECT_EQ(screen.pitch, kPitchOfWidth[width]) << width;
  }
}

}  // namespace
}  // namespace qv
