#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/RenderCamera.h"
#include "core/SceneRecords.h"
#include "core/Vec.h"

namespace qv::test {

// The two materials of a surface, as numbers of the builder.
struct Sides {
  std::uint16_t front;
  std::uint16_t back;

  Sides(int both) : Sides(both, both) {}  // NOLINT: a number alone means both sides
  Sides(int frontNumber, int backNumber)
      : front(static_cast<std::uint16_t>(frontNumber)),
        back(static_cast<std::uint16_t>(backNumber)) {}
  std::uint32_t Word() const { return front | std::uint32_t{back} << 16; }
};

// How a billboard stands.
struct Anchor {
  Vec3 pivot;
  Vec2 frontAxis;
};

struct SceneMesh {
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
  std::optional<Anchor> billboard;
};

struct SceneLight {
  enum Kind { kPoint, kSpot, kDirectional } kind;
  Vec3 color;
  Vec3 position{0, 0, 0};
  Vec3 direction{0, 0, 0};
  float innerAngle = 0;
  float outerAngle = 0;

  static SceneLight Point(const Vec3& color, const Vec3& position);
  static SceneLight Spot(const Vec3& color, const Vec3& position, const Vec3& direction,
                         float innerAngle, float outerAngle);
  static SceneLight Directional(const Vec3& color, const Vec3& direction);
};

MaterialParameters Matte(const Vec3& diffuse);

// A scene of simple bodies. Each call of a body makes a mesh of its own, whose number it returns;
// `meshes` may be changed afterwards. Both uv sets run from 0 to 1 over each face.
class SceneBuilder {
 public:
  int Material(const MaterialParameters& material);
  int Material(const Vec3& diffuse) { return Material(Matte(diffuse)); }

  // A parallelogram with the normal along `right` x `up`.
  int Quad(const Vec3& corner, const Vec3& right, const Vec3& up, Sides sides);
  // A horizontal square about (0, 0, z) that looks up.
  int Floor(float z, float halfSide, Sides sides);
  int Box(const Vec3& minimum, const Vec3& maximum, Sides sides);
  // With smooth normals; `rows` from pole to pole, twice as many columns.
  int Sphere(const Vec3& centre, float radius, int rows, Sides sides);
  int Mesh(SceneMesh mesh);

  // Hands the scene to whatever takes scenes: the renderer, or a host's end of the link.
  template <class Receiver>
  void SendTo(Receiver& receiver) const {
    SendGeometryTo(receiver);
    for (const SceneLight& l : lights) {
      if (l.kind == SceneLight::kPoint) receiver.AddPointLight(l.color, l.position);
      if (l.kind == SceneLight::kDirectional) receiver.AddDirectionalLight(l.color, l.direction);
      if (l.kind == SceneLight::kSpot) {
        receiver.AddSpotLight(l.color, l.position, l.direction, l.innerAngle, l.outerAngle);
      }
    }
  }

  template <class Receiver>
  void SendGeometryTo(Receiver& receiver) const {
    for (const MaterialParameters& material : materials) receiver.AddMaterial(material);
    for (const SceneMesh& mesh : meshes) {
      if (mesh.billboard) {
        receiver.BeginBillboard();
      } else {
        receiver.BeginStaticMesh();
      }
      receiver.AddMeshData(mesh.vertices, mesh.triangles);
      if (mesh.billboard) {
        receiver.EndBillboard(mesh.billboard->pivot, mesh.billboard->frontAxis);
      } else {
        receiver.EndMesh();
      }
    }
  }

  std::vector<MaterialParameters> materials;
  std::vector<SceneMesh> meshes;
  std::vector<SceneLight> lights;
};

// A box and a sphere that mirrors on a floor, under the sky.
SceneBuilder SmallScene();

// With the model's z up.
RenderCamera LookingAt(const Vec3& from, const Vec3& at, float fieldOfView);

}  // namespace qv::test
