#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "app/ModelProperties.h"

namespace qv {
namespace {

// Bytes as they lie in the host's store.
std::vector<std::byte> Bytes(std::initializer_list<int> values) {
  std::vector<std::byte> bytes;
  for (int value : values) bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

const auto kOne = {0x00, 0x00, 0x80, 0x3F};  // 1.0f, little-endian

TEST(ModelProperties, ReadLittleEndianNumbers) {
  const auto background = ParseBackground(Bytes({2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
  ASSERT_TRUE(background);
  EXPECT_EQ(background->backgroundType, 2);
  EXPECT_EQ(background->cubeMapIndex, -1);

  const auto brightness = ParseBrightness(Bytes({0, 0, 0x80, 0x3F, 0, 0, 0x40, 0xC0}));
  ASSERT_TRUE(brightness);
  EXPECT_EQ(brightness->brightness, 1.0f);
  EXPECT_EQ(brightness->contrast, -3.0f);

  EXPECT_EQ(ParseFloat(Bytes(kOne)), 1.0f);
}

TEST(ModelProperties, LightFactorsTakeSeventeenBytesOrMore) {
  auto value = Bytes({0, 0, 0x80, 0x3F, 0, 0, 0, 0x40, 0, 0, 0x40, 0x40, 0, 0, 0x80, 0x40, 1});
  const auto factors = ParseLightFactors(value);
  ASSERT_TRUE(factors);
  EXPECT_EQ(factors->sun, 1.0f);
  EXPECT_EQ(factors->ambient, 2.0f);
  EXPECT_EQ(factors->point, 3.0f);
  EXPECT_EQ(factors->lem, 4.0f);
  EXPECT_TRUE(factors->useSkyColorForAmbient);

  value.resize(20, std::byte{0});
  EXPECT_TRUE(ParseLightFactors(value));
  value.resize(16);
  EXPECT_FALSE(ParseLightFactors(value));
}

TEST(ModelProperties, RefuseWhatIsTooShortOrNoNumber) {
  EXPECT_FALSE(ParseBackground(Bytes({2, 0, 0, 0, 1, 0, 0})));
  EXPECT_FALSE(ParseBrightness(Bytes(kOne)));
  EXPECT_FALSE(ParseFloat({}));
  EXPECT_FALSE(ParseFloat(Bytes({0, 0, 0x80, 0x7F})));                   // infinity
  EXPECT_FALSE(ParseBrightness(Bytes({0, 0, 0, 0, 1, 0, 0xC0, 0x7F})));  // NaN
}

}  // namespace
}  // namespace qv
