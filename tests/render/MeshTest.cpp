#include <embree3/rtcore.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "render/geometry/StaticMesh.h"
#include "render/geometry/TriangleAttributes.h"
#include "render/material/RenderMaterial.h"

namespace qv {
namespace {

MeshVertex Vertex(float x, float y, float z, float u = 0, float v = 0, float backU = 0,
                  float backV = 0) {
  return {{x, y, z}, {0, 0, 2}, {u, v}, {backU, backV}};
}

// A mesh built into a scene of its own.
class MeshTest : public testing::Test {
 protected:
  MeshTest() : device_(rtcNewDevice("")), scene_(rtcNewScene(device_)), materials_(2) {}
  ~MeshTest() override {
    mesh_.Reset();
    rtcReleaseScene(scene_);
    rtcReleaseDevice(device_);
  }
  void Build() { mesh_.Build(device_, scene_, materials_, nullptr); }

  RTCDevice device_;
  RTCScene scene_;
  std::vector<RenderMaterial> materials_;
  StaticMesh mesh_;
};

TEST_F(MeshTest, RebasesTheVertexNumbersOfEachCall) {
  const MeshVertex first[] = {Vertex(0, 0, 0), Vertex(1, 0, 0), Vertex(0, 1, 0), Vertex(1, 1, 0)};
  const MeshVertex second[] = {Vertex(5, 0, 0), Vertex(6, 0, 0), Vertex(5, 1, 0)};
  const MeshTriangle one[] = {{{0, 1, 2}, 0}, {{1, 3, 2}, 1}};
  const MeshTriangle other[] = {{{2, 0, 1}, 0x10000}};
  mesh_.Append(first, one);
  mesh_.Append(second, other);
  Build();
  ASSERT_EQ(mesh_.VertexCount(), 7u);
  ASSERT_EQ(mesh_.TriangleCount(), 3u);
  const std::uint32_t indices[] = {0, 1, 2, 1, 3, 2, 6, 4, 5};
  const std::uint32_t words[] = {0, 1, 0x10000};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(mesh_.Indices()[i], indices[i]) << i;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(mesh_.TriangleMaterials()[i], words[i]) << i;
  EXPECT_EQ(mesh_.Positions()[4].x, 5);
  EXPECT_TRUE(mesh_.StagingVertices().empty());
  EXPECT_NE(mesh_.GeometryId(), Mesh::kNoGeometry);
  EXPECT_FALSE(mesh_.HasLightmap());
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(mesh_.Positions()) % 64, 0u);
  mesh_.Reset();
  EXPECT_EQ(mesh_.GeometryId(), Mesh::kNoGeometry);
}

TEST_F(MeshTest, ClearsTinyPositionsAndKeepsTinyUvs) {
  const MeshVertex vertices[] = {Vertex(5e-11f, -1e-10f, 2e-10f, 5e-11f),
                                 Vertex(-2e-10f, 1e-11f, 1, 0, -5e-11f), Vertex(0, 1, 0)};
  const MeshTriangle triangles[] = {{{0, 1, 2}, 0}};
  mesh_.Append(vertices, triangles);
  Build();
  const PaddedVec3* p = mesh_.Positions();
  EXPECT_EQ(p[0].x, 0);
  EXPECT_EQ(p[0].y, 0) << "not above the limit";
  EXPECT_FALSE(std::signbit(p[0].y));
  EXPECT_EQ(p[0].z, 2e-10f);
  EXPECT_EQ(p[1].x, -2e-10f);
  EXPECT_EQ(p[1].y, 0);
  EXPECT_EQ(mesh_.TextureCoords()[0].side[0][0], 5e-11f);
  EXPECT_EQ(mesh_.TextureCoords()[1].side[0][1], -5e-11f);
  EXPECT_NEAR(mesh_.Normals()[0].z, 1, 1e-6f) << "normals come out with unit length";
}

// What textures and reliefs look like on good triangles is tested beside the reference.
TEST_F(MeshTest, HasNoTangentsWhereTheUvsHaveNoArea) {
  materials_[1].hasTexture = true;
  materials_[1].texture.mips.resize(1);
  materials_[1].texture.mips[0].width = materials_[1].texture.mips[0].height = 16;
  const MeshVertex vertices[] = {Vertex(1, 1, 0, 0, 0), Vertex(1, 1, 0, 0, 0),
                                 Vertex(1, 3, 0, 0, 1)};
  const MeshTriangle triangles[] = {{{0, 1, 2}, 1}};
  mesh_.Append(vertices, triangles);
  Build();
  EXPECT_FALSE(std::isfinite(mesh_.TexelScales()[0].side[0])) << "a first edge without length";
  EXPECT_EQ(mesh_.TexelScales()[0].side[1], 1) << "no texture";
  for (const auto& side : mesh_.TangentFrames()[0].side) {
    for (int axis = 0; axis < 3; ++axis) {
      EXPECT_EQ(side.tangent[axis], 0);
      EXPECT_EQ(side.bitangent[axis], 0);
    }
  }
}

TEST_F(MeshTest, ReadsTheBackMaterialAsSignedAndRepairsWords) {
  EXPECT_EQ(BackMaterial(0xffff0000u), -1);
  EXPECT_EQ(BackMaterial(0x80000000u), -32768);
  EXPECT_EQ(BackMaterial(0x7fff1234u), 32767);
  EXPECT_EQ(FrontMaterial(0xffff8000u), 0x8000u);

  const MeshVertex vertices[] = {Vertex(0, 0, 0), Vertex(1, 0, 0), Vertex(0, 1, 0)};
  const MeshTriangle triangles[] = {{{0, 1, 2}, 0x10000},
                                    {{0, 1, 2}, 0xffff0001u},
                                    {{0, 1, 2}, 0x20002u},
                                    {{0, 1, 2}, 0x0000ffffu}};
  mesh_.Append(vertices, triangles);
  EXPECT_EQ(mesh_.RepairMaterials(2, 1), 4u);
  Build();
  const std::uint32_t words[] = {0x10000, 0x10001, 0x10001, 0x00001};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(mesh_.TriangleMaterials()[i], words[i]) << i;
}

}  // namespace
}  // namespace qv
