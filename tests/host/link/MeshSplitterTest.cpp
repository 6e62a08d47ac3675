#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>

#include "host/link/MeshSplitter.h"

namespace qv::host {
namespace {

struct Mesh {
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
};

Mesh RandomMesh(std::int32_t vertexCount, int triangleCount) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int32_t> vertex(0, vertexCount - 1);
  Mesh mesh;
  for (std::int32_t i = 0; i < vertexCount; ++i) {
    mesh.vertices.push_back({{static_cast<float>(i), 0, 0}, {0, 0, 1}, {0, 0}, {0, 0}});
  }
  for (int i = 0; i < triangleCount; ++i) {
    mesh.triangles.push_back(
        {{vertex(random), vertex(random), vertex(random)}, static_cast<std::uint32_t>(i)});
  }
  return mesh;
}

// Where the corners of a triangle are, by the first coordinate, and its material word.
std::array<float, 4> Shape(std::span<const MeshVertex> vertices, const MeshTriangle& triangle) {
  const auto x = [&](int corner) {
    return vertices[static_cast<std::size_t>(triangle.vertex[corner])].position[0];
  };
  return {x(0), x(1), x(2), static_cast<float>(triangle.materialWord)};
}

TEST(MeshSplitter, KeepsEveryTriangleInOrderWithinTheCapacity) {
  const Mesh mesh = RandomMesh(500, 3000);
  for (const std::size_t capacity : {156u, 157u, 1000u, 20000u, 68020u}) {
    std::vector<std::array<float, 4>> got;
    std::size_t parts = 0;
    ASSERT_TRUE(SplitMesh(mesh.vertices, mesh.triangles, capacity, [&](const MeshPart& part) {
      ++parts;
      // 20 bytes of record, 40 for a vertex, 16 for a triangle.
      EXPECT_LE(20 + 40 * part.vertices.size() + 16 * part.triangles.size(), capacity);
      for (const MeshTriangle& triangle : part.triangles) {
        for (const std::int32_t v : triangle.vertex) {
          EXPECT_LT(static_cast<std::size_t>(v), part.vertices.size());
        }
        got.push_back(Shape(part.vertices, triangle));
      }
      return true;
    }));
    ASSERT_EQ(got.size(), mesh.triangles.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_EQ(got[i], Shape(mesh.vertices, mesh.triangles[i]));
    }
    // 20 + 40 * 500 + 16 * 3000 = 68020: all at once.
    EXPECT_EQ(parts == 1, capacity == 68020u);
  }
}

TEST(MeshSplitter, StopsAtTheFirstFailure) {
  Mesh mesh = RandomMesh(50, 100);
  int parts = 0;
  EXPECT_FALSE(SplitMesh(mesh.vertices, mesh.triangles, 400,
                         [&parts](const MeshPart&) { return ++parts < 3; }));
  EXPECT_EQ(parts, 3);
  for (const std::int32_t bad : {-1, 50}) {
    mesh.triangles[60].vertex[2] = bad;
    EXPECT_FALSE(
        SplitMesh(mesh.vertices, mesh.triangles, 400, [](const MeshPart&) { return true; }));
  }
  EXPECT_TRUE(SplitMesh(mesh.vertices, {}, 400, [](const MeshPart&) { return false; }));
}

}  // namespace
}  // namespace qv::host
