#include <gtest/gtest.h>

#include <cmath>

#include "TracedScene.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using sky::CubeFaces;
using test::Ray;
using test::SceneBuilder;
using test::TracedScene;

const Vec3 kAmbient(0.8784314f, 0.9882353f, 1.0f);
constexpr int kUp = 4;
constexpr int kDown = 5;

void ExpectColor(const Vec3& got, const Vec3& expected, float tolerance = 1e-5f) {
  EXPECT_LT((got - expected).cwiseAbs().maxCoeff(), tolerance)
      << got.transpose() << " instead of " << expected.transpose();
}

MaterialParameters Glass(float refractiveIndex, float opacity = 0) {
  MaterialParameters glass;
  glass.opacity = opacity;
  glass.refractiveIndex = refractiveIndex;
  return glass;
}

MaterialParameters Mirror(float reflectance, const Vec3& diffuse = Vec3::Zero()) {
  MaterialParameters mirror = test::Matte(diffuse);
  mirror.reflectance = reflectance;
  return mirror;
}

Vec3 Slanted(float degrees) {
  const float angle = degrees * 0.017453293f;
  return {std::sin(angle), 0, -std::cos(angle)};
}

// The column of a face's pixel in red and its row in green.
void WriteCoordinates(CubeFaces& sky, int face) {
  auto& pixels = sky.pixels[static_cast<std::size_t>(face)];
  pixels.clear();
  for (int i = 0; i < CubeFaces::kFaceSize * CubeFaces::kFaceSize; ++i) {
    const auto column = static_cast<std::uint8_t>(i % CubeFaces::kFaceSize / 4);
    const auto row = static_cast<std::uint8_t>(i / CubeFaces::kFaceSize / 4);
    pixels.insert(pixels.end(), {0, row, column, 255});
  }
}

TEST(RayPath, EndsInTheBackground) {
  TracedScene traced{SceneBuilder()};
  traced.FillFace(kDown, Vec3(0.2f, 0.4f, 1));
  for (const RenderPass pass : {PassPreview, PassSunPreview, PassFull, PassAntialias}) {
    ExpectColor(traced.Color({{1, 2, 3}, {0.1f, 0, -5}}, pass), Vec3(0.2f, 0.4f, 1));
    ExpectColor(traced.Color({{1, 2, 3}, {0.1f, 0, 5}}, pass), Vec3::Zero());
  }
}

TEST(RayPath, GoesStraightThroughTexturesWithAlpha) {
  SceneBuilder builder;
  MaterialParameters veil;
  veil.hasTexture = true;
  veil.texturePath = test::WritePlainPng("veil.png", 2, 2, 255, 0, 0, 51);
  veil.refractiveIndex = 1.5f;
  builder.Floor(0, 50, builder.Material(veil));
  TracedScene traced(builder);
  WriteCoordinates(traced.sky, kDown);
  const Vec3 behind = traced.sky.Sample(Slanted(40));
  const Ray ray{-60 * Slanted(40), Slanted(40)};
  ExpectColor(traced.Color(ray, PassPreview), 0.8f * behind + 0.8f * 0.2f * Vec3::UnitX(), 2e-5f);
  ExpectColor(traced.Color(ray), 0.8f * behind + 0.5f * 0.2f * kAmbient.x() * Vec3::UnitX(), 2e-5f);
}

TEST(RayPath, BendsAtGlassBySnellsLaw) {
  SceneBuilder builder;
  const int glass = builder.Material(Glass(1.5f));
  builder.Floor(0, 100, glass);
  TracedScene traced(builder);
  WriteCoordinates(traced.sky, kDown);
  for (const float degrees : {0.0f, 20.0f, 45.0f, 70.0f}) {
    const float inside = std::asin(std::sin(degrees * 0.017453293f) / 1.5f) / 0.017453293f;
    const Ray ray{-60 * Slanted(degrees), Slanted(degrees)};
    ExpectColor(traced.Color(ray), traced.sky.Sample(Slanted(inside)), 1.01f / 255);
    ExpectColor(traced.Color(ray, PassPreview), traced.sky.Sample(Slanted(inside)), 1.01f / 255);
  }
  // Behind a second surface it goes on as it came.
  builder.Floor(-30, 100, glass);
  TracedScene slab(builder);
  WriteCoordinates(slab.sky, kDown);
  ExpectColor(slab.Color({-60 * Slanted(40), Slanted(40)}), slab.sky.Sample(Slanted(40)),
              1.01f / 255);
}

TEST(RayPath, DiesOfTotalReflection) {
  const auto throughPrism = [](float degrees) {
    // Into the glass at a right angle, then upon its level lower face.
    const Vec3 direction = Slanted(degrees);
    SceneBuilder builder;
    const int glass = builder.Material(Glass(1.5f));
    const Vec3 right(-direction.z(), 0, direction.x());
    builder.Quad(-40 * direction - 5 * right - Vec3(0, 5, 0), 10 * right, {0, 10, 0}, glass);
    builder.Floor(0, 100, glass);
    TracedScene traced(builder);
    traced.FillSky(Vec3::Ones());
    return traced.Color({-60 * direction, direction});
  };
  ExpectColor(throughPrism(30), Vec3::Ones());
  ExpectColor(throughPrism(41), Vec3::Ones());
  ExpectColor(throughPrism(42.5f), Vec3::Zero());  // the critical angle of 1.5 is 41.8 degrees
  ExpectColor(throughPrism(60), Vec3::Zero());
}

TEST(RayPath, IsMirroredOnceAndTwice) {
  const Vec3 diffuse(0.1f, 0.2f, 0.3f);
  SceneBuilder builder;
  const int mirror = builder.Material(Mirror(0.5f, diffuse));
  builder.Floor(0, 100, mirror);
  TracedScene once(builder);
  once.FillFace(kUp, Vec3(1, 0.4f, 0.2f));
  const Vec3 plain = 0.5f * diffuse.cwiseProduct(kAmbient);
  const Ray down{{50, 0, 40}, Slanted(30)};
  ExpectColor(once.Color(down), plain + 0.5f * Vec3(1, 0.4f, 0.2f));
  ExpectColor(once.Color(down, PassPreview), 0.8f * diffuse);
  ExpectColor(once.Color(down, PassSunPreview), plain);

  builder.Quad({100, -100, 0}, {0, 0, 200}, {0, 200, 0}, mirror);
  TracedScene twice(builder);
  twice.FillFace(1, Vec3(1, 0.4f, 0.2f));  // towards -x
  ExpectColor(twice.Color({{50, 0, 20}, Slanted(60)}), 1.5f * plain + 0.25f * Vec3(1, 0.4f, 0.2f));
}

TEST(RayPath, AddsNoBackgroundBelowAFiftieth) {
  SceneBuilder builder;
  builder.Floor(0, 100, builder.Material(Mirror(0.1f)));
  const int wall =
      builder.Quad({100, -100, 0}, {0, 0, 200}, {0, 200, 0}, builder.Material(Mirror(0.21f)));
  const Ray ray{{50, 0, 20}, Slanted(60)};
  const auto color = [&](float reflectance) {
    builder.materials[1].reflectance = reflectance;
    TracedScene traced(builder);
    traced.FillSky(Vec3::Ones());
    return traced.Color(ray);
  };
  ExpectColor(color(0.21f), Vec3::Constant(0.021f));
  ExpectColor(color(0.19f), Vec3::Zero());
  // What it meets is still shaded.
  builder.Quad({-100, -100, 0}, {0, 200, 0}, {0, 0, 400}, builder.Material(Vec3::Ones()));
  ExpectColor(color(0.19f), 0.5f * 0.019f * kAmbient);
  EXPECT_EQ(wall, 1);
}

TEST(RayPath, EndsAtDepthTen) {
  // Panes of a tenth opacity: each shows a tenth of what is left.
  const auto panes = [](int count, RenderPass pass) {
    SceneBuilder builder;
    MaterialParameters pane = Glass(1, 0.1f);
    pane.diffuseColor = Vec3::Ones();
    const int material = builder.Material(pane);
    for (int i = 0; i < count; ++i) builder.Floor(-5.0f * static_cast<float>(i), 50, material);
    TracedScene traced(builder);
    traced.FillSky(Vec3::Constant(1));
    return traced.Color({{1, 2, 30}, {0, 0, -1}}, pass).z();
  };
  const auto left = [](int count) { return std::pow(0.9f, static_cast<float>(count)); };
  // In blue, where the ambient colour is 1: half of what the panes take is seen again.
  EXPECT_NEAR(panes(10, PassFull), 0.5f * (1 - left(10)) + left(10), 1e-5f);
  EXPECT_NEAR(panes(11, PassFull), 0.5f * (1 - left(11)), 1e-5f);
  EXPECT_NEAR(panes(20, PassFull), 0.5f * (1 - left(11)), 1e-5f);
  EXPECT_NEAR(panes(1, PassPreview), 0.8f * 0.1f + 0.9f, 1e-5f);
  EXPECT_NEAR(panes(2, PassPreview), 0.8f * (0.1f + 0.09f), 1e-5f) << "one level in a preview";
  EXPECT_NEAR(panes(1, PassSunPreview), 0.5f * 0.1f + 0.9f, 1e-5f);
  EXPECT_NEAR(panes(3, PassSunPreview), 0.5f * (0.1f + 0.09f), 1e-5f);

  // Two perfect mirrors face each other: eleven images of them.
  SceneBuilder builder;
  const int mirror = builder.Material(Mirror(1, Vec3::Constant(0.1f)));
  builder.Floor(0, 100, mirror);
  builder.Floor(100, 100, mirror);
  TracedScene traced(builder);
  EXPECT_NEAR(traced.Color({{1, 2, 50}, {0, 0, -1}}).z(), 11 * 0.05f, 1e-5f);
}

TEST(RayPath, BlursReflectionsWithinACone) {
  MaterialParameters brushed = Mirror(0.6f);
  brushed.glossy = 1;
  SceneBuilder builder;
  builder.Floor(0, 1000, builder.Material(brushed));
  TracedScene traced(builder);
  const auto reflected = [&](float degrees) {
    const Ray ray{-60 * Slanted(degrees), Slanted(degrees)};
    return traced.Colors(std::vector<Ray>(kLanes, ray), PassFull);
  };
  traced.FillFace(kUp, Vec3::Ones());
  for (const Vec3& color : reflected(32)) ExpectColor(color, Vec3::Constant(0.6f));
  for (const Vec3& color : reflected(58)) ExpectColor(color, Vec3::Zero());
  // On the border of two faces six rays divide between them.
  int seen[7] = {};
  float mean = 0;
  for (const Vec3& color : reflected(45)) {
    const float rays = color.x() / 0.1f;
    EXPECT_NEAR(rays, std::round(rays), 1e-3f);
    ++seen[static_cast<int>(std::round(rays))];
    mean += color.x() / kLanes;
  }
  EXPECT_NEAR(mean, 0.3f, 0.06f);
  EXPECT_GT(seen[2], 0);
  EXPECT_GT(seen[4], 0);

  // Among blurred lanes a plain mirror stays sharp and is traced once.
  builder.Quad({2000, -100, 0}, {200, 0, 0}, {0, 200, 0}, builder.Material(Mirror(0.3f)));
  TracedScene mixed(builder);
  mixed.FillFace(kUp, Vec3::Ones());
  const Ray rays[] = {{{0, 0, 40}, Slanted(20)}, {{2050, 0, 40}, Slanted(44)}};
  const std::vector<Vec3> colors = mixed.Colors(rays, PassFull);
  ExpectColor(colors[0], Vec3::Constant(0.6f));
  ExpectColor(colors[1], Vec3::Constant(0.3f));
}

}  // namespace
}  // namespace qv
