#include <gtest/gtest.h>

#include <cmath>

#include "TracedScene.h"
#include "core/Random.h"

namespace qv {
namespace {

using test::Ray;
using test::SceneBuilder;
using test::SceneLight;
using test::TracedScene;

const Vec3 kAmbient(0.8784314f, 0.9882353f, 1.0f);
const Vec3 kDiffuse(0.2f, 0.4f, 0.6f);

// Hits are drawn back a tenth of a unit along the ray: straight down on z = 0 they lie here.
constexpr float kAbove = 0.1f;

Ray Down(float x) {
  return {{x, 0, 5}, {0, 0, -1}};
}

// A wide floor at z = 0, lit by one light.
SceneBuilder LitFloor(const SceneLight& light) {
  SceneBuilder builder;
  builder.Floor(0, 500, builder.Material(kDiffuse));
  builder.lights.push_back(light);
  return builder;
}

void ExpectColor(const Vec3& got, const Vec3& expected, float tolerance = 1e-5f) {
  EXPECT_LT((got - expected).cwiseAbs().maxCoeff(), tolerance)
      << got.transpose() << " instead of " << expected.transpose();
}

// What the light adds to the ambient term. How each kind of light, highlight and shadow looks is
// tested beside the reference; these are anchors that were worked out by hand, and edges.
Vec3 LightOn(TracedScene& traced, const Ray& ray, RenderPass pass = PassFull) {
  return traced.Color(ray, pass) - 0.5f * kDiffuse.cwiseProduct(kAmbient);
}

// The unnormalised cosine, here the height, has to be a tenth of a degree at least.
TEST(PointLight, IsDarkWhereItGrazes) {
  const auto redFrom = [](float height) {
    TracedScene traced(LitFloor(SceneLight::Point(Vec3::Ones(), {0, 0, height + kAbove})));
    return LightOn(traced, Down(0)).x();
  };
  EXPECT_GT(redFrom(0.0019f), 1);
  EXPECT_NEAR(redFrom(0.0015f), 0, 1e-5f);
}

TEST(SpotLight, HasAHardEdgeWhenTheConesNearlyCoincide) {
  const SceneLight spot = SceneLight::Spot(Vec3::Ones(), {0, 0, 20}, {0, 0, -1}, 0.49f, 0.5f);
  TracedScene traced(LitFloor(spot));
  const auto at = [&](float angle) { return LightOn(traced, Down(19.9f * std::tan(angle))); };
  const float squared = 19.9f * 19.9f / std::pow(std::cos(0.499f), 2.0f);
  ExpectColor(at(0.499f), 19.9f / squared * kDiffuse, 2e-6f);
  ExpectColor(at(0.501f), Vec3::Zero());
}

TEST(Lights, AddUpAndOnlyTheFirstCountsWhileTheSunIsDragged) {
  SceneBuilder builder = LitFloor(SceneLight::Directional(Vec3::Ones(), {0, 0, -1}));
  builder.lights.push_back(SceneLight::Point(Vec3::Ones(), {0, 0, 10 + kAbove}));
  TracedScene traced(builder);
  traced.scene.SetSun(RenderLight::Directional(Vec3(0.5f, 0.5f, 0.5f), -Vec3::UnitZ()));
  ExpectColor(LightOn(traced, Down(0), PassFull), 1.6f * kDiffuse);
  ExpectColor(LightOn(traced, Down(0), PassAntialias), 1.6f * kDiffuse);
  ExpectColor(LightOn(traced, Down(0), PassSunPreview), 0.5f * kDiffuse);
  ExpectColor(traced.Color(Down(0), PassPreview), 0.8f * kDiffuse);
}

// Directions are spread evenly over the hemisphere, so that any component of them is spread evenly:
// a wall at a distance h, which rays of 20 units reach where their component towards it is above
// h / 20, takes half of 1 - h / 20. Of two walls at a right angle, each right beside the point, a
// quarter of the hemisphere is left. Turned about the point, the walls meet the fixed directions
// from all sides; what scatter remains is that of 64 heights. Directions spread by the cosine would
// give 0.072 at 15 units.
TEST(AmbientOcclusion, TakesTheShareOfTheHemisphereThatIsBlocked) {
  const auto blockedBy = [](int walls, float h) {
    constexpr int kTurns = 48;
    float sum = 0;
    for (int i = 0; i < kTurns; ++i) {
      const float angle = 6.2831853f * static_cast<float>(i) / kTurns;
      Vec3 towards(std::cos(angle), std::sin(angle), 0);
      Vec3 along(-towards.y(), towards.x(), 0);
      SceneBuilder builder;
      const int white = builder.Material(Vec3::Ones());
      builder.Floor(0, 100, white);
      for (int wall = 0; wall < walls; ++wall) {
        builder.Quad(h * towards - 100 * along - Vec3(0, 0, 50), 200 * along, {0, 0, 100}, white);
        std::swap(towards, along);
      }
      TracedScene traced(builder);
      traced.in.switches.useAmbientOcclusion = true;
      sum += 2 * (1 - traced.Color(Down(0)).z() / 0.5f) / kTurns;
    }
    return sum;
  };
  EXPECT_NEAR(blockedBy(0, 0), 0, 1e-6f);
  EXPECT_NEAR(blockedBy(1, 0.01f), 0.5f, 0.02f);
  EXPECT_NEAR(blockedBy(1, 5), 0.375f, 0.02f);
  EXPECT_NEAR(blockedBy(1, 15), 0.125f, 0.02f);
  EXPECT_NEAR(blockedBy(1, 20.5f), 0, 1e-6f);
  EXPECT_NEAR(blockedBy(2, 0.01f), 0.75f, 0.02f);
}

TEST(SampleDirections, LieInTheirHemisphereAndCone) {
  SceneBuilder builder;
  const TracedScene traced(builder);
  const SampleDirections& directions = *traced.in.directions;
  ASSERT_EQ(directions.occlusion.size(), 64u);
  ASSERT_EQ(directions.glossy.size(), 100000u);
  Random random(1234);
  for (const Vec3& d : directions.occlusion) {
    Eigen::Vector3d drawn;
    do {
      for (double& component : drawn) component = random.NextUniform();
      drawn.head<2>() = drawn.head<2>() * 2 - Eigen::Vector2d::Ones();
    } while (drawn.norm() >= 1);
    EXPECT_LT((d.cast<double>() - drawn.normalized()).norm(), 1e-6);
  }
  for (const Vec3& d : directions.glossy) {
    ASSERT_NEAR(d.norm(), 1, 1e-6f);
    ASSERT_GT(d.z(), 0.97814f) << "the cosine of 12 degrees";
  }
  for (std::uint32_t draw = 0; draw < 10000; ++draw) {
    ASSERT_LT(directions.GlossyStart(draw), 99936u);
  }
}

}  // namespace
}  // namespace qv
