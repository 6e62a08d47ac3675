#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TracedScene.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using test::Ray;
using test::SceneBuilder;
using test::SceneLight;
using test::SceneMesh;
using test::TracedScene;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kHuge = 3e38f;

// A matte floor, seen at (20, 0), beside a quad at (-20, 0) that a test spoils; both lit by a sun,
// a point light and a spot.
struct SpoiltScene {
  explicit SpoiltScene(const MaterialParameters& material) {
    builder.Quad({10, -10, 0}, {20, 0, 0}, {0, 20, 0}, builder.Material(Vec3(0.5f, 0.5f, 0.5f)));
    builder.Quad({-30, -10, 0}, {20, 0, 0}, {0, 20, 0}, builder.Material(material));
    builder.lights = {SceneLight::Directional(Vec3::Ones(), {0, 0, -1}),
                      SceneLight::Point(Vec3::Ones(), {20, 0, 30}),
                      SceneLight::Spot(Vec3::Ones(), {20, 0, 30}, {0, 0, -1}, 0.4f, 0.6f)};
  }

  SceneMesh& Spoilt() { return builder.meshes[1]; }

  // Traces both quads in all passes: the good one shows what it shows without the other.
  void ExpectTheGoodQuadUnharmed() {
    SceneBuilder alone = builder;
    alone.meshes.resize(1);
    TracedScene expected(alone);
    TracedScene traced(builder);
    const Ray rays[] = {{{20, 0, 20}, {0, 0, -1}}, {{-20, 1, 20}, {0, 0, -1}}};
    for (const RenderPass pass : {PassPreview, PassSunPreview, PassFull, PassAntialias}) {
      const Vec3 good = traced.Colors(rays, pass)[0];
      EXPECT_TRUE(good.isApprox(expected.Color(rays[0], pass), 1e-6f)) << good.transpose();
      EXPECT_GT(good.x(), 0.2f);
    }
  }

  SceneBuilder builder;
};

// Glass, mirror, blur, highlight, relief and alpha all at once.
MaterialParameters Everything() {
  MaterialParameters material = test::Matte(Vec3(0.3f, 0.3f, 0.3f));
  material.specularColor = Vec3::Ones();
  material.specularExponent = 10;
  material.reflectance = 0.6f;
  material.glossy = 1;
  material.refractiveIndex = 1.5f;
  material.opacity = 0.5f;
  material.hasTexture = true;
  material.texturePath = test::WritePlainPng("everything.png", 4, 4, 200, 100, 50, 128);
  material.bumpFactor = 1;
  return material;
}

TEST(BadInput, DegenerateTriangles) {
  SpoiltScene scene(Everything());
  const SceneMesh good = scene.Spoilt();
  for (MeshTriangle& triangle : scene.Spoilt().triangles) triangle.vertex[1] = triangle.vertex[0];
  scene.ExpectTheGoodQuadUnharmed();
  scene.Spoilt() = good;
  for (MeshTriangle& triangle : scene.Spoilt().triangles) {
    triangle.vertex[1] = triangle.vertex[2] = triangle.vertex[0];
  }
  scene.ExpectTheGoodQuadUnharmed();
  scene.Spoilt() = good;
  for (MeshVertex& vertex : scene.Spoilt().vertices) vertex.position[1] = 1;
  scene.ExpectTheGoodQuadUnharmed();
}

TEST(BadInput, NormalsAndUvsThatAreNoNumbers) {
  for (const float value : {0.0f, kNan, kInfinity, kHuge, 1e-30f}) {
    SpoiltScene normals(Everything());
    SpoiltScene uvs(Everything());
    for (MeshVertex& vertex : normals.Spoilt().vertices) {
      std::fill_n(vertex.normal, 3, value);
    }
    for (MeshVertex& vertex : uvs.Spoilt().vertices) {
      std::fill_n(vertex.frontUv, 2, value);
      std::fill_n(vertex.backUv, 2, -value);
    }
    normals.ExpectTheGoodQuadUnharmed();
    uvs.ExpectTheGoodQuadUnharmed();
  }
}

TEST(BadInput, PositionsFarOff) {
  for (const float value : {1e15f, kHuge, kInfinity, kNan}) {
    SpoiltScene scene(Everything());
    scene.Spoilt().vertices[1].position[0] = value;
    scene.Spoilt().vertices[2].position[2] = -value;
    const TracedScene built(scene.builder);  // whatever it shows
    const Ray ray{{-20, 1, 20}, {0, 0, -1}};
    EXPECT_NE(built.Traced({&ray, 1}), nullptr);
  }
}

TEST(BadInput, MaterialWordsBeyondTheList) {
  SpoiltScene scene(Everything());
  scene.Spoilt().triangles[0].materialWord = 0xffffffffu;
  scene.Spoilt().triangles[1].materialWord = 0x80000002u;
  scene.ExpectTheGoodQuadUnharmed();
}

TEST(BadInput, EmptyMeshes) {
  SpoiltScene scene(Everything());
  scene.Spoilt() = {};
  scene.ExpectTheGoodQuadUnharmed();
  scene.Spoilt().billboard = {Vec3(0, 0, 0), Vec2(0, 1)};
  scene.ExpectTheGoodQuadUnharmed();
  scene.Spoilt().billboard.reset();
  scene.Spoilt().vertices.resize(3);
  scene.ExpectTheGoodQuadUnharmed();
}

TEST(BadInput, LightsWithoutColourDirectionOrPlace) {
  SpoiltScene scene(Everything());
  TracedScene expected(scene.builder);
  const Vec3 zero = Vec3::Zero();
  scene.builder.lights.insert(
      scene.builder.lights.end(),
      {SceneLight::Point(zero, {20, 0, 30}), SceneLight::Directional(zero, {0, 0, -1}),
       SceneLight::Directional(Vec3::Ones(), zero),
       SceneLight::Spot(zero, {20, 0, 30}, {0, 0, -1}, 0.4f, 0.6f),
       SceneLight::Spot(Vec3::Ones(), {20, 0, 30}, zero, 0.4f, 0.6f),
       SceneLight::Point(Vec3::Ones(), {kNan, kNan, kNan}),
       SceneLight::Directional(Vec3::Ones(), {kNan, kNan, kNan}),
       SceneLight::Spot(Vec3::Ones(), {kNan, 0, 30}, {0, 0, -1}, 0.4f, 0.6f)});
  TracedScene traced(scene.builder);
  const Ray ray{{20, 0, 20}, {0, 0, -1}};
  EXPECT_EQ(traced.Color(ray), expected.Color(ray));
}

TEST(BadInput, RaysThatAreNoNumbers) {
  SpoiltScene scene(Everything());
  TracedScene traced(scene.builder);
  const Ray good{{20, 0, 20}, {0, 0, -1}};
  const Ray rays[] = {good,
                      {{kNan, 0, 0}, {0, 0, -1}},
                      {{0, 0, 0}, {kNan, kNan, kNan}},
                      {{0, 0, 0}, {kInfinity, 0, 0}},
                      {{kInfinity, 0, 0}, {0, 0, 1}},
                      {{0, 0, 0}, {0, 0, 0}}};
  EXPECT_EQ(traced.Colors(rays, PassFull)[0], traced.Color(good));
}

}  // namespace
}  // namespace qv
