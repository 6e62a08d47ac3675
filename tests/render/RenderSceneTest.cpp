#include <gtest/gtest.h>

#include <limits>

#include "TracedScene.h"
#include "render/geometry/RenderScene.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using test::SceneBuilder;
using test::TracedScene;

TEST(RenderScene, MeasuresBounds) {
  SceneBuilder builder;
  builder.Material(Vec3::Ones());
  builder.Box({-3, 4, -8}, {-1, 9, 2}, 0);
  const TracedScene mixed(builder);
  EXPECT_EQ(mixed.scene.Bounds().minimum, Vec3(-3, 4, -8));
  // A model below zero on an axis ends at the smallest positive number there.
  EXPECT_EQ(mixed.scene.Bounds().maximum, Vec3(1.17549435e-38f, 9, 2));
  const TracedScene empty{SceneBuilder()};
  EXPECT_EQ(empty.scene.Bounds().minimum, Vec3::Constant(3.40282347e+38f));
  EXPECT_EQ(empty.scene.Bounds().maximum, Vec3::Constant(1.17549435e-38f));
}

TEST(RenderScene, NumbersMaterialsAndGeometries) {
  SceneBuilder builder;
  builder.Material(Vec3::Ones());
  for (int i = 0; i < 40; ++i) builder.Box({0, 0, i * 3.0f}, {1, 1, i * 3.0f + 1}, 0);
  builder.Sphere({50, 50, 50}, 5, 4, 0);
  TracedScene traced(builder);
  EXPECT_EQ(traced.scene.TriangleCount(), 40 * 12 + 4 * 8 * 2);
  for (unsigned i = 0; i < 41; ++i) EXPECT_EQ(traced.scene.Meshes()[i]->GeometryId(), i);
  EXPECT_EQ(traced.scene.AddMaterial({}), 1);
  EXPECT_EQ(traced.scene.AddMaterial({}), 2);
  EXPECT_EQ(traced.scene.Lights()[0].type, LightType::kDirectional) << "the sun comes first";
}

TEST(RenderScene, KeepsAMaterialWhoseTextureIsMissing) {
  RTCDevice device = rtcNewDevice("");
  {
    RenderScene scene(device);
    MaterialParameters material = test::Matte(Vec3(0.1f, 0.2f, 0.3f));
    material.hasTexture = true;
    material.texturePath = test::ScratchPath("missing.png");
    EXPECT_EQ(scene.AddMaterial(material), 0);
    EXPECT_FALSE(scene.Materials()[0].hasTexture);
    EXPECT_EQ(scene.Materials()[0].diffuseColor, Vec3(0.1f, 0.2f, 0.3f));
    material.texturePath = test::WritePlainPng("there.png", 3, 2, 9, 9, 9, 255);
    EXPECT_EQ(scene.AddMaterial(material), 1);
    EXPECT_TRUE(scene.Materials()[1].hasTexture);
    EXPECT_EQ(scene.Materials()[1].texture.mips.size(), 2u);
  }
  rtcReleaseDevice(device);
}

TEST(RenderScene, ShowsGreyForMaterialsThatWereNotSent) {
  SceneBuilder builder;
  builder.Material(Vec3::Ones());
  builder.Floor(0, 50, {7, 0});
  builder.Floor(-9, 50, {0, 0x8000});
  TracedScene traced(builder);
  ASSERT_EQ(traced.scene.Materials().size(), 2u);
  const Vec3 above = traced.Color({{1, 2, 30}, {0, 0, -1}}, PassPreview);
  EXPECT_TRUE(above.isApprox(Vec3::Constant(0.4f), 1e-5f)) << above.transpose();
  const Vec3 below = traced.Color({{1, 2, -30}, {0, 0, 1}}, PassPreview);
  EXPECT_TRUE(below.isApprox(Vec3::Constant(0.4f), 1e-5f)) << below.transpose();
}

TEST(RenderScene, TakesNoDataWithoutAMesh) {
  RTCDevice device = rtcNewDevice("");
  {
    RenderScene scene(device);
    const MeshVertex vertices[3] = {};
    const MeshTriangle triangles[1] = {};
    scene.AddMeshData(vertices, triangles);
    scene.EndMesh();
    scene.EndBillboard({0, 0, 0}, {0, 1});
    scene.BeginStaticMesh();
    scene.EndBillboard({0, 0, 0}, {0, 1});
    scene.AddMeshData(vertices, triangles);
    scene.Build(nullptr);
    EXPECT_EQ(scene.Meshes().size(), 1u);
    EXPECT_EQ(scene.TriangleCount(), 0);
    EXPECT_FALSE(scene.IsBusy());
    scene.Clear();
    EXPECT_TRUE(scene.IsBusy());
    EXPECT_TRUE(scene.Meshes().empty() && scene.Materials().empty() && scene.Lights().empty());
    EXPECT_EQ(scene.EmbreeScene(), nullptr);
    // A sky update after the scene has gone.
    scene.SetSun(RenderLight::Directional(Vec3::Ones(), -Vec3::UnitZ()));
  }
  rtcReleaseDevice(device);
}

TEST(RenderScene, LeavesWhatCameAfterTheBuildForTheNext) {
  SceneBuilder builder;
  builder.Material(Vec3::Ones());
  builder.Box({0, 0, 0}, {1, 1, 1}, 0);
  TracedScene traced(builder);
  const MeshVertex vertices[3] = {{{0, 0, 5}, {0, 0, 1}, {}, {}},
                                  {{1, 0, 5}, {0, 0, 1}, {}, {}},
                                  {{0, 1, 5}, {0, 0, 1}, {}, {}}};
  const MeshTriangle triangles[1] = {{{0, 1, 2}, 0}};
  traced.scene.BeginBillboard();
  traced.scene.AddMeshData(vertices, triangles);
  traced.scene.CommitForFrame({0, 1, 0});
  EXPECT_EQ(traced.scene.TriangleCount(), 12);
  traced.scene.EndBillboard({0, 0, 0}, {0, 1});
  traced.scene.Build(nullptr);
  traced.scene.CommitForFrame({0, 1, 0});
  EXPECT_EQ(traced.scene.TriangleCount(), 13);
  EXPECT_EQ(traced.scene.Meshes().back()->GeometryId(), 1u);
}

}  // namespace
}  // namespace qv
