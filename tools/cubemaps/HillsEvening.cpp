#include <cmath>

#include "Ground.h"
#include "Noise.h"
#include "Place.h"
#include "Planter.h"
#include "Plants.h"

namespace qv::cubemaps {
namespace {

const Vec3 kGrass(0.23f, 0.26f, 0.095f);
const Vec3 kSward(0.165f, 0.170f, 0.068f);

float HeightAt(float x, float y) {
  const float r = std::hypot(x, y);
  const float top = -kEye + 0.6f * Step(3, 40, r) * Fbm(x / 24, y / 24, 3, 401);
  const float down =
      95 * Step(-60, 420, r) * (1 + 0.35f * Fbm(x / 300, y / 300, 3, 403) * Step(60, 300, r));
  // Ridges, the higher the further away.
  const float bent = 500 * Fbm(x / 3000, y / 3000, 2, 405);
  const float fold = Fbm((x + bent) / 1500, (y - bent) / 1900, 5, 407);
  const float ridge = 1 - std::abs(fold) * 2.2f;
  const float hills = Step(450, 2600, r) * (80 + 230 * ridge) +
                      Step(3000, 14000, r) * (200 + 620 * (0.4f + Fbm(x / 4200, y / 4200, 5, 409)));
  return top - (down - 95 * Step(-60, 420, 0)) + std::max(hills - 60 * Step(450, 1500, r), 0.0f);
}

float WoodsAt(float x, float y) {
  return Fbm(x / 520, y / 520, 4, 411) + 0.02f;
}

Surface GroundAt(const Hit& hit) {
  const float x = hit.position.x();
  const float y = hit.position.y();
  if (std::hypot(x, y) < 110) return LawnAt(hit, kSward);
  return CountryAt(hit, kSward, Vec3(0.22f, 0.17f, 0.08f), WoodsAt(x, y));
}

void AddMeadow(World& world) {
  GrassShape shape;
  shape.blades = 1200;
  shape.height = 0.26f;
  shape.color = kGrass;
  shape.dry = Vec3(0.44f, 0.37f, 0.19f);
  shape.dryness = 0.26f;
  shape.stalks = 45;
  shape.bend = 0.8f;
  const int high = AddGrass(world, shape, 51);
  shape.height = 0.17f;
  shape.stalks = 12;
  shape.dryness = 0.25f;
  const int low = AddGrass(world, shape, 52);
  Dice dice(53);
  Planter planter(world, HeightAt, dice);
  const auto grassAt = [&](float x, float y) {
    return Fbm(x / 7, y / 7, 3, 413) + dice.Roll(-0.2f, 0.2f) > 0 ? high : low;
  };
  planter.Meadow(90, grassAt);
}

void AddTrees(World& world) {
  const int oak = AddTree(world, {12, 2.4f, 5.6f, 0, 400, 140, 0.19f, 0.8f}, 61);
  const int pine =
      AddTree(world, {18, 1.5f, 3.4f, 1, 420, 110, 0.17f, 0.5f, {0.028f, 0.050f, 0.022f}}, 62);
  const int bush = AddTree(world, {2.4f, 0, 1.6f, 0, 90, 110, 0.10f, 0.42f}, 63);
  Dice dice(64);
  Planter planter(world, HeightAt, dice, {0.8f, 1.2f, 0.1f});
  planter.Tree(oak, -46, -30, 1.0f);
  planter.Tree(oak, 30, 62, 1.1f);
  planter.Tree(oak, 44, 70, 0.85f);
  for (int i = 0; i < 40; ++i) {
    const Spot spot = SpotByRadius(dice, 26, 130);
    // The view to the setting sun stays open.
    if (spot.x < -10 && std::abs(spot.y - 0.32f * -spot.x) < 30) continue;
    planter.Tree(bush, spot.x, spot.y, 0.9f);
  }
  for (int i = 0; i < 42000; ++i) {
    const Spot spot = SpotByArea(dice, 130, 2000);
    const float woods = WoodsAt(spot.x, spot.y);
    if (woods < 0.0f) continue;
    planter.Tree(woods > 0.1f || i % 3 ? pine : oak, spot.x, spot.y, 1.1f);
  }
}

}  // namespace

Scenery HillsEvening() {
  return {.sun = SunAt(5.5f, 288),
          .haze = 1.4f,
          .weather = {.base = 2300,
                      .top = 2750,
                      .cover = 0.20f,
                      .scale = 3000,
                      .thickness = 0.011f,
                      .veil = 0.5f,
                      .veilTurn = 0.2f,
                      .seed = 60},
          .air = {28000, 0.0011f, -75, 26},
          .exposure = 14.5f,
          .white = {0.93f, 1.0f, 1.10f},
          .ground = {0.08f, 0.08f, 0.045f},
          .terrain = {HeightAt, 40000, 460, 1000, GroundAt},
          .furnish = [](World& world) {
            AddMeadow(world);
            AddTrees(world);
          }};
}

}  // namespace qv::cubemaps
