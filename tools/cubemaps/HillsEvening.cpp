#include <cmath>

#include "Buildings.h"
#include "Ground.h"
#include "Noise.h"
#include "Place.h"
#include "Plants.h"

namespace qv::cubemaps {
namespace {

constexpr float kEye = 1.7f;
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
  const auto sow = [&](float side, float from, float to, float stretch) {
    const int count = static_cast<int>(to / side) + 1;
    for (int i = -count; i <= count; ++i) {
      for (int j = -count; j <= count; ++j) {
        const float x = (static_cast<float>(i) + 0.5f) * side;
        const float y = (static_cast<float>(j) + 0.5f) * side;
        const float r = std::hypot(x, y);
        if (r < from || r >= to) continue;
        const bool tall = Fbm(x / 7, y / 7, 3, 413) + dice.Roll(-0.2f, 0.2f) > 0;
        world.Place(tall ? high : low, {x, y, HeightAt(x, y)}, dice.Roll(0, 6.28f), side * 1.22f,
                    dice.Roll(), stretch / side);
      }
    }
  };
  sow(1, 0, 24, 1);
  sow(2, 24, 90, 1.1f);
}

void AddTrees(World& world) {
  const int oak = AddTree(world, {12, 2.4f, 5.6f, 0, 400, 140, 0.19f, 0.8f}, 61);
  const int pine =
      AddTree(world, {18, 1.5f, 3.4f, 1, 420, 110, 0.17f, 0.5f, {0.028f, 0.050f, 0.022f}}, 62);
  const int bush = AddTree(world, {2.4f, 0, 1.6f, 0, 90, 110, 0.10f, 0.42f}, 63);
  Dice dice(64);
  const auto place = [&](int kind, float x, float y, float size) {
    world.Place(kind, {x, y, HeightAt(x, y) - 0.1f}, dice.Roll(0, 6.28f),
                size * dice.Roll(0.8f, 1.2f), dice.Roll());
  };
  place(oak, -46, -30, 1.0f);
  place(oak, 30, 62, 1.1f);
  place(oak, 44, 70, 0.85f);
  for (int i = 0; i < 40; ++i) {
    const float angle = dice.Roll(0, 6.2832f);
    const float r = dice.Roll(26, 130);
    const float x = r * std::sin(angle);
    const float y = r * std::cos(angle);
    // The view to the setting sun stays open.
    if (x < -10 && std::abs(y - 0.32f * -x) < 30) continue;
    place(bush, x, y, 0.9f);
  }
  for (int i = 0; i < 42000; ++i) {
    const float angle = dice.Roll(0, 6.2832f);
    const float r = std::sqrt(dice.Roll(130.0f * 130, 2000.0f * 2000));
    const float x = r * std::sin(angle);
    const float y = r * std::cos(angle);
    const float woods = WoodsAt(x, y);
    if (woods < 0.0f) continue;
    place(woods > 0.1f || i % 3 ? pine : oak, x, y, 1.1f);
  }
}

}  // namespace

std::unique_ptr<Place> HillsEvening(int rows) {
  auto place = std::make_unique<Place>();
  place->name = "hills_evening";
  place->atmosphere = std::make_unique<Atmosphere>(SunAt(5.5f, 288), 1.4f);
  Weather weather;
  weather.base = 2300;
  weather.top = 2750;
  weather.cover = 0.20f;
  weather.scale = 3000;
  weather.thickness = 0.011f;
  weather.veil = 0.5f;
  weather.veilTurn = 0.2f;
  weather.seed = 60;
  place->dome = std::make_unique<Dome>(*place->atmosphere, weather, rows);
  place->air = {28000, 0.0011f, -75, 26};
  place->exposure = 14.5f;
  place->white = {0.93f, 1.0f, 1.10f};
  place->ground = {0.08f, 0.08f, 0.045f};
  World& world = place->world;
  AddTerrain(world, HeightAt, 1.0f, 40000, 460, 1000, GroundAt);
  AddMeadow(world);
  AddTrees(world);
  world.Commit();
  return place;
}

}  // namespace qv::cubemaps
