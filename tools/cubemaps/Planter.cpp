#include "Planter.h"

#include <cmath>
#include <utility>

namespace qv::cubemaps {
namespace {

constexpr float kTurn = 6.28f;
constexpr float kFine = 24;        // metres from the eye to where the pieces get larger
constexpr float kOverlap = 1.22f;  // of pieces turned any way, so that no gaps show

Spot SpotAt(float angle, float radius) {
  return {radius * std::sin(angle), radius * std::cos(angle), angle};
}

}  // namespace

Spot SpotByRadius(Dice& dice, float from, float to) {
  const float angle = dice.Roll(0, 6.2832f);
  return SpotAt(angle, dice.Roll(from, to));
}

Spot SpotByArea(Dice& dice, float from, float to) {
  const float angle = dice.Roll(0, 6.2832f);
  return SpotAt(angle, std::sqrt(dice.Roll(from * from, to * to)));
}

Planter::Planter(World& world, Height height, Dice& dice, TreeHabit habit)
    : world_(world), height_(std::move(height)), dice_(dice), habit_(habit) {}

// The dice are rolled in statements of their own: the order among arguments is the compiler's.

void Planter::Tree(int tree, float x, float y, float size) {
  const float tint = dice_.Roll();
  const float factor = dice_.Roll(habit_.smallest, habit_.largest);
  const float turn = dice_.Roll(0, kTurn);
  world_.Place(tree, {x, y, height_(x, y) - habit_.sunk}, turn, size * factor, tint);
}

void Planter::Grass(int grass, float x, float y, float size, float stretch) {
  const float tint = dice_.Roll();
  const float turn = dice_.Roll(0, kTurn);
  world_.Place(grass, {x, y, height_(x, y)}, turn, size, tint, stretch);
}

// Pieces of grass in a square lattice, between two circles around the eye.
struct Planter::Ring {
  float side;      // of the lattice, metres
  float from, to;  // radii, metres
  float stretch;   // factor on the height of the blades
};

void Planter::Meadow(float farthest, const std::function<int(float x, float y)>& grassAt) {
  Sow({1, 0, kFine, 1}, grassAt);
  Sow({2, kFine, farthest, 1.1f}, grassAt);
}

void Planter::Sow(const Ring& ring, const std::function<int(float x, float y)>& grassAt) {
  const int count = static_cast<int>(ring.to / ring.side) + 1;
  for (int i = -count; i <= count; ++i) {
    for (int j = -count; j <= count; ++j) {
      const float x = (static_cast<float>(i) + 0.5f) * ring.side;
      const float y = (static_cast<float>(j) + 0.5f) * ring.side;
      const float r = std::hypot(x, y);
      if (r < ring.from || r >= ring.to) continue;
      Grass(grassAt(x, y), x, y, ring.side * kOverlap, ring.stretch / ring.side);
    }
  }
}

}  // namespace qv::cubemaps
