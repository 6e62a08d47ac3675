#include "Scenes.h"

#include <cmath>
#include <numbers>

#include "core/Random.h"

namespace qv::bench {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

MeshVertex VertexAt(const Vec3& position, const Vec3& normal, float u, float v) {
  MeshVertex vertex{};
  for (int axis = 0; axis < 3; ++axis) {
    vertex.position[axis] = position[axis];
    vertex.normal[axis] = normal[axis];
  }
  vertex.frontUv[0] = vertex.backUv[0] = u;
  vertex.frontUv[1] = vertex.backUv[1] = v;
  return vertex;
}

// A grid of (columns + 1) by (rows + 1) vertices, two triangles a cell.
template <class VertexOf>
BenchMesh Grid(int columns, int rows, std::uint32_t material, const VertexOf& vertexOf) {
  BenchMesh mesh;
  for (int y = 0; y <= rows; ++y) {
    for (int x = 0; x <= columns; ++x) {
      mesh.vertices.push_back(vertexOf(static_cast<float>(x) / static_cast<float>(columns),
                                       static_cast<float>(y) / static_cast<float>(rows)));
    }
  }
  const std::uint32_t word = material | material << 16;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      const std::int32_t a = y * (columns + 1) + x;
      const std::int32_t c = a + columns + 1;
      mesh.triangles.push_back({{a, a + 1, c + 1}, word});
      mesh.triangles.push_back({{a, c + 1, c}, word});
    }
  }
  return mesh;
}

float GroundHeight(float x, float y) {
  return 60 * std::sin(x / 400) * std::cos(y / 330) + 14 * std::sin(x / 70 + y / 90);
}

BenchMesh Ground(int cells, float side) {
  return Grid(cells, cells, 0, [side](float s, float t) {
    const float x = (s - 0.5f) * side;
    const float y = (t - 0.5f) * side;
    constexpr float kStep = 1;
    const Vec3 normal(GroundHeight(x - kStep, y) - GroundHeight(x + kStep, y),
                      GroundHeight(x, y - kStep) - GroundHeight(x, y + kStep), 2 * kStep);
    return VertexAt({x, y, GroundHeight(x, y)}, normal.normalized(), s * 40, t * 40);
  });
}

BenchMesh Sphere(const Vec3& centre, float radius, int rows, std::uint32_t material) {
  return Grid(2 * rows, rows, material, [&](float s, float t) {
    const float azimuth = 2 * kPi * s;
    const float polar = kPi * (1 - t);
    const Vec3 normal(std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth),
                      std::cos(polar));
    return VertexAt(centre + radius * normal, normal, s, t);
  });
}

MaterialParameters Coloured(float r, float g, float b) {
  MaterialParameters material;
  material.diffuseColor = Vec3(r, g, b);
  return material;
}

}  // namespace

std::size_t BenchScene::TriangleCount() const {
  std::size_t count = 0;
  for (const BenchMesh& mesh : meshes) count += mesh.triangles.size();
  return count;
}

BenchScene MillionTriangles() {
  constexpr int kGroundCells = 500;
  constexpr int kSpheres = 200;
  constexpr int kSphereRows = 25;
  constexpr float kSide = 4000;
  static_assert(2 * kGroundCells * kGroundCells + kSpheres * 4 * kSphereRows * kSphereRows ==
                1'000'000);

  BenchScene scene;
  scene.name = "million";
  scene.materials = {Coloured(0.45f, 0.5f, 0.35f), Coloured(0.8f, 0.3f, 0.2f),
                     Coloured(0.25f, 0.4f, 0.7f), Coloured(0.85f, 0.8f, 0.7f)};
  scene.meshes.push_back(Ground(kGroundCells, kSide));
  Random random;
  for (std::uint32_t i = 0; i < kSpheres; ++i) {
    const float x = (static_cast<float>(random.NextUniform()) - 0.5f) * kSide * 0.9f;
    const float y = (static_cast<float>(random.NextUniform()) - 0.5f) * kSide * 0.9f;
    const float radius = 30.0f + 25.0f * static_cast<float>(i % 3);
    scene.meshes.push_back(
        Sphere({x, y, GroundHeight(x, y) + radius}, radius, kSphereRows, 1 + i % 3));
  }
  scene.camera.position = Vec3(-1300, -1900, 520);
  scene.camera.forward = (Vec3(0, 0, 20) - scene.camera.position).normalized();
  scene.camera.up = Vec3(0, 0, 1);
  scene.camera.fieldOfView = 0.8f;
  return scene;
}

}  // namespace qv::bench
