#pragma once

#include "World.h"

namespace qv::cubemaps {

// Both stand on z = 0 with their middle at x = y = 0.

// A house with a pitched roof; the ridge goes along x.
struct HouseShape {
  float length = 12, depth = 9, eaves = 5.6f, ridge = 9.5f;
  Vec3 wall{0.62f, 0.58f, 0.50f};
  Vec3 roof{0.30f, 0.11f, 0.07f};
};
int AddHouse(World& world, const HouseShape& shape);

// A block with a flat roof and bands of windows; `storey` 0 makes a hall without any.
struct BlockShape {
  float length = 40, depth = 14, height = 9, storey = 3;
  Vec3 wall{0.50f, 0.50f, 0.48f};
};
int AddBlock(World& world, const BlockShape& shape);

// A lamp on a post of that height, its arm along x.
int AddLamp(World& world, float height);

}  // namespace qv::cubemaps
