#include <gtest/gtest.h>

#include <cmath>

#include "TracedScene.h"
#include "render/trace/VectorOps.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using test::Ray;
using test::SceneBuilder;
using test::TracedScene;

// A packet with one ray upon a floor as it stands after its material was fetched.
std::unique_ptr<RayPacket> FetchedFromFloor(const MaterialParameters& material,
                                            bool forceMirror = false) {
  SceneBuilder builder;
  builder.Floor(0, 50, builder.Material(material));
  TracedScene traced(builder);
  const Ray ray{{3, 0, 40}, {0, 0, -1}};
  auto packet = traced.Traced({&ray, 1});
  EXPECT_GE(packet->geometry[0], 0);
  packet->distance[0] = packet->t[0];
  for (auto& axis : packet->normal) axis[0] = 0;
  packet->normal[2][0] = 1;
  packet->hasDiffuse[0] = packet->hasSpecular[0] = -1;
  packet->reflectKind[0] = packet->transmitKind[0] = -1;
  DotProducts(packet->direction, packet->normal, packet->geometry, packet->incidence);
  FetchMaterial(traced.in, *packet, forceMirror);
  return packet;
}

TEST(Material, CountsTheRaysOfBlurredReflections) {
  struct Case {
    float reflectance, glossy;
    bool forceMirror;
    int kind;
  };
  for (const Case& c :
       {Case{0, 5, false, -1}, Case{0.01f, 0, false, 1}, Case{0.9f, -1, false, 1},
        Case{0.1f, 1, false, 2}, Case{0.21f, 1, false, 2}, Case{0.22f, 1, false, 4},
        Case{0.51f, 1, false, 4}, Case{0.52f, 1, false, 7}, Case{0.52f, 1, true, 1}}) {
    MaterialParameters material;
    material.reflectance = c.reflectance;
    material.glossy = c.glossy;
    const auto packet = FetchedFromFloor(material, c.forceMirror);
    EXPECT_EQ(packet->reflectKind[0], c.kind) << c.reflectance << ' ' << c.glossy;
    EXPECT_EQ(packet->reflectance[0], c.reflectance);
  }
}

TEST(Material, SwitchesTermsByItsFactors) {
  MaterialParameters material;
  material.diffuseFactor = 0.02f;
  material.specularExponent = 0.05f;
  EXPECT_LT(FetchedFromFloor(material)->hasDiffuse[0], 0);
  EXPECT_LT(FetchedFromFloor(material)->hasSpecular[0], 0);
  material.diffuseFactor = 0.021f;
  material.specularExponent = 0.051f;
  EXPECT_GE(FetchedFromFloor(material)->hasDiffuse[0], 0);
  EXPECT_GE(FetchedFromFloor(material)->hasSpecular[0], 0);

  EXPECT_EQ(FetchedFromFloor(material)->transmitKind[0], -1);
  material.opacity = 0.99f;
  EXPECT_EQ(FetchedFromFloor(material)->transmitKind[0], -1);
  material.opacity = 0.98f;
  EXPECT_EQ(FetchedFromFloor(material)->transmitKind[0], 1);
  EXPECT_EQ(FetchedFromFloor(material)->alpha[0], 0.98f);

  MaterialParameters veil;
  veil.hasTexture = true;
  veil.texturePath = test::WritePlainPng("veil.png", 2, 2, 255, 0, 0, 128);
  EXPECT_EQ(FetchedFromFloor(veil)->transmitKind[0], 2);
  EXPECT_NEAR(FetchedFromFloor(veil)->alpha[0], 128 / 255.0f, 1e-6f);
  veil.opacity = 0.5f;
  EXPECT_EQ(FetchedFromFloor(veil)->transmitKind[0], 1);
  EXPECT_NEAR(FetchedFromFloor(veil)->alpha[0], 64 / 255.0f, 1e-6f);
}

Vec3 Slanted(float degrees) {
  const float angle = degrees * 0.017453293f;
  return {std::sin(angle), 0, -std::cos(angle)};
}

// Which rays they are is tested beside the reference.
TEST(Material, BlursReflectionsWithinACone) {
  const auto mirror = [](float reflectance, float glossy) {
    MaterialParameters material = test::Matte(Vec3::Zero());
    material.reflectance = reflectance;
    material.glossy = glossy;
    return material;
  };
  const auto expect = [](const Vec3& got, float expected) {
    EXPECT_LT((got - Vec3::Constant(expected)).cwiseAbs().maxCoeff(), 1e-5f) << got.transpose();
  };
  SceneBuilder builder;
  builder.Floor(0, 1000, builder.Material(mirror(0.6f, 1)));
  TracedScene traced(builder);
  const auto reflected = [&](float degrees) {
    const Ray ray{-60 * Slanted(degrees), Slanted(degrees)};
    return traced.Colors(std::vector<Ray>(kLanes, ray), PassFull);
  };
  constexpr int kUp = 4;
  traced.FillFace(kUp, Vec3::Ones());
  for (const Vec3& color : reflected(32)) expect(color, 0.6f);
  for (const Vec3& color : reflected(58)) expect(color, 0);
  // Among blurred lanes a plain mirror stays sharp and is traced once.
  builder.Quad({2000, -100, 0}, {200, 0, 0}, {0, 200, 0}, builder.Material(mirror(0.3f, 0)));
  TracedScene mixed(builder);
  mixed.FillFace(kUp, Vec3::Ones());
  const Ray rays[] = {{{0, 0, 40}, Slanted(20)}, {{2050, 0, 40}, Slanted(44)}};
  const std::vector<Vec3> colors = mixed.Colors(rays, PassFull);
  expect(colors[0], 0.6f);
  expect(colors[1], 0.3f);
}

}  // namespace
}  // namespace qv
