#include "Terrain.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace qv::cubemaps {
namespace {

constexpr float kNearest = 1;  // radius of the first ring, metres

}  // namespace

void AddTerrain(World& world, const Terrain& terrain) {
  const auto& [height, farthest, rings, spokes, material] = terrain;
  Mesh mesh;
  mesh.points.emplace_back(0, 0, height(0, 0));
  const float growth = std::pow(farthest / kNearest, 1 / static_cast<float>(rings - 1));
  float radius = kNearest;
  for (int ring = 0; ring < rings; ++ring, radius *= growth) {
    for (int spoke = 0; spoke < spokes; ++spoke) {
      const float angle =
          2 * std::numbers::pi_v<float> * static_cast<float>(spoke) / static_cast<float>(spokes);
      const float x = radius * std::sin(angle);
      const float y = radius * std::cos(angle);
      mesh.points.emplace_back(x, y, height(x, y));
    }
  }
  const auto at = [spokes = spokes](int ring, int spoke) {
    return static_cast<std::uint32_t>(1 + ring * spokes + spoke % spokes);
  };
  for (int spoke = 0; spoke < spokes; ++spoke) {
    mesh.triangles.push_back({0, at(0, spoke), at(0, spoke + 1)});
    for (int ring = 0; ring + 1 < rings; ++ring) {
      mesh.triangles.push_back({at(ring, spoke), at(ring + 1, spoke), at(ring + 1, spoke + 1)});
      mesh.triangles.push_back({at(ring, spoke), at(ring + 1, spoke + 1), at(ring, spoke + 1)});
    }
  }
  world.Place(world.AddPrototype({{std::move(mesh), material}}), Vec3::Zero());
}

}  // namespace qv::cubemaps
