#pragma once

#include <functional>

#include "Noise.h"
#include "Terrain.h"

namespace qv::cubemaps {

// A place on the ground around the eye, metres; `angle` is its direction, radians from north.
struct Spot {
  float x, y, angle;
};
// Somewhere between two circles around the eye: the same chance for each metre of the radius, so
// that spots lie closer together near the eye, or the same for each part of the area.
Spot SpotByRadius(Dice& dice, float from, float to);
Spot SpotByArea(Dice& dice, float from, float to);

// How the trees of a place differ and stand.
struct TreeHabit {
  float smallest = 1, largest = 1;  // factors on the size
  float sunk = 0;                   // metres of the trunk in the ground
};

// Sets plants on the ground, each turned and tinted by chance.
class Planter {
 public:
  Planter(World& world, Height height, Dice& dice, TreeHabit habit = {});

  void Tree(int tree, float x, float y, float size);
  // One piece of grass, made `size` times as large and its blades `stretch` times as high besides.
  void Grass(int grass, float x, float y, float size, float stretch = 1);
  // A meadow around the eye, up to `farthest` metres; `grassAt` chooses the grass of each piece.
  void Meadow(float farthest, const std::function<int(float x, float y)>& grassAt);

 private:
  struct Ring;
  void Sow(const Ring& ring, const std::function<int(float x, float y)>& grassAt);

  World& world_;
  const Height height_;
  Dice& dice_;
  const TreeHabit habit_;
};

}  // namespace qv::cubemaps
