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

Ray Down(float x, float y = 0, float from = 40) {
  return {{x, y, from}, {0, 0, -1}};
}

// A wide floor at z = 0 of a material, lit by one light.
SceneBuilder LitFloor(const MaterialParameters& material, const SceneLight& light) {
  SceneBuilder builder;
  builder.Floor(0, 500, builder.Material(material));
  builder.lights.push_back(light);
  return builder;
}

void ExpectColor(const Vec3& got, const Vec3& expected, float tolerance = 1e-5f) {
  EXPECT_LT((got - expected).cwiseAbs().maxCoeff(), tolerance)
      << got.transpose() << " instead of " << expected.transpose();
}

// What the light adds to the ambient term.
Vec3 LightOn(TracedScene& traced, const Ray& ray, RenderPass pass = PassFull) {
  return traced.Color(ray, pass) - 0.5f * kDiffuse.cwiseProduct(kAmbient);
}

TEST(DirectionalLight, FallsWithTheCosine) {
  MaterialParameters material = test::Matte(kDiffuse);
  material.diffuseFactor = 0.5f;
  const Vec3 color(3, 2, 1);
  TracedScene traced(LitFloor(material, SceneLight::Directional(color, {0.6f, 0, -0.8f})));
  const Vec3 full = 0.8f * 0.5f * color.cwiseProduct(kDiffuse);
  ExpectColor(LightOn(traced, Down(0)), full);
  ExpectColor(LightOn(traced, {{30, 0, 40}, {-0.6f, 0, -0.8f}}), full);
  traced.in.factors.sun = 0.25f;
  ExpectColor(LightOn(traced, Down(0)), full / 4);
  ExpectColor(LightOn(traced, {{0, 0, -40}, {0, 0, 1}}), Vec3::Zero());

  material.diffuseFactor = 0.02f;
  TracedScene dull(LitFloor(material, SceneLight::Directional(color, {0, 0, -1})));
  ExpectColor(LightOn(dull, Down(0)), Vec3::Zero());
}

TEST(PointLight, FallsWithTheDistance) {
  const Vec3 color(3, 2, 1);
  for (const float height : {10.0f, 20.0f, 40.0f}) {
    TracedScene traced(
        LitFloor(test::Matte(kDiffuse), SceneLight::Point(color, {0, 0, height + kAbove})));
    const Vec3 full = color.cwiseProduct(kDiffuse);
    ExpectColor(LightOn(traced, Down(0, 0, 5)), full / height);
    // Beside it the unnormalised cosine is the height, over the squared distance.
    ExpectColor(LightOn(traced, Down(30)), full * height / (height * height + 900));
    traced.in.factors.point = 0.5f;
    ExpectColor(LightOn(traced, Down(0, 0, 5)), full / height / 2);
  }
}

// Straight below, the bound 0.0001 is met by 1 / d^2 while the light itself is 1 / d.
TEST(PointLight, EndsWhereItsSquareBecomesNegligible) {
  const auto lightAt = [](const Vec3& color, float height) {
    TracedScene traced(
        LitFloor(test::Matte(kDiffuse), SceneLight::Point(color, {0, 0, height + kAbove})));
    return LightOn(traced, Down(0));
  };
  ExpectColor(lightAt(Vec3::Ones(), 99), kDiffuse / 99);
  ExpectColor(lightAt(Vec3::Ones(), 101), Vec3::Zero());
  const Vec3 green(1, 2, 1);
  ExpectColor(lightAt(green, 101), green.cwiseProduct(kDiffuse) / 101);
}

TEST(PointLight, LightsTheSideThatIsSeen) {
  TracedScene below(LitFloor(test::Matte(kDiffuse), SceneLight::Point(Vec3::Ones(), {0, 0, -20})));
  ExpectColor(LightOn(below, Down(0)), Vec3::Zero());
  ExpectColor(LightOn(below, {{0, 0, -10}, {0, 0, 1}}), kDiffuse / 19.9f);
  TracedScene touching(
      LitFloor(test::Matte(kDiffuse), SceneLight::Point(Vec3::Ones(), {0, 0, kAbove})));
  ExpectColor(LightOn(touching, Down(0)), Vec3::Zero());
}

TEST(SpotLight, FadesSmoothlyFromTheInnerToTheOuterCone) {
  constexpr float kInner = 0.3f;
  constexpr float kOuter = 0.5f;
  constexpr float kHeight = 20;
  const SceneLight spot =
      SceneLight::Spot(Vec3::Ones(), {0, 0, kHeight + kAbove}, {0, 0, -1}, kInner, kOuter);
  TracedScene traced(LitFloor(test::Matte(kDiffuse), spot));
  const auto expectFactor = [&](float angle, float factor) {
    const float x = kHeight * std::tan(angle);
    const float squared = x * x + kHeight * kHeight;
    ExpectColor(LightOn(traced, Down(x, 0, 5)), factor * kHeight / squared * kDiffuse, 2e-6f);
  };
  // A share of the way from the outer cosine to the inner one.
  const auto angleAt = [](float share) {
    return std::acos(std::cos(kOuter) + share * (std::cos(kInner) - std::cos(kOuter)));
  };
  expectFactor(0, 1);
  expectFactor(0.29f, 1);
  expectFactor(angleAt(0.5f), 0.5f);
  expectFactor(angleAt(0.25f), 0.15625f);  // (3 - 0.5) / 16
  expectFactor(angleAt(0.75f), 0.84375f);
  expectFactor(0.51f, 0);
  traced.in.factors.point = 3;
  expectFactor(0, 3);
}

TEST(SpotLight, HasAHardEdgeWhenTheConesNearlyCoincide) {
  const SceneLight spot = SceneLight::Spot(Vec3::Ones(), {0, 0, 20}, {0, 0, -1}, 0.49f, 0.5f);
  TracedScene traced(LitFloor(test::Matte(kDiffuse), spot));
  const auto at = [&](float angle) { return LightOn(traced, Down(19.9f * std::tan(angle), 0, 5)); };
  const float squared = 19.9f * 19.9f / std::pow(std::cos(0.499f), 2.0f);
  ExpectColor(at(0.499f), 19.9f / squared * kDiffuse, 2e-6f);
  ExpectColor(at(0.501f), Vec3::Zero());
}

TEST(Highlight, IsThePowerOfTheCosineToTheMirroredLight) {
  MaterialParameters material;
  material.diffuseFactor = 0;
  material.specularColor = Vec3(0.1f, 0.2f, 0.3f);
  material.specularExponent = 20;
  const Vec3 color(2, 2, 2);
  const auto slanted = [](float angle) { return Vec3(std::sin(angle), 0, -std::cos(angle)); };
  TracedScene sun(LitFloor(material, SceneLight::Directional(color, slanted(0.5f))));
  for (const float off : {0.0f, 0.2f, -0.4f}) {
    const Vec3 direction = slanted(-0.5f + off);
    const Ray ray{Vec3(0, 0, 0) - 50 * direction, direction};
    ExpectColor(sun.Color(ray), 2 * std::pow(std::cos(off), 20.0f) * material.specularColor, 2e-5f);
  }
  ExpectColor(sun.Color({Vec3(0, 0, 0) - 50 * slanted(1.4f), slanted(1.4f)}), Vec3::Zero());

  // A point light 50 units away, whose mirror ray meets the eye: 50 / 50^2 of its colour.
  const Vec3 hit(0.06f, 0, 0.08f);  // drawn back from the origin
  TracedScene point(LitFloor(material, SceneLight::Point(color, hit + Vec3(-30, 0, 40))));
  ExpectColor(point.Color({{60, 0, 80}, {-0.6f, 0, -0.8f}}), 2 * material.specularColor / 50);
  const Vec3 tilted(-std::sin(0.7435011f), 0, -std::cos(0.7435011f));  // a tenth steeper
  const Vec3 drawnBack = -0.1f * tilted;
  TracedScene beside(LitFloor(material, SceneLight::Point(color, drawnBack + Vec3(-30, 0, 40))));
  ExpectColor(beside.Color({-70 * tilted, tilted}),
              2 * std::pow(-tilted.dot(Vec3(0.6f, 0, 0.8f)), 20.0f) * material.specularColor / 50,
              1e-4f);

  material.specularExponent = 0.05f;
  TracedScene without(LitFloor(material, SceneLight::Directional(color, slanted(0.5f))));
  ExpectColor(without.Color({-50 * slanted(-0.5f), slanted(-0.5f)}), Vec3::Zero());
}

TEST(Shadow, LiesWhereTheLightIsBlocked) {
  // A panel of 20 by 20 at z 50, lit from the left: its shadow is shifted by 3/4 of the height.
  SceneBuilder builder =
      LitFloor(test::Matte(kDiffuse), SceneLight::Directional(Vec3::Ones(), {0.6f, 0, -0.8f}));
  builder.Quad({-10, -10, 50}, {20, 0, 0}, {0, 20, 0}, 0);
  TracedScene sun(builder);
  const float shift = 0.75f * (50 - kAbove);
  for (const float edge : {shift - 10, shift + 10}) {
    const bool darkInside = edge < shift;
    const bool litBefore = LightOn(sun, Down(edge - 0.02f)).x() > 0.1f;
    const bool litAfter = LightOn(sun, Down(edge + 0.02f)).x() > 0.1f;
    EXPECT_EQ(litBefore, darkInside) << edge;
    EXPECT_EQ(litAfter, !darkInside) << edge;
  }
  EXPECT_GT(LightOn(sun, Down(shift, 10.02f)).x(), 0.1f);
  ExpectColor(LightOn(sun, Down(shift, 9.98f)), Vec3::Zero());

  builder.lights = {SceneLight::Point(Vec3(9, 9, 9), {0, 0, 90})};
  TracedScene point(builder);
  const float reach = 10 * (90 - kAbove) / 40;
  EXPECT_GT(LightOn(point, Down(reach + 0.02f)).x(), 1e-3f);
  ExpectColor(LightOn(point, Down(reach - 0.02f)), Vec3::Zero());
}

TEST(Lights, AddUpAndOnlyTheFirstCountsWhileTheSunIsDragged) {
  SceneBuilder builder =
      LitFloor(test::Matte(kDiffuse), SceneLight::Directional(Vec3::Ones(), {0, 0, -1}));
  builder.lights.push_back(SceneLight::Point(Vec3::Ones(), {0, 0, 10 + kAbove}));
  TracedScene traced(builder);
  traced.scene.SetSun(RenderLight::Directional(Vec3(0.5f, 0.5f, 0.5f), -Vec3::UnitZ()));
  ExpectColor(LightOn(traced, Down(0, 0, 5), PassFull), 1.6f * kDiffuse);
  ExpectColor(LightOn(traced, Down(0, 0, 5), PassAntialias), 1.6f * kDiffuse);
  ExpectColor(LightOn(traced, Down(0, 0, 5), PassSunPreview), 0.5f * kDiffuse);
  ExpectColor(traced.Color(Down(0, 0, 5), PassPreview), 0.8f * kDiffuse);
}

TEST(Ambient, DependsOnThePassAndTheSky) {
  SceneBuilder builder;
  builder.Floor(0, 50, builder.Material(kDiffuse));
  TracedScene traced(builder);
  traced.FillFace(4, Vec3(0.2f, 0.8f, 0.4f));
  const Vec3 plain = 0.5f * kDiffuse.cwiseProduct(kAmbient);
  traced.in.factors.ambient = 0.25f;
  ExpectColor(traced.Color(Down(0), PassPreview), 0.8f * kDiffuse);
  ExpectColor(traced.Color(Down(0), PassSunPreview), plain);
  ExpectColor(traced.Color(Down(0), PassFull), plain);
  traced.in.switches.useAmbientOcclusion = true;
  ExpectColor(traced.Color(Down(0), PassSunPreview), plain);
  ExpectColor(traced.Color(Down(0), PassFull), plain / 4);
  traced.in.factors.useSkyColorForAmbient = true;
  const Vec3 fromSky = 0.5f * kDiffuse.cwiseProduct(Vec3(0.2f, 0.8f, 0.4f));
  ExpectColor(traced.Color(Down(0), PassAntialias), fromSky / 4);
  ExpectColor(traced.Color(Down(0), PassSunPreview), fromSky);
  ExpectColor(traced.Color(Down(0), PassPreview), 0.8f * kDiffuse);
}

TEST(AmbientOcclusion, TakesAwayHalfInAClosedBoxAndByOpacityUnderGlass) {
  const Vec3 open = 0.5f * kDiffuse.cwiseProduct(kAmbient);
  SceneBuilder closed;
  const int matte = closed.Material(kDiffuse);
  closed.Box({-8, -8, 0}, {8, 8, 11}, matte);
  TracedScene box(closed);
  box.in.switches.useAmbientOcclusion = true;
  ExpectColor(box.Color(Down(3, 2, 5)), open / 2);

  // Glass 10 units up meets the rays that climb 9.9 units on their 20.
  SceneBuilder covered;
  covered.Floor(0, 500, covered.Material(kDiffuse));
  MaterialParameters glass;
  glass.opacity = 0.3f;
  covered.Floor(10, 500, covered.Material(glass));
  TracedScene pane(covered);
  pane.in.switches.useAmbientOcclusion = true;
  int blocked = 0;
  for (const Vec3& d : pane.in.directions->occlusion) blocked += d.z() * 20 > 10 - kAbove;
  ASSERT_GT(blocked, 20);
  const float openness = 0.5f + (64 - 0.3f * static_cast<float>(blocked)) / 128;
  ExpectColor(pane.Color(Down(0, 0, 5)), openness * open);
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
      sum += 2 * (1 - traced.Color(Down(0, 0, 5)).z() / 0.5f) / kTurns;
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
