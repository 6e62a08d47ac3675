#pragma once

#include <embree3/rtcore.h>

#include <Eigen/Geometry>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "core/Vec.h"

namespace qv::cubemaps {

// Metres; x east, y north, z up; the eye is at the origin.

struct Mesh {
  std::vector<Vec3> points;
  std::vector<std::array<std::uint32_t, 3>> triangles;

  // Four corners around.
  void AddQuad(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d);
  void AddBox(const Vec3& low, const Vec3& high);
  // A rod of `sides` sides from a to b, getting thinner.
  void AddRod(const Vec3& a, const Vec3& b, float radiusA, float radiusB, int sides);
};

// Where a ray met something.
struct Hit {
  Vec3 position;
  Vec3 local;        // in the axes of the prototype, before it was placed
  Vec3 normal;       // of the triangle, towards where the ray came from
  Vec3 localNormal;  // the same in the prototype's axes, on whichever side
  float distance;    // from where the ray began
  float footprint;   // size of a pixel there, across the ray
  float tint;        // of the placed thing, 0 to 1
};

// How a surface takes light: all shares of it, red, green, blue.
struct Surface {
  Vec3 albedo{0.2f, 0.2f, 0.2f};
  Vec3 normal{0, 0, 1};
  float through = 0;  // how much light from behind shines through, in parts of the albedo
  float gloss = 0;    // share that is mirrored straight on
};
using Material = std::function<Surface(const Hit&)>;

// Things made of triangles, of which each may stand in many places.
class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  struct Part {
    Mesh mesh;
    Material material;
  };
  // The number of the prototype.
  int AddPrototype(std::vector<Part> parts);
  // Turned by `turn` radians around z, then set down; `stretch` is along z besides.
  void Place(int prototype, const Vec3& position, float turn = 0, float size = 1, float tint = 0.5f,
             float stretch = 1);
  // After the last thing was placed.
  void Commit();

  // `pixel` is the angle of a pixel.
  bool Find(const Vec3& origin, const Vec3& direction, float pixel, Hit& hit,
            Surface& surface) const;
  bool IsBlocked(const Vec3& origin, const Vec3& direction, float distance) const;

 private:
  struct Prototype {
    RTCScene scene = nullptr;
    std::vector<Material> materials;
  };
  struct Placed {
    int prototype;
    float tint;
    Eigen::Affine3f worldFromLocal;
    Eigen::Affine3f localFromWorld;
  };

  RTCDevice device_;
  RTCScene scene_;
  std::vector<Prototype> prototypes_;
  std::vector<Placed> placed_;
};

}  // namespace qv::cubemaps
