#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <utility>

#include "TracedScene.h"
#include "render/light/RenderLEMLight.h"

namespace qv {
namespace {

using test::Ray;
using test::SceneBuilder;
using test::TracedScene;

RenderLEMLight Sampled(const Vec3& emission, const std::vector<float>& corners) {
  std::vector<RenderLEMLight> lights{RenderLEMLight(emission, corners)};
  SampleLEMLights(lights);
  return lights.front();
}

TEST(LEMLight, ScattersItsSamplesOverItsTriangles) {
  const RenderLEMLight light = Sampled(Vec3(1, 2, 3), {-40, -40, 50, 40, 40, 50, 40, -40, 50, -40,
                                                       -40, 50, -40, 40, 50, 40, 40, 50});
  EXPECT_TRUE(light.power.isApprox(6400 * Vec3(1, 2, 3), 1e-5f));
  EXPECT_NEAR(static_cast<double>(light.samplePositions.size()), 64, 24);
  int quarters[4] = {};
  for (std::size_t i = 0; i < light.samplePositions.size(); ++i) {
    const Vec3& p = light.samplePositions[i];
    EXPECT_LT(p.head<2>().cwiseAbs().maxCoeff(), 40);
    EXPECT_LT(std::abs(p.z() - 49.9999f), 2e-5f) << "lifted off the emitter";
    EXPECT_EQ(light.sampleNormals[i], Vec3(0, 0, -1));
    ++quarters[(p.x() > 0 ? 1 : 0) + (p.y() > 0 ? 2 : 0)];
  }
  for (const int count : quarters) EXPECT_GT(count, 4);
}

TEST(LEMLight, MayHaveFewOrNoSamples) {
  EXPECT_LE(Sampled(Vec3::Ones(), {0, 0, 0, 1, 0, 0, 0, 1, 0}).samplePositions.size(), 1u);
  const float kNan = std::numeric_limits<float>::quiet_NaN();
  for (const std::vector<float>& corners : {std::vector<float>{},
                                            {1, 2, 3, 4, 5, 6, 7, 8},
                                            {0, 0, 0, 1, 1, 1, 2, 2, 2},
                                            {0, 0, 0, 0, 0, 0, 1, 0, 0},
                                            {0, kNan, 0, 1, 0, 0, 0, 1, 0},
                                            {0, 0, 0, 3e38f, 0, 0, 0, 3e38f, 0}}) {
    EXPECT_TRUE(Sampled(Vec3::Ones(), corners).samplePositions.empty());
  }
  // A long sliver beside a large triangle: few of its candidates lie inside.
  EXPECT_LT(Sampled(Vec3::Ones(), {0, 0, 0, 1e6f, 0, 0, 0, 1e-3f, 0}).samplePositions.size(), 500u);
}

// The form factor from a point to a parallel rectangle above it, of which one corner stands
// straight over the point (Howell, A Catalog of Radiation Heat Transfer Configuration Factors,
// B-4).
double CornerFactor(double width, double length, double distance) {
  const double a = width / distance;
  const double b = length / distance;
  const double x = std::sqrt(1 + a * a);
  const double y = std::sqrt(1 + b * b);
  return (a / x * std::atan(b / x) + b / y * std::atan(a / y)) / (2 * std::numbers::pi);
}

// Light of radiosity 1 over a white floor gives pi times the form factor here. Fifty emitters in
// the same place share the light, so that the scatter of their samples evens out; each takes up to
// 64 samples, and the last of more than that are left out.
TEST(LEMLight, GivesTheFormFactorOfALargeRectangle) {
  constexpr int kEmitters = 50;
  constexpr float kEmission = 20;
  const std::vector<float> corners{-40, -20, 30, 40,  20, 30, 40, -20, 30,
                                   -40, -20, 30, -40, 20, 30, 40, 20,  30};
  SceneBuilder builder;
  builder.Floor(0, 500, builder.Material(Vec3::Ones()));
  TracedScene traced(builder);
  for (int i = 0; i < kEmitters; ++i) {
    traced.scene.AddLEMLight(Vec3::Constant(kEmission / kEmitters), corners);
  }
  traced.scene.Build(nullptr);
  const auto at = [&](float x, float y) {
    const Ray down{{x, y, 5}, {0, 0, -1}};
    traced.in.switches.useLEM = true;
    const float lit = traced.Color(down).x();
    traced.in.switches.useLEM = false;
    return lit - traced.Color(down).x();
  };
  // The rectangle as the sum of four with corners over the point; beyond an edge some count less
  // than nothing.
  const auto expected = [](double x, double y) {
    double factor = 0;
    for (const double width : {40 - x, 40 + x}) {
      for (const double length : {20 - y, 20 + y}) {
        const double sign = (width < 0 ? -1 : 1) * (length < 0 ? -1 : 1);
        factor += sign * CornerFactor(std::abs(width), std::abs(length), 30 - 0.1);
      }
    }
    return kEmission * std::numbers::pi * factor;
  };
  for (const auto& [x, y] :
       {std::pair{0.0f, 0.0f}, {25.0f, 5.0f}, {-38.0f, 18.0f}, {0.0f, 60.0f}}) {
    EXPECT_NEAR(at(x, y), expected(x, y), 0.04 * expected(x, y)) << x << ' ' << y;
  }
}

}  // namespace
}  // namespace qv
