#include "host/scenefile/Shapes.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace qv::host {
namespace {

constexpr int kSides = 64;  // of what is round
constexpr int kRings = 32;  // of a ball from pole to pole
constexpr float kPi = std::numbers::pi_v<float>;

class Builder {
 public:
  Builder(const SceneFileShape& shape, std::uint32_t material)
      : size_(shape.size), textureLength_(shape.textureLength), word_(material | material << 16) {
    mesh_.name = shape.name;
  }

  // `u` and `v` are lengths along the surface.
  std::int32_t Vertex(const Vec3& position, const Vec3& normal, float u, float v) {
    u /= textureLength_;
    v /= textureLength_;
    mesh_.vertices.push_back({{position.x(), position.y(), position.z()},
                              {normal.x(), normal.y(), normal.z()},
                              {u, v},
                              {u, v}});
    return static_cast<std::int32_t>(mesh_.vertices.size()) - 1;
  }

  void Triangle(std::int32_t a, std::int32_t b, std::int32_t c) {
    mesh_.triangles.push_back({{a, b, c}, word_});
  }

  // Counterclockwise from `corner`, as seen from outside.
  void Rectangle(const Vec3& corner, const Vec3& across, const Vec3& along) {
    const Vec3 normal = across.cross(along).normalized();
    const float u = across.norm();
    const float v = along.norm();
    const std::int32_t a = Vertex(corner, normal, 0, 0);
    const std::int32_t b = Vertex(corner + across, normal, u, 0);
    const std::int32_t c = Vertex(corner + across + along, normal, u, v);
    const std::int32_t d = Vertex(corner + along, normal, 0, v);
    Triangle(a, b, c);
    Triangle(a, c, d);
  }

  void Box() {
    const Vec3 x(size_.x(), 0, 0);
    const Vec3 y(0, size_.y(), 0);
    const Vec3 z(0, 0, size_.z());
    const Vec3 low = -(x + y) / 2;
    const Vec3 high = low + x + y + z;
    Rectangle(low + z, x, y);
    Rectangle(low, y, x);
    Rectangle(low, x, z);
    Rectangle(low, z, y);
    Rectangle(high, -z, -x);
    Rectangle(high, -y, -z);
  }

  void Plane() {
    const Vec3 x(size_.x(), 0, 0);
    const Vec3 y(0, size_.y(), 0);
    Rectangle(-(x + y) / 2, x, y);
  }

  void Cylinder() {
    Cap(0, -1);
    Cap(size_.z(), 1);
    const float length = kPi * (size_.x() + size_.y()) / 2;
    std::int32_t first = 0;
    for (int i = 0; i <= kSides; ++i) {
      const float part = static_cast<float>(i) / kSides;
      const Vec3 out = Outwards(part);
      const Vec3 normal(out.x() / size_.x(), out.y() / size_.y(), 0);
      const Vec3 rim = out.cwiseProduct(size_ / 2);
      const std::int32_t low = Vertex(rim, normal.normalized(), part * length, 0);
      Vertex(rim + Vec3(0, 0, size_.z()), normal.normalized(), part * length, size_.z());
      if (i == 0) {
        first = low;
        continue;
      }
      const std::int32_t before = first + 2 * (i - 1);
      Triangle(before, low, low + 1);
      Triangle(before, low + 1, before + 1);
    }
  }

  void Sphere() {
    for (int ring = 0; ring <= kRings; ++ring) {
      const float polar = kPi * (1 - static_cast<float>(ring) / kRings);
      for (int i = 0; i <= kSides; ++i) {
        const float part = static_cast<float>(i) / kSides;
        const Vec3 out = Outwards(part) * std::sin(polar) + Vec3(0, 0, std::cos(polar));
        const Vec3 position = out.cwiseProduct(size_ / 2) + Vec3(0, 0, size_.z() / 2);
        const Vec3 normal = out.cwiseQuotient(size_).normalized();
        const std::int32_t here = Vertex(position, normal, part * kPi * size_.x(),
                                         kPi * size_.z() / 2 * static_cast<float>(ring) / kRings);
        if (ring == 0 || i == 0) continue;
        const std::int32_t below = here - (kSides + 1);
        // The poles' triangles without area are left out.
        if (ring > 1) Triangle(below - 1, below, here);
        if (ring < kRings) Triangle(below - 1, here, here - 1);
      }
    }
  }

  SceneMesh Take() { return std::move(mesh_); }

 private:
  static Vec3 Outwards(float part) {
    return {std::cos(2 * kPi * part), std::sin(2 * kPi * part), 0};
  }

  void Cap(float z, float up) {
    const Vec3 normal(0, 0, up);
    const std::int32_t middle = Vertex({0, 0, z}, normal, size_.x() / 2, size_.y() / 2);
    for (int i = 0; i < kSides; ++i) {
      const Vec3 rim = Outwards(static_cast<float>(i) / kSides).cwiseProduct(size_ / 2);
      Vertex(rim + Vec3(0, 0, z), normal, rim.x() + size_.x() / 2, rim.y() + size_.y() / 2);
    }
    for (int i = 0; i < kSides; ++i) {
      const std::int32_t a = middle + 1 + i;
      const std::int32_t b = middle + 1 + (i + 1) % kSides;
      if (up > 0) {
        Triangle(middle, a, b);
      } else {
        Triangle(middle, b, a);
      }
    }
  }

  SceneMesh mesh_;
  Vec3 size_;
  float textureLength_;
  std::uint32_t word_;
};

}  // namespace

SceneMesh ShapeMesh(const SceneFileShape& shape, std::uint32_t material) {
  Builder builder(shape, material);
  switch (shape.kind) {
    case SceneFileShape::Kind::kBox:
      builder.Box();
      break;
    case SceneFileShape::Kind::kPlane:
      builder.Plane();
      break;
    case SceneFileShape::Kind::kCylinder:
      builder.Cylinder();
      break;
    case SceneFileShape::Kind::kSphere:
      builder.Sphere();
      break;
  }
  return builder.Take();
}

}  // namespace qv::host
