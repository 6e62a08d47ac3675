#include <gtest/gtest.h>

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

}  // namespace
}  // namespace qv::sky
