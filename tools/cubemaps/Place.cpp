#include "Place.h"

#include <cmath>
#include <numbers>

namespace qv::cubemaps {

Vec3 SunAt(float elevation, float azimuth) {
  constexpr float kDegree = std::numbers::pi_v<float> / 180;
  return {std::cos(elevation * kDegree) * std::sin(azimuth * kDegree),
          std::cos(elevation * kDegree) * std::cos(azimuth * kDegree),
          std::sin(elevation * kDegree)};
}

Place::Place(const Scenery& from, int rows)
    : scenery(from), atmosphere(from.sun, from.haze), dome(atmosphere, from.weather, rows) {
  AddTerrain(world, scenery.terrain);
  scenery.furnish(world);
  world.Commit();
}

}  // namespace qv::cubemaps
