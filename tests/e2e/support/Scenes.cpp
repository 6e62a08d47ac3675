#include "e2e/support/Scenes.h"

#include <cmath>
#include <vector>

namespace qv::e2e {
namespace {

MaterialParameters Paint(const Vec3& color) {
  MaterialParameters material;
  material.ambientColor = material.diffuseColor = color;
  return material;
}

std::uint32_t MaterialWord(std::int32_t index) {
  return static_cast<std::uint32_t>(index | index << 16);
}

MeshVertex VertexAt(float x, float y, float z, const Vec3& normal) {
  return {{x, y, z}, {normal.x(), normal.y(), normal.z()}, {0, 0}, {0, 0}};
}

// An upright rectangle that faces the camera.
bool SendPane(host::HostLink& link, float left, float bottom, float right, float top,
              std::int32_t material, float y = 100) {
  const Vec3 normal(0, -1, 0);
  const MeshVertex vertices[] = {VertexAt(left, y, bottom, normal),
                                 VertexAt(right, y, bottom, normal),
                                 VertexAt(right, y, top, normal), VertexAt(left, y, top, normal)};
  const MeshTriangle triangles[] = {{{0, 1, 2}, MaterialWord(material)},
                                    {{0, 2, 3}, MaterialWord(material)}};
  return link.BeginStaticMesh() && link.AddMeshData(vertices, triangles) && link.EndMesh();
}

// A level rectangle that is seen from above.
bool SendFloor(host::HostLink& link, float z, float fromY, float toY, std::int32_t material) {
  constexpr float kReach = 2000;
  const Vec3 normal(0, 0, 1);
  const MeshVertex vertices[] = {
      VertexAt(-kReach, fromY, z, normal), VertexAt(kReach, fromY, z, normal),
      VertexAt(kReach, toY, z, normal), VertexAt(-kReach, toY, z, normal)};
  const MeshTriangle triangles[] = {{{0, 1, 2}, MaterialWord(material)},
                                    {{0, 2, 3}, MaterialWord(material)}};
  return link.BeginStaticMesh() && link.AddMeshData(vertices, triangles) && link.EndMesh();
}

}  // namespace

bool SendQuarters(host::HostLink& link) {
  constexpr float kReach = 200;
  const auto red = link.AddMaterial(Paint({0.9f, 0.05f, 0.05f}));
  const auto green = link.AddMaterial(Paint({0.05f, 0.9f, 0.05f}));
  const auto blue = link.AddMaterial(Paint({0.05f, 0.05f, 0.9f}));
  const auto yellow = link.AddMaterial(Paint({0.9f, 0.9f, 0.05f}));
  LocationAndTime noon{0, 48, 9, 2024, 6, 21, 12, 0, 0, 1};
  return red && green && blue && yellow && link.SetLocationAndTime(noon) &&
         SendPane(link, -kReach, 0, 0, kReach, *red) &&
         SendPane(link, 0, 0, kReach, kReach, *green) &&
         SendPane(link, -kReach, -kReach, 0, 0, *blue) &&
         SendPane(link, 0, -kReach, kReach, 0, *yellow) && link.SceneComplete();
}

RenderCamera QuarterCamera() {
  RenderCamera camera;
  camera.position = {0, 0, 0};
  camera.forward = {0, 1, 0};
  camera.up = {0, 0, 1};
  camera.fieldOfView = 0.8f;
  camera.target = {0, 100, 0};
  return camera;
}

bool SendYard(host::HostLink& link) {
  constexpr float kReach = 2000;
  const auto red = link.AddMaterial(Paint({0.9f, 0.05f, 0.05f}));
  const auto green = link.AddMaterial(Paint({0.05f, 0.9f, 0.05f}));
  const auto blue = link.AddMaterial(Paint({0.05f, 0.05f, 0.9f}));
  LocationAndTime noon{0, 48, 9, 2024, 6, 21, 12, 0, 0, 1};
  return red && green && blue && link.SetLocationAndTime(noon) &&
         SendPane(link, -kReach, -kReach, kReach, kReach, *red, kWall) &&
         SendFloor(link, 0, kLedge, kWall, *green) &&
         SendFloor(link, kLowGround, -kReach, kWall, *blue) && link.SceneComplete();
}

RenderCamera YardCamera(float y) {
  RenderCamera camera = QuarterCamera();
  camera.position = {0, y, 70};
  camera.target = {0, kWall, 70};
  return camera;
}

bool SendGround(host::HostLink& link, int side) {
  const auto material = link.AddMaterial(Paint({0.5f, 0.6f, 0.4f}));
  if (!material) return false;
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
  for (int row = 0; row <= side; ++row) {
    for (int column = 0; column <= side; ++column) {
      const float x = static_cast<float>(column), y = static_cast<float>(row);
      vertices.push_back(VertexAt(x, y, 3 * std::sin(x * 0.3f) * std::cos(y * 0.2f), {0, 0, 1}));
      if (row == side || column == side) continue;
      const int first = row * (side + 1) + column;
      const int above = first + side + 1;
      triangles.push_back({{first, first + 1, above + 1}, MaterialWord(*material)});
      triangles.push_back({{first, above + 1, above}, MaterialWord(*material)});
    }
  }
  return link.BeginStaticMesh() && link.AddMeshData(vertices, triangles) && link.EndMesh();
}

}  // namespace qv::e2e
