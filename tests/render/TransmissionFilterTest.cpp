#include <gtest/gtest.h>

#include <cmath>

#include "TracedScene.h"
#include "render/shade/LaneFill.h"
#include "render/trace/TransmissionFilter.h"

namespace qv {
namespace {

using test::SceneBuilder;
using test::TracedScene;

MaterialParameters Glass(float opacity) {
  MaterialParameters glass = test::Matte(Vec3(1, 0, 0));
  glass.opacity = opacity;
  return glass;
}

// What is left of light of colour (1, 2, 3) that falls through (x, 0) from z 100 to z 0, in red;
// nothing if the ray counts as occluded. All lanes go the same way.
float LightLeft(const TracedScene& traced, float x, float dz = -1) {
  const test::Ray ray{{x, 0, -50 * dz + 50}, {0, 0, dz}};
  const std::vector<test::Ray> rays(kLanes, ray);
  const auto packet = test::PacketOf(rays);
  Fill(packet->lightMask, 0);
  for (int c = 0; c < 3; ++c) Fill(packet->lightColor[c], static_cast<float>(c + 1));
  TraceShadow(traced.in.trace, packet->position, packet->direction, 100, packet->lightMask,
              packet->lightColor);
  for (int lane = 0; lane < kLanes; ++lane) {
    EXPECT_EQ(packet->lightMask[lane], packet->lightMask[0]);
    EXPECT_FLOAT_EQ(packet->lightColor[0][lane], packet->lightColor[0][0]);
  }
  if (packet->lightMask[0] < 0) return 0;
  EXPECT_FLOAT_EQ(packet->lightColor[1][0], 2 * packet->lightColor[0][0]) << "glass has no colour";
  EXPECT_FLOAT_EQ(packet->lightColor[2][0], 3 * packet->lightColor[0][0]);
  return packet->lightColor[0][0];
}

class TransmissionFilter : public testing::TestWithParam<int> {};

TEST_P(TransmissionFilter, MultipliesPanesUntilAHundredthIsLeft) {
  SceneBuilder builder;
  builder.Floor(10, 50, builder.Material(Glass(0.5f)));
  builder.Floor(20, 50, builder.Material(Glass(0.3f)));
  EXPECT_NEAR(LightLeft(TracedScene(builder, GetParam()), 3), 0.35f, 1e-6f);
  // Six halves leave 1/64, seven 1/128, which is less than a hundredth.
  SceneBuilder stack;
  const int half = stack.Material(Glass(0.5f));
  for (int i = 0; i < 6; ++i) stack.Floor(10.0f + static_cast<float>(i), 50, half);
  EXPECT_NEAR(LightLeft(TracedScene(stack, GetParam()), 3), 1 / 64.0f, 1e-6f);
  stack.Floor(5, 50, half);
  EXPECT_EQ(LightLeft(TracedScene(stack, GetParam()), 3), 0);
  SceneBuilder opaque;
  opaque.Floor(10, 50, opaque.Material(Glass(0.995f)));
  EXPECT_EQ(LightLeft(TracedScene(opaque, GetParam()), 3), 0);
}

TEST_P(TransmissionFilter, ReadsTheFrontMaterialFromBothSides) {
  SceneBuilder builder;
  builder.Material(Glass(0.25f));
  builder.Material(Glass(1));
  builder.Floor(10, 50, {0, 1});
  const TracedScene traced(builder, GetParam());
  EXPECT_NEAR(LightLeft(traced, 3, -1), 0.75f, 1e-6f);
  EXPECT_NEAR(LightLeft(traced, 3, 1), 0.75f, 1e-6f);
}

INSTANTIATE_TEST_SUITE_P(, TransmissionFilter, testing::Values(1, 8),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace qv
