#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "sky/GradientCube.h"

namespace qv::sky {
namespace {

const CubeFaces& Cube() {
  static const CubeFaces* const cube = [] {
    auto* faces = new CubeFaces;
    FillGradientCube(*faces);
    return faces;
  }();
  return *cube;
}

float Luminance(const Vec3& color) {
  return color.dot(Vec3(0.2126f, 0.7152f, 0.0722f));
}

TEST(GradientCube, IsBlueOverheadPaleAtTheHorizonDarkerBelow) {
  const Vec3 zenith = Cube().Sample({0, 0, 1});
  const Vec3 horizon = Cube().Sample({0.3f, 1, 0.05f});
  const Vec3 ground = Cube().Sample({0.3f, 1, -0.5f});
  EXPECT_GT(zenith.z(), 1.5f * zenith.x());
  EXPECT_GT(horizon.minCoeff(), 0.75f);
  EXPECT_GT(Luminance(horizon), Luminance(zenith) + 0.2f);
  EXPECT_LT(Luminance(ground), Luminance(horizon) - 0.2f);
}

// A face that is turned, mirrored or upside down shows as a colour of another elevation. A pixel is
// 0.1 degrees high; the steepest part of the gradient, the end of the ground, changes by 0.02 over
// it.
TEST(GradientCube, ShowsTheSameSkyAllAround) {
  std::mt19937 generator(7);
  std::normal_distribution<float> normal;
  for (int i = 0; i < 200000; ++i) {
    const Vec3 direction(normal(generator), normal(generator), normal(generator));
    const Vec3 expected = GradientColor(direction.z() / direction.norm());
    const Vec3 got = Cube().Sample(direction);
    ASSERT_LT((got - expected).cwiseAbs().maxCoeff(), 0.025f) << direction.transpose();
  }
}

TEST(GradientCube, IsOpaque) {
  for (const auto& face : Cube().pixels) {
    ASSERT_EQ(face.size(), std::size_t{1024} * 1024 * 4);
    for (std::size_t i = 3; i < face.size(); i += 4) ASSERT_EQ(face[i], 255);
  }
}

}  // namespace
}  // namespace qv::sky
