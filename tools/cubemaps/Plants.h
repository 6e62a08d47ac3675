#pragma once

#include <cstdint>
#include <vector>

#include "World.h"

namespace qv::cubemaps {

// The shape of a tree or bush, metres.
struct TreeShape {
  float height = 10;
  float trunk = 2.5f;  // up to the lowest leaves
  float spread = 4;    // radius of the crown
  float point = 0;     // 0 a round crown, 1 one that ends in a point
  int twigs = 240;     // bunches of leaves
  int leaves = 110;    // in each bunch
  float leafSize = 0.16f;
  float bunch = 0.62f;  // radius of a bunch
  Vec3 color{0.075f, 0.125f, 0.03f};
};
int AddTree(World& world, const TreeShape& shape, std::uint32_t seed);

// A piece of meadow one metre wide that stands on z = 0.
struct GrassShape {
  int blades = 1500;
  float height = 0.16f;
  float width = 0.006f;
  float bend = 0.6f;  // how far the tips lean, in heights
  int flowers = 0;
  int stalks = 0;  // with ears, half as high again
  Vec3 color{0.10f, 0.16f, 0.035f};
  Vec3 dry{0.30f, 0.27f, 0.12f};
  float dryness = 0.12f;  // share of dry blades
};
int AddGrass(World& world, const GrassShape& shape, std::uint32_t seed);

}  // namespace qv::cubemaps
