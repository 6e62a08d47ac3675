#pragma once

#include <functional>

#include "World.h"

namespace qv::cubemaps {

// Metres from the ground to the eye: the ground under it lies at z = -kEye.
constexpr float kEye = 1.7f;

// The altitude of the ground above the eye, metres.
using Height = std::function<float(float x, float y)>;

// The ground as rings around the eye, finer near it.
struct Terrain {
  Height height;
  float farthest;  // radius of the last ring, metres
  int rings;
  int spokes;
  Material material;
};

// With the disc inside the first ring.
void AddTerrain(World& world, const Terrain& terrain);

}  // namespace qv::cubemaps
