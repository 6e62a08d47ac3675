#include "host/model/MeshPlacer.h"

#include <array>
#include <cmath>
#include <utility>

#include "host/model/Placement.h"

namespace qv::host {
namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;

// Coordinates beyond this can't be squared and summed in floats.
constexpr double kMaximumCoordinate = 1e15;

// The inverse transpose times the determinant; exists for flattening transforms as well.
Matrix3d Cofactors(const Matrix3d& m) {
  Matrix3d cofactors;
  cofactors.col(0) = m.col(1).cross(m.col(2));
  cofactors.col(1) = m.col(2).cross(m.col(0));
  cofactors.col(2) = m.col(0).cross(m.col(1));
  return cofactors;
}

bool IsUsable(const MeshVertex& vertex) {
  for (const float coordinate : vertex.position) {
    if (!(std::abs(coordinate) <= kMaximumCoordinate)) return false;
  }
  return true;
}

bool HasArea(const MeshVertex& a, const MeshVertex& b, const MeshVertex& c) {
  using Map = Eigen::Map<const Vec3>;
  const Vector3d ab = (Map(b.position) - Map(a.position)).cast<double>();
  const Vector3d ac = (Map(c.position) - Map(a.position)).cast<double>();
  return ab.cross(ac).squaredNorm() > 0;
}

MeshVertex Placed(const LocalVertex& vertex, const Eigen::Affine3d& place,
                  const Matrix3d& normalPlace) {
  const Vec3 position = (place * vertex.position.cast<double>()).cast<float>();
  const Vec3 normal = UnitOr(normalPlace * vertex.normal.cast<double>(), Vec3(0, 0, 1));
  return {{position.x(), position.y(), position.z()},
          {normal.x(), normal.y(), normal.z()},
          {vertex.uv.x(), vertex.uv.y()},
          {vertex.uv.x(), vertex.uv.y()}};
}

void DropUnusedVertices(SceneMesh& mesh) {
  constexpr std::int32_t kUnused = -1;
  std::vector<std::int32_t> newNumbers(mesh.vertices.size(), kUnused);
  std::vector<MeshVertex> used;
  for (MeshTriangle& triangle : mesh.triangles) {
    for (std::int32_t& number : triangle.vertex) {
      std::int32_t& newNumber = newNumbers[static_cast<std::size_t>(number)];
      if (newNumber == kUnused) {
        newNumber = static_cast<std::int32_t>(used.size());
        used.push_back(mesh.vertices[static_cast<std::size_t>(number)]);
      }
      number = newNumber;
    }
  }
  mesh.vertices = std::move(used);
}

}  // namespace

SceneMesh PlaceMesh(const LocalMesh& mesh, std::span<const std::uint32_t> materials,
                    const Eigen::Affine3d& worldFromMesh, LeftOut& leftOut) {
  const Matrix3d linear = worldFromMesh.linear();
  const bool mirrors = linear.determinant() < 0;
  const Matrix3d normalPlace = (mirrors ? -1 : 1) * Cofactors(linear);
  SceneMesh placed;
  placed.vertices.reserve(mesh.vertices.size());
  for (const LocalVertex& vertex : mesh.vertices) {
    placed.vertices.push_back(Placed(vertex, worldFromMesh, normalPlace));
  }

  placed.triangles.reserve(mesh.triangles.size());
  for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
    std::array<std::uint32_t, 3> v = mesh.triangles[i].vertex;
    if (mirrors) std::swap(v[1], v[2]);
    const MeshVertex& a = placed.vertices[v[0]];
    const MeshVertex& b = placed.vertices[v[1]];
    const MeshVertex& c = placed.vertices[v[2]];
    if (!IsUsable(a) || !IsUsable(b) || !IsUsable(c)) {
      ++leftOut.notFinite;
    } else if (!HasArea(a, b, c)) {
      ++leftOut.withoutArea;
    } else {
      const std::uint32_t word = materials[i] | materials[i] << 16;
      placed.triangles.push_back({{static_cast<std::int32_t>(v[0]), static_cast<std::int32_t>(v[1]),
                                   static_cast<std::int32_t>(v[2])},
                                  word});
    }
  }
  // What no triangle names may be no finite point, and would count for the bounds.
  if (placed.triangles.size() < mesh.triangles.size()) DropUnusedVertices(placed);
  return placed;
}

}  // namespace qv::host
