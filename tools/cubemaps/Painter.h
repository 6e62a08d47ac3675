#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Noise.h"
#include "Place.h"

namespace qv::cubemaps {

// Paints what is seen from the eye of a place.
class Painter {
 public:
  explicit Painter(const Place& place) : place_(place) {}

  // One of the six faces in the order and orientation of sky::CubeFaces, size by size pixels of
  // blue, green, red, alpha bytes, top row first.
  std::vector<std::uint8_t> Face(int face, int size) const;

 private:
  // `hit` tells whether the ray met something of the world.
  Vec3 Radiance(const Vec3& direction, float pixel, Dice& dice, bool& hit) const;
  Vec3 Lit(const Hit& hit, const Surface& surface, const Vec3& direction, Dice& dice) const;
  Vec3 ThroughAir(const Vec3& color, const Vec3& direction, float distance) const;
  // A pixel as a camera gives it, each channel 0 to 1.
  Vec3 Developed(const Vec3& radiance) const;

  const Place& place_;
};

}  // namespace qv::cubemaps
