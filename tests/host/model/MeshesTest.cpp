#include <algorithm>
#include <cmath>

#include "host/model/MeshPlacer.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class Meshes : public ModelFolder {};

constexpr const char* kCube =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\nv 1 1 1\nv 0 1 1\n"
    "f 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";

TEST_F(Meshes, CubeWithoutNormalsGetsHardEdges) {
  const Scene cube = Load(Write("cube.obj", kCube));
  ASSERT_EQ(cube.meshes.size(), 1u);
  EXPECT_EQ(cube.meshes[0].triangles.size(), 12u);
  EXPECT_EQ(cube.meshes[0].vertices.size(), 24u);
  for (const MeshTriangle& triangle : cube.meshes[0].triangles) {
    const auto vertex = [&](int i) -> const MeshVertex& {
      return cube.meshes[0].vertices[static_cast<std::size_t>(triangle.vertex[i])];
    };
    const Vec3 a = PositionOf(vertex(0));
    const Vec3 face = (PositionOf(vertex(1)) - a).cross(PositionOf(vertex(2)) - a).normalized();
    // Outwards, along an axis.
    EXPECT_GT(face.dot(a - cube.bounds.center()), 0);
    for (int corner = 0; corner < 3; ++corner) {
      EXPECT_LT((NormalOf(vertex(corner)) - face).norm(), 1e-4f);
    }
  }
}

TEST_F(Meshes, NormalsOfTheFileAreKeptAndBadOnesReplaced) {
  const Scene scene = Load(Write("normals.obj",
                                 "v 0 0 0\nv 1 0 0\nv 0 0 -1\nvn 0 0.6 0.8\nvn 0 0 0\nvn nan 0 0\n"
                                 "f 1//1 2//2 3//3\n"));
  ASSERT_EQ(scene.meshes.at(0).vertices.size(), 3u);
  // The file's y comes out as z.
  EXPECT_TRUE(NormalOf(scene.meshes[0].vertices[0]).isApprox(Vec3(0, -0.8f, 0.6f), 1e-4f));
  EXPECT_TRUE(NormalOf(scene.meshes[0].vertices[1]).isApprox(Vec3(0, 0, 1), 1e-4f));
  EXPECT_TRUE(NormalOf(scene.meshes[0].vertices[2]).isApprox(Vec3(0, 0, 1), 1e-4f));
}

// The program smooths the normals that it stores over all edges.
TEST_F(Meshes, CubeOfABlenderFileHasHardEdgesToo) {
  if (!Reads(".blend")) GTEST_SKIP();
  const Scene cube = Load(Sample("BLEND/BlenderDefault_250.blend"));
  ASSERT_EQ(cube.meshes.size(), 1u);
  EXPECT_EQ(cube.meshes[0].vertices.size(), 24u);
  for (const MeshVertex& vertex : cube.meshes[0].vertices) {
    EXPECT_NEAR(NormalOf(vertex).cwiseAbs().maxCoeff(), 1, 1e-4f);
  }
}

TEST_F(Meshes, ConcavePolygonIsCutWithinItsOutline) {
  // An L of area 3.
  const Scene scene = Load(Write("l.obj",
                                 "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 1 1 0\nv 1 2 0\nv 0 2 0\n"
                                 "f 1 2 3 4 5 6\n"));
  float area = 0;
  for (const MeshTriangle& triangle : scene.meshes.at(0).triangles) {
    const auto at = [&](int i) {
      return PositionOf(scene.meshes[0].vertices[static_cast<std::size_t>(triangle.vertex[i])]);
    };
    area += (at(1) - at(0)).cross(at(2) - at(0)).norm() / 2;
  }
  EXPECT_NEAR(area * 0.0254f * 0.0254f, 3, 1e-3f);
}

TEST(PlaceMesh, DropsWhatAPlaceMakesFlatAndTheVerticesWithIt) {
  LocalMesh mesh;
  mesh.vertices = {{Vec3(0, 0, 0), Vec3(0, 0, 1), Vec2(0, 0)},
                   {Vec3(1, 0, 0), Vec3(0, 0, 1), Vec2(0, 0)},
                   {Vec3(0, 1, 0), Vec3(0, 0, 1), Vec2(0, 0)},
                   {Vec3(0, 0, 1), Vec3(0, 0, 1), Vec2(0, 0)}};
  mesh.triangles = {{{0, 1, 3}, 0}, {{0, 1, 2}, 0}};
  const std::vector<std::uint32_t> materials = {7, 9};
  Eigen::Affine3d flatten = Eigen::Affine3d::Identity();
  flatten.linear()(2, 2) = 0;
  LeftOut leftOut;
  const SceneMesh placed = PlaceMesh(mesh, materials, flatten, leftOut);
  EXPECT_EQ(leftOut.withoutArea, 1u);
  ASSERT_EQ(placed.triangles.size(), 1u);
  EXPECT_EQ(placed.triangles[0].materialWord, 9u | 9u << 16);
  EXPECT_EQ(placed.vertices.size(), 3u);
  for (const std::int32_t vertex : placed.triangles[0].vertex) {
    EXPECT_TRUE(
        NormalOf(placed.vertices.at(static_cast<std::size_t>(vertex))).isApprox(Vec3(0, 0, 1)));
  }
}

}  // namespace
}  // namespace qv::host
