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

// Rays at z = 0 from above and from below, at y = 0.
Ray From(bool above, float x) {
  return above ? Ray{{x, 0, 40}, {0, 0, -1}} : Ray{{x, 0, -40}, {0, 0, 1}};
}

// A packet with one ray as it stands after its material was fetched.
std::unique_ptr<RayPacket> Fetched(TracedScene& traced, const Ray& ray, bool forceMirror = false) {
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

std::unique_ptr<RayPacket> FetchedFromFloor(const MaterialParameters& material,
                                            bool forceMirror = false) {
  SceneBuilder builder;
  builder.Floor(0, 50, builder.Material(material));
  TracedScene traced(builder);
  return Fetched(traced, From(true, 3), forceMirror);
}

MaterialParameters Textured(const std::string& path) {
  MaterialParameters material;
  material.hasTexture = true;
  material.texturePath = path;
  return material;
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

  MaterialParameters veil = Textured(test::WritePlainPng("veil.png", 2, 2, 255, 0, 0, 128));
  EXPECT_EQ(FetchedFromFloor(veil)->transmitKind[0], 2);
  EXPECT_NEAR(FetchedFromFloor(veil)->alpha[0], 128 / 255.0f, 1e-6f);
  veil.opacity = 0.5f;
  EXPECT_EQ(FetchedFromFloor(veil)->transmitKind[0], 1);
  EXPECT_NEAR(FetchedFromFloor(veil)->alpha[0], 64 / 255.0f, 1e-6f);
}

TEST(Material, EntersAndLeavesWithItsRefractiveIndex) {
  SceneBuilder builder;
  MaterialParameters glass;
  glass.refractiveIndex = 1.5f;
  builder.Floor(0, 50, builder.Material(glass));
  TracedScene traced(builder);
  const auto packet = Fetched(traced, From(true, 3));
  EXPECT_EQ(packet->iorFrom[0], 1);
  EXPECT_EQ(packet->iorTo[0], 1.5f);
  FetchMaterial(traced.in, *packet, false);
  EXPECT_EQ(packet->iorFrom[0], 1.5f);
  EXPECT_EQ(packet->iorTo[0], 1);
}

// The left half of the texture is green, the right half blue; the front's coordinates lie in the
// left half, the back's in the right.
TEST(Material, ShowsItsOwnMaterialAndCoordinatesOnTheBack) {
  std::vector<std::uint8_t> rgba;
  for (int i = 0; i < 16; ++i) {
    const bool left = i % 4 < 2;
    rgba.insert(rgba.end(), {0, static_cast<std::uint8_t>(left ? 255 : 0),
                             static_cast<std::uint8_t>(left ? 0 : 255), 255});
  }
  SceneBuilder builder;
  const int halves = builder.Material(Textured(test::WritePng("halves.png", 4, 4, rgba)));
  const int red = builder.Material(Vec3(1, 0, 0));
  builder.Floor(0, 50, {halves, halves});
  builder.Quad({100, -50, 0}, {100, 0, 0}, {0, 100, 0}, {red, halves});
  for (test::SceneMesh& mesh : builder.meshes) {
    for (MeshVertex& vertex : mesh.vertices) {
      vertex.frontUv[0] = 0.125f;
      vertex.backUv[0] = 0.625f;
    }
  }
  TracedScene traced(builder);
  const auto expect = [&](bool above, float x, const Vec3& color) {
    const Vec3 got = traced.Color(From(above, x), PassPreview);
    EXPECT_LT((got - 0.8f * color).norm(), 1e-5f) << above << ' ' << x << ": " << got.transpose();
  };
  expect(true, 3, {0, 1, 0});
  expect(false, 3, {0, 0, 1});
  expect(true, 153, {1, 0, 0});
  expect(false, 153, {0, 0, 1});

  const auto behind = Fetched(traced, From(false, 3));
  EXPECT_EQ(behind->normal[2][0], -1) << "the normal looks to the eye";
  EXPECT_EQ(behind->incidence[0], -1);
}

// A checker of single texels is grey from afar: footprint = radians a pixel * distance * texels a
// unit / cosine.
TEST(Material, TakesTheMipLevelOfTheFootprint) {
  std::vector<std::uint8_t> rgba;
  for (int i = 0; i < 64 * 64; ++i) {
    const auto v = static_cast<std::uint8_t>((i + i / 64) % 2 == 0 ? 255 : 0);
    rgba.insert(rgba.end(), {v, v, v, 255});
  }
  SceneBuilder builder;
  builder.Floor(0, 32, builder.Material(Textured(test::WritePng("checker.png", 64, 64, rgba))));
  for (MeshVertex& vertex : builder.meshes[0].vertices) vertex.backUv[0] *= 2;
  TracedScene traced(builder);
  // One texel a unit, seen from 40 units: white and black texels, then a half of grey, then grey.
  const auto whiteAt = [&](float footprint, const Vec3& direction) {
    traced.in.footprintScale = footprint / 40;
    const Vec3 hit(0, -0.00001f, 0);  // on the triangle whose first edge runs along u
    const Ray ray{hit - 40 * direction, direction};
    return std::abs(Fetched(traced, ray)->diffuse[0][0] - 0.5f);
  };
  const Vec3 down(0, 0, -1);
  const float half = std::sqrt(2.0f);
  EXPECT_NEAR(whiteAt(half, down), 0.5f, 0.01f);
  EXPECT_NEAR(whiteAt(2, down), 0.25f, 0.01f) << "half a level further";
  EXPECT_NEAR(whiteAt(2 * half, down), 0, 0.01f);
  EXPECT_NEAR(whiteAt(1, {0, 0.8660254f, -0.5f}), 0.25f, 0.01f) << "twice as wide at 60 degrees";
  EXPECT_NEAR(whiteAt(1, {0, 0, 1}), 0.25f, 0.01f) << "two texels a unit on the back";
}

// Heights of 0, 0.2, 0.4 and 0.6 from the top row down; 8 texels wide, 4 high. In the middle
// (v = 0.5) an eighth further down it has risen by 0.1, a quarter further by 0.2.
TEST(Material, BendsNormalsByTheReliefInTheVDirection) {
  std::vector<std::uint8_t> rgba;
  for (int i = 0; i < 32; ++i) {
    const auto height = static_cast<std::uint8_t>(i / 8 * 51);
    rgba.insert(rgba.end(), {height, 0, static_cast<std::uint8_t>(height / 3), 255});
  }
  MaterialParameters relief = Textured(test::WritePng("relief.png", 8, 4, rgba));
  const auto normalOf = [&](float bumpFactor, bool above) {
    relief.bumpFactor = bumpFactor;
    SceneBuilder builder;
    builder.Floor(0, 50, builder.Material(relief));
    TracedScene traced(builder);
    const auto packet = Fetched(traced, From(above, 3));
    EXPECT_NEAR(packet->diffuse[0][0], 0.4f, 1e-5f);
    return Vec3(packet->normal[0][0], packet->normal[1][0], packet->normal[2][0]);
  };
  const auto expect = [](const Vec3& got, const Vec3& along) {
    EXPECT_LT((got - along.normalized()).norm(), 1e-5f) << got.transpose();
  };
  expect(normalOf(1, true), {0.1f, 0.2f, 1});
  expect(normalOf(3, true), {0.3f, 0.6f, 1});
  expect(normalOf(3, false), {0.3f, -0.6f, -1});
  expect(normalOf(0.0009f, true), {0, 0, 1});
  expect(normalOf(-2, true), {0, 0, 1});
}

}  // namespace
}  // namespace qv
