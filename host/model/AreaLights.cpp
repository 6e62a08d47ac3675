#include "host/model/AreaLights.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <optional>
#include <tuple>
#include <utility>

#include "host/model/Lights.h"

namespace qv::host {
namespace {

// Below this an emission is a trace that an exporter left.
constexpr float kLeastEmission = 0.1f;
// Where a part's normals add up to this share of its area, it is flat.
constexpr float kFlat = 0.95f;
// How far a rectangle lies above the surface that it stands for: no shadow ray meets that.
constexpr float kLift = 0.05f;  // inches
// A rectangle is fitted along one of so many edges.
constexpr std::size_t kMaximumEdges = 64;

struct Face {
  std::array<Vec3, 3> corners;
  Vec3 normal;  // unit length
  float area;
};

struct Lamp {
  std::string name;
  Vec3 emission;
  std::vector<Face> faces;
  float area = 0;

  float Power() const { return emission.maxCoeff() * area; }
};

Vec3 PositionOf(const SceneMesh& mesh, std::int32_t vertex) {
  const float* position = mesh.vertices[static_cast<std::size_t>(vertex)].position;
  return {position[0], position[1], position[2]};
}

Face FaceOf(const SceneMesh& mesh, const MeshTriangle& triangle) {
  Face face;
  for (std::size_t i = 0; i < 3; ++i) face.corners[i] = PositionOf(mesh, triangle.vertex[i]);
  const Vec3 cross = (face.corners[1] - face.corners[0]).cross(face.corners[2] - face.corners[0]);
  const float length = cross.norm();
  face.area = length / 2;
  face.normal = length > 0 ? Vec3(cross / length) : Vec3(0, 0, 1);
  return face;
}

// Sets of numbers that grow together.
class Partition {
 public:
  explicit Partition(std::size_t size) : parent_(size) {
    std::iota(parent_.begin(), parent_.end(), std::size_t{0});
  }
  std::size_t Find(std::size_t i) {
    while (parent_[i] != i) {
      parent_[i] = parent_[parent_[i]];
      i = parent_[i];
    }
    return i;
  }
  void Join(std::size_t a, std::size_t b) { parent_[Find(a)] = Find(b); }

 private:
  std::vector<std::size_t> parent_;
};

// The faces of one material in one mesh, as far as they hang together, each a lamp.
void AddLamps(const std::vector<Face>& faces, const std::string& name, const Vec3& emission,
              std::vector<Lamp>& lamps) {
  using Place = std::tuple<float, float, float>;
  Partition partition(faces.size());
  std::map<Place, std::size_t> faceAt;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    for (const Vec3& corner : faces[i].corners) {
      const auto place = faceAt.try_emplace({corner.x(), corner.y(), corner.z()}, i).first;
      partition.Join(i, place->second);
    }
  }
  std::map<std::size_t, std::size_t> lampOfRoot;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    const auto [place, isNew] = lampOfRoot.try_emplace(partition.Find(i), lamps.size());
    if (isNew) lamps.push_back({name, emission, {}, 0});
    Lamp& lamp = lamps[place->second];
    lamp.faces.push_back(faces[i]);
    lamp.area += faces[i].area;
  }
}

std::vector<Lamp> LampsOf(const Scene& scene) {
  std::vector<Lamp> lamps;
  float wholeArea = 0;
  float glowingArea = 0;
  for (const SceneMesh& mesh : scene.meshes) {
    std::map<std::uint32_t, std::vector<Face>> glowing;  // by material
    for (const MeshTriangle& triangle : mesh.triangles) {
      const std::uint32_t material = triangle.materialWord & 0xffff;
      const Face face = FaceOf(mesh, triangle);
      wholeArea += face.area;
      if (material >= scene.materials.size() ||
          !(scene.materials[material].emission.maxCoeff() >= kLeastEmission)) {
        continue;
      }
      glowingArea += face.area;
      glowing[material].push_back(face);
    }
    for (const auto& [material, faces] : glowing) {
      AddLamps(faces, mesh.name, scene.materials[material].emission, lamps);
    }
  }
  if (glowingArea > wholeArea / 2) lamps.clear();
  return lamps;
}

struct Rectangle {
  Vec3 center;
  Vec3 across;  // half the sides, at right angles
  Vec3 along;

  float Area() const { return 4 * across.norm() * along.norm(); }
};

Rectangle Around(const std::vector<const Face*>& faces, const Vec3& normal, const Vec3& x) {
  const Vec3 y = normal.cross(x);
  Eigen::AlignedBox3f box;
  for (const Face* face : faces) {
    for (const Vec3& corner : face->corners) {
      box.extend(Vec3(x.dot(corner), y.dot(corner), normal.dot(corner)));
    }
  }
  const Vec3 half = box.sizes() / 2;
  const Vec3 middle = box.center();
  return {middle.x() * x + middle.y() * y + (box.max().z() + kLift) * normal, half.x() * x,
          half.y() * y};
}

// The direction of an edge in the plane of `normal` along which a rectangle is smallest.
Vec3 BestDirection(const std::vector<const Face*>& faces, const Vec3& normal) {
  Vec3 best = normal.unitOrthogonal();
  float least = Around(faces, normal, best).Area();
  std::size_t tried = 0;
  for (const Face* face : faces) {
    for (std::size_t i = 0; i < 3 && tried < kMaximumEdges; ++i, ++tried) {
      const Vec3 edge = face->corners[(i + 1) % 3] - face->corners[i];
      const Vec3 flat = edge - edge.dot(normal) * normal;
      if (!(flat.norm() > 0.5f * edge.norm())) continue;
      const float area = Around(faces, normal, flat.normalized()).Area();
      if (area >= least) continue;
      least = area;
      best = flat.normalized();
    }
  }
  return best;
}

std::vector<Rectangle> RectanglesOf(const Lamp& lamp) {
  std::vector<const Face*> all;
  Vec3 sum(0, 0, 0);
  for (const Face& face : lamp.faces) {
    all.push_back(&face);
    sum += face.normal * face.area;
  }
  if (sum.norm() > kFlat * lamp.area) {
    const Vec3 normal = sum.normalized();
    return {Around(all, normal, BestDirection(all, normal))};
  }
  const Vec3 up(0, 0, 1);
  const Vec3 x = BestDirection(all, up);
  const std::array<Vec3, 3> axes = {x, up.cross(x), up};
  std::array<std::vector<const Face*>, 6> sides;
  for (const Face* face : all) {
    const Vec3 part(axes[0].dot(face->normal), axes[1].dot(face->normal),
                    axes[2].dot(face->normal));
    Eigen::Index axis = 0;
    part.cwiseAbs().maxCoeff(&axis);
    sides[static_cast<std::size_t>(2 * axis + (part[axis] < 0 ? 1 : 0))].push_back(face);
  }
  std::vector<Rectangle> rectangles;
  for (std::size_t side = 0; side < sides.size(); ++side) {
    if (sides[side].empty()) continue;
    const Vec3 normal = side % 2 == 0 ? axes[side / 2] : Vec3(-axes[side / 2]);
    rectangles.push_back(Around(sides[side], normal, axes[(side / 2 + 1) % 3]));
  }
  return rectangles;
}

// Keeps the lamp's power. Nothing if it has no extent.
std::optional<SceneAreaLight> LightOf(const Lamp& lamp, float scale) {
  SceneAreaLight light;
  light.name = lamp.name;
  float area = 0;
  for (const Rectangle& rectangle : RectanglesOf(lamp)) {
    if (!(rectangle.Area() > 0)) continue;
    area += rectangle.Area();
    const auto corners = RectangleCorners(rectangle.center, rectangle.across, rectangle.along);
    light.corners.insert(light.corners.end(), corners.begin(), corners.end());
  }
  light.emission = lamp.emission * scale * (lamp.area / area);
  if (!(area > 0) || !light.emission.allFinite()) return std::nullopt;
  return light;
}

}  // namespace

std::vector<Vec3> RectangleCorners(const Vec3& center, const Vec3& across, const Vec3& along) {
  const Vec3 a = center - across - along;
  const Vec3 b = center + across - along;
  const Vec3 c = center + across + along;
  const Vec3 d = center - across + along;
  return {a, b, c, a, c, d};
}

std::vector<SceneAreaLight> AreaLightsOf(const Scene& scene) {
  std::vector<Lamp> lamps = LampsOf(scene);
  std::stable_sort(lamps.begin(), lamps.end(),
                   [](const Lamp& a, const Lamp& b) { return a.Power() > b.Power(); });
  lamps.resize(std::min(lamps.size(), kMaximumAreaLights));
  std::vector<SceneAreaLight> lights;
  if (lamps.empty() || !(lamps.front().Power() > 0)) return lights;
  const float distance = std::min(kRoomDistance, scene.bounds.diagonal().norm() / 2);
  // What a wide surface with this emission gives to one close before it is what it shows.
  constexpr float kLeastScale = std::numbers::inv_pi_v<float>;
  const float scale =
      std::max(kLampLevel * distance * distance / lamps.front().Power(), kLeastScale);
  for (const Lamp& lamp : lamps) {
    if (auto light = LightOf(lamp, scale)) lights.push_back(std::move(*light));
  }
  return lights;
}

}  // namespace qv::host
