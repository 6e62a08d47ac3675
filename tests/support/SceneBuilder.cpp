#include "support/SceneBuilder.h"

#include <Eigen/Geometry>
#include <cmath>
#include <numbers>
#include <utility>

namespace qv::test {
namespace {

MeshVertex VertexAt(const Vec3& position, const Vec3& normal, float u, float v) {
  return {{position.x(), position.y(), position.z()},
          {normal.x(), normal.y(), normal.z()},
          {u, v},
          {u, v}};
}

void AppendQuad(SceneMesh& mesh, const Vec3& corner, const Vec3& right, const Vec3& up,
                Sides sides) {
  const Vec3 normal = right.cross(up).normalized();
  const auto first = static_cast<std::int32_t>(mesh.vertices.size());
  mesh.vertices.push_back(VertexAt(corner, normal, 0, 0));
  mesh.vertices.push_back(VertexAt(corner + right, normal, 1, 0));
  mesh.vertices.push_back(VertexAt(corner + right + up, normal, 1, 1));
  mesh.vertices.push_back(VertexAt(corner + up, normal, 0, 1));
  mesh.triangles.push_back({{first, first + 1, first + 2}, sides.Word()});
  mesh.triangles.push_back({{first, first + 2, first + 3}, sides.Word()});
}

}  // namespace

SceneLight SceneLight::Point(const Vec3& color, const Vec3& position) {
  return {kPoint, color, position, Vec3::Zero(), 0, 0};
}

SceneLight SceneLight::Spot(const Vec3& color, const Vec3& position, const Vec3& direction,
                            float innerAngle, float outerAngle) {
  return {kSpot, color, position, direction, innerAngle, outerAngle};
}

SceneLight SceneLight::Directional(const Vec3& color, const Vec3& direction) {
  return {kDirectional, color, Vec3::Zero(), direction, 0, 0};
}

MaterialParameters Matte(const Vec3& diffuse) {
  MaterialParameters material;
  material.diffuseColor = diffuse;
  return material;
}

int SceneBuilder::Material(const MaterialParameters& material) {
  materials.push_back(material);
  return static_cast<int>(materials.size()) - 1;
}

int SceneBuilder::Mesh(SceneMesh mesh) {
  meshes.push_back(std::move(mesh));
  return static_cast<int>(meshes.size()) - 1;
}

int SceneBuilder::Quad(const Vec3& corner, const Vec3& right, const Vec3& up, Sides sides) {
  SceneMesh mesh;
  AppendQuad(mesh, corner, right, up, sides);
  return Mesh(std::move(mesh));
}

int SceneBuilder::Floor(float z, float halfSide, Sides sides) {
  return Quad({-halfSide, -halfSide, z}, {2 * halfSide, 0, 0}, {0, 2 * halfSide, 0}, sides);
}

int SceneBuilder::Box(const Vec3& minimum, const Vec3& maximum, Sides sides) {
  const Vec3 x(maximum.x() - minimum.x(), 0, 0);
  const Vec3 y(0, maximum.y() - minimum.y(), 0);
  const Vec3 z(0, 0, maximum.z() - minimum.z());
  SceneMesh mesh;
  AppendQuad(mesh, minimum, x, z, sides);
  AppendQuad(mesh, minimum + y, -y, z, sides);
  AppendQuad(mesh, minimum + y, x, -y, sides);
  AppendQuad(mesh, maximum - z, -x, z, sides);
  AppendQuad(mesh, maximum - y - z, y, z, sides);
  AppendQuad(mesh, maximum - x - y, x, y, sides);
  return Mesh(std::move(mesh));
}

int SceneBuilder::Sphere(const Vec3& centre, float radius, int rows, Sides sides) {
  const int columns = 2 * rows;
  const float angle = std::numbers::pi_v<float> / static_cast<float>(rows);
  SceneMesh mesh;
  for (int row = 0; row <= rows; ++row) {
    const float polar = angle * static_cast<float>(rows - row);
    for (int column = 0; column <= columns; ++column) {
      const float azimuth = angle * static_cast<float>(column);
      const Vec3 normal(std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth),
                        std::cos(polar));
      mesh.vertices.push_back(VertexAt(centre + radius * normal, normal,
                                       static_cast<float>(column) / static_cast<float>(columns),
                                       static_cast<float>(row) / static_cast<float>(rows)));
    }
  }
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const std::int32_t a = row * (columns + 1) + column;
      const std::int32_t c = a + columns + 1;
      mesh.triangles.push_back({{a, a + 1, c + 1}, sides.Word()});
      mesh.triangles.push_back({{a, c + 1, c}, sides.Word()});
    }
  }
  return Mesh(std::move(mesh));
}

SceneBuilder SmallScene() {
  SceneBuilder builder;
  const int ground = builder.Material(Vec3(0.5f, 0.6f, 0.4f));
  const int red = builder.Material(Vec3(0.8f, 0.2f, 0.1f));
  MaterialParameters shiny = Matte(Vec3(0.1f, 0.1f, 0.3f));
  shiny.specularColor = Vec3::Constant(0.5f);
  shiny.specularExponent = 30;
  shiny.reflectance = 0.4f;
  const int mirror = builder.Material(shiny);
  builder.Floor(0, 200, ground);
  builder.Box({-30, -20, 0}, {-5, 10, 35}, red);
  builder.Sphere({20, 5, 18}, 18, 12, mirror);
  builder.lights.push_back(SceneLight::Point(Vec3(8, 8, 6), {0, -60, 70}));
  return builder;
}

RenderCamera LookingAt(const Vec3& from, const Vec3& at, float fieldOfView) {
  RenderCamera camera;
  camera.position = from;
  camera.forward = (at - from).normalized();
  camera.up = camera.forward.cross(Vec3::UnitZ()).cross(camera.forward).normalized();
  camera.fieldOfView = fieldOfView;
  return camera;
}

}  // namespace qv::test
